#include <cerrno>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "tests/unit/CSReportsGenerator/ReportEngineTest.h"

namespace chatsum::test {
namespace {

using platform::fake::FileOperation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kWriter = "-[CSReportsGenerator generateTextReport:format:columns:records:]";

class TextReport : public ReportEngineTest {
 protected:
  void SetUp() override { makeFolder(); }

  const std::string path = inFolder("report.txt");
  const Value defaultFormat = Record{{"%@: %@ (%@)", "Name,Text,Date"}};

  std::optional<Error> write(const Value& records, const Value& format) {
    return engine.generateTextReport(path, format, Value(), records);
  }
  /// The report of these records; a text that no report has when it was not written.
  std::string report(const Value& records, const Value& format) {
    return write(records, format) ? "not written" : fake.read(path);
  }
  std::string report(const Value& records) { return report(records, defaultFormat); }
};

TEST_F(TextReport, FillsTheLineFormatWithTheRecordsValues) {
  EXPECT_EQ(report(Array{Record{{"Name", "Ann"}, {"Text", "Hi"}, {"Date", Date{1578307200}}}}),
            "Ann: Hi (Mon, 01-06-2020 10:40 AM)\n");
}

TEST_F(TextReport, WritesOneLineForEachRecordInTheirOrder) {
  const Array records{Record{{"Name", "Bo"}, {"Text", "2"}}, Record{{"Name", "Ann"}, {"Text", "1"}}};
  EXPECT_EQ(report(records), "Bo: 2 ()\nAnn: 1 ()\n");
}

TEST_F(TextReport, FindsTheKeysOfRecordsWhoseKeysStandInDifferentOrders) {
  const Array records{Record{{"Name", "Ann"}, {"Text", "1"}}, Record{{"Text", "2"}, {"Name", "Bo"}},
                      Record{{"guid", "x"}, {"Text", "3"}}, Record{}, Record{{"Name", "Cy"}, {"Text", "4"}}};
  EXPECT_EQ(report(records), "Ann: 1 ()\nBo: 2 ()\n: 3 ()\n:  ()\nCy: 4 ()\n");
}

TEST_F(TextReport, LeavesAMissingValueEmpty) {
  EXPECT_EQ(report(Array{Record{{"Text", "Hi"}}}), ": Hi ()\n");
  EXPECT_EQ(report(Array{Record{{"Name", Value()}, {"Text", Value()}, {"Date", Value()}}}), ":  ()\n");
  EXPECT_EQ(report(Array{Record{}}), ":  ()\n");
}

TEST_F(TextReport, CountsANumberUnderDateFrom1970) {
  const Value date = Record{{"%@", "Date"}};
  EXPECT_EQ(report(Array{Record{{"Date", 0}}}, date), "Thu, 01-01-1970 12:00 AM\n");
  EXPECT_EQ(report(Array{Record{{"Date", 59}}}, date), "Thu, 01-01-1970 12:00 AM\n");
  EXPECT_EQ(report(Array{Record{{"Date", 60}}}, date), "Thu, 01-01-1970 12:01 AM\n");
  EXPECT_EQ(report(Array{Record{{"Date", 86400}}}, date), "Fri, 01-02-1970 12:00 AM\n");
  EXPECT_EQ(report(Array{Record{{"Date", Date{0}}}}, date), "Thu, 01-01-1970 12:00 AM\n");
}

TEST_F(TextReport, DropsTheFractionOfANumberUnderDateButNotOfADate) {
  const Value date = Record{{"%@", "Date"}};
  EXPECT_EQ(report(Array{Record{{"Date", -0.5}}}, date), "Thu, 01-01-1970 12:00 AM\n");
  EXPECT_EQ(report(Array{Record{{"Date", Date{-0.5}}}}, date), "Wed, 12-31-1970 11:59 PM\n");
}

TEST_F(TextReport, ReadsAnyValueUnderDateAsAWholeNumber) {
  const Value date = Record{{"%@", "Date"}};
  EXPECT_EQ(report(Array{Record{{"Date", "86400.9"}}}, date), "Fri, 01-02-1970 12:00 AM\n");
  EXPECT_EQ(report(Array{Record{{"Date", "yesterday"}}}, date), "Thu, 01-01-1970 12:00 AM\n");
  EXPECT_EQ(report(Array{Record{{"Date", ""}}}, date), "Thu, 01-01-1970 12:00 AM\n");
  EXPECT_EQ(report(Array{Record{{"Date", true}}}, date), "Thu, 01-01-1970 12:00 AM\n");
  EXPECT_EQ(report(Array{Record{{"Date", Array{1}}}}, date), "Thu, 01-01-1970 12:00 AM\n");
}

TEST_F(TextReport, FormatsNoOtherKeyAsADate) {
  const Array records{Record{{"date", 86400}, {"Time", Date{0}}, {" Date", "as it is"}}};
  EXPECT_EQ(report(records, Record{{"<%@|%@|%@>", "date,Time, Date"}}), "<||as it is>\n");
}

TEST_F(TextReport, LeavesNamesOfPicturesEmptyAndKeepsOtherFiles) {
  const auto text = [this](const char* value) {
    return report(Array{Record{{"Text", value}}}, Record{{"<%@>", "Text"}});
  };
  EXPECT_EQ(text("/var/mobile/photo.jpeg"), "<>\n");
  EXPECT_EQ(text("PHOTO.PNG"), "<>\n");
  EXPECT_EQ(text("look: photo.heic"), "<>\n");
  EXPECT_EQ(text("photo.jpeg "), "<photo.jpeg >\n");
  EXPECT_EQ(text("letter.pdf"), "<letter.pdf>\n");
  EXPECT_EQ(text("film.mov"), "<film.mov>\n");
  EXPECT_EQ(text("jpeg"), "<jpeg>\n");
  EXPECT_EQ(text(".jpeg"), "<.jpeg>\n");
}

TEST_F(TextReport, ForgetsNothingWhenThousandsOfEndingsPassBy) {
  Array records;
  std::string expected;
  for (int i = 0; i < 5000; ++i) {
    const std::string text = "see part." + std::to_string(i);
    records.append(Record{{"Text", text}});
    records.append(Record{{"Text", "a.jpg"}});
    expected += text + "\n\n";
  }
  EXPECT_EQ(report(records, Record{{"%@", "Text"}}), expected);
}

TEST_F(TextReport, PrintsOnlyStringsUnderOtherKeys) {
  const auto text = [this](const Value& value) {
    return report(Array{Record{{"Text", value}}}, Record{{"<%@>", "Text"}});
  };
  EXPECT_EQ(text(42), "<>\n");
  EXPECT_EQ(text(1.5), "<>\n");
  EXPECT_EQ(text(true), "<>\n");
  EXPECT_EQ(text(Date{0}), "<>\n");
  EXPECT_EQ(text(Array{"a"}), "<>\n");
  EXPECT_EQ(text(Record{{"a", "b"}}), "<>\n");
  EXPECT_EQ(text(""), "<>\n");
  EXPECT_EQ(text("42"), "<42>\n");
}

TEST_F(TextReport, WritesValuesByteForByteAsUTF8WithoutMark) {
  EXPECT_EQ(report(Array{Record{{"Name", "Zoë 你好"}, {"Text", "👩‍👩‍👧 \"quoted\", two\r\nlines\t"}}}),
            "Zoë 你好: 👩‍👩‍👧 \"quoted\", two\r\nlines\t ()\n");
}

TEST_F(TextReport, KeepsAZeroByteInsideAText) {
  EXPECT_EQ(report(Array{Record{{"Text", std::string("a\0b", 3)}}}, Record{{"%@", "Text"}}), std::string("a\0b\n", 4));
}

TEST_F(TextReport, NeverFillsPlaceholdersInsideAValue) {
  EXPECT_EQ(report(Array{Record{{"Name", "%@ %s %%"}, {"Text", "%@"}}}), "%@ %s %%: %@ ()\n");
}

TEST_F(TextReport, WritesAnEmptyFileForNoRecords) {
  EXPECT_EQ(report(Array{}), "");
  EXPECT_TRUE(fake.log.contains(information(kWriter, 208, "File " + path + " successfully written.")));
}

TEST_F(TextReport, TakesRecordsThatAreNoArrayAsNoRecords) {
  EXPECT_EQ(report(Value()), "");
  EXPECT_EQ(report("records"), "");
  EXPECT_EQ(report(3), "");
  EXPECT_EQ(report(Record{{"Name", "Ann"}}), "");
}

TEST_F(TextReport, TakesARowThatIsNoRecordAsOneWithoutValues) {
  EXPECT_EQ(report(Array{"text", 1, Value(), Array{Record{{"Name", "Ann"}}}, Record{{"Name", "Bo"}}}),
            ":  ()\n:  ()\n:  ()\n:  ()\nBo:  ()\n");
}

TEST_F(TextReport, DoesNotUseTheColumnTitles) {
  EXPECT_EQ(engine.generateTextReport(path, defaultFormat, Array{"A", "B"}, Array{Record{{"Name", "Ann"}}}),
            std::nullopt);
  EXPECT_EQ(fake.read(path), "Ann:  ()\n");
}

TEST_F(TextReport, TakesKeysWithoutTrimmingThem) {
  const Record record{{"Name", "Ann"}, {"Text", "no"}, {" Text", "yes"}};
  EXPECT_EQ(report(Array{record}, Record{{"%@|%@", "Name, Text"}}), "Ann|yes\n");
}

TEST_F(TextReport, TakesAnEmptyKeyAsAKey) {
  EXPECT_EQ(report(Array{Record{{"Name", "Ann"}}}, Record{{"<%@>", ""}}), "<>\n");
  EXPECT_EQ(report(Array{Record{{"", "empty"}}}, Record{{"<%@>", ""}}), "<empty>\n");
  EXPECT_EQ(report(Array{Record{{"Name", "Ann"}}}, Record{{"%@|%@|%@", ",Name,"}}), "|Ann|\n");
}

TEST_F(TextReport, LeavesPlaceholdersBeyondTheKeysEmpty) {
  EXPECT_EQ(report(Array{Record{{"Name", "Ann"}}}, Record{{"%@, %@ and %@!", "Name"}}), "Ann,  and !\n");
}

TEST_F(TextReport, IgnoresKeysBeyondThePlaceholders) {
  const Record record{{"Name", "Ann"}, {"Text", "Hi"}};
  EXPECT_EQ(report(Array{record}, Record{{"%@", "Name,Text,Date"}}), "Ann\n");
  EXPECT_EQ(report(Array{record}, Record{{"always the same", "Name,Text"}}), "always the same\n");
  EXPECT_EQ(report(Array{record, record}, Record{{"", "Name"}}), "\n\n");
}

TEST_F(TextReport, PrintsOtherPlaceholdersAsTheyStand) {
  EXPECT_EQ(report(Array{Record{{"Name", "Ann"}}}, Record{{"%d %s %1$@ %%@ 100% %@ %n%", "Name"}}),
            "%d %s %1$@ %@ 100% Ann %n%\n");
}

TEST_F(TextReport, UsesAKeyAsOftenAsItIsNamed) {
  EXPECT_EQ(report(Array{Record{{"Name", "Ann"}}}, Record{{"%@ %@", "Name,Name"}}), "Ann Ann\n");
}

TEST_F(TextReport, ReadsAKeyListThatIsNoStringByItsText) {
  EXPECT_EQ(report(Array{Record{{"42", "found"}}}, Record{{"%@", 42}}), "found\n");
  EXPECT_EQ(report(Array{Record{{"Name", "Ann"}}}, Record{{"<%@>", Array{"Name"}}}), "<>\n");
}

TEST_F(TextReport, WritesNothingForADictionaryWithoutEntries) {
  EXPECT_EQ(write(Array{Record{{"Name", "Ann"}}}, Record{}), std::nullopt);
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(fake.log.lines(), IsEmpty());
  EXPECT_THAT(fake.files.calls(), IsEmpty());
}

TEST_F(TextReport, WritesTheWholeFileInOneOperation) {
  report(Array{Record{{"Name", "Ann"}}, Record{{"Name", "Bo"}}});
  EXPECT_THAT(fake.files.calls(), ElementsAre("writeAtomically " + path));
}

TEST_F(TextReport, ReplacesAFileThatIsThere) {
  fake.put(path, "a much longer text that must go away completely\n");
  EXPECT_EQ(report(Array{Record{{"Name", "Ann"}}}), "Ann:  ()\n");
  EXPECT_THAT(names(), ElementsAre("report.txt"));
}

TEST_F(TextReport, LogsBeforeAndAfterWriting) {
  report(Array{});
  EXPECT_THAT(fake.log.lines(), ElementsAre(information(kWriter, 205, "Writing data to file " + path),
                                            information(kWriter, 208, "File " + path + " successfully written.")));
}

TEST_F(TextReport, KeepsTheOldFileAndAnswersThePlatformsErrorWhenWritingFails) {
  fake.put(path, "old\n");
  fake.files.fail(FileOperation::kWriteAtomically, ENOSPC);
  const auto failure = write(Array{Record{{"Name", "Ann"}}}, defaultFormat);
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->domain, "NSPOSIXErrorDomain");
  EXPECT_EQ(failure->code, ENOSPC);
  EXPECT_EQ(failure->userInfo.find("NSUnderlyingErrorKey"), nullptr);
  EXPECT_EQ(fake.read(path), "old\n");
  EXPECT_THAT(names(), ElementsAre("report.txt"));
  EXPECT_THAT(fake.log.lines(),
              ElementsAre(information(kWriter, 205, "Writing data to file " + path),
                          "com.orbelle.Chatsum: Error => -[CSReportsGenerator "
                          "generateTextReport:format:columns:records:], [Line 211], Error while writing to file. "
                          "Error: “" +
                              path + "” was made to fail: No space left on device"));
}

TEST_F(TextReport, FailsWithoutLeavingAnythingWhenAFolderStandsAtThePath) {
  ASSERT_FALSE(fake.realFiles.createDirectory(path));
  const auto failure = write(Array{Record{{"Name", "Ann"}}}, defaultFormat);
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->code, EISDIR);
  EXPECT_TRUE(
      fake.log.contains(error(kWriter, 211, "Error while writing to file. Error: " + failure->localizedDescription())));
  EXPECT_THAT(names(), ElementsAre("report.txt"));
  EXPECT_THAT(names(path), IsEmpty());
}

