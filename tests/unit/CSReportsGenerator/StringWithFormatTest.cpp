#include <gtest/gtest.h>

#include "libchatsum/CSReportsGenerator/NSArrayFormatExtension.h"

namespace chatsum::test {
namespace {

using NSArrayFormatExtension::stringWithFormat;

TEST(StringWithFormat, FillsThePlaceholdersInOrder) {
  EXPECT_EQ(stringWithFormat("%@: %@ (%@)", {"Ann", "Hi", "today"}), "Ann: Hi (today)");
  EXPECT_EQ(stringWithFormat("%@%@", {"a", "b"}), "ab");
}

TEST(StringWithFormat, PrintsOtherValuesByTheirDescription) {
  EXPECT_EQ(stringWithFormat("%@ %@ %@ %@", {1, 2.5, true, Value()}), "1 2.5 1 (null)");
  EXPECT_EQ(stringWithFormat("%@", Array{Value(Date{0})}), "1970-01-01 00:00:00 +0000");
  EXPECT_EQ(stringWithFormat("%@", Array{Value(Record{{"a", "b c"}})}), "{\n    a = \"b c\";\n}");
  EXPECT_EQ(stringWithFormat("%@", Array{Value(Array{"a", 1})}), "(\n    a,\n    1\n)");
}

TEST(StringWithFormat, IgnoresElementsBeyondThePlaceholders) {
  EXPECT_EQ(stringWithFormat("%@", {"a", "b", "c"}), "a");
  EXPECT_EQ(stringWithFormat("none", {"a"}), "none");
}

TEST(StringWithFormat, LeavesPlaceholdersBeyondTheElementsEmpty) {
  EXPECT_EQ(stringWithFormat("<%@><%@>", {"a"}), "<a><>");
  EXPECT_EQ(stringWithFormat("%@", Array{}), "");
  EXPECT_EQ(stringWithFormat("%@%@%@", Array{}), "");
}

TEST(StringWithFormat, PrintsAnEmptyFormatAsNothing) {
  EXPECT_EQ(stringWithFormat("", {"a"}), "");
  EXPECT_EQ(stringWithFormat("", Array{}), "");
}

TEST(StringWithFormat, PrintsTwoPercentSignsAsOne) {
  EXPECT_EQ(stringWithFormat("100%% %@", {"a"}), "100% a");
  EXPECT_EQ(stringWithFormat("%%@", {"a"}), "%@");
  EXPECT_EQ(stringWithFormat("%%%@", {"a"}), "%a");
  EXPECT_EQ(stringWithFormat("%%%%@", {"a"}), "%%@");
}

TEST(StringWithFormat, PrintsOtherPercentSignsAsTheyStand) {
  EXPECT_EQ(stringWithFormat("%d %s %5.2f %n %1$@", {"a"}), "%d %s %5.2f %n %1$@");
  EXPECT_EQ(stringWithFormat("50%", {"a"}), "50%");
  EXPECT_EQ(stringWithFormat("%", {"a"}), "%");
  EXPECT_EQ(stringWithFormat("% @ %@", {"a"}), "% @ a");
}

TEST(StringWithFormat, TakesPlaceholdersInsideElementsLiterally) {
  EXPECT_EQ(stringWithFormat("%@ %@", {"%@", "%%"}), "%@ %%");
}

TEST(StringWithFormat, KeepsUnicodeAndZeroBytes) {
  EXPECT_EQ(stringWithFormat("“%@” → %@", {"Zoë 👋", "你好"}), "“Zoë 👋” → 你好");
  EXPECT_EQ(stringWithFormat(std::string("a\0%@", 4), Array{std::string("b\0", 2)}), std::string("a\0b\0", 4));
}

TEST(StringWithFormat, CountsItsPlaceholders) {
  EXPECT_EQ(LineFormat("").placeholders(), 0U);
  EXPECT_EQ(LineFormat("%%@ %d").placeholders(), 0U);
  EXPECT_EQ(LineFormat("%@%@").placeholders(), 2U);
}

}  // namespace
}  // namespace chatsum::test
