#include "hosts/device/words/ShownWords.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace chatsum::device {
namespace {

constexpr std::int64_t kSecond = 1'000'000'000;

TEST(ShownWords, PutTextOnOneLine) {
  EXPECT_EQ(onOneLine("  a \r\n\t b\u2028c\u00A0\u00A0d\x01 "), "a b c d");
  EXPECT_EQ(onOneLine(std::string_view("a\0b", 3)), "a b");
  EXPECT_EQ(onOneLine("\xFF"
                      "a"),
            "\uFFFD"
            "a");
  EXPECT_EQ(onOneLine(" \n "), "");
}

TEST(ShownWords, TakeSquareBracketsOutOfNames) {
  EXPECT_EQ(nameInWords("a] [loved\nby Me"), "a) (loved by Me");
  EXPECT_LT(nameInWords(std::string(100'000, 'x')).size(), 200U);
}

TEST(ShownWords, DoubleTypedBracketsWhereOursCouldStand) {
  EXPECT_EQ(typedText("[loved by Me]"), "[[loved by Me]");
  EXPECT_EQ(typedText("a [b] (c)[d]\n[e]"), "a [[b] (c)[[d]\n[[e]");
  EXPECT_EQ(typedText("list[0], ключ[1] and 2[3]"), "list[0], ключ[1] and 2[3]");
  EXPECT_EQ(typedText("[[x]]"), "[[[[x]]");
  EXPECT_EQ(typedText("a\u200B[x] \xFF[y]"), "a\u200B[[x] \xFF[[y]");
  EXPECT_EQ(typedText(""), "");
}

TEST(ShownWords, LetNoQuotationEndOurBrackets) {
  EXPECT_EQ(quoted("x] [y", 60), "“x]] [[y”");
  EXPECT_EQ(quoted("[[[[[[[[[[[[[[[[[[[[", 3), "“…”");
  EXPECT_EQ(quotedDoubled("[photo.jpeg] a]]", 60), "“[photo.jpeg] a]]”");
  EXPECT_EQ(quoted("a\uFFFCb", 60), "“a b”");  // the mark of an attachment is no word
}

TEST(ShownWords, CutQuotationsBetweenCharacters) {
  EXPECT_EQ(quoted("one two three", 13), "“one two three”");
  EXPECT_EQ(quoted("one two three", 12), "“one two…”");
  EXPECT_EQ(quoted("abcdefghijklmnopqrstuvwxyz abcdefghijklmnop", 10), "“abcdefghij…”");
  EXPECT_EQ(quoted("xxe\u0301e\u0301e\u0301", 5), "“xxe\u0301…”");  // combining marks
  EXPECT_EQ(quoted("👩‍👩‍👧‍👦👩‍👩‍👧‍👦", 9),
            "“👩‍👩‍👧‍👦…”");  // families held together by joiners
  EXPECT_EQ(quoted("x🇵🇹🇵🇹", 4), "“x🇵🇹…”");          // flags of two halves each
  EXPECT_EQ(quoted("👍🏽👍🏽", 3), "“👍🏽…”");
  EXPECT_EQ(quoted("שלום לכולם", 20), "“שלום לכולם”");
  EXPECT_EQ(quoted(std::string(5'000'000, ' ') + "x", 10), "“…”");
}

TEST(ShownWords, TellTimesInTheLocalZone) {
  EXPECT_EQ(minuteOfStored(736'452'300 * kSecond), "2024-05-03 18:05");
  EXPECT_EQ(minuteOfStored(736'452'300), "2024-05-03 18:05");  // of an old store
  EXPECT_EQ(minuteOfStored(-86'400), "2000-12-31 00:00");
  EXPECT_EQ(minuteOfStored(1'300'000'000 * kSecond), "2042-03-13 07:06");
  EXPECT_EQ(minuteOfStored(0), "");
  ::setenv("TZ", "America/New_York", 1);
  ::tzset();
  // An hour apart, before and after the clocks went back.
  EXPECT_EQ(minuteOfStored(657'955'800 * kSecond), "2021-11-07 01:30");
  EXPECT_EQ(minuteOfStored(657'959'400 * kSecond), "2021-11-07 01:30");
  EXPECT_EQ(minuteOfStored(657'963'000 * kSecond), "2021-11-07 02:30");
  ::setenv("TZ", "UTC", 1);
  ::tzset();
}

TEST(ShownWords, AreSeparatedBySpaces) {
  std::string line;
  addPiece(line, "");
  addPiece(line, "a");
  addPiece(line, "b");
  line += "\n";
  addPiece(line, "c");
  EXPECT_EQ(line, "a b\nc");
}

}  // namespace
}  // namespace chatsum::device
