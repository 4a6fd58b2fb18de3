#include "hosts/device/report/ReportRequest.h"

#include <gtest/gtest.h>

namespace chatsum::device {
namespace {

std::string formatOf(const Record& request) {
  const Record& format = *request["REPORT_FORMAT"].asRecord();
  return std::string(format.keyAt(0)) + " <- " + format.valueAt(0).description();
}

std::string titlesOf(const Record& request) {
  std::string titles;
  for (const Value& title : *request["COLUMNS"].asArray()) titles += "[" + title.description() + "]";
  return titles;
}

TEST(ReportRequest, FillsInWhatTheLibraryWouldByItself) {
  ReportLayout layout;
  Record request = makeRequest(layout, "a.txt", {});
  EXPECT_EQ(formatOf(request), "%@: %@ (%@) <- Name,Text,Date");
  EXPECT_EQ(request["FILE_NAME"].description(), "a.txt");
  EXPECT_EQ(request["FILE_FORMAT"].integerValue(), 2);
  EXPECT_EQ(request["APP_TYPE"].integerValue(), 0);
  layout.format = ReportFormat::kCsv;
  request = makeRequest(layout, "a.csv", {});
  EXPECT_EQ(formatOf(request), "%@,%@,%@ <- Name,Text,Date");
  EXPECT_EQ(request["FILE_FORMAT"].integerValue(), 0);
  EXPECT_EQ(titlesOf(request), "[Name][Text][Date]");
}

TEST(ReportRequest, HasAPlaceForEachKey) {
  ReportLayout layout{.keys = {"Date", "label"}};
  EXPECT_EQ(formatOf(makeRequest(layout, "a", {})), "%@, %@ <- Date,label");
  layout.format = ReportFormat::kCsv;
  EXPECT_EQ(formatOf(makeRequest(layout, "a", {})), "%@,%@ <- Date,label");
  EXPECT_EQ(titlesOf(makeRequest(layout, "a", {})), "[Date][label]");
}

TEST(ReportRequest, QuotesTitlesOfCsvReports) {
  const ReportLayout layout{.format = ReportFormat::kCsv,
                            .keys = {"Name", "Text"},
                            .columns = std::vector<std::string>{"Who \"says\"", "What"}};
  EXPECT_EQ(titlesOf(makeRequest(layout, "a", {})), "[\"Who \"\"says\"\"\"][What]");
}

TEST(ReportRequest, WritesNumbersOutThatAreShown) {
  const Array records = {Record{{"Text", "Hi"}, {"is_from_me", 1}, {"cache_has_attachments", 0}}};
  const ReportLayout layout{.keys = {"Text", "is_from_me"}};
  const Record request = makeRequest(layout, "a", records);
  const Record& record = *(*request["RECORDS"].asArray())[0].asRecord();
  ASSERT_NE(record["is_from_me"].asString(), nullptr);
  EXPECT_EQ(record["is_from_me"].asString()->view(), "1");
  EXPECT_EQ(record["cache_has_attachments"].kind(), Value::Kind::kInteger);
  EXPECT_EQ((*records[0].asRecord())["is_from_me"].kind(), Value::Kind::kInteger);  // the caller's stay
}

TEST(ReportRequest, SplitsListsAtCommas) {
  EXPECT_EQ(splitList("Name, Text ,Date"), (std::vector<std::string>{"Name", "Text", "Date"}));
  EXPECT_EQ(splitList("One title"), (std::vector<std::string>{"One title"}));
  EXPECT_EQ(splitList("a,,"), (std::vector<std::string>{"a", "", ""}));
}

TEST(ReportRequest, RefusesLayoutsThatMakeNoSense) {
  EXPECT_FALSE(checkLayout({}).has_value());
  EXPECT_TRUE(checkLayout({.keys = {"Name", "Colour"}}).has_value());
  EXPECT_TRUE(checkLayout({.keys = {""}}).has_value());
  EXPECT_TRUE(checkLayout({.columns = std::vector<std::string>{"A", "B"}}).has_value());
  EXPECT_FALSE(checkLayout({.columns = std::vector<std::string>{"A", "B", "C"}}).has_value());
  EXPECT_TRUE(checkLayout({.lineFormat = "no place %%@"}).has_value());
  EXPECT_FALSE(checkLayout({.lineFormat = "%@"}).has_value());
  EXPECT_TRUE(checkLayout({.format = ReportFormat::kPdf, .keys = {"Name", "Text", "Date", "guid"}}).has_value());
  EXPECT_FALSE(checkLayout({.format = ReportFormat::kPdf, .keys = {"Name", "Text"}}).has_value());
}

TEST(ReportRequest, RemarksOnLayoutsThatMayNotBeMeant) {
  EXPECT_TRUE(notesOnLayout({}).empty());
  EXPECT_EQ(notesOnLayout({.lineFormat = "%@ %@"}).size(), 1U);
  EXPECT_EQ(notesOnLayout({.lineFormat = "%@ %@ %@ %@"}).size(), 1U);
  EXPECT_EQ(notesOnLayout({.columns = std::vector<std::string>{"A", "B", "C"}}).size(), 1U);
  EXPECT_TRUE(notesOnLayout({.format = ReportFormat::kPdf}).empty());
  EXPECT_TRUE(notesOnLayout({.format = ReportFormat::kPdf, .keys = {"Text"}}).empty());
  EXPECT_EQ(notesOnLayout({.format = ReportFormat::kPdf, .lineFormat = "%@ %@ %@"}).size(), 1U);
  EXPECT_EQ(notesOnLayout({.format = ReportFormat::kPdf, .keys = {"Name", "Date", "Text"}}).size(), 1U);
}

}  // namespace
}  // namespace chatsum::device
