#include "tests/unit/CSReportsGenerator/ReportEngineTest.h"

namespace chatsum::test {
namespace {

using platform::LineBreakMode;
using platform::TextAlignment;
using platform::UIFont;

// Every letter measures half its font's size by its font's size.
class TextDrawing : public ReportEngineTest {
 protected:
  const UIFont font{"Verdana", 14};

  void expectMeasured(const std::string& text, Size limit, LineBreakMode mode) {
    ASSERT_EQ(fake.graphics.measured.size(), 1U);
    EXPECT_EQ(fake.graphics.measured[0].text, text);
    EXPECT_EQ(fake.graphics.measured[0].font, font);
    EXPECT_EQ(fake.graphics.measured[0].limit, limit);
    EXPECT_EQ(fake.graphics.measured[0].mode, mode);
    EXPECT_TRUE(fake.graphics.drawn.empty());
  }
  void expectDrawn(const std::string& text, const Rect& rect, LineBreakMode mode, TextAlignment alignment) {
    ASSERT_EQ(fake.graphics.drawn.size(), 1U);
    EXPECT_EQ(fake.graphics.drawn[0].text, text);
    EXPECT_EQ(fake.graphics.drawn[0].font, font);
    EXPECT_EQ(fake.graphics.drawn[0].rect, rect);
    EXPECT_EQ(fake.graphics.drawn[0].mode, mode);
    EXPECT_EQ(fake.graphics.drawn[0].alignment, alignment);
    EXPECT_TRUE(fake.graphics.measured.empty());
  }
};

TEST_F(TextDrawing, MeasuresWrappedTextWhenNoLineBreakModeIsGiven) {
  EXPECT_EQ(engine.sizeForString("four", font, {14, 100}), (Size{14, 28}));
  expectMeasured("four", {14, 100}, LineBreakMode::kWordWrap);
}

TEST_F(TextDrawing, MeasuresTextInTheGivenLineBreakMode) {
  EXPECT_EQ(engine.sizeForString("four", font, {250, 1e38}, LineBreakMode::kClip), (Size{28, 14}));
  expectMeasured("four", {250, 1e38}, LineBreakMode::kClip);
}

TEST_F(TextDrawing, MeasuresASingleLineByItsWidth) {
  EXPECT_EQ(engine.sizeForString("four", font, 21, LineBreakMode::kTailTruncation), (Size{21, 14}));
  expectMeasured("four", {21, 0}, LineBreakMode::kTailTruncation);
}

TEST_F(TextDrawing, DrawsASingleLineAtAPoint) {
  EXPECT_EQ(engine.drawString("four", Point{110, 50}, 250, font, LineBreakMode::kMiddleTruncation), (Size{28, 14}));
  expectDrawn("four", {{110, 50}, {250, 0}}, LineBreakMode::kMiddleTruncation, TextAlignment::kLeft);
}

TEST_F(TextDrawing, DrawsWrappedTextAtTheLeftWhenNothingElseIsAsked) {
  EXPECT_EQ(engine.drawString("four", Rect{{1, 2}, {14, 100}}, font), (Size{14, 28}));
  expectDrawn("four", {{1, 2}, {14, 100}}, LineBreakMode::kWordWrap, TextAlignment::kLeft);
}

TEST_F(TextDrawing, DrawsTextInTheGivenModeAndAlignment) {
  EXPECT_EQ(
      engine.drawString("four", Rect{{1, 2}, {14, 14}}, font, LineBreakMode::kCharacterWrap, TextAlignment::kRight),
      (Size{14, 14}));
  expectDrawn("four", {{1, 2}, {14, 14}}, LineBreakMode::kCharacterWrap, TextAlignment::kRight);
}

TEST_F(TextDrawing, CallsTheModesAndAlignmentsByThePlatformsNumbers) {
  EXPECT_EQ(static_cast<int>(LineBreakMode::kWordWrap), 0);
  EXPECT_EQ(static_cast<int>(TextAlignment::kLeft), 0);
}

class PageNumber : public ReportEngineTest {};

TEST_F(PageNumber, IsMeasuredInTheSystemFontWithinTheFootAndClipped) {
  engine.drawPageNumber(12);
  ASSERT_EQ(fake.graphics.measured.size(), 1U);
  EXPECT_EQ(fake.graphics.measured[0].text, "12");
  EXPECT_EQ(fake.graphics.measured[0].font, (UIFont{"", 12}));
  EXPECT_EQ(fake.graphics.measured[0].limit, (Size{762, 72}));
  EXPECT_EQ(fake.graphics.measured[0].mode, LineBreakMode::kClip);
}

TEST_F(PageNumber, StandsCentredNearTheFootInARectangleOfItsOwnSize) {
  engine.drawPageNumber(12);  // two letters: 12 by 12
  ASSERT_EQ(fake.graphics.drawn.size(), 1U);
  EXPECT_EQ(fake.graphics.drawn[0].text, "12");
  EXPECT_EQ(fake.graphics.drawn[0].font, (UIFont{"", 12}));
  EXPECT_EQ(fake.graphics.drawn[0].rect, (Rect{{375, 726}, {12, 12}}));
}

TEST_F(PageNumber, IsPrintedAsAPlainNumber) {
  for (const std::int64_t number : {0, -1, 1234567}) {
    engine.drawPageNumber(number);
    EXPECT_EQ(fake.graphics.drawn.back().text, std::to_string(number));
  }
}

}  // namespace
}  // namespace chatsum::test
