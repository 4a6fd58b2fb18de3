// Where the paginated report puts things. The fake platform makes every letter half its font's size wide, breaks lines
// anywhere, and sets them one font size apart; so 35 letters of a cell fit on a line 14 points high.

#include <cstdint>
#include <memory>
#include <new>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "tests/unit/CSReportsGenerator/ReportEngineTest.h"

namespace chatsum::test {
namespace {

using platform::LineBreakMode;
using platform::TextAlignment;
using platform::UIFont;
using platform::fake::DrawnText;
using platform::fake::FakeImage;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kWriter = "-[CSReportsGenerator generatePDFReport:format:columns:records:]";
constexpr const char* kNotice =
    "This report was generated on Jan 6, 2020, 10:40 AM by using Chatsum - a new reports generation tweak for your "
    "iDevice.";

class PDFReport : public ReportEngineTest {
 protected:
  const std::string path = inFolder("report.pdf");
  const Value defaultFormat = Record{{"%@ %@ %@", "Name,Text,Date"}};
  const Value columns = Array{"Name", "Text", "Date"};
  const UIFont cellFont{"Verdana", 14};

  void write(const Value& records, const Value& format, const Value& titles) {
    ASSERT_EQ(engine.generatePDFReport(path, format, titles, records), std::nullopt);
  }
  void write(const Value& records) { write(records, defaultFormat, columns); }

