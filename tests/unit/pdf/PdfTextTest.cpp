// What programs read out of the text of a document, and what they say about its fonts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/foundation/Utf8.h"
#include "tests/unit/pdf/Pieces.h"
#include "tests/unit/pdf/Tools.h"

namespace chatsum::platform::system {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr auto kRightToLeft = Pieces::Direction::kRightToLeft;

/// Without the marks that tell the direction of a line, and the line breaks at the end.
std::string plain(std::string text) {
  for (const char* mark : {"\u202A", "\u202B", "\u202C"}) {
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark)) text.erase(at, 3);
  }
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

/// A page with one line of pieces.
PdfOnDisk pageOf(const std::function<TextLayout(Pieces&)>& make) {
  Pieces pieces;
  return PdfOnDisk([&](PdfDocument& document) {
    document.beginPage(kTestPage);
    document.showText(make(pieces), {50, 50}, 600, 0, kBlackColor);
  });
}

/// What is read of one word of a face.
std::string readBack(const std::string& path, const std::string& word,
                     Pieces::Direction direction = Pieces::Direction::kLeftToRight) {
  const auto face = openFace(path);
  const PdfOnDisk file =
      pageOf([&](Pieces& pieces) { return pieces.line({&pieces.shape(*face, word, direction)}, 18); });
  EXPECT_EQ(file.complaints(), "");
  EXPECT_EQ(file.rendererWarnings(), "");
  return plain(file.text(""));
}

TEST(PdfText, IsReadAsItWasWritten) {
  const auto face = openFace(fonts::kDejaVu);
  for (const std::string text :
       {"The (quick) \\brown\\ fox", "AVATAR To Ty", "naïve café Übergröße", "Ελληνικά Кириллица", "office"}) {
    const PdfOnDisk file = pageOf([&](Pieces& pieces) { return pieces.words(*face, text, 14); });
    EXPECT_EQ(plain(file.text()), text);
    EXPECT_EQ(file.complaints(), "");
    EXPECT_EQ(file.rendererWarnings(), "");
  }
}

TEST(PdfText, HoldsEveryAsciiCharacter) {
  const auto face = openFace(fonts::kDejaVu);
  std::string all;
  for (char c = 0x21; c < 0x7F; ++c) all += c;
  const PdfOnDisk file = pageOf([&](Pieces& pieces) { return pieces.words(*face, all, 10); });
  EXPECT_EQ(plain(file.text()), all);
}

TEST(PdfText, KeepsLigaturesAsTheirLetters) {
  EXPECT_EQ(readBack(fonts::kDejaVu, "ﬁfi"), "ﬁfi");  // the same glyph stands for both
  EXPECT_EQ(readBack(fonts::kNimbus, "officefi"), "officefi");
}

TEST(PdfText, KeepsMarksBehindTheirLetter) {
  EXPECT_EQ(readBack(fonts::kDejaVu, "x\u0323\u0302y"), "x\u0323\u0302y");
  for (const char* word : {"สวัสดีครับ", "ที่นี่", "รู้จัก", "กินข้าวแล้วหรือยัง"}) {
    EXPECT_EQ(readBack(fonts::kNoto + "NotoSansThai-Regular.ttf", word), word);
  }
}

TEST(PdfText, SpellsOutClustersWhoseGlyphsSayTooLittle) {
  EXPECT_EQ(readBack(fonts::kNoto + "NotoSansThai-Regular.ttf", "น้ำใจ"), "น้ำใจ");
  EXPECT_EQ(readBack(fonts::kNoto + "NotoSansDevanagari-Regular.ttf", "हिन्दी"), "हिन्दी");
  EXPECT_EQ(readBack(fonts::kNoto + "NotoSansDevanagari-Regular.ttf", "क्षत्रिय"), "क्षत्रिय");
}

TEST(PdfText, IsSpelledOutOnlyWhereItMustBe) {
  const auto face = openFace(fonts::kDejaVu), hindi = openFace(fonts::kNoto + "NotoSansDevanagari-Regular.ttf");
  const PdfOnDisk latin = pageOf([&](Pieces& pieces) { return pieces.words(*face, "naïve office e\u0301", 14); });
  EXPECT_THAT(latin.objects(), Not(HasSubstr("ActualText")));
  const PdfOnDisk other = pageOf([&](Pieces& pieces) { return pieces.words(*hindi, "हिन्दी", 14); });
  EXPECT_THAT(other.objects(), HasSubstr("ActualText"));
}

TEST(PdfText, FromRightToLeftIsReadInTheOrderOfWriting) {
  EXPECT_EQ(readBack(fonts::kNoto + "NotoSansHebrew-Regular.ttf", "שלום", kRightToLeft), "שלום");
  EXPECT_EQ(readBack(fonts::kDejaVu, "مرحبا", kRightToLeft), "مرحبا");
  EXPECT_EQ(readBack(fonts::kNoto + "NotoNaskhArabic-Regular.ttf", "بالعالم", kRightToLeft), "بالعالم");
}

