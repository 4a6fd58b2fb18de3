#include "platform/foundation/Utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace chatsum::utf8 {
namespace {

std::vector<char32_t> codePoints(std::string_view text) {
  std::vector<char32_t> result;
  for (std::size_t at = 0; at < text.size();) result.push_back(next(text, at));
  return result;
}

TEST(Utf8, ReadsEveryCodePointItWrites) {
  for (char32_t c = 0; c <= 0x10FFFF; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    std::string text;
    append(text, c);
    std::size_t at = 0;
    ASSERT_EQ(next(text, at), c);
    ASSERT_EQ(at, text.size());
    ASSERT_TRUE(isValid(text));
  }
}

TEST(Utf8, WritesTheReplacementForWhatIsNoCharacter) {
  for (const char32_t c : {char32_t{0xD800}, char32_t{0xDFFF}, char32_t{0x110000}, char32_t{0xFFFFFFFF}}) {
    std::string text;
    append(text, c);
    EXPECT_EQ(text, "\xEF\xBF\xBD");
  }
}

TEST(Utf8, ReplacesEachMalformedPart) {
  EXPECT_EQ(codePoints("a\xFFz"), (std::vector<char32_t>{'a', 0xFFFD, 'z'}));
  EXPECT_EQ(codePoints("\xE2\x82"), (std::vector<char32_t>{0xFFFD}));                      // cut off: one part
  EXPECT_EQ(codePoints("\xC0\x80"), (std::vector<char32_t>{0xFFFD, 0xFFFD}));              // overlong
  EXPECT_EQ(codePoints("\xED\xA0\x80"), (std::vector<char32_t>{0xFFFD, 0xFFFD, 0xFFFD}));  // a surrogate
  EXPECT_EQ(codePoints("\xF4\x90\x80\x80").size(), 4u);                                    // beyond U+10FFFF
  EXPECT_EQ(codePoints("\x80"), (std::vector<char32_t>{0xFFFD}));
}

TEST(Utf8, TellsValidFromInvalidText) {
  EXPECT_TRUE(isValid(""));
  EXPECT_TRUE(isValid("plain text of some length"));
  EXPECT_TRUE(isValid("plain text, then ünïcödé 😀"));
  EXPECT_TRUE(isValid(std::string("a\0b", 3)));
  for (const std::string bad : {"\xFF", "12345678\x80", "\xE2\x82", "\xED\xA0\x80", "\xC1\xBF", "\xF5\x80\x80\x80",
                                "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "abc\xE2\x28\xA1"}) {
    EXPECT_FALSE(isValid(bad));
    EXPECT_TRUE(isValid(repaired(bad)));
  }
}

TEST(Utf8, RepairsOnlyWhatIsBroken) {
  EXPECT_EQ(repaired("é\xFF"
                     "a😀"),
            "é\xEF\xBF\xBD"
            "a😀");
  EXPECT_EQ(repaired(""), "");
}

TEST(Utf8, CountsTheMalformedPartsItReplaces) {
  std::string text = "so far: ";
  EXPECT_EQ(appendRepaired(text,
                           "a\xE2\x82"
                           "b\xFF\xFF"
                           "c"),
            3);
  EXPECT_EQ(text,
            "so far: a\uFFFD"
            "b\uFFFD\uFFFD"
            "c");
  EXPECT_EQ(appendRepaired(text, "€"), 0);
}

TEST(Utf8, LeavesOutASequenceThatWasCutOff) {
  EXPECT_EQ(lengthWithoutPartialTail("ab\xE2\x82"), 2u);
  EXPECT_EQ(lengthWithoutPartialTail("ab€"), 5u);
  EXPECT_EQ(lengthWithoutPartialTail("\xF0\x9F\x98"), 0u);
  EXPECT_EQ(lengthWithoutPartialTail("ab"), 2u);
  EXPECT_EQ(lengthWithoutPartialTail(""), 0u);
}

TEST(Utf8, CountsUtf16Units) {
  EXPECT_EQ(utf16Length(""), 0u);
  EXPECT_EQ(utf16Length("abc"), 3u);
  EXPECT_EQ(utf16Length("é€"), 2u);
  EXPECT_EQ(utf16Length("😀"), 2u);
  EXPECT_EQ(utf16Length("\xFF"), 1u);
}

TEST(Utf8, KeepsTheLastUtf16UnitsInWholeCharacters) {
  EXPECT_EQ(lastUtf16("15550100123", 10), "5550100123");
  EXPECT_EQ(lastUtf16("abc", 10), "abc");
  EXPECT_EQ(lastUtf16("abc", 0), "");
  EXPECT_EQ(lastUtf16("aé€", 2), "é€");
  EXPECT_EQ(lastUtf16("a😀b", 3), "😀b");
  EXPECT_EQ(lastUtf16("a😀b", 2), "b");
  EXPECT_EQ(lastUtf16("", 3), "");
}

}  // namespace
}  // namespace chatsum::utf8
