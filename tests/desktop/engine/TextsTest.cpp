#include "hosts/desktop/engine/Texts.h"

#include <gtest/gtest.h>

#include <string>

namespace chatsum::desktop {
namespace {

std::string shown(std::string_view name) { return shownName(name).toStdString(); }

std::string repeated(std::string_view part, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += part;
  return text;
}

TEST(ShownName, LeavesUsualNamesAsTheyAre) {
  for (const char* name : {"Maya Lindqvist", "+1 (555) 010-0142", "Zoë 👩‍👩‍👧 Ólafsdóttir", "שלום",
                           "مرحبا", "日本", " a  b ", ""}) {
    EXPECT_EQ(shown(name), name);
    EXPECT_EQ(shownName(QString::fromUtf8(name)).toStdString(), name);
  }
}

TEST(ShownName, IsOneLine) {
  EXPECT_EQ(shown("Maya\r\n\tLindqvist\u2028and\u2029more\u0085\x01."), "Maya Lindqvist and more .");
  EXPECT_EQ(shown(std::string_view("a\0b", 3)), "a b");
}

TEST(ShownName, TurnsNothingAround) {
  EXPECT_EQ(shown("\u202Egpj.\u202Cexe \u2067a\u2069\u200E\u200F\u061C!"), "gpj.exe a!");
}

TEST(ShownName, EndsWhereNobodyReadsOn) {
  const std::string longest(200, 'x');
  EXPECT_EQ(shown(longest), longest);
  EXPECT_EQ(shown(longest + "y"), longest + "…");
  EXPECT_EQ(shown(std::string(10'000'000, 'x')), longest + "…");
  EXPECT_EQ(shown("x" + repeated("👍", 300)), "x" + repeated("👍", 99) + "…");  // no half of a character
  EXPECT_EQ(shown(repeated("\u202E", 100'000) + "x"), "…");
  EXPECT_EQ(shownName(QString(1'000'000, u'x')).size(), 201);
}

TEST(IsolatedName, StandsApartWhenItIsWrittenFromRightToLeft) {
  for (const char* name : {"Maya Lindqvist", "+1 (555) 010-0142", "日本", ""}) {
    EXPECT_EQ(isolatedName(QString::fromUtf8(name)).toStdString(), name);
  }
  EXPECT_EQ(isolatedName("Maya שלום").toStdString(), "\u2068Maya שלום\u2069");
  EXPECT_EQ(isolatedName("مرحبا").toStdString(), "\u2068مرحبا\u2069");
  EXPECT_EQ(isolatedName("𞤀").toStdString(), "\u2068𞤀\u2069");  // Adlam, outside of the first plane
}

TEST(JoinedNames, KeepTheirOrder) {
  EXPECT_EQ(joinedNames({}), "");
  EXPECT_EQ(joinedNames({"Maya"}), "Maya");
  EXPECT_EQ(joinedNames({"Maya", "Maya", "Jönas"}).toStdString(), "Maya, Maya, Jönas");
  EXPECT_EQ(joinedNames({"שלום", "Maya"}).toStdString(), "\u2068שלום\u2069, Maya");
}

TEST(JoinedNames, AreNotAllOfVeryMany) {
  const QString joined = joinedNames(QStringList(100'000, "Maya"));
  EXPECT_LT(joined.size(), 1100);
  EXPECT_TRUE(joined.endsWith("Maya, …"));
}

TEST(ShownStart, HoldsWholeCharacters) {
  EXPECT_EQ(shownStart("日本", 6).toStdString(), "日本");
  EXPECT_EQ(shownStart("日本", 5).toStdString(), "日");
  EXPECT_EQ(shownStart("日本", 2).toStdString(), "");
  EXPECT_EQ(shownStart("abc", 2).toStdString(), "ab");
}

TEST(Texts, QuoteOthersInSentencesThatKeepTheirOrder) {
  EXPECT_EQ(shownSentence("'a\u202Eb\u2066c\u200F' is\nno\u2028place.\x1b").toStdString(), "'abc' is no place. ");
  EXPECT_EQ(shownSentences({"one", "t\u202Ewo"}), QStringList({"one", "two"}));
  EXPECT_EQ(shownSentence("שלום, Zoë 👩\u200D👧").toStdString(), "שלום, Zoë 👩\u200D👧");
}

}  // namespace
}  // namespace chatsum::desktop
