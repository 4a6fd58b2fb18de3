#include "platform/system/translations/PluralRule.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace chatsum::platform::system {
namespace {

PluralRule rule(const std::string& expression) {
  return PluralRule("Language: xx\nPlural-Forms: nplurals=9; plural=" + expression + ";\n");
}

/// The forms of the numbers from 0.
std::vector<std::size_t> forms(const PluralRule& rule, std::uint64_t count) {
  std::vector<std::size_t> all;
  for (std::uint64_t number = 0; number < count; ++number) all.push_back(rule.formFor(number));
  return all;
}

using Forms = std::vector<std::size_t>;
const Forms kOfEnglish = {1, 0, 1, 1};

TEST(PluralRule, IsThatOfEnglishWhereNoneIsGiven) {
  EXPECT_EQ(forms(PluralRule(), 4), kOfEnglish);
  EXPECT_EQ(forms(PluralRule(""), 4), kOfEnglish);
  EXPECT_EQ(forms(PluralRule("Language: de\nContent-Type: text/plain\n"), 4), kOfEnglish);
  EXPECT_EQ(forms(PluralRule("Plural-Forms: nplurals=2;\nplural=0;\n"), 4), kOfEnglish);
}

TEST(PluralRule, IsReadFromTheHeader) {
  EXPECT_EQ(forms(rule("(n != 1)"), 4), kOfEnglish);
  EXPECT_EQ(forms(rule("n>1"), 4), (Forms{0, 0, 1, 1}));
  EXPECT_EQ(forms(rule("0"), 4), (Forms{0, 0, 0, 0}));
  EXPECT_EQ(forms(PluralRule("Plural-Forms: nplurals=2; plural=n>1\nLanguage: fr\n"), 4), (Forms{0, 0, 1, 1}));
}

TEST(PluralRule, CanHaveManyForms) {
  const PluralRule russian = rule("(n%10==1 && n%100!=11 ? 0 : n%10>=2 && n%10<=4 && (n%100<10 || n%100>=20) ? 1 : 2)");
  EXPECT_EQ(forms(russian, 6), (Forms{2, 0, 1, 1, 1, 2}));
  EXPECT_EQ(russian.formFor(11), 2U);
  EXPECT_EQ(russian.formFor(21), 0U);
  EXPECT_EQ(russian.formFor(112), 2U);
  EXPECT_EQ(russian.formFor(1'000'003), 1U);
  const PluralRule arabic = rule("n==0 ? 0 : n==1 ? 1 : n==2 ? 2 : n%100>=3 && n%100<=10 ? 3 : n%100>=11 ? 4 : 5");
  EXPECT_EQ(forms(arabic, 4), (Forms{0, 1, 2, 3}));
  EXPECT_EQ(arabic.formFor(99), 4U);
  EXPECT_EQ(arabic.formFor(100), 5U);
}

TEST(PluralRule, CalculatesAsCDoes) {
  EXPECT_EQ(rule("1 + 2 * 3").formFor(0), 7U);
  EXPECT_EQ(rule("9 - 4 - 3").formFor(0), 2U);
  EXPECT_EQ(rule("12 / 2 / 3 % 4").formFor(0), 2U);
  EXPECT_EQ(rule("1 || 0 && 0").formFor(0), 1U);
  EXPECT_EQ(rule("2 < 3 == 1").formFor(0), 1U);
  EXPECT_EQ(forms(rule("!n"), 2), (Forms{1, 0}));
  EXPECT_EQ(forms(rule("!(n <= 1) ? 5 : !!n"), 3), (Forms{0, 1, 5}));
  EXPECT_EQ(rule("n > 4000000000").formFor(4'000'000'001), 1U);
  EXPECT_EQ(rule("n").formFor(std::numeric_limits<std::uint64_t>::max()), std::numeric_limits<std::size_t>::max());
}

TEST(PluralRule, DividesByZeroWithoutHarm) {
  EXPECT_EQ(forms(rule("5 / n"), 2), (Forms{0, 5}));
  EXPECT_EQ(forms(rule("5 % (n - 1) + 1"), 2), (Forms{6, 1}));
}

TEST(PluralRule, ThatIsNoExpressionCountsAsNone) {
  for (const char* wrong : {"", "()", "n >", "n n", "1 ? 2", "1 ? 2 :", "(n", "n)", "m", "n = 1", "&& n", "system(1)",
                            "-1", "0x10", "1.5", "n ? : 2"}) {
    EXPECT_EQ(forms(rule(wrong), 4), kOfEnglish) << wrong;
  }
}

TEST(PluralRule, OfAnyDepthAndLengthIsReadInLittleRoom) {
  const auto many = [](std::size_t count, const std::string& text) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
  };
  EXPECT_EQ(forms(rule(many(20, "(") + "n" + many(20, ")")), 3), (Forms{0, 1, 2}));
  EXPECT_EQ(forms(rule(many(200, "(") + "n" + many(200, ")")), 4), kOfEnglish);
  EXPECT_EQ(forms(rule(many(400, "!") + "n"), 4), kOfEnglish);
  EXPECT_EQ(forms(rule(many(120, "n?1:") + "0"), 4), kOfEnglish);
  EXPECT_EQ(forms(rule(many(1'000'000, "(")), 4), kOfEnglish);
  EXPECT_EQ(forms(rule("n" + many(1'000'000, "+1")), 4), kOfEnglish);
}

TEST(PluralRule, OfAnyCharactersDoesNoHarm) {
  const std::string characters = "n0123456789()!?:=<>&|+-*/% ";
  std::mt19937 random(1);
  for (int i = 0; i < 50'000; ++i) {
    std::string expression;
    for (auto length = random() % 24; length > 0; --length) expression += characters[random() % characters.size()];
    (void)rule(expression).formFor(random());
  }
}

}  // namespace
}  // namespace chatsum::platform::system
