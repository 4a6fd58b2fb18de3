#include <set>

#include "tests/unit/text/TextFixture.h"

namespace chatsum::platform::system {
namespace {

class ScriptsTest : public TextEngineTest {
 protected:
  static bool isMissing(const Piece& piece) {
    for (const Glyph& glyph : piece.glyphs) {
      if (glyph.id == 0) return true;
    }
    return false;
  }
  const Piece& onlyPiece(std::string_view text) {
    const TextLayout layout = layOut(text);
    EXPECT_EQ(layout.pieces.size(), 1U) << text;
    return *layout.pieces[0].piece;
  }
  const std::string& faceOf(std::string_view text) { return layOut(text).pieces[0].piece->face->postScriptName(); }
};

TEST_F(ScriptsTest, HebrewRunsFromTheRight) {
  EXPECT_EQ(linesOf(layOut("שלום עולם")), Lines{"‹עולם› ‹שלום›"});
  // The paragraph begins with Latin, so the Hebrew words stand to its right.
  EXPECT_EQ(linesOf(layOut("say שלום עולם 123 now")), Lines{"say 123 ‹עולם› ‹שלום› now"});
  EXPECT_EQ(linesOf(layOut("שלום abc 42")), Lines{"abc 42 ‹שלום›"});
  EXPECT_EQ(linesOf(layOut("(שלום)")), Lines{"‹(שלום)›"});
}

TEST_F(ScriptsTest, SpacesBetweenWordsFromTheRightAreOfTheirFaceAndAsWideAsOthers) {
  for (const char* text : {"שלום עולם טוב", "سلام  عليكم يا"}) {
    const TextLayout layout = layOut(text);
    ASSERT_EQ(layout.pieces.size(), 3U) << text;  // no piece for spaces alone, in another face
    EXPECT_EQ(layout.pieces[0].spaces, 1U) << text;
    EXPECT_GE(layout.pieces[1].spaces, 1U) << text;
    EXPECT_NEAR(drawnWidth(layout, layout.lines[0]), static_cast<double>(layout.lines[0].width), 0.01) << text;
  }
  // Beside words that run the other way they are of the line's face.
  EXPECT_EQ(linesOf(layOut("a שלום b")), Lines{"a ‹שלום› b"});
  EXPECT_FALSE(layOut("a שלום b").pieces[2].piece->isRightToLeft);
}

TEST_F(ScriptsTest, EachLineIsPutInOrderByItself) {
  const Lines lines = linesOf(layOut("אחת שתיים שלוש ארבע", 75));
  EXPECT_EQ(lines, (Lines{"‹שתיים› ‹אחת›", "‹ארבע› ‹שלוש›"}));
  expectSound("אחת שתיים one two שלוש ארבע 1234 three", 75);
  expectSound("אחת\tשתיים", 100);
}

TEST_F(ScriptsTest, ParagraphsHaveTheirOwnDirection) {
  EXPECT_EQ(linesOf(layOut("ab שלום\nשלום ab")), (Lines{"ab ‹שלום›", "ab ‹שלום›"}));
}

TEST_F(ScriptsTest, ArabicLettersJoin) {
  const Piece& word = onlyPiece("سلام");
  EXPECT_FALSE(isMissing(word));
  EXPECT_TRUE(word.isRightToLeft);
  std::set<std::uint32_t> alone;
  for (const char* letter : {"س", "ل", "ا", "م"}) alone.insert(onlyPiece(letter).glyphs[0].id);
  std::size_t joined = 0;
  for (const Glyph& glyph : onlyPiece("سلام").glyphs) joined += alone.contains(glyph.id) ? 0 : 1;
  EXPECT_GE(joined, 2U);  // all but the last letter, which stands alone behind lam-alef
  EXPECT_LT(onlyPiece("سلام").glyphs.size(), 5U);
}

TEST_F(ScriptsTest, MarksGoWithTheirLetter) {
  EXPECT_EQ(onlyPiece("e\u0301").glyphs.size(), 1U);
  const Piece& stacked = onlyPiece("x\u0301\u0323");
  EXPECT_EQ(stacked.width, onlyPiece("x").width);
  for (const Glyph& glyph : onlyPiece("x\u0301\u0323").glyphs) EXPECT_EQ(glyph.cluster, 0U);
}

TEST_F(ScriptsTest, HindiFormsConjuncts) {
  const Piece& word = onlyPiece("क्षि");
  EXPECT_FALSE(isMissing(word));
  EXPECT_LT(word.glyphs.size(), 4U);
  EXPECT_NE(word.face->postScriptName().find("Devanagari"), std::string::npos);
}

TEST_F(ScriptsTest, ThaiLinesEndBetweenWordsOfTheDictionary) {
  const TextLayout layout = layOut("สวัสดีชาวโลก");
  std::vector<std::string> words;
  for (const PlacedPiece& placed : layout.pieces) words.emplace_back(placed.piece->text);
  EXPECT_EQ(words, (Lines{"สวัสดี", "ชาว", "โลก"}));
  expectSound("สวัสดีชาวโลก สวัสดีชาวโลก", 60);
}

TEST_F(ScriptsTest, JapaneseLinesDoNotBeginWithAFullStop) {
  const double width = layOut("日本語").size.width;
  EXPECT_EQ(linesOf(layOut("日本語です。", width)), (Lines{"日本語", "です。"}));
  EXPECT_EQ(linesOf(layOut("日本語。", width)), (Lines{"日本", "語。"}));
}

TEST_F(ScriptsTest, HanFormsFollowTheTextAround) {
  EXPECT_EQ(faceOf("骨"), "NotoSansCJKjp-Regular");
  EXPECT_EQ(faceOf("骨 한국어"), "NotoSansCJKkr-Regular");
  EXPECT_EQ(faceOf("骨 ㄅㄆ"), "NotoSansCJKtc-Regular");
  EXPECT_EQ(faceOf("骨 ひらがな"), "NotoSansCJKjp-Regular");
}

TEST_F(ScriptsTest, HanFormsFollowTheLanguageOfTheEnvironment) {
  setenv("LC_ALL", "zh_CN.UTF-8", 1);
  EXPECT_EQ(faceOf("骨 ひらがな"), "NotoSansCJKsc-Regular");
}

TEST_F(ScriptsTest, EmojiAreOnePictureEach) {
  for (const char* text : {"😀", "👨‍👩‍👧‍👦", "👍🏽", "🇩🇪", "1️⃣", "#⃣", "❤️",
                           "❤️‍🔥", "🏴󠁧󠁢󠁳󠁣󠁴󠁿", "☺️"}) {
    const Piece& piece = onlyPiece(text);
    EXPECT_TRUE(piece.face->hasColorPictures()) << text;
    EXPECT_EQ(piece.glyphs.size(), 1U) << text;
    EXPECT_FALSE(isMissing(piece)) << text;
  }
}

TEST_F(ScriptsTest, SymbolsAreTextUnlessTheyAskForAPicture) {
  for (const char* text : {"☺", "❤", "1", "#", "©", "☺\uFE0E", "⌚\uFE0E"}) {
    EXPECT_FALSE(onlyPiece(text).face->hasColorPictures()) << text;
  }
}

TEST_F(ScriptsTest, EmojiStandInTheMiddleOfWords) {
  EXPECT_EQ(linesOf(layOut("well😀done")), Lines{"well😀done"});
  expectSound("great 😀😀😀 news 👨‍👩‍👧‍👦, really 🎉!", 70);
}

TEST_F(ScriptsTest, EveryScriptOfTheFontsIsShown) {
  for (const char* text :
       {"Ελληνικά", "Русский", "Հայերեն", "ქართული", "বাংলা", "தமிழ்", "తెలుగు", "ಕನ್ನಡ",  "മലയാളം", "සිංහල", "ไทย", "ລາວ",
        "မြန်မာ",    "አማርኛ",    "ភាសា",    "한국어",  "中文",  "ᏣᎳᎩ",  "اردو",  "فارسی", "𝕬",      "①",    "₹",   "𐌰"}) {
    const TextLayout layout = layOut(text);
    for (const PlacedPiece& placed : layout.pieces) {
      EXPECT_FALSE(isMissing(*placed.piece)) << text;
      EXPECT_EQ(placed.piece->face->postScriptName().find("Serif"), std::string::npos)
          << text << " " << placed.piece->face->postScriptName();
    }
  }
}

}  // namespace
}  // namespace chatsum::platform::system
