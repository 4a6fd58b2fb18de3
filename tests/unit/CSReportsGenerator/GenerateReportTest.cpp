#include <cerrno>
#include <limits>
#include <set>
#include <thread>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "tests/unit/CSReportsGenerator/ReportEngineTest.h"

namespace chatsum::test {
namespace {

using platform::fake::FileOperation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kEngine = "-[CSReportsGenerator generateReport:success:failure:]";

class GenerateReport : public ReportEngineTest {};

TEST_F(GenerateReport, LogsPathFileFormatAppTypeAndReportFormatBeforeTheWriterRuns) {
  makeFolder();
  generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 2}, {"APP_TYPE", 1}});
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Information => -[CSReportsGenerator generateReport:success:failure:], "
                          "[Line 113], Generating report at /var/mobile/Library/Preferences/Chatsum/report.txt",
                          "com.orbelle.Chatsum: Information => -[CSReportsGenerator generateReport:success:failure:], "
                          "[Line 114], Generating report for fileFormat 2",
                          "com.orbelle.Chatsum: Information => -[CSReportsGenerator generateReport:success:failure:], "
                          "[Line 115], Generating report for appType 1",
                          "com.orbelle.Chatsum: Information => -[CSReportsGenerator generateReport:success:failure:], "
                          "[Line 116], Generating report for format {\n    \"%@: %@ (%@)\" = \"Name,Text,Date\";\n}",
                          "com.orbelle.Chatsum: Information => -[CSReportsGenerator "
                          "generateTextReport:format:columns:records:], [Line 205], Writing data to file "
                          "/var/mobile/Library/Preferences/Chatsum/report.txt",
                          "com.orbelle.Chatsum: Information => -[CSReportsGenerator "
                          "generateTextReport:format:columns:records:], [Line 208], File "
                          "/var/mobile/Library/Preferences/Chatsum/report.txt successfully written."));
}

TEST_F(GenerateReport, TakesAnEmptyRequestAsAPDFOfMessagesUnderTheDefaultName) {
  fake.clock.set({1578307200.5});
  fake.graphics.hasPDF = false;
  const Outcome outcome = generate({});
  EXPECT_THAT(
      fake.log.lines(),
      ElementsAre(
          information("+[ChatsumUtils createFolderAt:]", 123, "Folder successfully created at '" + kFolder + "'."),
          information(kEngine, 113, "Generating report at " + inFolder("1578307200.5.pdf")),
          information(kEngine, 114, "Generating report for fileFormat 1"),
          information(kEngine, 115, "Generating report for appType 0"),
          information(kEngine, 116, "Generating report for format {\n    \"%@ %@ %@\" = \"Name,Text,Date\";\n}")));
  EXPECT_THAT(outcome.successes, IsEmpty());
  ASSERT_EQ(outcome.failures.size(), 1U);
  expectReportError(outcome.failures[0], 1213, "Unable to generate.");
}

TEST_F(GenerateReport, GivesEachFileFormatItsExtensionAndItsLineFormat) {
  EXPECT_THAT(generate({{"FILE_NAME", "a"}, {"FILE_FORMAT", 0}}).successes, ElementsAre(inFolder("a.csv")));
  EXPECT_TRUE(fake.log.contains("Generating report for format {\n    \"%@,%@,%@\" = \"Name,Text,Date\";\n}"));
  EXPECT_THAT(generate({{"FILE_NAME", "a"}, {"FILE_FORMAT", 2}}).successes, ElementsAre(inFolder("a.txt")));
  generate({{"FILE_NAME", "a"}, {"FILE_FORMAT", 1}});
  EXPECT_TRUE(fake.log.contains("Generating report at " + inFolder("a.pdf")));
  EXPECT_THAT(names(), ElementsAre("a.csv", "a.txt"));
}