TEST(PdfText, FromRightToLeftKeepsTheLettersOfLigatures) {
  EXPECT_EQ(readBack(fonts::kDejaVu, "سلام", kRightToLeft), "سلام");
  EXPECT_EQ(readBack(fonts::kDejaVu, "الأحد", kRightToLeft), "الأحد");
}

TEST(PdfText, FromRightToLeftGoesOverSeveralWords) {
  const auto face = openFace(fonts::kNoto + "NotoSansHebrew-Regular.ttf");
  const PdfOnDisk file = pageOf([&](Pieces& pieces) {
    // In the order they stand in, from the left.
    return pieces.line({&pieces.shape(*face, "עולם", kRightToLeft), &pieces.shape(*face, "שלום", kRightToLeft)}, 14);
  });
  EXPECT_EQ(plain(file.text("")), "שלום עולם");
}

TEST(PdfText, FromRightToLeftKeepsVowelsBehindTheirLetters) {
  EXPECT_EQ(readBack(fonts::kDejaVu, "ש\u05C1\u05B8לוֹם", kRightToLeft), "ש\u05C1\u05B8לוֹם");
}

/// Character by character the other way round.
std::string turned(const std::string& text) {
  std::string made;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    (void)utf8::next(text, at);
    made.insert(0, text, begin, at - begin);
  }
  return made;
}

/// The characters of the codes from the left, by a program that knows nothing of directions or spelling out.
std::string fromTheLeft(const std::string& path, const std::string& word) {
  const auto face = openFace(path);
  const PdfOnDisk file =
      pageOf([&](Pieces& pieces) { return pieces.line({&pieces.shape(*face, word, kRightToLeft)}, 18); });
  std::string read = run("mutool draw -q -F txt " + file.path()).text;
  std::erase(read, '\n');  // it begins a new line where a mark stands higher
  return read;
}

TEST(PdfText, FromRightToLeftIsInTheOrderThatReadersTurnAround) {
  for (const char* word : {"ש\u05C1\u05B8לוֹם", "עוֹלָם", "مَرحَبًا", "لَا", "عَلَيْكُمْ"}) {
    EXPECT_THAT(fromTheLeft(fonts::kDejaVu, word), HasSubstr(turned(word))) << word;
  }
}

TEST(PdfText, FromRightToLeftKeepsLettersApartFromWhatIsUnseen) {
  // A letter of its own before and after: its code must not come to mean what stands beside it.
  EXPECT_THAT(fromTheLeft(fonts::kDejaVu, "می\u200Cخواهم می"), HasSubstr(turned("میخواهم می")));
}

TEST(PdfText, MeansALetterAloneWhereSomethingUnseenStandsBesideIt) {
  const auto face = openFace(fonts::kDejaVu);
  const PdfOnDisk file = pageOf([&](Pieces& pieces) {
    return pieces.line(
        {&pieces.shape(*face, "a\u200Db"), &pieces.shape(*face, "\uFEFFé"), &pieces.shape(*face, "üaéb")}, 14);
  });
  EXPECT_EQ(plain(file.text()), "a\u200Db \uFEFFé üaéb");
  // This one passes over what is spelled out.
  EXPECT_THAT(run("mutool draw -q -F txt " + file.path()).text, HasSubstr("üaéb"));
}

TEST(PdfText, OfIdeographsIsRead) {
  EXPECT_EQ(readBack(fonts::kCjk, "日本語のテキスト、漢字。"), "日本語のテキスト、漢字。");
}

TEST(PdfText, HoldsEmoji) {
  for (const char* text : {"😀", "❤️", "🇩🇪", "👨‍👩‍👧‍👦", "👍🏽", "😀🎉😀"})
    EXPECT_EQ(readBack(fonts::kEmoji, text), text);
}

TEST(PdfText, KeepsEmojiOnTheirLine) {
  const auto face = openFace(fonts::kEmoji), dejavu = openFace(fonts::kDejaVu);
  const PdfOnDisk file = pageOf([&](Pieces& pieces) {
    return pieces.line({&pieces.shape(*dejavu, "see "), &pieces.shape(*face, "😀"), &pieces.shape(*dejavu, " and "),
                        &pieces.shape(*face, "🎉"), &pieces.shape(*dejavu, " there")},
                       14, 0);
  });
  EXPECT_EQ(plain(file.text("")), "see 😀 and 🎉 there");
  EXPECT_EQ(file.complaints(), "");
  EXPECT_EQ(file.rendererWarnings(), "");
}