  /// The texts of the cells, in order.
  std::vector<DrawnText> cells() const {
    std::vector<DrawnText> found;
    for (const DrawnText& text : fake.graphics.drawn) {
      if (text.font == cellFont) found.push_back(text);
    }
    return found;
  }
  /// The page numbers, in order.
  std::vector<DrawnText> numbers() const {
    std::vector<DrawnText> found;
    for (const DrawnText& text : fake.graphics.drawn) {
      if (text.font == UIFont{"", 12}) found.push_back(text);
    }
    return found;
  }
  /// Where the first row starts: title 20, notice 10, link line 10, gap 30 and titles 16 below 50.
  static constexpr double kFirstRow = 50 + 20 + 10 + 10 + 30 + 16;
};

/// A text of so many lines of a cell.
std::string linesOfText(int lines) { return std::string(static_cast<std::size_t>(lines - 1) * 250 / 7 + 7, 'x'); }

TEST_F(PDFReport, OpensADocumentAtThePathAndEndsIt) {
  write(Array{});
  EXPECT_THAT(fake.graphics.pdfPaths, ElementsAre(path));
  EXPECT_EQ(fake.graphics.endedDocuments, 1U);
  EXPECT_EQ(fake.graphics.currentContext(), nullptr);
}

TEST_F(PDFReport, DrawsTheHeadingOnTheFirstPage) {
  fake.artwork.files["/System/Library/PreferenceBundles/ChatsumSettings.bundle/Chatsum@2x.png"] =
      std::make_shared<FakeImage>(Size{48, 48});
  fake.device.scale = 2;
  write(Array{});
  ASSERT_THAT(fake.graphics.pages, ElementsAre(Rect{{0, 0}, {762, 792}}));
  ASSERT_EQ(fake.graphics.images.size(), 1U);
  EXPECT_EQ(fake.graphics.images[0].rect, (Rect{{50, 50}, {48, 48}}));
  EXPECT_EQ(fake.graphics.images[0].page, 1U);
  EXPECT_NE(fake.graphics.images[0].image, nullptr);

  const auto& drawn = fake.graphics.drawn;
  ASSERT_EQ(drawn.size(), 7U);
  EXPECT_EQ(drawn[0].text, "Chatsum");
  EXPECT_EQ(drawn[0].font, (UIFont{"Helvetica-Bold", 20}));
  EXPECT_EQ(drawn[0].rect, (Rect{{110, 50}, {250, 0}}));
  EXPECT_EQ(drawn[0].color, platform::kBlackColor);
  EXPECT_EQ(drawn[1].text, kNotice);
  EXPECT_EQ(drawn[1].font, (UIFont{"Verdana", 10}));
  EXPECT_EQ(drawn[1].rect, (Rect{{110, 70}, {662, 0}}));
  EXPECT_EQ(drawn[2].text, "For more information, please visit at");
  EXPECT_EQ(drawn[2].rect, (Rect{{110, 80}, {662, 0}}));
  EXPECT_EQ(drawn[2].color, platform::kBlackColor);
  EXPECT_TRUE(drawn[3].text.starts_with(" https://")) << drawn[3].text;
  EXPECT_EQ(drawn[3].font, (UIFont{"Verdana", 10}));
  EXPECT_EQ(drawn[3].rect, (Rect{{110 + 37 * 5, 80}, {662, 0}}));
  EXPECT_EQ(drawn[3].color, platform::kBlueColor);
}

TEST_F(PDFReport, MeasuresTheHeadingWithinItsOwnWidth) {
  write(Array{});
  for (const auto& measured : fake.graphics.measured) EXPECT_EQ(measured.limit, (Size{662, 0})) << measured.text;
}

TEST_F(PDFReport, DrawsTheTitlesInTheirColumnsOverARule) {
  write(Array{});
  const auto& drawn = fake.graphics.drawn;
  ASSERT_EQ(drawn.size(), 7U);
  const double y = kFirstRow - 16;
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(drawn[4 + i].text, (std::vector<std::string>{"Name", "Text", "Date"})[i]);
    EXPECT_EQ(drawn[4 + i].font, (UIFont{"Helvetica-Bold", 16}));
    EXPECT_EQ(drawn[4 + i].rect, (Rect{{50 + 250 * static_cast<double>(i), y}, {250, 0}}));
    EXPECT_EQ(drawn[4 + i].color, platform::kBlackColor);
  }
  ASSERT_EQ(fake.graphics.lines.size(), 1U);
  EXPECT_EQ(fake.graphics.lines[0].from, (Point{45, kFirstRow}));
  EXPECT_EQ(fake.graphics.lines[0].to, (Point{712, kFirstRow}));
  EXPECT_EQ(fake.graphics.lines[0].width, 2);
  EXPECT_EQ(fake.graphics.lines[0].color, platform::kDarkGrayColor);
}

TEST_F(PDFReport, PutsTheRuleBelowTheLastTitleAloneWhateverTheOthersMeasure) {
  write(Array{}, defaultFormat, Array{"Name", ""});  // an empty title has no height
  EXPECT_EQ(fake.graphics.lines.at(0).from, (Point{45, kFirstRow - 16}));
}

TEST_F(PDFReport, PutsTheRuleBelowTheLinkLineWhenThereAreNoTitles) {
  const double withoutTitles = kFirstRow - 16 + 10;
  write(Array{}, defaultFormat, Value());
  write(Array{}, defaultFormat, Array{});
  write(Array{}, defaultFormat, "Name");
  ASSERT_EQ(fake.graphics.lines.size(), 3U);
  for (const auto& line : fake.graphics.lines) EXPECT_EQ(line.from, (Point{45, withoutTitles}));
}

TEST_F(PDFReport, LocalizesTheHeadingAndNothingElse) {
  fake.mainBundle.strings = {{"Chatsum", "Titel"},
                             {"This report was generated on %@ by using Chatsum - a new reports generation tweak for "
                              "your iDevice.",
                              "Vom %@."},
                             {"For more information, please visit at", "Mehr:"},
                             {"Name", "not this"}};
  write(Array{});
  ASSERT_EQ(fake.graphics.drawn.size(), 7U);
  EXPECT_EQ(fake.graphics.drawn[0].text, "Titel");
  EXPECT_EQ(fake.graphics.drawn[1].text, "Vom Jan 6, 2020, 10:40 AM.");
  EXPECT_EQ(fake.graphics.drawn[2].text, "Mehr:");
  EXPECT_EQ(fake.graphics.drawn[4].text, "Name");
}

TEST_F(PDFReport, HasOnePageWithoutANumberWhenThereAreNoRecords) {
  write(Array{});
  write(Value());
  EXPECT_EQ(fake.graphics.pages.size(), 2U);
  EXPECT_THAT(numbers(), IsEmpty());
}

TEST_F(PDFReport, DrawsARowInThreeColumnsStartingAtTheRule) {
  write(Array{Record{{"Name", "Ann"}, {"Text", "Hi"}, {"Date", Date{1578307200}}}});
  const auto row = cells();
  ASSERT_EQ(row.size(), 3U);
  EXPECT_EQ(row[0].text, "Ann");
  EXPECT_EQ(row[0].rect, (Rect{{50, kFirstRow}, {21, 14}}));
  EXPECT_EQ(row[1].text, "Hi");
  EXPECT_EQ(row[1].rect, (Rect{{300, kFirstRow}, {14, 14}}));
  EXPECT_EQ(row[2].text, "Mon, 01-06-2020 10:40 AM");
  EXPECT_EQ(row[2].rect, (Rect{{550, kFirstRow}, {24 * 7, 14}}));
  for (const DrawnText& cell : row) {
    EXPECT_EQ(cell.color, platform::kDarkGrayColor);
    EXPECT_EQ(cell.mode, LineBreakMode::kWordWrap);
    EXPECT_EQ(cell.alignment, TextAlignment::kLeft);
  }
}

TEST_F(PDFReport, MeasuresCellsWithinTheColumnAndWithoutALimitBelow) {
  write(Array{Record{{"Name", "Ann"}}}, Record{{"%@", "Name"}}, columns);
  const auto measured = std::find_if(fake.graphics.measured.begin(), fake.graphics.measured.end(),
                                     [&](const auto& one) { return one.font == cellFont; });
  ASSERT_NE(measured, fake.graphics.measured.end());
  EXPECT_EQ(measured->limit, (Size{250, static_cast<double>(std::numeric_limits<float>::max())}));
}

TEST_F(PDFReport, SetsRowsTenPointsApartByTheirTallestCell) {
  write(Array{Record{{"Name", "Ann"}, {"Text", linesOfText(3)}}, Record{{"Name", "Bo"}}});
  const auto all = cells();
  ASSERT_EQ(all.size(), 6U);
  EXPECT_EQ(all[1].rect.size.height, 42);
  EXPECT_EQ(all[3].rect.origin, (Point{50, kFirstRow + 42 + 10}));
}

TEST_F(PDFReport, LeavesACellWithoutAValueEmptyAndWithoutHeight) {
  write(Array{Record{}, Value("no record"), Record{{"Text", "Hi"}}});
  const auto all = cells();
  ASSERT_EQ(all.size(), 9U);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(all[i].rect.size, (Size{})) << i;
  EXPECT_EQ(all[7].rect.origin.y, kFirstRow + 20);
}

TEST_F(PDFReport, CountsANumberUnderDateFrom2001) {
  write(Array{Record{{"Date", 0}}}, Record{{"%@", "Date"}}, columns);
  EXPECT_EQ(cells().at(0).text, "Mon, 01-01-2001 12:00 AM");
}

TEST_F(PDFReport, DrawsAValueOfAnotherKindAsItsText) {
  write(Array{Record{{"Name", 12}, {"Text", true}, {"x", Date{0}}}}, Record{{"%@", "Name,Text,x"}}, columns);
  const auto row = cells();
  ASSERT_EQ(row.size(), 3U);
  EXPECT_EQ(row[0].text, "12");
  EXPECT_EQ(row[1].text, "1");
  EXPECT_EQ(row[2].text, Value(Date{0}).description());
}

TEST_F(PDFReport, DrawsAsManyColumnsAsKeysAlsoBeyondThePage) {
  write(Array{Record{{"a", "1"}, {"b", "2"}, {"c", "3"}, {"d", "4"}}}, Record{{"%@", "a,b,c,d"}}, columns);
  ASSERT_EQ(cells().size(), 4U);
  EXPECT_EQ(cells()[3].rect.origin.x, 800);
}

TEST_F(PDFReport, HasNoCellsWithoutAFormatEntry) {
  write(Array{Record{{"Name", "Ann"}}}, Record{}, columns);
  EXPECT_THAT(cells(), IsEmpty());
  EXPECT_EQ(fake.graphics.endedDocuments, 1U);
}

TEST_F(PDFReport, NumbersThePageWithEveryCellAtTheSamePlace) {
  write(Array{Record{{"Name", "Ann"}, {"Text", "Hi"}}});
  ASSERT_EQ(numbers().size(), 3U);
  for (const DrawnText& number : numbers()) {
    EXPECT_EQ(number.text, "1");
    EXPECT_EQ(number.rect, (Rect{{(762 - 6) / 2.0, 720 + 6}, {6, 12}}));
  }
}

TEST_F(PDFReport, BreaksThePageBeforeTheRowThatWouldPassTheBottom) {
  // Rows of 24 points from 136 on: 22 end at 664 + …, the 24th would end beyond 692.
  Array records;
  for (int i = 0; i < 25; ++i) records.append(Record{{"Name", std::to_string(i)}});
  write(records, Record{{"%@", "Name"}}, columns);
  const auto all = cells();
  ASSERT_EQ(all.size(), 25U);
  for (std::size_t i = 0; i < all.size(); ++i) {
    const bool isOnFirst = kFirstRow + 24 * static_cast<double>(i) + 14 <= 692;
    EXPECT_EQ(all[i].page, isOnFirst ? 1U : 2U) << i;
  }
  EXPECT_EQ(all[24].page, 2U);
  EXPECT_EQ(fake.graphics.pages.size(), 2U);
  EXPECT_EQ(fake.graphics.pages[1], (Rect{{0, 0}, {762, 792}}));
  EXPECT_EQ(numbers().back().text, "2");
}

TEST_F(PDFReport, KeepsACellThatEndsAtTheBottomLimitItself) {
  // From 136 on: 20 lines of 14 points, the gap of 10, and 19 lines that end at 692.
  write(Array{Record{{"Text", linesOfText(20)}}, Record{{"Text", linesOfText(19)}}}, Record{{"%@", "Text"}}, columns);
  const auto all = cells();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[1].rect.origin.y + all[1].rect.size.height, 692);
  EXPECT_EQ(all[1].page, 1U);
  EXPECT_EQ(fake.graphics.pages.size(), 1U);
}