TEST_F(GenerateReport, KeepsAnyExtensionOfTheNameWhateverTheWriter) {
  const Array records{Record{{"Name", "Ann"}}};
  const Outcome outcome = generate({{"FILE_NAME", "report.pdf"}, {"FILE_FORMAT", 2}, {"RECORDS", records}});
  EXPECT_THAT(outcome.successes, ElementsAre(inFolder("report.pdf")));
  EXPECT_EQ(fake.read(inFolder("report.pdf")), "Ann:  ()\n");
}

TEST_F(GenerateReport, AddsTheExtensionToNamesWithSpacesDotsAndLettersOfEveryScript) {
  const auto written = [this](const char* name) {
    const Outcome outcome = generate({{"FILE_NAME", name}, {"FILE_FORMAT", 2}});
    return outcome.successes.empty() ? std::string("nothing") : outcome.successes[0];
  };
  EXPECT_EQ(written("Ann and Bo"), inFolder("Ann and Bo.txt"));
  EXPECT_EQ(written("Grüße 📱 你好"), inFolder("Grüße 📱 你好.txt"));
  EXPECT_EQ(written(".hidden"), inFolder(".hidden.txt"));
  EXPECT_EQ(written("ends with."), inFolder("ends with..txt"));
  EXPECT_EQ(written("a.b.c"), inFolder("a.b.c"));
  EXPECT_THAT(names(), ElementsAre(".hidden.txt", "Ann and Bo.txt", "Grüße 📱 你好.txt", "a.b.c", "ends with..txt"));
}

TEST_F(GenerateReport, TakesANumberAsANameByItsText) {
  EXPECT_THAT(generate({{"FILE_NAME", 42}, {"FILE_FORMAT", 2}}).successes, ElementsAre(inFolder("42.txt")));
}

TEST_F(GenerateReport, TakesANameWithoutValueAsMissing) {
  fake.clock.set({1700000000});
  EXPECT_THAT(generate({{"FILE_NAME", Value()}, {"FILE_FORMAT", 2}}).successes,
              ElementsAre(inFolder("1700000000.txt")));
}

TEST_F(GenerateReport, LogsAndDoesNothingMoreForAnUnknownFileFormat) {
  makeFolder();
  const Outcome outcome = generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 3}});
  EXPECT_THAT(fake.log.lines(), ElementsAre(information(kEngine, 113, "Generating report at " + inFolder("report")),
                                            information(kEngine, 114, "Generating report for fileFormat 3"),
                                            information(kEngine, 115, "Generating report for appType 0"),
                                            information(kEngine, 116, "Generating report for format (null)")));
  EXPECT_FALSE(outcome.result);
  EXPECT_THAT(outcome.successes, IsEmpty());
  EXPECT_THAT(outcome.failures, IsEmpty());
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateReport, TakesNegativeAndHugeFileFormatsAsUnknown) {
  for (const std::int64_t code : {std::int64_t{-1}, std::int64_t{1} << 32, std::numeric_limits<std::int64_t>::min()}) {
    fake.log.clear();
    const Outcome outcome = generate({{"FILE_FORMAT", code}});
    EXPECT_THAT(outcome.successes, IsEmpty());
    EXPECT_THAT(outcome.failures, IsEmpty());
    EXPECT_TRUE(fake.log.contains("Generating report for fileFormat " + std::to_string(code)));
    EXPECT_TRUE(fake.log.contains("Generating report at " + inFolder("1578307200.(null)")));
  }
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateReport, KeepsTheGivenReportFormatOfAnUnknownFileFormat) {
  generate({{"FILE_FORMAT", 7}, {"REPORT_FORMAT", "plain"}});
  EXPECT_TRUE(fake.log.contains(information(kEngine, 116, "Generating report for format plain")));
}

