#include "hosts/device/report/PageTexts.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "platform/fake/TemporaryFolder.h"
#include "platform/foundation/Utf8.h"
#include "platform/system/SystemPlatform.h"
#include "tests/support/PinnedFonts.h"

namespace chatsum::device {
namespace {

constexpr double kPage = 642;
const std::string kLead = "(continued)\n";

class PageTextsTest : public ::testing::Test {
 protected:
  PageTextsTest() { platform::install(&system_->platform()); }
  ~PageTextsTest() override { platform::install(nullptr); }

  [[nodiscard]] static double heightOf(const std::string& text) {
    return platform::current()
        .graphics
        .sizeOfText(text, {"Verdana", 14}, {250, std::numeric_limits<float>::max()}, platform::LineBreakMode::kWordWrap)
        .height;
  }
  /// The text cut into pieces that fit, put together again.
  [[nodiscard]] std::string rejoined(const std::string& text) {
    std::string all;
    const std::vector<std::string> pieces = texts_.piecesOf(text);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      EXPECT_LE(heightOf(pieces[i]), kPage);
      if (i == 0) {
        all = pieces[i];
        continue;
      }
      EXPECT_TRUE(pieces[i].starts_with(kLead)) << pieces[i].substr(0, 40);
      std::string rest = pieces[i].substr(kLead.size());
      for (const char* mark : {"\u200E", "\u200F"}) {
        if (rest.starts_with(mark)) rest.erase(0, 3);
      }
      for (const std::string_view end : {"\r\n", "\n"}) {  // the end of a line ends a piece as well
        if (text.compare(all.size(), end.size(), end) == 0) all += end;
      }
      all += rest;
    }
    return all;
  }

  test::PinnedFonts fonts_;
  platform::fake::TemporaryFolder folder_;
  std::unique_ptr<platform::system::SystemPlatform> system_ = [this] {
    platform::system::SystemOptions options;
    options.homeDirectory = folder_.path();
    return std::make_unique<platform::system::SystemPlatform>(std::move(options));
  }();
  PageTexts texts_;
};

std::string repeated(std::string_view text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST_F(PageTextsTest, OfAnyScriptLoseNothingWhenTheyAreCut) {
  for (const std::string& text :
       {repeated("some words of ordinary length. ", 400), std::string(30'000, 'x'), std::string(500, '\n'),
        repeated("line\n", 300), repeated("\r\n", 300), repeated("שלום לכולם 123 and Latin, ", 300),
        repeated("السلام عليكم", 500), repeated("漢字かな交じり文。", 400),
        repeated("👩‍👩‍👧‍👦🇵🇹👍🏽", 200), repeated("ภาษาไทยไม่มีช่องว่าง", 200),
        repeated("e\u0301\u0302\u0303", 4'000), repeated("﷽", 300), repeated("\u200D", 20'000),
        repeated("मराठी और हिन्दी ", 300), repeated("\t", 2'000)}) {
    EXPECT_EQ(rejoined(text), text) << text.substr(0, 30);
  }
}

TEST_F(PageTextsTest, AreTheirOnlyPieceWhenTheyFit) {
  EXPECT_EQ(texts_.piecesOf("Hello"), std::vector<std::string>{"Hello"});
  EXPECT_EQ(texts_.piecesOf(""), std::vector<std::string>{""});
}

TEST_F(PageTextsTest, GoOnInTheDirectionOfTheirLine) {
  // One line from right to left, of which the second piece begins with Latin words.
  const std::vector<std::string> pieces = texts_.piecesOf(repeated("שלום ", 30) + repeated("Latin words ", 400));
  ASSERT_GT(pieces.size(), 2U);
  EXPECT_TRUE(pieces[1].starts_with(kLead + "\u200F")) << pieces[1].substr(0, 40);
  EXPECT_TRUE(pieces[2].starts_with(kLead + "\u200F")) << pieces[2].substr(0, 40);
  const std::vector<std::string> other = texts_.piecesOf("Latin " + repeated("שלום ", 800));
  ASSERT_GT(other.size(), 1U);
  EXPECT_TRUE(other[1].starts_with(kLead + "\u200E")) << other[1].substr(0, 40);
  const std::vector<std::string> same = texts_.piecesOf(repeated("שלום ", 800));
  EXPECT_TRUE(same.at(1).starts_with(kLead + "ש")) << same[1].substr(0, 40);
}

TEST_F(PageTextsTest, AreNeverTallerThanAPageWhenAQuickLookPassesThem) {
  std::mt19937 random(7);
  const std::vector<std::string> letters = {"W", "@",  "%",      " ",      "\n", "a", "é", "Ж", "ש",
                                            "ﻻ", "漢", "한",     "﷽",      "⸻",  "👍", "𒀱", "ཧྐྵ", "ༀ",
                                            "ॐ", "ஶ்ரீ", "\u2028", "\u0085", "\t", "ꦀ",  "ဩ"};
  int passed = 0;
  for (int round = 0; round < 4'000; ++round) {
    std::string text;
    const std::size_t kinds = 1 + random() % 4;
    std::vector<std::string> chosen;
    for (std::size_t i = 0; i < kinds; ++i) chosen.push_back(letters[random() % letters.size()]);
    for (std::size_t i = random() % 260; i > 0; --i) text += chosen[random() % kinds];
    if (PageTexts::mayBeTall(text)) continue;
    ++passed;
    ASSERT_LE(heightOf(text), kPage) << text;
  }
  EXPECT_GT(passed, 300);
  EXPECT_FALSE(PageTexts::mayBeTall("An ordinary message, not long and not short, as people write them all day."));
  EXPECT_TRUE(PageTexts::isTall(std::string(100, '\n') + "x"));
}

}  // namespace
}  // namespace chatsum::device
