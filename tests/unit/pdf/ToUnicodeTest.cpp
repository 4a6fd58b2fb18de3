#include "platform/system/pdf/ToUnicode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace chatsum::platform::system {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(ToUnicode, KeepsTheFirstTextOfACode) {
  ToUnicode texts;
  EXPECT_TRUE(texts.means(5, "a"));
  EXPECT_TRUE(texts.means(5, "a"));
  EXPECT_FALSE(texts.means(5, "b"));
  EXPECT_TRUE(texts.alreadyMeans(5, "a"));
  EXPECT_FALSE(texts.alreadyMeans(5, "b"));
  EXPECT_FALSE(texts.alreadyMeans(6, "a"));
}

TEST(ToUnicode, DoesNotTakeMoreThanReadersDo) {
  ToUnicode texts;
  EXPECT_TRUE(texts.means(1, "12345678"));
  EXPECT_FALSE(texts.means(2, "123456789"));
  EXPECT_TRUE(texts.alreadyMeans(2, "12345678"));
  // A character that takes two units is not cut in the middle.
  EXPECT_FALSE(texts.means(3, "1234567😀"));
  EXPECT_TRUE(texts.alreadyMeans(3, "1234567"));
}

TEST(ToUnicode, WritesRunsAsRanges) {
  ToUnicode texts;
  for (char c = 'a'; c <= 'e'; ++c) texts.means(static_cast<std::uint16_t>(c - 'a' + 10), {&c, 1});
  texts.means(20, "fi");
  const std::string map = texts.characterMap(2);
  EXPECT_THAT(map, HasSubstr("1 beginbfrange\n<000A><000E><0061>\nendbfrange"));
  EXPECT_THAT(map, HasSubstr("1 beginbfchar\n<0014><00660069>\nendbfchar"));
}

TEST(ToUnicode, EndsARangeWhereALowByteOverflows) {
  ToUnicode texts;
  texts.means(0x00FF, "a");
  texts.means(0x0100, "b");
  texts.means(0x0200, "\xC3\xBF");  // U+00FF
  texts.means(0x0201, "\xC4\x80");  // U+0100
  EXPECT_THAT(texts.characterMap(2), Not(HasSubstr("bfrange")));
}

TEST(ToUnicode, WritesCodesOfOneByte) {
  ToUnicode texts;
  texts.means(0x21, "x");
  const std::string map = texts.characterMap(1);
  EXPECT_THAT(map, HasSubstr("<00><FF>"));
  EXPECT_THAT(map, HasSubstr("<21><0078>"));
}

TEST(ToUnicode, KeepsSectionsToAHundredEntries) {
  ToUnicode texts;
  for (std::uint16_t code = 0; code < 500; code = static_cast<std::uint16_t>(code + 2)) texts.means(code, "x");
  const std::string map = texts.characterMap(2);
  EXPECT_THAT(map, HasSubstr("100 beginbfchar"));
  EXPECT_THAT(map, HasSubstr("50 beginbfchar"));
  EXPECT_THAT(map, Not(HasSubstr("250 beginbfchar")));
}

}  // namespace
}  // namespace chatsum::platform::system