TEST_F(GenerateReport, ReadsCodesFromStringsNumbersAndBooleans) {
  const auto format = [this](const Value& code) {
    fake.log.clear();
    generate({{"FILE_NAME", "x"}, {"FILE_FORMAT", code}});
    for (int i = -1; i < 4; ++i) {
      if (fake.log.contains(information(kEngine, 114, "Generating report for fileFormat " + std::to_string(i))))
        return i;
    }
    return -2;
  };
  EXPECT_EQ(format("2"), 2);
  EXPECT_EQ(format(" 2 of 3"), 2);
  EXPECT_EQ(format("Text"), 0);
  EXPECT_EQ(format(""), 0);
  EXPECT_EQ(format(2.9), 2);
  EXPECT_EQ(format(-0.5), 0);
  EXPECT_EQ(format(true), 1);
  EXPECT_EQ(format(false), 0);
  EXPECT_EQ(format(Array{1}), 0);
  EXPECT_EQ(format(Value()), 1);  // as if it were missing
}

TEST_F(GenerateReport, WritesEveryAppTypeIntoTheSameFolder) {
  for (const Value& appType : {Value(0), Value(1), Value("2"), Value(-1), Value(99), Value("Phone")}) {
    fake.log.clear();
    EXPECT_THAT(generate({{"FILE_NAME", "same"}, {"FILE_FORMAT", 2}, {"APP_TYPE", appType}}).successes,
                ElementsAre(inFolder("same.txt")));
    EXPECT_TRUE(fake.log.contains(
        information(kEngine, 115, "Generating report for appType " + std::to_string(appType.integerValue()))));
  }
  EXPECT_THAT(names(), ElementsAre("same.txt"));
}

TEST_F(GenerateReport, AnswersNoWhetherTheReportWasWrittenOrNot) {
  const Outcome written = generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 2}});
  EXPECT_EQ(written.successes.size(), 1U);
  EXPECT_FALSE(written.result);
  const Outcome refused = generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 2}, {"REPORT_FORMAT", "no"}});
  EXPECT_EQ(refused.failures.size(), 1U);
  EXPECT_FALSE(refused.result);
}

TEST_F(GenerateReport, TellsEitherSuccessOrFailureAndOnlyOnce) {
  const Outcome written = generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 0}});
  EXPECT_THAT(written.successes, ElementsAre(inFolder("report.csv")));
  EXPECT_THAT(written.failures, IsEmpty());
  const Outcome refused = generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 0}, {"REPORT_FORMAT", 5}});
  EXPECT_THAT(refused.successes, IsEmpty());
  EXPECT_EQ(refused.failures.size(), 1U);
}

TEST_F(GenerateReport, WritesWithoutCallbacks) {
  EXPECT_FALSE(engine.generateReport({{"FILE_NAME", "one"}, {"FILE_FORMAT", 2}}, nullptr, nullptr));
  EXPECT_FALSE(engine.generateReport({{"FILE_NAME", "two"}, {"FILE_FORMAT", 2}}));
  EXPECT_THAT(names(), ElementsAre("one.txt", "two.txt"));
}

TEST_F(GenerateReport, FailsWithoutCallbacks) {
  EXPECT_FALSE(engine.generateReport({{"FILE_FORMAT", 2}, {"REPORT_FORMAT", "no"}}, nullptr, nullptr));
  EXPECT_FALSE(engine.generateReport({{"FILE_FORMAT", 0}, {"REPORT_FORMAT", "no"}}));
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateReport, CallsTheOneCallbackItWasGiven) {
  int successes = 0;
  int failures = 0;
  const Record good{{"FILE_NAME", "report"}, {"FILE_FORMAT", 2}};
  const Record bad{{"FILE_NAME", "report"}, {"FILE_FORMAT", 2}, {"REPORT_FORMAT", "no"}};
  const auto success = [&](const std::string&) { ++successes; };
  const auto failure = [&](const Error&) { ++failures; };
  engine.generateReport(good, nullptr, failure);
  engine.generateReport(bad, success, nullptr);
  EXPECT_EQ(successes + failures, 0);
  engine.generateReport(good, success, nullptr);
  engine.generateReport(bad, nullptr, failure);
  EXPECT_EQ(successes, 1);
  EXPECT_EQ(failures, 1);
}

