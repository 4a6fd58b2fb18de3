#include <cerrno>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "tests/unit/CSReportsGenerator/ReportEngineTest.h"

namespace chatsum::test {
namespace {

using platform::fake::FileOperation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kWriter = "-[CSReportsGenerator generateCSVReport:format:columns:records:]";

class CSVReport : public ReportEngineTest {
 protected:
  void SetUp() override { makeFolder(); }

  const std::string path = inFolder("report.csv");
  const Value defaultFormat = Record{{"%@,%@,%@", "Name,Text,Date"}};
  const Value columns = Array{"Name", "Text", "Date"};

  std::optional<Error> write(const Value& records, const Value& format) {
    return engine.generateCSVReport(path, format, columns, records);
  }
  /// The rows of a fresh file, without its header; a text that no report has when it was not written.
  std::string rows(const Value& records, const Value& format) {
    (void)fake.realFiles.remove(path);
    if (write(records, format)) return "not written";
    const std::string file = fake.read(path);
    const std::string header = "Name,Text,Date\n";
    return file.starts_with(header) ? file.substr(header.size()) : "no header: " + file;
  }
  std::string rows(const Value& records) { return rows(records, defaultFormat); }
  /// One value under "Text" as a cell.
  std::string cell(const Value& value) { return rows(Array{Record{{"Text", value}}}, Record{{"%@", "Text"}}); }
  std::string header(const Value& titles) {
    (void)fake.realFiles.remove(path);
    return engine.generateCSVReport(path, defaultFormat, titles, Array{}) ? "not written" : fake.read(path);
  }
};

TEST_F(CSVReport, WritesTheTitlesAndThenOneLineForEachRecord) {
  const Array records{Record{{"Name", "Ann"}, {"Text", "He said \"hi\""}, {"Date", Date{1578307200}}},
                      Record{{"Name", "Bo"}, {"Text", "Hello"}, {"Date", Date{1578307260}}}};
  EXPECT_EQ(write(records, defaultFormat), std::nullopt);
  EXPECT_EQ(fake.read(path),
            "Name,Text,Date\n"
            "Ann,\"He said \"\"hi\"\"\",\"Mon, 01-06-2020 10:40 AM\"\n"
            "Bo,Hello,\"Mon, 01-06-2020 10:41 AM\"\n");
}

TEST_F(CSVReport, JoinsTheTitlesWithoutQuotingThem) {
  EXPECT_EQ(header(Array{"A, or B", "\"C\"", "D\nE"}), "A, or B,\"C\",D\nE\n");
  EXPECT_EQ(header(Array{"one"}), "one\n");
  EXPECT_EQ(header(Array{}), "\n");
  EXPECT_EQ(header(Array{"%@", "100%"}), "%@,100%\n");
  EXPECT_EQ(header(Array{1, 2.5, true}), "1,2.5,1\n");
}

TEST_F(CSVReport, PrintsMissingTitlesAsAMissingObject) {
  EXPECT_EQ(header(Value()), "(null)\n");
  generate({{"FILE_NAME", "other"}, {"FILE_FORMAT", 0}});
  EXPECT_EQ(fake.read(inFolder("other.csv")), "(null)\n");
}

TEST_F(CSVReport, PrintsTitlesThatAreNoArrayByTheirText) {
  EXPECT_EQ(header("Name;Text"), "Name;Text\n");
  EXPECT_EQ(header(7), "7\n");
}

TEST_F(CSVReport, QuotesCellsThatHoldACommaAQuoteOrANewline) {
  EXPECT_EQ(cell("plain text"), "plain text\n");
  EXPECT_EQ(cell("a,b"), "\"a,b\"\n");
  EXPECT_EQ(cell("two\nlines"), "\"two\nlines\"\n");
  EXPECT_EQ(cell("two\r\nlines"), "\"two\r\nlines\"\n");
  EXPECT_EQ(cell("say \"hi\""), "\"say \"\"hi\"\"\"\n");
  EXPECT_EQ(cell("\"\",\n"), "\"\"\"\"\",\n\"\n");
  EXPECT_EQ(cell(","), "\",\"\n");
  EXPECT_EQ(cell("\n"), "\"\n\"\n");
}

TEST_F(CSVReport, MakesFourQuotesOfOne) { EXPECT_EQ(cell("\""), "\"\"\"\"\n"); }

TEST_F(CSVReport, QuotesNothingElse) {
  EXPECT_EQ(cell("\r"), "\r\n");
  EXPECT_EQ(cell(" a; b\tc 'd' "), " a; b\tc 'd' \n");
  EXPECT_EQ(cell("Zoë “你好” 👩‍👩‍👧，"), "Zoë “你好” 👩‍👩‍👧，\n");
  EXPECT_EQ(cell(""), "\n");
}

TEST_F(CSVReport, LeavesAMissingValueEmptyWithoutQuotes) {
  EXPECT_EQ(rows(Array{Record{{"Text", "Hi"}}}), ",Hi,\n");
  EXPECT_EQ(rows(Array{Record{}}), ",,\n");
  EXPECT_EQ(rows(Array{Record{{"Text", Value()}}}), ",,\n");
}

TEST_F(CSVReport, LeavesNamesOfPicturesEmptyAndKeepsOtherFiles) {
  EXPECT_EQ(cell("/a/photo.JPG"), "\n");
  EXPECT_EQ(cell("one, two.png"), "\n");
  EXPECT_EQ(cell("letter.pdf"), "letter.pdf\n");
}

TEST_F(CSVReport, PrintsOtherKindsByTheirTextAndQuotesThat) {
  EXPECT_EQ(cell(42), "42\n");
  EXPECT_EQ(cell(1.5), "1.5\n");
  EXPECT_EQ(cell(true), "1\n");
  EXPECT_EQ(cell(Date{0}), "1970-01-01 00:00:00 +0000\n");
  EXPECT_EQ(cell(Array{"a", "b"}), "\"(\n    a,\n    b\n)\"\n");
  EXPECT_EQ(cell(Record{{"key", "a b"}}), "\"{\n    key = \"\"a b\"\";\n}\"\n");
}

TEST_F(CSVReport, CountsANumberUnderDateFrom2001) {
  const Value date = Record{{"%@", "Date"}};
  EXPECT_EQ(rows(Array{Record{{"Date", 0}}}, date), "\"Mon, 01-01-2001 12:00 AM\"\n");
  EXPECT_EQ(rows(Array{Record{{"Date", -978307200}}}, date), "\"Thu, 01-01-1970 12:00 AM\"\n");
  EXPECT_EQ(rows(Array{Record{{"Date", Date{0}}}}, date), "\"Thu, 01-01-1970 12:00 AM\"\n");
  EXPECT_EQ(rows(Array{Record{{"Date", "86400"}}}, date), "\"Tue, 01-02-2001 12:00 AM\"\n");
  EXPECT_EQ(rows(Array{Record{{"Date", 59.9}}}, date), "\"Mon, 01-01-2001 12:00 AM\"\n");
  EXPECT_EQ(rows(Array{Record{{"Date", "photo.jpeg"}}}, date), "\"Mon, 01-01-2001 12:00 AM\"\n");
}

TEST_F(CSVReport, TellsAnotherTimeThanTheTextReportForTheSameNumber) {
  const Record request{
      {"FILE_NAME", "x"}, {"REPORT_FORMAT", Record{{"%@", "Date"}}}, {"RECORDS", Array{Record{{"Date", 0}}}}};
  Record csv = request;
  csv.set("FILE_FORMAT", 0);
  Record text = request;
  text.set("FILE_FORMAT", 2);
  generate(csv);
  generate(text);
  EXPECT_EQ(fake.read(inFolder("x.csv")), "(null)\n\"Mon, 01-01-2001 12:00 AM\"\n");
  EXPECT_EQ(fake.read(inFolder("x.txt")), "Thu, 01-01-1970 12:00 AM\n");
}

TEST_F(CSVReport, AppendsToAFileThatIsThere) {
  const Array records{Record{{"Name", "Ann"}}};
  EXPECT_EQ(write(records, defaultFormat), std::nullopt);
  EXPECT_EQ(write(records, defaultFormat), std::nullopt);
  EXPECT_EQ(fake.read(path), "Name,Text,Date\nAnn,,\nName,Text,Date\nAnn,,\n");
}

TEST_F(CSVReport, KeepsWhateverAFileHeldBefore) {
  fake.put(path, "no line end");
  EXPECT_EQ(write(Array{}, defaultFormat), std::nullopt);
  EXPECT_EQ(fake.read(path), "no line endName,Text,Date\n");
}

TEST_F(CSVReport, FillsTheLineFormatThatItIsGiven) {
  const Record record{{"Name", "Ann"}, {"Text", "a,b"}, {" Text", "spaced"}};
  EXPECT_EQ(rows(Array{record}, Record{{"[%@];%@", "Name,Text"}}), "[Ann];\"a,b\"\n");
  EXPECT_EQ(rows(Array{record}, Record{{"%@;%@", "Name, Text"}}), "Ann;spaced\n");
  EXPECT_EQ(rows(Array{record}, Record{{"%@,%@,%@", "Name"}}), "Ann,,\n");
  EXPECT_EQ(rows(Array{record}, Record{{"%@", "Name,Text"}}), "Ann\n");
  EXPECT_EQ(rows(Array{record}, Record{{"%d%%,%@", "Name"}}), "%d%,Ann\n");
}

TEST_F(CSVReport, TakesWrongKindsOfRecordsAsNoneOrEmpty) {
  EXPECT_EQ(rows(Array{}), "");
  EXPECT_EQ(rows(Value()), "");
  EXPECT_EQ(rows("records"), "");
  EXPECT_EQ(rows(Array{"text", 1, Value(), Record{{"Name", "Bo"}}}), ",,\n,,\n,,\nBo,,\n");
}

TEST_F(CSVReport, WritesTheHeaderAtOnceAndAllRowsAtOnce) {
  write(Array{Record{{"Name", "Ann"}}, Record{{"Name", "Bo"}}}, defaultFormat);
  EXPECT_THAT(fake.files.calls(),
              ElementsAre("createFile " + path, "openForWriting " + path, "write " + path, "write " + path));
  fake.files.forgetCalls();
  write(Array{}, defaultFormat);
  EXPECT_THAT(fake.files.calls(), ElementsAre("openForWriting " + path, "write " + path, "write " + path));
}

TEST_F(CSVReport, LogsThatItWrites) {
  write(Array{}, defaultFormat);
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Information => -[CSReportsGenerator "
                          "generateCSVReport:format:columns:records:], [Line 284], Writing data to file "
                          "/var/mobile/Library/Preferences/Chatsum/report.csv"));
}

TEST_F(CSVReport, LogsThatItWritesBetweenTheHeaderAndTheRows) {
  std::vector<std::string> before;
  fake.log.onLine = [&](std::string_view) { before = fake.files.calls(); };
  write(Array{Record{{"Name", "Ann"}}}, defaultFormat);
  EXPECT_THAT(before, ElementsAre("createFile " + path, "openForWriting " + path, "write " + path));
  EXPECT_EQ(fake.files.calls().size(), 4U) << "the rows come behind the line";
}

TEST_F(CSVReport, TellsNothingOfWriteErrors) {
  fake.files.fail(FileOperation::kHandleWrite, ENOSPC);
  const Outcome outcome = generate({{"FILE_NAME", "report"}, {"FILE_FORMAT", 0}});
  EXPECT_THAT(outcome.successes, ElementsAre(path));
  EXPECT_THAT(outcome.failures, IsEmpty());
  EXPECT_EQ(fake.read(path), "");
  EXPECT_EQ(fake.log.lines().back(), information(kWriter, 284, "Writing data to file " + path));
}

TEST_F(CSVReport, LeavesTheEmptyFileWhenItCannotBeOpened) {
  fake.files.fail(FileOperation::kOpenForWriting, EACCES);
  const auto failure = write(Array{Record{{"Name", "Ann"}}}, defaultFormat);
  ASSERT_TRUE(failure.has_value());
  expectReportError(*failure, 1213, "Unable to create handle.");
  EXPECT_EQ(fake.read(path), "");
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Error => -[CSReportsGenerator "
                          "generateCSVReport:format:columns:records:], [Line 233], Unable to create handle for file at "
                          "path /var/mobile/Library/Preferences/Chatsum/report.csv"));
}

