#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using platform::ABLabelledValue;
using platform::fake::FakeRecord;

class ContactLabel : public ReadingTest {
 protected:
  ContactLabel() { fake.addressBook.labels["unknown"] = "the unknown one"; }

  static platform::ABRecordRef person(std::optional<std::vector<ABLabelledValue>> phones,
                                      std::optional<std::vector<ABLabelledValue>> emails = std::nullopt) {
    return std::make_shared<FakeRecord>(7, std::move(phones), std::move(emails));
  }
};

TEST_F(ContactLabel, IsThatOfTheFirstNumberWithTheSameLastTenCharacters) {
  const auto who = person({{{"work", "+15550100177"}, {"mobile", "(555) 010-0123"}, {"other", "+15550100123"}}});
  EXPECT_EQ(ChatsumUtils::label(who, "+15550100123"), "mobile");
  EXPECT_EQ(ChatsumUtils::label(who, "+1 555-010-0123"), "mobile");
  EXPECT_EQ(ChatsumUtils::label(who, "+44 555 010 0123"), "mobile");
}

TEST_F(ContactLabel, ComparesANumberWithItsCountryPrefixByTenCharactersOnly) {
  // 3612345678 and 0612345678 differ.
  EXPECT_EQ(ChatsumUtils::label(person({{{"mobile", "+33 6 12 34 56 78"}}}), "0612345678"), "the unknown one");
}

TEST_F(ContactLabel, ComparesShorterNumbersWhole) {
  const auto who = person({{{"code", "555-12"}, {"near", "0100123"}}});
  EXPECT_EQ(ChatsumUtils::label(who, "55512"), "code");
  EXPECT_EQ(ChatsumUtils::label(who, "5550100123"), "the unknown one");
}

TEST_F(ContactLabel, CountsTheTenCharactersInUnitsOfUtf16) {
  // A smiling face takes two units: "x" and one face more than ten make eleven, so the "x" is cut off.
  const std::string face = "\xF0\x9F\x98\x80";
  EXPECT_EQ(ChatsumUtils::label(person({{{"faces", "x" + face + face + "555010"}}}), "y" + face + face + "555010"),
            "faces");
  EXPECT_EQ(ChatsumUtils::label(person({{{"faces", "x" + face + face + "55501"}}}), "y" + face + face + "55501"),
            "the unknown one");
  EXPECT_EQ(ChatsumUtils::label(person({{{"accents",
                                          "x\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"
                                          "55501"}}}),
                                "y\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"
                                "55501"),
            "accents");
}

TEST_F(ContactLabel, IsPassedThroughTheSystemsWords) {
  fake.addressBook.labels["_$!<Mobile>!$_"] = "mobil";
  EXPECT_EQ(ChatsumUtils::label(person({{{"_$!<Mobile>!$_", "+15550100123"}}}), "+15550100123"), "mobil");
  EXPECT_EQ(ChatsumUtils::label(person({{{"Bananas", "+15550100123"}}}), "+15550100123"), "Bananas");
  EXPECT_EQ(ChatsumUtils::label(person({{{"", "+15550100123"}}}), "+15550100123"), "");
}

TEST_F(ContactLabel, IsThatOfTheEMailAddressEqualToTheLetter) {
  const auto who =
      person({{}}, {{{"work", "Ada@example.com"}, {"home", "ada@example.com"}, {"old", "ada@example.com"}}});
  EXPECT_EQ(ChatsumUtils::label(who, "ada@example.com"), "home");
  EXPECT_EQ(ChatsumUtils::label(who, "Ada@example.com"), "work");
  EXPECT_EQ(ChatsumUtils::label(who, "ADA@example.com"), "the unknown one");
  EXPECT_EQ(ChatsumUtils::label(who, "da@example.com"), "the unknown one");
}

TEST_F(ContactLabel, TriesTheEMailAddressesAfterANumberWithoutLabel) {
  const auto who = person({{{std::nullopt, "+15550100123"}, {"second", "+15550100123"}}}, {{{"mail", "+15550100123"}}});
  EXPECT_EQ(ChatsumUtils::label(who, "+15550100123"), "mail");
}

TEST_F(ContactLabel, IsUnknownWhenTheEqualNumberHasNoLabelAndNoAddressIsEqual) {
  const auto who = person({{{std::nullopt, "+15550100123"}, {"second", "+15550100123"}}});
  EXPECT_EQ(ChatsumUtils::label(who, "+15550100123"), "the unknown one");
}

TEST_F(ContactLabel, IsUnknownWhenTheEqualAddressHasNoLabel) {
  const auto who = person(std::nullopt, {{{std::nullopt, "ada@example.com"}, {"second", "ada@example.com"}}});
  EXPECT_EQ(ChatsumUtils::label(who, "ada@example.com"), "the unknown one");
}

TEST_F(ContactLabel, PrefersANumberToAnAddress) {
  const auto who = person({{{"phone", "+15550100123"}}}, {{{"mail", "+15550100123"}}});
  EXPECT_EQ(ChatsumUtils::label(who, "+15550100123"), "phone");
}

TEST_F(ContactLabel, ComparesAnAddressAmongTheNumbersByItsEnd) {
  EXPECT_EQ(ChatsumUtils::label(person({{{"phone", "bob@example.com"}}}), "ada@example.com"), "phone");
}

TEST_F(ContactLabel, IsUnknownWithoutPersonNumbersOrAddresses) {
  EXPECT_EQ(ChatsumUtils::label(nullptr, "+15550100123"), "the unknown one");
  EXPECT_EQ(ChatsumUtils::label(person(std::nullopt), "+15550100123"), "the unknown one");
  EXPECT_EQ(ChatsumUtils::label(person({{}}, {{}}), "+15550100123"), "the unknown one");
  fake.addressBook.labels.clear();
  EXPECT_EQ(ChatsumUtils::label(nullptr, "+15550100123"), "unknown");
}

}  // namespace
}  // namespace chatsum::tests