TEST_F(GenerateReport, CallsBackOnTheCallersThreadBeforeItReturns) {
  std::vector<std::thread::id> told;
  std::thread::id caller;
  std::thread worker([&] {
    caller = std::this_thread::get_id();
    const auto note = [&](const auto&) { told.push_back(std::this_thread::get_id()); };
    engine.generateReport({{"FILE_NAME", "report"}, {"FILE_FORMAT", 2}}, note, note);
    EXPECT_EQ(told.size(), 1U);
    engine.generateReport({{"FILE_FORMAT", 0}, {"REPORT_FORMAT", "no"}}, note, note);
    EXPECT_EQ(told.size(), 2U);
  });
  worker.join();
  EXPECT_THAT(told, ElementsAre(caller, caller));
  EXPECT_EQ(fake.dispatch.mainWaiting() + fake.dispatch.globalWaiting(), 0U);
}

TEST_F(GenerateReport, FindsTheFileCompleteWhenSuccessIsCalled) {
  const Array records{Record{{"Name", "Ann"}}};
  for (const int format : {0, 2}) {
    std::string seen;
    engine.generateReport(
        {{"FILE_NAME", "report"}, {"FILE_FORMAT", format}, {"RECORDS", records}},
        [&](const std::string& path) { seen = fake.read(path); }, nullptr);
    EXPECT_EQ(seen, format == 0 ? "(null)\nAnn,,\n" : "Ann:  ()\n");
  }
}

TEST_F(GenerateReport, HandsTheRecordsOnInTheirOrder) {
  const Array records{Record{{"Name", "Bo"}}, Record{{"Name", "Ann"}}, Record{{"Name", "Cy"}}};
  generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 2}, {"RECORDS", records}});
  EXPECT_EQ(fake.read(inFolder("report.txt")), "Bo:  ()\nAnn:  ()\nCy:  ()\n");
}

TEST_F(GenerateReport, HandsColumnsAndRecordsToTheCSVWriter) {
  const Array records{Record{{"Name", "Ann"}, {"Text", "Hi"}}, Record{{"Name", "Bo"}}};
  generate({{"FILE_NAME", "r"}, {"FILE_FORMAT", 0}, {"COLUMNS", Array{"Who", "What"}}, {"RECORDS", records}});
  EXPECT_EQ(fake.read(inFolder("r.csv")), "Who,What\nAnn,Hi,\nBo,,\n");
}

TEST_F(GenerateReport, HandsColumnsAndRecordsToTheTextWriterWhichLeavesTheColumns) {
  const Array records{Record{{"Name", "Ann"}, {"Text", "Hi"}}, Record{{"Name", "Bo"}}};
  generate({{"FILE_NAME", "r"}, {"FILE_FORMAT", 2}, {"COLUMNS", Array{"Who", "What"}}, {"RECORDS", records}});
  EXPECT_EQ(fake.read(inFolder("r.txt")), "Ann: Hi ()\nBo:  ()\n");
}

TEST_F(GenerateReport, HandsColumnsAndRecordsToThePDFWriter) {
  const Array records{Record{{"Name", "Ann"}, {"Text", "Hi"}}, Record{{"Name", "Bo"}}};
  generate({{"FILE_NAME", "r"}, {"FILE_FORMAT", 1}, {"COLUMNS", Array{"Who", "What"}}, {"RECORDS", records}});
  std::vector<std::string> titles, cells;
  for (const auto& drawn : fake.graphics.drawn) {
    if (drawn.font == platform::UIFont{"Helvetica-Bold", 16}) titles.push_back(drawn.text);
    if (drawn.font == platform::UIFont{"Verdana", 14}) cells.push_back(drawn.text);
  }
  EXPECT_THAT(titles, ElementsAre("Who", "What"));
  EXPECT_THAT(cells, ElementsAre("Ann", "Hi", "", "Bo", "", ""));
}

