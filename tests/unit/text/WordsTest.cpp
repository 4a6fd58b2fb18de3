#include <unicode/uchar.h>

#include <random>
#include <thread>

#include "platform/system/text/CharacterTraits.h"
#include "platform/system/text/Typesetter.h"
#include "tests/unit/text/TextFixture.h"

namespace chatsum::platform::system {
namespace {

// Texts are laid out word by word where that is possible, and through ICU as a whole otherwise. Both must agree.
class WordsTest : public ::testing::Test {
 protected:
  WordsTest() { whole_.avoidWords(); }

  void expectSame(const std::string& text, double width, LineBreakMode mode = LineBreakMode::kWordWrap) {
    LayoutStore one, other;
    words_.layOut(text, font_, width, mode, false, one);
    whole_.layOut(text, font_, width, mode, false, other);
    ASSERT_EQ(linesOf(one[0]), linesOf(other[0])) << "\"" << text << "\" within " << width;
    EXPECT_EQ(one[0].size, other[0].size) << text;
    ASSERT_EQ(one[0].pieces.size(), other[0].pieces.size()) << text;
    for (std::size_t i = 0; i < one[0].pieces.size(); ++i) {
      EXPECT_EQ(one[0].pieces[i].piece, other[0].pieces[i].piece) << text;
      EXPECT_EQ(one[0].pieces[i].spaces, other[0].pieces[i].spaces) << text;
    }
  }

  /// Random texts of these tokens.
  void expectSameOf(const std::vector<std::string>& tokens, int count) {
    std::mt19937 random(7);
    for (int i = 0; i < count && !HasFatalFailure(); ++i) {
      std::string text;
      const std::size_t size = 1 + random() % 25;
      for (std::size_t k = 0; k < size; ++k) text += tokens[random() % tokens.size()];
      expectSame(text, 20 + static_cast<double>(random() % 200));
    }
  }