TEST_F(PDFReport, MovesACellThatWouldEndAFewPointsBelowTheLimit) {
  // From 136 on: three rows and their gaps take 30 lines of 14 points and 30, and eight more lines would end at 698.
  write(Array{Record{{"Text", linesOfText(10)}}, Record{{"Text", linesOfText(10)}}, Record{{"Text", linesOfText(10)}},
              Record{{"Text", linesOfText(8)}}},
        Record{{"%@", "Text"}}, columns);
  const auto all = cells();
  ASSERT_EQ(all.size(), 4U);
  EXPECT_EQ(all[2].page, 1U);
  EXPECT_EQ(all[3].page, 2U);
  EXPECT_EQ(all[3].rect.origin, (Point{50, 50}));
}

TEST_F(PDFReport, PutsOnlyTheCellThatWouldPassTheBottomOnTheNextPage) {
  Array records{Record{{"Name", linesOfText(37)}}};  // 518 points and the gap: the next row starts at 664
  records.append(Record{{"Name", "Ann"}, {"Text", "Hi"}, {"Date", linesOfText(3)}});
  write(records, Record{{"%@", "Name,Text,Date"}}, columns);
  auto all = cells();
  ASSERT_EQ(all.size(), 6U);
  EXPECT_EQ(all[3].page, 1U);
  EXPECT_EQ(all[4].page, 1U);
  EXPECT_EQ(all[3].rect.origin.y, 664);
  EXPECT_EQ(all[5].page, 1U) << "a date is one line";

  fake.graphics.drawn.clear();
  fake.graphics.pages.clear();
  Array others{Record{{"a", linesOfText(37)}}, Record{{"a", "Ann"}, {"b", "Hi"}, {"c", linesOfText(3)}},
               Record{{"a", "Bo"}}};
  write(others, Record{{"%@", "a,b,c"}}, columns);
  all = cells();
  ASSERT_EQ(all.size(), 9U);
  EXPECT_EQ(all[4].page, 1U);
  EXPECT_EQ(all[5].page, 2U);
  EXPECT_EQ(all[5].rect.origin, (Point{550, 50}));
  EXPECT_EQ(all[6].page, 2U);
  EXPECT_EQ(all[6].rect.origin, (Point{50, 50 + 42 + 10}));
}

