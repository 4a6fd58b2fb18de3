// Where the parts of a report stand on its pages.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "tests/hosts/pdf/PdfReportTest.h"
#include "tests/support/PagePictures.h"

namespace chatsum::test {
namespace {

using ::testing::AnyOf;
using ::testing::DoubleNear;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr double kTop = 50, kBottom = 692, kGap = 10, kPageWidth = 762;
constexpr double kNear = 0.01;  // of a point: coordinates have as many places as they need

class PdfLayout : public PdfReportTest {
 protected:
  /// The y of the rule's middle: the one line of dark grey pixels from x 45 to 712 on the first page.
  double ruleOf(const std::filesystem::path& file) const {
    drawPdfPage(file, 1, picture(1));
    const auto page = readPicture(picture(1));
    if (!page) return 0;
    std::vector<int> rows;
    for (int y = 0; y < page->height; ++y) {
      if (isDark(*page, y, 45) && isDark(*page, y, 400) && isDark(*page, y, 711) && !isDark(*page, y, 43) &&
          !isDark(*page, y, 713)) {
        rows.push_back(y);
      }
    }
    EXPECT_THAT(rows, SizeIs(2));
    return rows.empty() ? 0 : (rows.front() + rows.back() + 1) / 2.0;
  }

 private:
  static bool isDark(const Picture& page, int y, int x) {
    constexpr int kDarkGrey = 85, kSlack = 3, kChannels = 3;
    return std::abs(page.bytes[static_cast<std::size_t>((y * page.width + x) * kChannels)] - kDarkGrey) <= kSlack;
  }
};

std::string numbered(const char* word, int number) { return word + std::to_string(number); }

/// "row7" and more lines up to `count`.
std::string linesOfText(int row, int count) {
  std::string text = numbered("row", row);
  for (int line = 1; line < count; ++line) text += numbered("\nmore", line);
  return text;
}

TEST_F(PdfLayout, PutsTheHeadingBesideTheLogo) {
  writeTexts({"Hello"});
  const std::filesystem::path file = pdf(person);
  const ReportPages pages = readReportPages(file);
  EXPECT_THAT(textsOf(pages.title), ElementsAre("Chatsum"));
  EXPECT_THAT(pages.title, Each(Field(&ReportLine::left, DoubleNear(110, kNear))));
  ASSERT_THAT(pages.notices, SizeIs(3));
  EXPECT_TRUE(pages.notices[0].text.starts_with("This report was generated on ")) << pages.notices[0].text;
  EXPECT_TRUE(pages.notices[0].text.ends_with(" by using Chatsum - a new reports generation tweak for your iDevice."))
      << pages.notices[0].text;
  EXPECT_EQ(pages.notices[1].text, "For more information, please visit at");
  EXPECT_NEAR(pages.notices[0].left, 110, kNear);
  EXPECT_NEAR(pages.notices[1].left, 110, kNear);
  // The address goes on where the link line ends.
  EXPECT_EQ(pages.notices[2].baseline, pages.notices[1].baseline);
  EXPECT_GT(pages.notices[2].left, pages.notices[1].right);
  EXPECT_LT(pages.notices[2].left, pages.notices[1].right + 5);
  EXPECT_LT(pages.title[0].baseline, pages.notices[0].baseline);
  EXPECT_LT(pages.notices[0].baseline, pages.notices[1].baseline);

  drawPdfPage(file, 1, picture(1));
  auto page = readPicture(picture(1));
  ASSERT_TRUE(page);
  const Picture whole = *page;
  blank(*page, {49, 49, 99, 99});  // a viewer may round a picture's edges outwards
  EXPECT_GT(differenceOf(whole, *page).shareOff, 0.0005) << "there is no logo";
  blank(*page, {100, 0, page->width, page->height});
  blank(*page, {0, 98, page->width, page->height});
  Picture white = *page;
  blank(white, {0, 0, page->width, page->height});
  EXPECT_EQ(differenceOf(*page, white).mean, 0) << "something stands around the logo";
}

TEST_F(PdfLayout, FitsTheHeadingOfEveryLanguageOnThePage) {
  writeTexts({"Hello"});
  for (const char* language : {"de_DE.UTF-8", "fr_FR.UTF-8", "es_ES.UTF-8", "ja_JP.UTF-8"}) {
    environment["LC_ALL"] = language;
    const ReportPages pages = readReportPages(pdf(person, {"--name", language}));
    ASSERT_THAT(pages.notices, SizeIs(3)) << language;
    EXPECT_FALSE(pages.notices[0].text.starts_with("This report")) << language;
    for (const ReportLine& line : pages.notices) EXPECT_LT(line.right, kPageWidth - 10) << line.text;
  }
}

TEST_F(PdfLayout, ColoursTheAddressAndTheCells) {
  writeTexts({"Hello"});
  const ReportPages pages = readReportPages(pdf(person));
  ASSERT_THAT(pages.notices, SizeIs(3));
  EXPECT_EQ(pages.notices[0].color, "#000000");
  EXPECT_EQ(pages.notices[1].color, "#000000");
  EXPECT_EQ(pages.notices[2].color, "#0000ff");
  EXPECT_THAT(pages.columnTitles, Each(Field(&ReportLine::color, "#000000")));
  for (const ReportLines& column : pages.columns)
    EXPECT_THAT(column, Each(Field(&ReportLine::color, AnyOf("#555555", "#545454"))));
}

TEST_F(PdfLayout, PutsTheTitlesOverTheRuleAndTheFirstRowBelow) {
  writeTexts({"Hello"});
  const std::filesystem::path file = pdf(person);
  const double rule = ruleOf(file);
  const ReportPages pages = readReportPages(file);
  EXPECT_THAT(textsOf(pages.columnTitles), ElementsAre("Name", "Text", "Date"));
  for (std::size_t i = 0; i < pages.columnTitles.size(); ++i) {
    EXPECT_NEAR(pages.columnTitles[i].left, 50 + 250 * static_cast<double>(i), kNear);
    EXPECT_LT(pages.columnTitles[i].baseline, rule);
    EXPECT_GT(pages.columnTitles[i].baseline, rule - 16);
    ASSERT_THAT(pages.columns[i], SizeIs(1));
    EXPECT_GT(pages.columns[i][0].baseline, rule);
    EXPECT_LT(pages.columns[i][0].baseline, rule + 20);
  }
}

TEST_F(PdfLayout, ShowsOtherKeysUnderTitlesOfOnesOwn) {
  writeTexts({"Hello"});
  const ReportPages pages = readReportPages(pdf(person, {"--keys", "Text,Name", "--columns", "What,Who"}));
  EXPECT_THAT(textsOf(pages.columnTitles), ElementsAre("What", "Who"));
  EXPECT_THAT(textsOf(pages.columns[0]), ElementsAre("Hello"));
  EXPECT_THAT(textsOf(pages.columns[1]), ElementsAre(person));
  EXPECT_THAT(pages.columns[2], IsEmpty());
}

TEST_F(PdfLayout, KeepsEveryLineInItsColumn) {
  writeSeeded({.messages = 300, .conversations = 1, .attachmentShare = 0});
  const ReportPages pages = readReportPages(pdf("+15550100001"));
  for (std::size_t i = 0; i < pages.columns.size(); ++i) {
    const double left = 50 + 250 * static_cast<double>(i);
    EXPECT_GE(pages.columns[i].size(), 300U);
    EXPECT_THAT(pages.columns[i], Each(Field(&ReportLine::left, DoubleNear(left, kNear))));
    for (const ReportLine& line : pages.columns[i]) {
      EXPECT_LE(line.right, left + 250 + kNear) << line.text;
      EXPECT_LT(line.baseline, kBottom) << line.text;
    }
  }
}

TEST_F(PdfLayout, BreaksLinesBetweenWordsAndLongWordsAnywhere) {
  const std::string word(80, 'm');
  writeTexts({"one two three four five six seven eight nine ten eleven twelve thirteen fourteen", word});
  const ReportPages pages = readReportPages(pdf(person));
  const std::vector<std::string> lines = textsOf(pages.columns[1]);
  ASSERT_GT(lines.size(), 4U);
  std::string words, letters;
  for (const std::string& line : lines) {
    if (line[0] == 'm') {
      letters += line;
    } else {
      words += (words.empty() ? "" : " ") + line;
    }
  }
  EXPECT_EQ(words, "one two three four five six seven eight nine ten eleven twelve thirteen fourteen");
  EXPECT_EQ(letters, word);
}

/// The rule of the pages, played with the heights of cells: where each cell of a row begins.
class Pages {
 public:
  struct Place {
    std::size_t page;
    double top;
  };
  explicit Pages(double firstRow) : y_(firstRow) {}

