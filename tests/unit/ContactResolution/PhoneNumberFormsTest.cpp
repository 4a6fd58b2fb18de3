#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

class PhoneNumberForms : public ReadingTest {};

TEST_F(PhoneNumberForms, PlainDropsParenthesesSpacesHyphensAndNoBreakSpaces) {
  EXPECT_EQ(ChatsumUtils::plainPhoneNumber("+1 (555) 010-9999"), "+15550109999");
  EXPECT_EQ(ChatsumUtils::plainPhoneNumber("+1\xC2\xA0(555)\xC2\xA0"
                                           "010\xC2\xA0-9999"),
            "+15550109999");
  EXPECT_EQ(ChatsumUtils::plainPhoneNumber("()- \xC2\xA0"), "");
}

TEST_F(PhoneNumberForms, PlainKeepsEverythingElseInOrder) {
  EXPECT_EQ(ChatsumUtils::plainPhoneNumber("*31#+1.555/010,EXT;9\t"), "*31#+1.555/010,EXT;9\t");
  // Other blanks, other hyphens, letters whose bytes look like parts of a no-break space.
  EXPECT_EQ(ChatsumUtils::plainPhoneNumber("55\xE2\x80\xAF"
                                           "5\xE2\x80\x91"
                                           "010 \xC3\xA0\xC2\xA1\xF0\x9F\x98\x80"),
            "55\xE2\x80\xAF"
            "5\xE2\x80\x91"
            "010\xC3\xA0\xC2\xA1\xF0\x9F\x98\x80");
}

TEST_F(PhoneNumberForms, PlainOfAnEmptyTextIsTheLocalizedUnknown) {
  EXPECT_EQ(ChatsumUtils::plainPhoneNumber(""), "Unknown");
  fake.mainBundle.strings["Unknown"] = "Unbekannt";
  EXPECT_EQ(ChatsumUtils::plainPhoneNumber(""), "Unbekannt");
}

TEST_F(PhoneNumberForms, PlainKeepsEMailAddresses) {
  EXPECT_EQ(ChatsumUtils::plainPhoneNumber("ada (home) - one@example.com"), "ada (home) - one@example.com");
  EXPECT_EQ(ChatsumUtils::plainPhoneNumber("@"), "@");
}

TEST_F(PhoneNumberForms, AnythingWithAnAtSignIsAnEMailAddress) {
  EXPECT_TRUE(ChatsumUtils::isEmailAddress("ada@example.com"));
  EXPECT_TRUE(ChatsumUtils::isEmailAddress("@@"));
  EXPECT_TRUE(ChatsumUtils::isEmailAddress("@"));
  EXPECT_FALSE(ChatsumUtils::isEmailAddress("+15550100123"));
  EXPECT_FALSE(ChatsumUtils::isEmailAddress(""));
}

TEST_F(PhoneNumberForms, FormattedIsWhatTheSystemPrints) {
  fake.addressBook.numbers["+15550100123"] = "+1 (555) 010-0123";
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber("+15550100123"), "+1 (555) 010-0123");
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber("5550100199"), "5550100199");
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber(""), "");
}

TEST_F(PhoneNumberForms, FormattedKeepsEMailAddresses) {
  fake.addressBook.numbers["ada@example.com"] = "formatted";
  fake.addressBook.numbers["#a@example.com"] = "formatted";
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber("ada@example.com"), "ada@example.com");
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber("#a@example.com"), "#a@example.com");
}

TEST_F(PhoneNumberForms, FormattedKeepsAServiceCodeBeforeTheNumber) {
  fake.addressBook.numbers["+15550100123"] = "+1 (555) 010-0123";
  fake.addressBook.numbers["#31#+15550100123"] = "formatted whole";
  fake.addressBook.numbers["31"] = "formatted code";
  fake.addressBook.numbers[""] = "formatted nothing";
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber("#31#+15550100123"), "#31#+1 (555) 010-0123");
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber("#+15550100123"), "#+1 (555) 010-0123");
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber("##31##+15550100123"), "##31##+1 (555) 010-0123");
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber("#31#"), "#31#formatted nothing");
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber("#"), "#formatted nothing");
}

TEST_F(PhoneNumberForms, FormattedTakesANumberWithALaterSignWhole) {
  fake.addressBook.numbers["*31#+15550100123"] = "formatted whole";
  fake.addressBook.numbers["+15550100123"] = "formatted part";
  EXPECT_EQ(ChatsumUtils::formattedPhoneNumber("*31#+15550100123"), "formatted whole");
}

}  // namespace
}  // namespace chatsum::tests