TEST_F(PDFReport, StartsANewPageForEveryCellThatIsTallerThanAPage) {
  write(Array{Record{{"a", linesOfText(60)}, {"b", linesOfText(50)}}}, Record{{"%@", "a,b"}}, columns);
  const auto all = cells();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].page, 2U);
  EXPECT_EQ(all[0].rect, (Rect{{50, 50}, {250, 60 * 14}}));
  EXPECT_EQ(all[1].page, 3U);
  EXPECT_EQ(all[1].rect.origin, (Point{300, 50}));
}

TEST_F(PDFReport, DrawsThePictureThatAValueNamesAndMakesTheRowAsHighAsIt) {
  fake.artwork.files["User/photo.png"] = std::make_shared<FakeImage>(Size{200, 100});
  makeFolder();
  fake.log.clear();
  write(Array{Record{{"Name", "Ann"}, {"Text", "User/photo.png"}}, Record{{"Name", "Bo"}}});
  ASSERT_EQ(fake.graphics.images.size(), 3U);  // the logo, the picture on its surface, the thumbnail
  EXPECT_EQ(fake.graphics.images[2].rect, (Rect{{300, kFirstRow}, {64, 64}}));
  EXPECT_EQ(fake.graphics.images[2].page, 1U);
  EXPECT_EQ(cells().at(2).rect.origin.y, kFirstRow + 64 + 10);
  EXPECT_TRUE(fake.log.contains(information(kWriter, 389, "Generating thumbnail for file at User/photo.png")));
}

