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