  test::PinnedFonts fonts_;
  UIFont font_{"Verdana", 14};
  FontLibrary library_;
  PieceCache pieces_;
  WordTable table_{pieces_.bytes()};
  Typesetter words_{library_, pieces_, table_}, whole_{library_, pieces_, table_};
};

TEST_F(WordsTest, AsciiIsTheSameWordByWord) {
  std::vector<std::string> characters;
  for (char c = ' '; c <= '~'; ++c) characters.emplace_back(1, c);
  for (int i = 0; i < 40; ++i) characters.emplace_back(" ");
  for (const char* word : {"word", "12.50", "don't", "a", "Be"}) characters.emplace_back(word);
  expectSameOf(characters, 6000);
}

TEST_F(WordsTest, WesternTextIsTheSameWordByWord) {
  expectSameOf(
      {" ", " ", " ", " ",  " ",   "  ",    "word", "größer", "où",      "Ωμέγα",  "слово",       "“",      "”",
       "‘", "’", "«", "»",  "—",   "–",     "…",    "(",      ")",       "[",      "]",           "!",      "?",
       ";", ":", ",", ".",  "/",   "-",     "\"",   "'",      "\u00A0",  "\u00AD", "€",           "£",      "$",
       "%", "°", "№", "12", "3.5", "1,000", "½",    "×",      "e\u0301", "\u200B", "\u2060",      "\u2011", "·",
       "¿", "¡", "{", "}",  "|",   "\\",    "@",    "#",      "&",       "*",      "\u2014\u2014"},
      6000);
}

TEST_F(WordsTest, OtherScriptsAreTheSameWordByWord) {
  expectSameOf({" ",
                " ",
                " ",
                "word",
                "日本語",
                "です",
                "。",
                "、",
                "「",
                "」",
                "한국어",
                "สวัสดี",
                "ไทย",
                "नमस्ते",
                "।",
                "😀",
                "👨‍👩‍👧‍👦",
                "🇩🇪",
                "❤️",
                "1️⃣",
                "!",
                "?",
                "(",
                ")",
                "\"",
                "ー",
                "っ",
                "ァ",
                "々",
                "〜",
                "%",
                "12",
                "-",
                "က",
                "ខ្មែរ",
                "\u3000",
                "\uFE0F"},
               4000);
}

TEST_F(WordsTest, TextFromTheRightIsTheSameWordByWord) {
  expectSameOf(
      {" ",      " ", " ", " ", "  ", "שלום", "עולם", "word",   "مرحبا",  "سلام",   "12",     "٣٤",     "3.5",
       "!",      "?", "،", ".", "(",  ")",    "-",    "\"",     "״",      "/",      "\u200E", "\u200F", "\u202B",
       "\u202C", "😀", "é", ":", "%",  "€",    "日本", "\u064B", "\u2067", "\u2069", "\u202E"},
      4000);
}

TEST_F(WordsTest, LongWordsAreTheSameWordByWord) {
  std::mt19937 random(3);
  for (int i = 0; i < 60; ++i) {
    std::string text = "begin ";
    const std::size_t size = 200 + random() % 1500;
    for (std::size_t k = 0; k < size; ++k) text += static_cast<char>('a' + random() % 26);
    expectSame(text + " end", 250);
    expectSame(text + " end", 250, LineBreakMode::kCharacterWrap);
    expectSame(text + " end", 250, LineBreakMode::kMiddleTruncation);
  }
}

TEST_F(WordsTest, LongParagraphsAreTheSameWordByWord) {
  std::mt19937 random(5);
  std::string text;
  while (text.size() < 60'000) {
    for (auto k = 1 + random() % 9; k > 0; --k) text += static_cast<char>('a' + random() % 26);
    text += random() % 7 == 0 ? " ! " : " ";
  }
  expectSame(text, 250);
}

TEST_F(WordsTest, EveryCharacterThatRunsFromTheRightIsKnown) {
  for (char32_t c = 0; c <= 0x10FFFF; ++c) {
    switch (u_charDirection(static_cast<UChar32>(c))) {
      case U_RIGHT_TO_LEFT:
      case U_RIGHT_TO_LEFT_ARABIC:
      case U_ARABIC_NUMBER:
      case U_LEFT_TO_RIGHT_EMBEDDING:
      case U_LEFT_TO_RIGHT_OVERRIDE:
      case U_LEFT_TO_RIGHT_ISOLATE:
      case U_RIGHT_TO_LEFT_EMBEDDING:
      case U_RIGHT_TO_LEFT_OVERRIDE:
      case U_RIGHT_TO_LEFT_ISOLATE:
      case U_FIRST_STRONG_ISOLATE:
      case U_POP_DIRECTIONAL_FORMAT:
      case U_POP_DIRECTIONAL_ISOLATE:
        EXPECT_TRUE(mayRunRightToLeft(c)) << static_cast<unsigned>(c);
        break;
      default:
        break;
    }
  }
  for (const char32_t c : U"aé€’…—😀日ไ️\u0301") EXPECT_FALSE(mayRunRightToLeft(c));
}

// Words compare short texts by their hashes alone.
TEST_F(WordsTest, ShortTextsHaveDifferentHashes) {
  std::mt19937_64 random(9);
  for (std::size_t size = 1; size <= kDistinctHash; ++size) {
    for (int i = 0; i < 20'000; ++i) {
      std::string one(size, 'a'), other;
      for (char& c : one) c = static_cast<char>(random());
      // Neighbours, and neighbours of a hash that mixes badly.
      other = one;
      other[random() % size] = static_cast<char>(random());
      EXPECT_EQ(hashOf(one) == hashOf(other), one == other);
      EXPECT_EQ(mixHash(hashOf(one), 17) == mixHash(hashOf(other), 17), one == other);
    }
  }
}

TEST(ThreadsTest, SeveralThreadsMayLayOutTheSameWords) {
  const test::PinnedFonts fonts;
  TextEngine engine;
  const std::vector<std::string> texts = {
      "one two three well-known words", "שלום עולם 123",  "日本語です。", "a 😀 b", "سلام عليكم", "नमस्ते",
      "(one) two: \"three\" :)",        "tab\there\nline"};
  const auto layOutAll = [&](std::vector<std::vector<std::string>>& lines, std::size_t first) {
    LayoutStore store;
    for (std::size_t i = 0; i < 400; ++i) {
      store.clear();
      const std::string text = texts[(first + i) % texts.size()] + " w" + std::to_string(i / 8);
      engine.layOut(text, {i % 3 == 0 ? "Helvetica-Bold" : "Verdana", 14}, 80, LineBreakMode::kWordWrap, store);
      lines[(first + i) % texts.size()] = linesOf(store[0]);
    }
  };
  std::vector<std::vector<std::vector<std::string>>> results(4, std::vector<std::vector<std::string>>(texts.size()));
  {
    std::vector<std::jthread> threads;
    for (std::size_t t = 0; t < results.size(); ++t) {
      threads.emplace_back([&, t] { layOutAll(results[t], 0); });
    }
  }
  for (const auto& result : results) EXPECT_EQ(result, results[0]);
}

TEST(ThreadsTest, EachDistinctWordIsOnePiece) {
  const test::PinnedFonts fonts;
  TextEngine engine;
  LayoutStore stores[2];
  for (LayoutStore& store : stores) {
    std::jthread([&] { engine.layOut("word by word", {"Verdana", 14}, 250, LineBreakMode::kWordWrap, store); }).join();
  }
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(stores[0][0].pieces[i].piece, stores[1][0].pieces[i].piece);
  EXPECT_EQ(stores[0][0].pieces[0].piece, stores[0][0].pieces[2].piece);
}

TEST(ThreadsTest, AThreadMayUseOneEngineAfterAnother) {
  const test::PinnedFonts fonts;
  double width = 0;
  for (int i = 0; i < 3; ++i) {
    TextEngine engine, other;
    LayoutStore store;
    engine.layOut("text", {"Verdana", 14}, 250, LineBreakMode::kWordWrap, store);
    other.layOut("text", {"Verdana", 14}, 250, LineBreakMode::kWordWrap, store);
    engine.layOut("text", {"Verdana", 14}, 250, LineBreakMode::kWordWrap, store);
    for (std::size_t k = 0; k < store.count(); ++k) {
      if (width == 0) width = store[k].size.width;
      EXPECT_EQ(store[k].size.width, width);
    }
  }
}

}  // namespace
}  // namespace chatsum::platform::system