TEST_F(PDFReport, DrawsTheFirstPageOfAPDFThatAValueNames) {
  fake.artwork.documents["User/paper.PDF"] = std::make_shared<platform::fake::FakePDFPage>(Rect{{0, 0}, {300, 400}});
  write(Array{Record{{"Text", "User/paper.PDF"}}}, Record{{"%@", "Text"}}, columns);
  ASSERT_FALSE(fake.graphics.images.empty());
  EXPECT_EQ(fake.graphics.images.back().rect, (Rect{{50, kFirstRow}, {64, 64}}));
  EXPECT_TRUE(fake.log.contains(information(kWriter, 392, "Generating thumbnail for file at User/paper.PDF")));
}

TEST_F(PDFReport, DrawsNothingForAPictureThatIsMissing) {
  write(Array{Record{{"Name", "Ann"}, {"Text", "User/gone.png"}}, Record{{"Name", "Bo"}}});
  ASSERT_EQ(fake.graphics.images.size(), 2U);
  EXPECT_EQ(fake.graphics.images[1].image, nullptr);
  EXPECT_EQ(fake.graphics.images[1].rect.size, (Size{}));
  EXPECT_EQ(cells().at(2).rect.origin.y, kFirstRow + 14 + 10);
  EXPECT_EQ(numbers().size(), 6U) << "the missing one is a cell, too";
}

TEST_F(PDFReport, ReadsADateForAPictureUnderNoKeyButItsOwn) {
  write(Array{Record{{"Date", "photo.png"}}}, Record{{"%@", "Date"}}, columns);
  EXPECT_EQ(cells().at(0).text, "Mon, 01-01-2001 12:00 AM");
}

TEST_F(PDFReport, TellsThePlatformWhatTheRowsWillShow) {
  write(Array{Record{{"Name", "Ann"}, {"Text", "User/photo.png"}, {"Date", 0}}, Record{{"Text", "Hi"}}});
  EXPECT_THAT(fake.graphics.expected, ElementsAre("Ann", "User/photo.png", "Mon, 01-01-2001 12:00 AM", "", "Hi", ""));
}

TEST_F(PDFReport, LogsTheFileWhenItIsDone) {
  write(Array{});
  EXPECT_EQ(fake.log.lines().back(), information(kWriter, 433, "Writing data to file " + path));
}

TEST_F(PDFReport, LeavesTheSharedDateFormatterWithTheReportsPattern) {
  write(Array{Record{{"Date", 0}}});
  EXPECT_EQ(ChatsumUtils::dateFormatter().dateFormat(), "EEE, MM-dd-YYYY hh:mm aa");
}

TEST_F(PDFReport, LogsAndAnswersAnInvalidReportFormat) {
  for (const Value& format : {Value(), Value("Name"), Value(Array{"Name"})}) {
    fake.log.clear();
    const auto failure = engine.generatePDFReport(path, format, columns, Array{});
    ASSERT_TRUE(failure);
    expectReportError(*failure, 1212, "Invalid report format encountered.");
    EXPECT_THAT(fake.log.lines(), ElementsAre(error(kWriter, 292,
                                                    "Invalid report format '" + format.description() +
                                                        "' encountered. Expected NSDictionary.")));
  }
  EXPECT_THAT(fake.graphics.pdfPaths, IsEmpty());
}

TEST_F(PDFReport, AnswersWithoutALineWhenThereIsNoDrawingContext) {
  fake.graphics.hasPDF = false;
  fake.mainBundle.strings = {{"Unable to generate.", "Nicht möglich."}};
  const auto failure = engine.generatePDFReport(path, defaultFormat, columns, Array{Record{{"Name", "Ann"}}});
  ASSERT_TRUE(failure);
  expectReportError(*failure, 1213, "Nicht möglich.");
  EXPECT_THAT(fake.log.lines(), IsEmpty());
  EXPECT_EQ(fake.graphics.endedDocuments, 0U);
  EXPECT_THAT(fake.graphics.drawn, IsEmpty());
}

TEST_F(PDFReport, IsGivenUpWhenMemoryIsMissing) {
  Array records;
  for (int i = 0; i < 50; ++i) records.append(Record{{"Name", "Ann"}, {"Text", "Hello"}});
  fake.graphics.failingText = 20;
  EXPECT_THROW(static_cast<void>(engine.generatePDFReport(path, defaultFormat, columns, records)), std::bad_alloc);
  // What the document was told of the rows to come is used no more.
  EXPECT_EQ(fake.graphics.abandonedDocuments, 1U);
  EXPECT_EQ(fake.graphics.endedDocuments, 0U);
  EXPECT_EQ(fake.graphics.currentContext(), nullptr);
}

}  // namespace
}  // namespace chatsum::test
