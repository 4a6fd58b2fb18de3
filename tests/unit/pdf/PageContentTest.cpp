#include "platform/system/pdf/PageContent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "tests/unit/pdf/Pieces.h"
#include "tests/unit/pdf/Tools.h"

namespace chatsum::platform::system {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// A page of 792 points height, its operators as text.
class Page : public ::testing::Test {
 protected:
  void show(const TextLayout& layout, Point at, const Color& color = kBlackColor) {
    content_.showText(layout, at, 250, 0, color);
  }

  std::unique_ptr<const FontFace> face_ = openFace(fonts::kDejaVu);
  Pieces pieces_;
  WorkPool pool_{0};
  PdfFile file_{std::make_unique<MemoryFile>(std::make_shared<std::string>())};
  StreamQueue queue_{file_, pool_};
  PdfFonts fonts_{file_, queue_};
  PieceTexts texts_{fonts_};
  PageContent content_{792, fonts_, texts_};
};

TEST_F(Page, ShowsWordsAsOneString) {
  show(pieces_.words(*face_, "one two  six", 14), {50, 50});
  EXPECT_EQ(content_.take(), "BT\n50 729 Td/F0 14 Tf (one two  six)Tj\nET\n");
}

TEST_F(Page, EscapesWhatEndsStrings) {
  show(pieces_.words(*face_, "(a) \\", 14), {50, 50});
  EXPECT_EQ(content_.take(), "BT\n50 729 Td/F0 14 Tf (\\(a\\) \\\\)Tj\nET\n");
}

TEST_F(Page, SetsFontAndColorOnlyWhenTheyChange) {
  const Color gray = kDarkGrayColor;
  show(pieces_.words(*face_, "a", 14), {50, 50}, gray);
  show(pieces_.words(*face_, "b", 14), {300, 50}, gray);
  show(pieces_.words(*face_, "c", 10), {50, 80}, kBlueColor);
  EXPECT_EQ(content_.take(),
            "BT\n.333 g\n50 729 Td/F0 14 Tf (a)Tj\n250 0 Td (b)Tj\n0 0 1 rg\n-250 -30 Td/F0 10 Tf (c)Tj\nET\n");
}

TEST_F(Page, GoesDownByTheLeadingOfTheFirstTextOfSeveralLines) {
  const auto &one = pieces_.shape(*face_, "one"), &two = pieces_.shape(*face_, "two");
  show(pieces_.lines({&one, &two, &one}, 14, 17.5F), {50, 50});
  show(pieces_.lines({&one, &two}, 14, 20), {50, 200});
  show(pieces_.lines({&two, &one}, 14, 17.5F), {50, 300});
  EXPECT_EQ(content_.take(),
            "BT\n50 729 Td/F0 14 Tf (one)Tj\n17.5 TL T* (two)Tj\nT* (one)Tj\n"
            "0 -115 Td (one)Tj\n0 -20 Td (two)Tj\n0 -80 Td (two)Tj\nT* (one)Tj\nET\n");
}

TEST_F(Page, ShiftsLinesWithinTheWidth) {
  const TextLayout layout = pieces_.words(*face_, "abc", 14);
  const double width = static_cast<double>(layout.lines[0].width);
  content_.showText(layout, {10, 50}, 100 + width, 1, kBlackColor);
  content_.showText(layout, {10, 90}, 100 + width, 0.5, kBlackColor);
  EXPECT_THAT(content_.take(), ::testing::AllOf(HasSubstr("110 729 Td"), HasSubstr("-50 -40 Td")));
}

TEST_F(Page, StartsAtTheLeftOfAWidthWithoutEnd) {
  content_.showText(pieces_.words(*face_, "abc", 14), {10, 50}, std::numeric_limits<double>::infinity(), 0,
                    kBlackColor);
  EXPECT_THAT(content_.take(), HasSubstr("10 729 Td"));
}

TEST_F(Page, MovesForGapsAndKerning) {
  TextLayout layout = pieces_.line({&pieces_.shape(*face_, "a"), &pieces_.shape(*face_, "b")}, 10, 0);
  std::vector<PlacedPiece> placed(layout.pieces.begin(), layout.pieces.end());
  placed[0].gap = 5;
  placed[1].gap = 20;
  layout.pieces = placed;
  show(layout, {50, 50});
  EXPECT_EQ(content_.take(), "BT\n55 729 Td/F0 10 Tf[(a)-2000(b)]TJ\nET\n");
  PageContent other(792, fonts_, texts_);
  other.showText(pieces_.words(*face_, "AV", 10), {0, 0}, 100, 0, kBlackColor);
  EXPECT_THAT(other.take(), ::testing::MatchesRegex("BT\n0 779 Td/F0 10 Tf\\[\\(A\\)[0-9]+\\(V\\)[^]]*\\]TJ\nET\n"));
}

TEST_F(Page, DrawsLinesAndImagesOutsideOfText) {
  show(pieces_.words(*face_, "a", 14), {50, 50});
  content_.strokeLine({45, 100}, {712, 100}, 2, kDarkGrayColor);
  content_.strokeLine({45, 110}, {712, 110}, 2, kDarkGrayColor);
  content_.drawImage(7, {{50, 120}, {64, 32}});
  show(pieces_.words(*face_, "b", 14), {50, 50});
  EXPECT_EQ(content_.take(),
            "BT\n50 729 Td/F0 14 Tf (a)Tj\nET\n.333 G\n2 w\n45 692 m 712 692 l S\n45 682 m 712 682 l S\n"
            "q 64 0 0 32 50 640 cm/I7 Do Q\nBT\n50 729 Td (b)Tj\nET\n");
}

TEST_F(Page, KnowsItsImages) {
  for (const int image : {9, 3, 9}) content_.drawImage(image, {{0, 0}, {1, 1}});
  EXPECT_THAT(content_.images(), ::testing::ElementsAre(3, 9));
}

TEST_F(Page, ShowsNothingForAnEmptyText) {
  show({}, {50, 50});
  EXPECT_EQ(content_.take(), "");
}

TEST_F(Page, ShowsSpacesWithoutAWord) {
  const Piece& empty = pieces_.shape(*face_, "");
  const Piece& word = pieces_.shape(*face_, "x");
  show(pieces_.line({&empty, &word}, 14, 3), {50, 50});
  EXPECT_THAT(content_.take(), HasSubstr("(   x)Tj"));
}

TEST_F(Page, LeavesOutSpacesAtTheEndOfALine) {
  TextLayout layout = pieces_.words(*face_, "x", 14);
  const PlacedPiece placed{layout.pieces[0].piece, 4, 0};
  layout.pieces = {&placed, 1};
  show(layout, {50, 50});
  EXPECT_THAT(content_.take(), HasSubstr("(x)Tj"));
}

TEST_F(Page, SelectsAnotherFontForOtherGlyphs) {
  show(pieces_.line({&pieces_.shape(*face_, "a"), &pieces_.shape(*face_, "é"), &pieces_.shape(*face_, "b")}, 14),
       {50, 50});
  const std::string content = content_.take();
  EXPECT_THAT(content, HasSubstr("/F0 14 Tf (a )Tj\n/F1 14 Tf ("));
  EXPECT_THAT(content, HasSubstr(")Tj\n/F0 14 Tf (b)Tj\n"));
}

}  // namespace
}  // namespace chatsum::platform::system