TEST_F(GenerateReport, TakesTheFirstEntryOfAReportFormatWithSeveralInEveryWriter) {
  const Value format = Record{{"%@!", "Text"}, {"%@?", "Name"}};
  const Array records{Record{{"Name", "Ann"}, {"Text", "Hi"}}};
  for (const int code : {0, 1, 2}) {
    generate({{"FILE_NAME", "r"}, {"FILE_FORMAT", code}, {"REPORT_FORMAT", format}, {"RECORDS", records}});
  }
  EXPECT_EQ(fake.read(inFolder("r.csv")), "(null)\nHi!\n");
  EXPECT_EQ(fake.read(inFolder("r.txt")), "Hi!\n");
  std::vector<std::string> cells;
  for (const auto& drawn : fake.graphics.drawn) {
    if (drawn.font == platform::UIFont{"Verdana", 14}) cells.push_back(drawn.text);
  }
  EXPECT_THAT(cells, ElementsAre("Hi"));
}

TEST_F(GenerateReport, MakesTheReportsFolderAndItsParents) {
  EXPECT_FALSE(fake.files.exists("/var/mobile/Library"));
  EXPECT_EQ(generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 2}}).successes.size(), 1U);
  EXPECT_EQ(fake.log.lines()[0],
            information("+[ChatsumUtils createFolderAt:]", 123, "Folder successfully created at '" + kFolder + "'."));
  EXPECT_TRUE(fake.files.isDirectory(kFolder));
}

TEST_F(GenerateReport, EndsWithoutCallbackWhenTheFolderCannotBeMade) {
  fake.files.fail(FileOperation::kCreateDirectory, EACCES);
  const Outcome outcome = generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 2}});
  EXPECT_FALSE(outcome.result);
  EXPECT_THAT(outcome.successes, IsEmpty());
  EXPECT_THAT(outcome.failures, IsEmpty());
  EXPECT_THAT(fake.files.calls(), ElementsAre("createDirectory " + kFolder));
  EXPECT_THAT(fake.log.lines(), ElementsAre(error("+[ChatsumUtils createFolderAt:]", 125,
                                                  "Unable to create directory " + kFolder + ", error : “" + kFolder +
                                                      "” was made to fail: Permission denied")));
}

TEST_F(GenerateReport, TakesAPlainFileForTheFolderAndLetsTheWriterFail) {
  fake.put(kFolder, "I am a file");
  const Outcome text = generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 2}});
  ASSERT_EQ(text.failures.size(), 1U);
  EXPECT_EQ(text.failures[0].domain, "NSPOSIXErrorDomain");
  EXPECT_EQ(text.failures[0].code, ENOTDIR);
  const Outcome csv = generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 0}});
  ASSERT_EQ(csv.failures.size(), 1U);
  expectReportError(csv.failures[0], 1213, "Unable to create handle.");
  EXPECT_EQ(fake.read(kFolder), "I am a file");
}

TEST_F(GenerateReport, HandsTheErrorOfANameThatIsTooLongToFailure) {
  const Outcome outcome = generate({{"FILE_NAME", std::string(300, 'a')}, {"FILE_FORMAT", 2}});
  EXPECT_THAT(outcome.successes, IsEmpty());
  ASSERT_EQ(outcome.failures.size(), 1U);
  EXPECT_EQ(outcome.failures[0].code, ENAMETOOLONG);
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateReport, MakesNoFoldersForANameThatHoldsASlash) {
  EXPECT_EQ(generate({{"FILE_NAME", "a/b"}, {"FILE_FORMAT", 2}}).failures.size(), 1U);
  EXPECT_EQ(generate({{"FILE_NAME", "a/b"}, {"FILE_FORMAT", 0}}).failures.size(), 1U);
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateReport, RefusesAReportFormatThatIsNoDictionaryInEveryWriter) {
  for (const int format : {0, 1, 2}) {
    const Outcome outcome = generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", format}, {"REPORT_FORMAT", "%@"}});
    EXPECT_THAT(outcome.successes, IsEmpty());
    ASSERT_EQ(outcome.failures.size(), 1U);
    expectReportError(outcome.failures[0], 1212, "Invalid report format encountered.");
  }
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateReport, MayBeCalledAgainFromItsCallback) {
  std::vector<std::string> paths;
  engine.generateReport(
      {{"FILE_NAME", "one"}, {"FILE_FORMAT", 2}},
      [&](const std::string& path) {
        paths.push_back(path);
        paths.push_back(generate({{"FILE_NAME", "two"}, {"FILE_FORMAT", 0}}).successes.at(0));
      },
      nullptr);
  EXPECT_THAT(paths, ElementsAre(inFolder("one.txt"), inFolder("two.csv")));
}

