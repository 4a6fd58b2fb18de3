#include "hosts/device/report/ReportName.h"

#include <gtest/gtest.h>

namespace chatsum::device {
namespace {

TEST(ReportName, GetsTheExtensionUnlessItIsThere) {
  EXPECT_EQ(withExtension("chat", "txt"), "chat.txt");
  EXPECT_EQ(withExtension("chat.txt", "txt"), "chat.txt");
  EXPECT_EQ(withExtension("chat.TXT", "txt"), "chat.TXT");
  EXPECT_EQ(withExtension("chat.csv", "txt"), "chat.csv.txt");
  EXPECT_EQ(withExtension("Dr. Smith", "txt"), "Dr. Smith.txt");
  EXPECT_EQ(withExtension(".txt", "txt"), ".txt.txt");
  EXPECT_EQ(withExtension("", "txt"), ".txt");
}

TEST(ReportName, IsOnePathComponent) {
  for (const char* name : {"a/b", "/", "..", ".", "", "../up"}) {
    EXPECT_TRUE(checkReportName(withExtension(name, "txt"), "txt").has_value()) << name;
  }
  for (const char* name : {"a", "a b", "Ελένη", "Dr. Smith", "-x"}) {
    EXPECT_FALSE(checkReportName(withExtension(name, "txt"), "txt").has_value()) << name;
  }
  EXPECT_TRUE(checkReportName(std::string("a\0b.txt", 7), "txt").has_value());
}

TEST(ReportName, IsNoHiddenOneNorBlank) {
  for (const char* name : {".hidden", "...", ".txt", ".", "..", ". x"}) {
    EXPECT_TRUE(checkReportName(withExtension(name, "txt"), "txt").has_value()) << name;
  }
  EXPECT_EQ(faultOfName(".hidden", "txt"), NameFault::kHidden);
  EXPECT_EQ(faultOfName("..", "txt"), NameFault::kFolder);
  EXPECT_EQ(faultOfName(" \t ", "txt"), NameFault::kEmpty);
  EXPECT_EQ(faultOfName("a.b", "txt"), std::nullopt);
}

TEST(ReportName, FitsIntoAFileName) {
  EXPECT_FALSE(checkReportName(withExtension(std::string(251, 'a'), "txt"), "txt").has_value());
  EXPECT_TRUE(checkReportName(withExtension(std::string(252, 'a'), "txt"), "txt").has_value());
}

TEST(ReportName, IsMadeOfTheConversationsName) {
  EXPECT_EQ(reportNameFor("Tom/Jerry's trip"), "Tom-Jerry's trip");
  EXPECT_EQ(reportNameFor("a\nb\x1b[1m\tc"), "ab[1mc");
  EXPECT_EQ(reportNameFor("...x. "), "x.");
  EXPECT_EQ(reportNameFor(".."), "Conversation");
  EXPECT_EQ(reportNameFor(""), "Conversation");
  EXPECT_EQ(reportNameFor("Language table 🌍"), "Language table 🌍");
}

TEST(ReportName, IsCutBetweenLetters) {
  std::string long_name;
  for (int i = 0; i < 100; ++i) long_name += "é";
  const std::string name = reportNameFor(long_name);
  EXPECT_LE(name.size(), 124U);
  EXPECT_EQ(name.size() % 2, 0U);
  EXPECT_EQ(long_name.substr(0, name.size()), name);
}

}  // namespace
}  // namespace chatsum::device
