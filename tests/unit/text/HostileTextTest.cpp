#include "platform/system/text/Typesetter.h"
#include "tests/unit/text/TextFixture.h"

namespace chatsum::platform::system {
namespace {

class HostileTextTest : public TextEngineTest {
 protected:
  /// In every mode and at several widths it comes to an end, within limits.
  void survive(std::string_view text) {
    for (int mode = 0; mode <= 5; ++mode) {
      for (const double width : {0.0, 1.0, 100.0, kUnlimited}) {
        const TextLayout layout = layOut(text, width, static_cast<LineBreakMode>(mode));
        EXPECT_TRUE(std::isfinite(layout.size.width) && std::isfinite(layout.size.height));
        const TextLayout line = layOutLine(text, width, static_cast<LineBreakMode>(mode));
        EXPECT_LE(line.lines.size(), 1U);
      }
    }
  }
  static std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) result += text;
    return result;
  }
};

TEST_F(HostileTextTest, MalformedBytesShowReplacements) {
  EXPECT_EQ(linesOf(layOut("a\xFF"
                           "b")),
            Lines{"a\uFFFDb"});
  EXPECT_EQ(linesOf(layOut("\xED\xA0\x80")), Lines{"\uFFFD\uFFFD\uFFFD"});
  EXPECT_EQ(linesOf(layOut("cut \xE2\x82")), Lines{"cut \uFFFD"});
  survive("\xC0\x80\xF8\x88\x80\x80\x80 \xE2\x28\xA1");
}

TEST_F(HostileTextTest, ThousandsOfMarksOnOneLetter) {
  const std::string text = "a" + repeated("\u0301", 10'000) + " b";
  survive(text);
  EXPECT_LT(layOut(text, 250).size.width, 251);
}

TEST_F(HostileTextTest, MarksWithoutALetter) {
  survive("\u0301 \u0301\u0301 x \u200D \uFE0F\u20E3 \u0651");
  survive(repeated(" \u0301", 500));
}

TEST_F(HostileTextTest, ControlsOfDirection) {
  survive(repeated("\u202E", 200) + "abc" + repeated("\u2067", 200) + "שלום" + repeated("\u202C\u2069", 300));
  survive("\u202Eabc\u202C def \u2066\u2069\u2068");
  EXPECT_EQ(linesOf(layOut("\u202Eabc def")), Lines{"‹def› ‹\u202Eabc›"});
  survive("א" + repeated("(", 3000) + repeated("]", 3000));
}

TEST_F(HostileTextTest, JoinersAndFlagsWithoutEnd) {
  survive(repeated("👨\u200D", 2000));
  survive(repeated("🇩", 3001));
  survive(repeated("\u200D", 3000) + "x");
}

TEST_F(HostileTextTest, NothingButSpacesTabsOrNewlines) {
  survive(std::string(20'000, ' '));
  survive(std::string(3'000, '\t'));
  survive(std::string(3'000, '\n'));
  survive(repeated(" \t", 2'000));
}

TEST_F(HostileTextTest, LongWordsTakeLinearTime) {
  std::string word;
  unsigned seed = 1;
  while (word.size() < 1'000'000) {
    seed = seed * 1103515245 + 12345;
    word += static_cast<char>('a' + (seed >> 16) % 26);
  }
  std::string shown;
  for (const auto& line : linesOf(layOut(word, 250))) shown += line;
  EXPECT_EQ(shown, word);
  EXPECT_EQ(linesOf(layOut(word, 250, LineBreakMode::kTailTruncation)).size(), 1U);
}

TEST_F(HostileTextTest, LongTextsOfOtherScriptsLoseNothing) {
  for (const char* part : {"日本語", "สวัสดีชาวโลก", "नमस्ते ", "😀", "e\u0301\u0323"}) {
    const std::string text = repeated(part, 20'000 / std::string_view(part).size());
    std::string shown, expected;
    for (const auto& line : linesOf(layOut(text, 250))) shown += line;
    for (const char c : text) expected += c == ' ' ? "" : std::string(1, c);
    shown.erase(std::remove(shown.begin(), shown.end(), ' '), shown.end());
    EXPECT_EQ(shown, expected);
  }
}

// A cache that is full from the start: words are put together from clusters, and look the same. (Only where a long word
// is cut the kerning stays that would have been between the lines.)
TEST_F(HostileTextTest, AFullCacheChangesNothingThatShows) {
  FontLibrary fonts;
  PieceCache pieces(0);
  WordTable words(pieces.bytes());
  Typesetter full(fonts, pieces, words);
  LayoutStore store;
  for (const char* text : {"AV Tomorrow, office well-known", "שלום עולם abc", "سلام عليكم", "नमस्ते दुनिया",
                           "😀 ok 👨‍👩‍👧‍👦"}) {
    for (const double width : {90.0, 150.0, kUnlimited}) {
      store.clear();
      full.layOut(text, font_, width, LineBreakMode::kWordWrap, false, store);
      const TextLayout kept = layOut(text, width);
      const TextLayout loose = store[0];
      EXPECT_EQ(loose.size, kept.size) << text;
      ASSERT_EQ(loose.lines.size(), kept.lines.size());
      for (std::size_t i = 0; i < kept.lines.size(); ++i) {
        EXPECT_NEAR(loose.lines[i].width, kept.lines[i].width, 0.001) << text;
        std::vector<std::uint32_t> glyphs[2];
        const TextLayout* layouts[] = {&kept, &loose};
        for (int k = 0; k < 2; ++k) {
          for (std::uint32_t p = layouts[k]->lines[i].begin; p < layouts[k]->lines[i].end; ++p) {
            for (const Glyph& glyph : layouts[k]->pieces[p].piece->glyphs) glyphs[k].push_back(glyph.id);
          }
        }
        EXPECT_EQ(glyphs[0], glyphs[1]) << text;
      }
    }
  }
}

}  // namespace
}  // namespace chatsum::platform::system