class ReportsFolderCheck : public ReportEngineTest {};

TEST_F(ReportsFolderCheck, IsContentWithWhatIsThereAndLogsNothing) {
  fake.put("/var/mobile/file", "");
  EXPECT_TRUE(engine.checkAndCreateReportsFolder("/var/mobile"));
  EXPECT_TRUE(engine.checkAndCreateReportsFolder("/var/mobile/file"));
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(ReportsFolderCheck, MakesAMissingFolder) {
  EXPECT_TRUE(engine.checkAndCreateReportsFolder("/var/mobile/a/b"));
  EXPECT_TRUE(fake.files.isDirectory("/var/mobile/a/b"));
}

TEST_F(ReportsFolderCheck, AnswersNoWhenTheFolderCannotBeMade) {
  fake.put("/var/mobile/file", "");
  EXPECT_FALSE(engine.checkAndCreateReportsFolder("/var/mobile/file/below"));
}

class DefaultFileName : public ReportEngineTest {};

TEST_F(DefaultFileName, IsTheTimeInSecondsAndTheExtension) {
  fake.clock.set({1578307200});
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName(std::nullopt, 0), "1578307200.csv");
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName(std::nullopt, 1), "1578307200.pdf");
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName(std::nullopt, 2), "1578307200.txt");
}

TEST_F(DefaultFileName, PutsTheNameBeforeTheTime) {
  fake.clock.set({1700000000.25});
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName("chat", 2), "chat_1700000000.25.txt");
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName("", 2), "_1700000000.25.txt");
}

TEST_F(DefaultFileName, PrintsTheTimeInPlainDecimal) {
  fake.clock.set({1578307200.123456});
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName(std::nullopt, 1), "1578307200.123456.pdf");
  fake.clock.set({1e17});
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName(std::nullopt, 1), "100000000000000000.pdf");
  fake.clock.set({0});
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName(std::nullopt, 1), "0.pdf");
}

TEST_F(DefaultFileName, PrintsAMissingObjectAsTheExtensionOfAnUnknownFileFormat) {
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName(std::nullopt, 3), "1578307200.(null)");
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName("chat", -1), "chat_1578307200.(null)");
}

TEST_F(DefaultFileName, IsTheSameTwiceInOneInstant) {
  const std::string first = CSReportsGenerator::getDefaultFileName("chat", 0);
  fake.put(inFolder(first), "taken");
  EXPECT_EQ(CSReportsGenerator::getDefaultFileName("chat", 0), first);
}

TEST(SharedInstance, IsOneObjectForManyThreadsAtOnce) {
  std::vector<CSReportsGenerator*> seen(16);
  {
    std::vector<std::jthread> threads;
    for (auto& place : seen) threads.emplace_back([&place] { place = &CSReportsGenerator::sharedInstance(); });
  }
  EXPECT_EQ(std::set<CSReportsGenerator*>(seen.begin(), seen.end()).size(), 1U);
  EXPECT_NE(seen[0], nullptr);
}

}  // namespace
}  // namespace chatsum::test