  std::vector<Place> row(const std::vector<double>& heights) {
    std::vector<Place> places;
    for (const double height : heights) {
      if (y_ + height > kBottom) {
        ++page_;
        y_ = kTop;
      }
      places.push_back({page_, y_});
    }
    y_ += *std::max_element(heights.begin(), heights.end()) + kGap;
    return places;
  }

 private:
  std::size_t page_ = 1;
  double y_;
};

// Rows of one to nine lines, a few taller than what a page has room for, as the library writes them. Every break comes
// where the heights of the cells put it, so the name of a row can stand on one page, its text and its date on the next.
TEST_F(PdfLayout, BreaksPagesCellByCell) {
  std::vector<int> counts;
  for (int row = 0; row < 90; ++row) counts.push_back(row % 30 == 20 ? 41 : 1 + row * 7 % 9);
  std::vector<std::string> texts;
  for (std::size_t row = 0; row < counts.size(); ++row)
    texts.push_back(linesOfText(static_cast<int>(row), counts[row]));
  writeTexts(texts);
  const std::filesystem::path file = pdf(person, {"--plain"});
  const ReportPages pages = readReportPages(file);
  const ReportLines &names = pages.columns[0], &lines = pages.columns[1], &dates = pages.columns[2];
  ASSERT_THAT(names, SizeIs(counts.size()));
  ASSERT_THAT(dates, SizeIs(counts.size()));

  const double rule = ruleOf(file), ascent = names[0].baseline - rule;
  // The second row has lines enough to tell their height.
  const double lineHeight = lines[2].baseline - lines[1].baseline;
  ASSERT_GT(lineHeight, 14);
  Pages expected(rule);
  std::size_t line = 0, split = 0;
  for (std::size_t row = 0; row < counts.size(); ++row) {
    const double one = std::ceil(lineHeight - kNear), text = std::ceil(lineHeight * counts[row] - kNear);
    ASSERT_LT(line, lines.size());
    const std::vector<Pages::Place> places = expected.row({one, text, one});
    const std::vector<const ReportLine*> cells = {&names[row], &lines[line], &dates[row]};
    for (std::size_t i = 0; i < cells.size(); ++i) {
      ASSERT_EQ(cells[i]->page, places[i].page) << "row " << row << ", column " << i;
      ASSERT_NEAR(cells[i]->baseline, places[i].top + ascent, 0.02) << "row " << row << ", column " << i;
    }
    split += places[0].page != places[1].page;
    for (int i = 0; i < counts[row]; ++i, ++line) {
      ASSERT_LT(line, lines.size());
      ASSERT_EQ(lines[line].text, i ? numbered("more", i) : numbered("row", static_cast<int>(row)));
      // What is taller than a page runs on below its bottom.
      ASSERT_EQ(lines[line].page, places[1].page);
      ASSERT_NEAR(lines[line].baseline, places[1].top + ascent + lineHeight * i, 0.02 * (i + 1));
    }
  }
  EXPECT_EQ(line, lines.size());
  EXPECT_GT(split, 3U) << "the rows do not try what they are for";
  EXPECT_EQ(pdfPageCount(file), dates.back().page);
}

TEST_F(PdfLayout, NumbersEveryPageInTheMiddleOfItsFoot) {
  writeSeeded({.messages = 250, .conversations = 1});
  const std::filesystem::path file = pdf("+15550100001");
  const std::size_t count = pdfPageCount(file);
  ASSERT_GT(count, 10U);
  const ReportLines numbers = readReportPages(file).numbers;
  ASSERT_THAT(numbers, SizeIs(count));
  for (std::size_t i = 0; i < count; ++i) {
    EXPECT_EQ(numbers[i].page, i + 1);
    EXPECT_EQ(numbers[i].text, std::to_string(i + 1));
    EXPECT_NEAR((numbers[i].left + numbers[i].right) / 2, kPageWidth / 2, 0.51);  // widths are whole points
    EXPECT_NEAR(numbers[i].baseline, numbers[0].baseline, kNear);
    EXPECT_GT(numbers[i].baseline, 730);
    EXPECT_LT(numbers[i].baseline, 750);
  }
}

TEST_F(PdfLayout, OfNoRowsIsAHeadingWithoutANumber) {
  writeTexts({"Hello"});
  const std::filesystem::path file = pdf(person, {"--since", "2999-01-01"});
  const ReportPages pages = readReportPages(file);
  EXPECT_EQ(pdfPageCount(file), 1U);
  EXPECT_THAT(textsOf(pages.title), ElementsAre("Chatsum"));
  EXPECT_THAT(textsOf(pages.columnTitles), ElementsAre("Name", "Text", "Date"));
  EXPECT_THAT(pages.numbers, IsEmpty());
  for (const ReportLines& column : pages.columns) EXPECT_THAT(column, IsEmpty());
  EXPECT_GT(ruleOf(file), 100);
}

}  // namespace
}  // namespace chatsum::test
