#include "hosts/desktop/report/CsvRow.h"

#include <gtest/gtest.h>

namespace chatsum::desktop {
namespace {

constexpr std::size_t kMost = 1000;

TEST(CsvRow, TakesPlainCells) {
  EXPECT_EQ(csvCells("Anna,hello there,Mon", kMost), (QStringList{"Anna", "hello there", "Mon"}));
  EXPECT_EQ(csvCells("", kMost), QStringList{""});
  EXPECT_EQ(csvCells(",", kMost), (QStringList{"", ""}));
  EXPECT_EQ(csvCells("a,,b,", kMost), (QStringList{"a", "", "b", ""}));
}

TEST(CsvRow, TakesCellsOutOfTheirQuotes) {
  EXPECT_EQ(csvCells(R"("a, b","two
lines","say ""hi""","")", kMost),
            (QStringList{"a, b", "two\nlines", "say \"hi\"", ""}));
}

TEST(CsvRow, LeavesStrayQuotesWhereTheyAre) {
  EXPECT_EQ(csvCells(R"(5" pipe,a"b,c)", kMost), (QStringList{"5\" pipe", "a\"b", "c"}));
  EXPECT_EQ(csvCells(R"("quoted" and more,b)", kMost), (QStringList{"quoted and more", "b"}));
  EXPECT_EQ(csvCells("\"without an end, b", kMost), QStringList{"without an end, b"});
  EXPECT_EQ(csvCells("\"", kMost), QStringList{""});
}

TEST(CsvRow, CutsLongCellsBetweenCharacters) {
  EXPECT_EQ(csvCells("abcdef,b", 3), (QStringList{"abc…", "b"}));
  EXPECT_EQ(csvCells("aüü", 2), QStringList{"a…"});
  EXPECT_EQ(csvCells("aü", 3), QStringList{"aü"});
}

TEST(CsvRow, ReadsBytesThatAreNoText) { EXPECT_EQ(csvCells("\xFF,b", kMost).size(), 2); }

}  // namespace
}  // namespace chatsum::desktop
