// Pages of the sample device as pictures, next to those that were looked at and kept. Set CHATSUM_UPDATE_GOLDEN to keep
// what the program draws now; look at every page before it is committed.
#include <cmath>

#include "tests/hosts/pdf/PdfReportTest.h"
#include "tests/support/PagePictures.h"

namespace chatsum::test {
namespace {

struct GoldenPage {
  const char* name;
  const char* conversation;
  std::size_t page;
};

class PdfPage : public PdfReportTest, public ::testing::WithParamInterface<GoldenPage> {
 protected:
  /// The line that tells when the report was made.
  static std::vector<PixelRect> notice(const std::filesystem::path& file) {
    constexpr double kAbove = 11, kBelow = 4;
    std::vector<PixelRect> rects;
    for (const ReportLine& line : readReportPages(file).notices) {
      if (!line.text.starts_with("This report was generated on ")) continue;
      rects.push_back({100, static_cast<int>(line.baseline - kAbove), 762, static_cast<int>(line.baseline + kBelow)});
    }
    return rects;
  }
};

TEST_P(PdfPage, LooksAsItDid) {
  const GoldenPage& golden = GetParam();
  writeSample();
  const std::filesystem::path file = pdf(golden.conversation);
  drawPdfPage(file, golden.page, picture(golden.page));
  const std::vector<PixelRect> without = golden.page == 1 ? notice(file) : std::vector<PixelRect>();
  EXPECT_EQ(without.size(), golden.page == 1 ? 1U : 0U);
  EXPECT_TRUE(looksLikeGolden(picture(golden.page), std::string("pdf/") + golden.name + ".png", without));
}

// Every script, pictures of each kind, a row over two pages.
INSTANTIATE_TEST_SUITE_P(
    Sample, PdfPage,
    ::testing::Values(GoldenPage{"languages1", "Language table 🌍", 1}, GoldenPage{"languages2", "Language table 🌍", 2},
                      GoldenPage{"languages3", "Language table 🌍", 3}, GoldenPage{"languages4", "Language table 🌍", 4},
                      GoldenPage{"maya1", "Maya Lindqvist", 1}, GoldenPage{"maya2", "Maya Lindqvist", 2},
                      GoldenPage{"maya6", "Maya Lindqvist", 6}),
    [](const auto& golden) { return std::string(golden.param.name); });

class PdfPicture : public PdfReportTest {
 protected:
  static constexpr int kLetter = 12;  // pixels
  static constexpr double kMostOfLetter = 30;
};

// What the comparison of pages must see, and what it may not.
TEST_F(PdfPicture, DiffersWhereAWordIsMissing) {
  writeTexts({"Hello there", "Good bye"});
  const std::filesystem::path all = pdf(person);
  drawPdfPage(all, 1, picture(1));
  const auto page = readPicture(picture(1));
  ASSERT_TRUE(page);
  EXPECT_EQ(differenceOf(*page, *page).mean, 0);
  EXPECT_EQ(differenceOf(*page, *page).shareOff, 0);

  const ReportLine word = readReportPages(all).columns[1].back();
  Picture changed = *page;
  blank(changed, {static_cast<int>(word.left), static_cast<int>(word.baseline) - 12, static_cast<int>(word.right),
                  static_cast<int>(word.baseline) + 4});
  EXPECT_GT(differenceOf(*page, changed).shareOff, 0.0002);
  EXPECT_GT(differenceOf(shrunk(*page, kLetter), shrunk(changed, kLetter)).largest, kMostOfLetter);
  EXPECT_EQ(differenceOf(*page, Picture{1, 1, {0, 0, 0}}).shareOff, 1);
}

// Edges are smoothed differently, but squares of the size of a letter are as dark in one viewer as in the other.
TEST_F(PdfPicture, IsAlikeInTwoViewers) {
  writeSample();
  const std::filesystem::path file = pdf("Language table 🌍"), other = root() / "other.png";
  for (std::size_t number = 1; number <= pdfPageCount(file); ++number) {
    drawPdfPage(file, number, picture(number));
    drawPdfPage(file, number, other, PdfViewer::kMuPdf);
    const auto one = readPicture(picture(number)), two = readPicture(other);
    ASSERT_TRUE(one && two);
    const PictureDifference difference = differenceOf(shrunk(*one, kLetter), shrunk(*two, kLetter));
    EXPECT_LT(difference.mean, 0.5) << "page " << number;
    EXPECT_LT(difference.largest, kMostOfLetter) << "page " << number;
  }
}

}  // namespace
}  // namespace chatsum::test
