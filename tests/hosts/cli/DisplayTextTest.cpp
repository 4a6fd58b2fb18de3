#include "hosts/cli/DisplayText.h"

#include <gtest/gtest.h>

namespace chatsum::cli {
namespace {

TEST(DisplayText, MeasuresCells) {
  EXPECT_EQ(displayWidth("abc"), 3U);
  EXPECT_EQ(displayWidth("Ελένη"), 5U);
  EXPECT_EQ(displayWidth("王小明"), 6U);
  EXPECT_EQ(displayWidth("민지"), 4U);
  EXPECT_EQ(displayWidth("e\u0301"), 1U);
  EXPECT_EQ(displayWidth("🌍"), 2U);
  EXPECT_EQ(displayWidth("👍🏾"), 2U);
}

TEST(DisplayText, HasNothingThatATerminalWouldObey) {
  EXPECT_EQ(oneLine("a\x1b[31m\nb\u202Ec\x7F"), "a [31m b c ");
  EXPECT_EQ(oneLine("\xFF"), "\uFFFD");
}

TEST(DisplayText, KeepsItsOrderAndItsLettersAsTheyAre) {
  for (const std::string control : {"\u061C", "\u200E", "\u200F", "\u2028", "\u2029", "\u202A", "\u202E", "\u2066",
                                    "\u2069", "\u206A", "\uFFF9", "\u0085", "\u009B"}) {
    EXPECT_EQ(oneLine("a" + control + "b"), "a b");
    EXPECT_EQ(harmless("a" + control + "b"), "a b");
    EXPECT_EQ(shortened("a" + control + "b", 9), "a b");
    EXPECT_EQ(table({"T"}, {{"a" + control + "b"}}), "T\na b\n");
  }
  for (const std::string text : {"שלום 👩\u200D👩\u200D👧 می\u200Cخواهم é", "🏴󠁧󠁢󠁥󠁮󠁧󠁿 ok"})
    EXPECT_EQ(oneLine(text), text);
  EXPECT_EQ(harmless("one\n\ttwo\r"), "one\n\ttwo ");
}

TEST(DisplayText, IsCutToItsCells) {
  EXPECT_EQ(shortened("abcdef", 6), "abcdef");
  EXPECT_EQ(shortened("abcdefg", 6), "abcde…");
  EXPECT_EQ(shortened("王小明王", 6), "王小…");
}

TEST(DisplayText, StandsInColumns) {
  EXPECT_EQ(table({"NAME", " N", "LAST"}, {{"王", "5", "x"}, {"Bo Ann", "1234", "yz"}}),
            "NAME       N  LAST\n"
            "王         5  x\n"
            "Bo Ann  1234  yz\n");
}

}  // namespace
}  // namespace chatsum::cli