TEST(PdfText, TellsTextsApartThatLookTheSame) {
  const auto face = openFace(fonts::kEmoji), dejavu = openFace(fonts::kDejaVu);
  const PdfOnDisk file = pageOf([&](Pieces& pieces) {
    return pieces.line({&pieces.shape(*face, "❤"), &pieces.shape(*dejavu, "-"), &pieces.shape(*face, "❤️")}, 14);
  });
  EXPECT_THAT(plain(file.text()), HasSubstr("❤ - ❤️"));
}

TEST(PdfText, TellsCharactersApartThatNoFontHas) {
  EXPECT_EQ(readBack(fonts::kDejaVu, "\U00012000\U00012001"), "\U00012000\U00012001");
}

TEST(PdfText, SpreadsManyEmojiOverSeveralFonts) {
  const auto face = openFace(fonts::kEmoji);
  Pieces pieces;
  std::string all;
  std::vector<TextLayout> lines;
  for (char32_t c = 0x1F300; c < 0x1F450; ++c) {
    if (face->glyphFor(c) == 0) continue;
    std::string text;
    utf8::append(text, c);
    all += text;
    lines.push_back(pieces.line({&pieces.shape(*face, text)}, 10));
  }
  ASSERT_GT(lines.size(), 257U);
  const PdfOnDisk file([&](PdfDocument& document) {
    document.beginPage(kTestPage);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      document.showText(lines[i], {20 + 14 * static_cast<double>(i % 50), 50 + 20 * static_cast<double>(i / 50)}, 14, 0,
                        kBlackColor);
    }
  });
  EXPECT_EQ(file.complaints(), "");
  EXPECT_EQ(file.rendererWarnings(), "");
  std::string read = file.text();
  std::erase_if(read, [](char c) { return c == ' ' || c == '\n'; });
  EXPECT_EQ(read, all);
}

TEST(PdfText, ShowsAWordOfGlyphsInSeveralFonts) {
  // One piece with more distinct emoji than one font holds.
  const auto face = openFace(fonts::kEmoji);
  std::string text;
  for (char32_t c = 0x1F300, count = 0; count < 260; ++c) {
    if (face->glyphFor(c) == 0) continue;
    utf8::append(text, c);
    ++count;
  }
  const PdfOnDisk file = pageOf([&](Pieces& pieces) { return pieces.line({&pieces.shape(*face, text)}, 2); });
  EXPECT_EQ(file.complaints(), "");
  std::string read = file.text();
  std::erase_if(read, [](char c) { return c == ' ' || c == '\n'; });
  EXPECT_EQ(read, text);
}

TEST(PdfText, HasFontsThatAreEmbeddedSubsetsWithTexts) {
  const auto face = openFace(fonts::kDejaVu), nimbus = openFace(fonts::kNimbus), cjk = openFace(fonts::kCjk),
             emoji = openFace(fonts::kEmoji);
  const PdfOnDisk file = pageOf([&](Pieces& pieces) {
    return pieces.line({&pieces.shape(*face, "abc"), &pieces.shape(*face, "ü"), &pieces.shape(*nimbus, "x"),
                        &pieces.shape(*cjk, "語"), &pieces.shape(*emoji, "😀")},
                       14);
  });
  const std::string list = run("pdffonts " + file.path()).text;
  EXPECT_THAT(list, ::testing::ContainsRegex("[A-Z]+\\+DejaVuSans +TrueType +WinAnsi +yes yes yes"));
  EXPECT_THAT(list, ::testing::ContainsRegex("[A-Z]+\\+DejaVuSans +CID TrueType +Identity-H +yes yes yes"));
  EXPECT_THAT(list, ::testing::ContainsRegex("[A-Z]+\\+NimbusSans-Regular +CID Type 0C +Identity-H +yes yes yes"));
  EXPECT_THAT(list, ::testing::ContainsRegex("[A-Z]+\\+NotoSansCJKjp-Regular +CID Type 0C +Identity-H +yes yes yes"));
  EXPECT_THAT(list, ::testing::ContainsRegex("Type 3 +Custom +yes no +yes"));
  // The two fonts of one face share its file.
  const std::string objects = file.objects();
  const std::size_t first = objects.find("/FontFile2");
  EXPECT_NE(first, std::string::npos);
  EXPECT_EQ(objects.find("/FontFile2", first + 1), std::string::npos);
}

TEST(PdfText, EmbedsLittleOfALargeFont) {
  const auto face = openFace(fonts::kDejaVu), cjk = openFace(fonts::kCjk);
  const auto sizeWith = [](const FontFace& one, const std::string& text) {
    Pieces pieces;
    return documentBytes(
               1,
               [&](PdfDocument& document) {
                 document.beginPage(kTestPage);
                 document.showText(pieces.line({&pieces.shape(one, text)}, 14), {50, 50}, 250, 0, kBlackColor);
               })
        .size();
  };
  EXPECT_LT(sizeWith(*face, "Hello"), 6000U);
  EXPECT_LT(sizeWith(*cjk, "日本語"), 12000U);
}

}  // namespace
}  // namespace chatsum::platform::system