TEST_F(CSVReport, KeepsAnExistingFileWhenItCannotBeOpened) {
  fake.put(path, "old\n");
  fake.files.fail(FileOperation::kOpenForWriting, EACCES);
  EXPECT_TRUE(write(Array{}, defaultFormat).has_value());
  EXPECT_EQ(fake.read(path), "old\n");
}

TEST_F(CSVReport, FailsWhenTheFileCannotBeMade) {
  fake.files.fail(FileOperation::kCreateFile, EACCES);
  const auto failure = write(Array{}, defaultFormat);
  ASSERT_TRUE(failure.has_value());
  expectReportError(*failure, 1213, "Unable to create handle.");
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(CSVReport, FailsWhenAFolderStandsAtThePath) {
  ASSERT_FALSE(fake.realFiles.createDirectory(path));
  const auto failure = write(Array{}, defaultFormat);
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->code, 1213);
  EXPECT_THAT(names(path), IsEmpty());
}

TEST_F(CSVReport, TellsTheErrorsInTheHostsLanguage) {
  fake.mainBundle.strings["Unable to create handle."] = "Kein Zugriff.";
  fake.mainBundle.strings["Invalid report format encountered."] = "Ungültiges Berichtsformat.";
  const auto invalid = write(Array{}, "no");
  ASSERT_TRUE(invalid.has_value());
  expectReportError(*invalid, 1212, "Ungültiges Berichtsformat.");
  fake.files.fail(FileOperation::kOpenForWriting, EACCES);
  const auto unable = write(Array{}, defaultFormat);
  ASSERT_TRUE(unable.has_value());
  expectReportError(*unable, 1213, "Kein Zugriff.");
}