TEST_F(TextReport, FailsWhenTheFolderIsMissing) {
  const auto failure = engine.generateTextReport("/var/mobile/nowhere/report.txt", defaultFormat, Value(), Array{});
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->code, ENOENT);
}

TEST_F(TextReport, RefusesAFormatThatIsNoDictionaryAndLeavesTheOldFile) {
  fake.put(path, "old\n");
  const auto refusal = [this](const Value& format) {
    fake.log.clear();
    const auto failure = write(Array{Record{{"Name", "Ann"}}}, format);
    if (!failure) return std::string("was written");
    expectReportError(*failure, 1212, "Invalid report format encountered.");
    return fake.log.lines().size() == 1 ? fake.log.lines()[0] : std::string("other lines");
  };
  EXPECT_EQ(refusal("%@: %@"),
            "com.orbelle.Chatsum: Error => -[CSReportsGenerator generateTextReport:format:columns:records:], "
            "[Line 169], Invalid report format '%@: %@' encountered. Expected NSDictionary.");
  EXPECT_EQ(refusal(Value()),
            error(kWriter, 169, "Invalid report format '(null)' encountered. Expected NSDictionary."));
  EXPECT_EQ(refusal(Array{"Name"}),
            error(kWriter, 169, "Invalid report format '(\n    Name\n)' encountered. Expected NSDictionary."));
  EXPECT_EQ(refusal(7), error(kWriter, 169, "Invalid report format '7' encountered. Expected NSDictionary."));
  EXPECT_EQ(fake.read(path), "old\n");
  EXPECT_THAT(fake.files.calls(), IsEmpty());
}

TEST_F(TextReport, TellsTheErrorInTheHostsLanguage) {
  fake.mainBundle.strings["Invalid report format encountered."] = "Ungültiges Berichtsformat.";
  const auto failure = write(Array{}, Value());
  ASSERT_TRUE(failure.has_value());
  expectReportError(*failure, 1212, "Ungültiges Berichtsformat.");
}

TEST_F(TextReport, LeavesTheSharedFormatterWithTheReportsDateFormat) {
  ChatsumUtils::dateFormatter().setDateFormat("yyyy");
  report(Array{Record{{"Name", "no date"}}});
  EXPECT_EQ(ChatsumUtils::dateFormatter().dateFormat(), "yyyy");
  report(Array{Record{{"Date", 0}}});
  EXPECT_EQ(ChatsumUtils::dateFormatter().dateFormat(), "EEE, MM-dd-YYYY hh:mm aa");
}

}  // namespace
}  // namespace chatsum::test
