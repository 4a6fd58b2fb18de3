#include "tests/unit/text/TextFixture.h"

namespace chatsum::platform::system {
namespace {

class WrappingTest : public TextEngineTest {
 protected:
  double widthOf(std::string_view text) { return layOut(text).size.width; }
};

TEST_F(WrappingTest, EmptyTextHasNoSize) {
  EXPECT_EQ(layOut("").size, Size{});
  EXPECT_TRUE(layOut("").lines.empty());
}

TEST_F(WrappingTest, LinesHoldTheWordsThatFit) {
  const double width = widthOf("one two");
  EXPECT_EQ(linesOf(layOut("one two three four", width)), (Lines{"one two", "three", "four"}));
  EXPECT_EQ(layOut("one two three four", width).size.height, 3 * 17);
  EXPECT_EQ(linesOf(layOut("one two", width)), Lines{"one two"});
  EXPECT_EQ(linesOf(layOut("one two", width - 1)), (Lines{"one", "two"}));
  expectSound("one two three four", 60);
}

TEST_F(WrappingTest, SpacesAtALinesEndHang) {
  const double width = widthOf("one");
  EXPECT_EQ(linesOf(layOut("one         two", width)), (Lines{"one", "two"}));
  EXPECT_EQ(layOut("one     ").size.width, width);
  EXPECT_EQ(linesOf(layOut("  one")), Lines{"  one"});
  EXPECT_EQ(layOut("   ").size, (Size{0, 17}));
}

TEST_F(WrappingTest, SpacesInsideALineStay) {
  const TextLayout layout = layOut("one   two");
  ASSERT_EQ(layout.pieces.size(), 2U);
  EXPECT_EQ(layout.pieces[0].spaces, 3U);
  EXPECT_EQ(layout.pieces[1].spaces, 0U);
}

TEST_F(WrappingTest, LinesMayEndInsideAWordWhereTheRulesSay) {
  EXPECT_EQ(linesOf(layOut("well-known", widthOf("known") + 1)), (Lines{"well-", "known"}));
  EXPECT_EQ(linesOf(layOut("don't (stop) now!", 60)), (Lines{"don't", "(stop)", "now!"}));
  // A no-break space holds on to both neighbours, and so does punctuation that must not begin a line.
  EXPECT_EQ(linesOf(layOut("a 10\u00A0km", widthOf("10\u00A0km") + 1)), (Lines{"a", "10\u00A0km"}));
  EXPECT_EQ(linesOf(layOut("one two !", widthOf("one two") + 1)), (Lines{"one", "two !"}));
  EXPECT_EQ(linesOf(layOut("one two :)", widthOf("one two") + 1)), (Lines{"one", "two :)"}));
  EXPECT_EQ(linesOf(layOut("one ( two", widthOf("one (") + 1)), (Lines{"one", "( two"}));
}

TEST_F(WrappingTest, LongWordsBeginOnALineOfTheirOwnAndAreCut) {
  const Lines lines = linesOf(layOut("a wwwwwwwwww b", widthOf("wwww")));
  EXPECT_EQ(lines, (Lines{"a", "wwww", "wwww", "ww b"}));
  expectSound("a wwwwwwwwww b", 50);
  expectSound(std::string(1000, 'q') + " end", 100);
}

TEST_F(WrappingTest, LongWordsAreNotCutInsideClusters) {
  std::string word;
  for (int i = 0; i < 20; ++i) word += "e\u0301";
  for (const auto& line : linesOf(layOut(word, 40))) EXPECT_EQ(line.size() % 3, 0U) << line;
  std::string families;
  for (int i = 0; i < 10; ++i) families += "👨‍👩‍👧‍👦";
  EXPECT_EQ(layOut(families, 50).lines.size(), 5U);
}

TEST_F(WrappingTest, CharacterWrapFillsEveryLine) {
  const double width = widthOf("one t");
  EXPECT_EQ(linesOf(layOut("one two three", width, LineBreakMode::kCharacterWrap)), (Lines{"one t", "wo t", "hree"}));
  expectSound("one two three four five", 33, LineBreakMode::kCharacterWrap);
}

TEST_F(WrappingTest, NewlinesEndLines) {
  for (const char* newline : {"\n", "\r", "\r\n", "\u2028", "\u2029", "\u0085", "\f", "\v"}) {
    EXPECT_EQ(linesOf(layOut(std::string("one") + newline + "two")), (Lines{"one", "two"}));
  }
  EXPECT_EQ(linesOf(layOut("one\n\ntwo\n")), (Lines{"one", "", "two"}));
  EXPECT_EQ(layOut("\n").size, (Size{0, 17}));
  EXPECT_EQ(layOut("\n\r\n\r").size, (Size{0, 3 * 17}));
}

TEST_F(WrappingTest, TabsGoToTheNextStop) {
  const TextLayout layout = layOut("a\tb\t\tc");
  ASSERT_EQ(layout.pieces.size(), 3U);
  const double a = layOut("a").lines[0].width, b = layOut("b").lines[0].width, c = layOut("c").lines[0].width;
  const TextLayout again = layOut("a\tb\t\tc");
  EXPECT_NEAR(again.pieces[1].gap, 28 - a, 0.001);
  EXPECT_NEAR(again.pieces[2].gap, 56 - b, 0.001);
  EXPECT_NEAR(again.lines[0].width, 84 + c, 0.001);
  EXPECT_EQ(linesOf(again), Lines{"a→b→c"});
  EXPECT_EQ(linesOf(layOut("a\tb\tc", 40)), (Lines{"a→b", "c"}));
  expectSound("one\ttwo\tthree four\tfive", 90);
}

TEST_F(WrappingTest, ControlsShowNothing) {
  EXPECT_EQ(linesOf(layOut(std::string_view("a\0b\x07\x7F"
                                            "c\u009F",
                                            8))),
            Lines{"abc"});
  EXPECT_EQ(layOut("\x01\x02").size, Size{});
  EXPECT_EQ(layOut("a\u200B\u2060\uFEFF").lines[0].width, layOut("a").lines[0].width);
}

TEST_F(WrappingTest, OneLineTakesNewlinesForSpaces) {
  EXPECT_EQ(linesOf(layOutLine("one\r\ntwo\nthree", kUnlimited, LineBreakMode::kWordWrap)), Lines{"one two three"});
  const double width = widthOf("one two th");
  EXPECT_EQ(linesOf(layOutLine("one two three", width, LineBreakMode::kWordWrap)), Lines{"one two"});
  EXPECT_EQ(linesOf(layOutLine("one two three", width, LineBreakMode::kCharacterWrap)), Lines{"one two th"});
  EXPECT_EQ(linesOf(layOutLine("one two three", width, LineBreakMode::kClip)), Lines{"one two th"});
  EXPECT_EQ(layOutLine("one two three", width, LineBreakMode::kWordWrap).size.height, 17);
}

TEST_F(WrappingTest, ClippedLinesHoldTheCharactersThatFit) {
  const double width = widthOf("one t");
  EXPECT_EQ(linesOf(layOut("one two\nsix", width, LineBreakMode::kClip)), (Lines{"one t", "six"}));
  EXPECT_EQ(linesOf(layOut("12", 762, LineBreakMode::kClip)), Lines{"12"});
}

TEST_F(WrappingTest, TruncationShowsWhereSomethingIsLeftOut) {
  const std::string text = "alpha beta gamma delta";
  const double width = widthOf("alpha…delta");
  EXPECT_EQ(linesOf(layOut(text, width, LineBreakMode::kMiddleTruncation)), Lines{"alpha…delta"});
  EXPECT_EQ(linesOf(layOut(text, widthOf("alpha be…"), LineBreakMode::kTailTruncation)), Lines{"alpha be…"});
  EXPECT_EQ(linesOf(layOut(text, widthOf("…ma delta"), LineBreakMode::kHeadTruncation)), Lines{"…ma delta"});
  EXPECT_EQ(linesOf(layOut(text, 500, LineBreakMode::kTailTruncation)), Lines{text});
  EXPECT_EQ(linesOf(layOut(text + "\nb", 60, LineBreakMode::kTailTruncation)), (Lines{"alpha…", "b"}));
  EXPECT_EQ(linesOf(layOut(text, 0, LineBreakMode::kTailTruncation)), Lines{"…"});
  for (const auto mode :
       {LineBreakMode::kTailTruncation, LineBreakMode::kMiddleTruncation, LineBreakMode::kHeadTruncation}) {
    for (const double limit : {20, 45, 77, 100, 140}) expectSound(text, limit, mode);
  }
}

TEST_F(WrappingTest, WidthsThatAreNoneGiveACharacterOnEachLine) {
  for (const double width : {0.0, -5.0, -kUnlimited, std::nan("")}) {
    EXPECT_EQ(linesOf(layOut("ab c", width)), (Lines{"a", "b", "c"}));
    EXPECT_EQ(layOut("ab c", width).size.height, 3 * 17);
  }
}

TEST_F(WrappingTest, FontSizesThatAreNoneGiveNoSize) {
  for (const double size : {0.0, -3.0, std::nan(""), -kUnlimited}) {
    font_.size = size;
    EXPECT_EQ(layOut("text").size, Size{});
  }
  font_.size = kUnlimited;
  EXPECT_GT(layOut("text", 250).size.height, 0);
}

}  // namespace
}  // namespace chatsum::platform::system