TEST_F(CSVReport, RefusesAFormatThatIsNoDictionaryBeforeItTouchesTheFile) {
  for (const Value& format : {Value("%@"), Value(Array{"Name"}), Value(1), Value()}) {
    fake.log.clear();
    const auto failure = write(Array{Record{{"Name", "Ann"}}}, format);
    ASSERT_TRUE(failure.has_value());
    expectReportError(*failure, 1212, "Invalid report format encountered.");
    EXPECT_THAT(fake.log.lines(),
                ElementsAre("com.orbelle.Chatsum: Error => -[CSReportsGenerator "
                            "generateCSVReport:format:columns:records:], [Line 220], Invalid report format '" +
                            format.description() + "' encountered. Expected NSDictionary."));
  }
  EXPECT_THAT(fake.files.calls(), IsEmpty());
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(CSVReport, TouchesNothingForADictionaryWithoutEntries) {
  EXPECT_EQ(write(Array{}, Record{}), std::nullopt);
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(CSVReport, LeavesTheSharedFormatterWithTheReportsDateFormat) {
  ChatsumUtils::dateFormatter().setDateFormat("yyyy");
  rows(Array{Record{{"Name", "no date"}}});
  EXPECT_EQ(ChatsumUtils::dateFormatter().dateFormat(), "yyyy");
  rows(Array{Record{{"Date", 0}}});
  EXPECT_EQ(ChatsumUtils::dateFormatter().dateFormat(), "EEE, MM-dd-YYYY hh:mm aa");
}

}  // namespace
}  // namespace chatsum::test
