#include "hosts/desktop/report/RequestLayout.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"

namespace chatsum::desktop {
namespace {

using device::ReportFormat;

/// The line format, its keys and the titles for a format.
struct Layout {
  std::string line, keys;
  std::vector<std::string> titles;
};

Layout layoutOf(const RequestLayout& request, ReportFormat format) {
  Layout layout;
  for (const auto& entry : request.entriesFor(format)) {
    if (std::string_view(entry.key) == request::kReportFormat) {
      layout.line = std::string(entry.value.asRecord()->keyAt(0));
      layout.keys = entry.value.asRecord()->valueAt(0).description();
    } else if (std::string_view(entry.key) == request::kColumns) {
      for (const Value& title : *entry.value.asArray()) layout.titles.push_back(title.description());
    }
  }
  return layout;
}

TEST(RequestLayout, MakesTheLineOfTheFormatThatIsChosen) {
  const RequestLayout request(Record{{request::kReportFormat, Record{{"%@: %@ (%@)", "Name,Text,Date"}}},
                                     {request::kColumns, Array{"Who", "What", "When"}}}, {});
  EXPECT_EQ(layoutOf(request, ReportFormat::kText).line, "%@: %@ (%@)");
  EXPECT_EQ(layoutOf(request, ReportFormat::kCsv).line, "%@,%@,%@");
  EXPECT_EQ(layoutOf(request, ReportFormat::kPdf).line, "%@ %@ %@");
  EXPECT_EQ(layoutOf(request, ReportFormat::kPdf).keys, "Name,Text,Date");
  EXPECT_EQ(layoutOf(request, ReportFormat::kPdf).titles, (std::vector<std::string>{"Who", "What", "When"}));
}

TEST(RequestLayout, HasTheUsualKeysWhenTheRequestNamesNone) {
  const RequestLayout request(Record(), {});
  EXPECT_EQ(layoutOf(request, ReportFormat::kCsv).keys, "Name,Text,Date");
  EXPECT_EQ(layoutOf(request, ReportFormat::kCsv).titles, (std::vector<std::string>{"Name", "Text", "Date"}));
}

TEST(RequestLayout, QuotesTitlesForCsvOnly) {
  const RequestLayout request(Record{{request::kColumns, Array{"Name, as shown", "Text", "Date"}}}, {});
  EXPECT_EQ(layoutOf(request, ReportFormat::kCsv).titles[0], "\"Name, as shown\"");
  EXPECT_EQ(layoutOf(request, ReportFormat::kPdf).titles[0], "Name, as shown");
}

TEST(RequestLayout, HasPicturesOnPagesAndTheirNamesElsewhere) {
  const RequestLayout request(Record{{request::kRecords, Array{"picture"}}}, Array{"name"});
  for (const auto& [format, expected] :
       {std::pair{ReportFormat::kPdf, "picture"}, {ReportFormat::kCsv, "name"}, {ReportFormat::kText, "name"}}) {
    const auto entries = request.entriesFor(format);
    const auto records = std::find_if(entries.begin(), entries.end(), [](const auto& entry) {
      return std::string_view(entry.key) == request::kRecords;
    });
    ASSERT_NE(records, entries.end());
    EXPECT_EQ(*records->value.asArray(), Array{expected});
  }
}

TEST(RequestLayout, FindsRowsThatAreTooWideForAPage) {
  const RequestLayout wide(Record{{request::kReportFormat, Record{{"%@ %@ %@ %@", "Name,Text,Date,guid"}}}}, {});
  EXPECT_TRUE(wide.problemIn(ReportFormat::kPdf).contains("4")) << wide.problemIn(ReportFormat::kPdf).toStdString();
  EXPECT_EQ(wide.problemIn(ReportFormat::kCsv), "");
  EXPECT_EQ(RequestLayout(Record(), {}).problemIn(ReportFormat::kPdf), "");
}

}  // namespace
}  // namespace chatsum::desktop
