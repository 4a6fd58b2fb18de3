#include <gtest/gtest.h>

#include <string>

#include "platform/foundation/Utf8.h"
#include "platform/system/strings/SystemStrings.h"

namespace chatsum::platform::system {
namespace {

TEST(Strings, FoldAsciiToLowerCase) {
  EXPECT_EQ(SystemStrings().folded("Ann+15550100123@EXAMPLE.com"), "ann+15550100123@example.com");
  EXPECT_EQ(SystemStrings().folded(""), "");
  const std::string zero("A\0B", 3);
  EXPECT_EQ(SystemStrings().folded(zero), std::string("a\0b", 3));
}

TEST(Strings, FoldDiacriticsAndCaseAway) {
  const SystemStrings strings;
  EXPECT_EQ(strings.folded("ÀÉÎÕÜ"), "aeiou");
  EXPECT_EQ(strings.folded("Zoe\u0308"), strings.folded("ZOË"));
  EXPECT_EQ(strings.folded("Straße"), strings.folded("STRASSE"));
  EXPECT_EQ(strings.folded("ΣΊΣΥΦΟΣ"), strings.folded("σίσυφος"));
  EXPECT_EQ(strings.folded("Ещё"), "еще");
  EXPECT_EQ(strings.folded("İI"), "ii");  // the root rules, not the Turkish ones
  EXPECT_EQ(strings.folded("ﬁ"), "fi");
  EXPECT_EQ(strings.folded("김"), strings.folded("\u1100\u1175\u11B7"));
}

TEST(Strings, FoldCaseAloneAndKeepMarks) {
  const SystemStrings strings;
  EXPECT_EQ(strings.caseFolded("ÀB"), "àb");
  EXPECT_EQ(strings.caseFolded("STRASSE"), strings.caseFolded("straße"));
  EXPECT_EQ(strings.caseFolded("ABC"), "abc");
}

TEST(Strings, FoldEveryCharacterOnceAndForAll) {
  const SystemStrings strings;
  for (char32_t c = 1; c <= 0x10FFFF; ++c) {
    std::string text;
    utf8::append(text, c);
    const std::string once = strings.folded(text);
    ASSERT_EQ(strings.folded(once), once) << std::hex << static_cast<unsigned>(c);
  }
}

TEST(Strings, FoldBrokenTextToo) {
  const SystemStrings strings;
  EXPECT_EQ(strings.folded("A\xFFé"),
            "a\xEF\xBF\xBD"
            "e");
  EXPECT_EQ(strings.folded("\xED\xA0\x80").find('\xED'), std::string::npos);
}

}  // namespace
}  // namespace chatsum::platform::system
