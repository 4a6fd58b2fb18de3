#include "platform/system/contacts/ContactAddress.h"

#include <gtest/gtest.h>

#include <string>

namespace chatsum::platform::system {
namespace {

using Kind = ContactAddress::Kind;

ContactAddress read(const std::string& text, const std::string& region = "US") {
  ContactAddress address;
  readContactAddress(text, phoneRegionNamed(region), address);
  return address;
}

/// A number as "+digits" or "digits", other kinds as their text.
std::string shown(const std::string& text, const std::string& region = "US") {
  const ContactAddress address = read(text, region);
  if (address.kind != Kind::kNumber) return address.text;
  return (address.isInternational ? "+" : "") + address.digits.text();
}

SameNumber compared(const std::string& a, const std::string& b, const std::string& region) {
  const SameNumber same = compareNumbers(read(a, region), read(b, region), phoneRegionNamed(region));
  EXPECT_EQ(compareNumbers(read(b, region), read(a, region), phoneRegionNamed(region)), same) << "the other way round";
  return same;
}

TEST(ContactAddress, DropsSeparatorsAndKeepsLeadingZeros) {
  EXPECT_EQ(shown("+1 (555) 010-0123"), "+15550100123");
  EXPECT_EQ(shown("555.010.0123"), "5550100123");
  EXPECT_EQ(shown("06 12 34 56 78", "FR"), "0612345678");
  EXPECT_EQ(shown("\u202A+1\u00A0555\u00A0010\u00A00123\u202C"), "+15550100123");
}

TEST(ContactAddress, ReadsDigitsOfEveryScript) {
  EXPECT_EQ(shown("+١٥٥٥٠١٠٠١٢٣"), "+15550100123");
  EXPECT_EQ(shown("۵۵۵۰۱۰۰۱۲۳"), "5550100123");
  EXPECT_EQ(shown("＋１５５５０１００１２３"), "+15550100123");
}

TEST(ContactAddress, CutsExtensionsAndPausesOff) {
  for (const char* text : {"+15550100123;ext=5", "+15550100123,,77#", "+1 555 010 0123 x5", "+1 555 010 0123 ext. 5",
                           "+1 555 010 0123 Extension 5", "+15550100123#9"}) {
    EXPECT_EQ(shown(text), "+15550100123") << text;
  }
}

TEST(ContactAddress, TurnsKeypadLettersIntoDigits) {
  EXPECT_EQ(shown("1-800-EXAMPLE"), "18003926753");
  EXPECT_EQ(shown("1-800-MAX-TAXI"), "18006298294");
}

TEST(ContactAddress, KeepsSenderNamesAsTheyAre) {
  for (const char* text : {"ExampleShop", "Shop24", "4EXAMPLE", "Банк24", "*123#", "Info"}) {
    EXPECT_EQ(read(text).kind, Kind::kName) << text;
    EXPECT_EQ(shown(text), text);
  }
  EXPECT_EQ(read(std::string(40, '5')).kind, Kind::kName);
}

TEST(ContactAddress, ReadsServiceCodesInFrontOfANumber) {
  EXPECT_EQ(shown("*31#0612345678", "FR"), "0612345678");
  EXPECT_EQ(shown("#31#+33612345678", "FR"), "+33612345678");
}

TEST(ContactAddress, TakesInternationalPrefixesForAPlus) {
  EXPECT_EQ(shown("0033612345678", "US"), "+33612345678");
  EXPECT_EQ(shown("01133612345678", "US"), "+33612345678");
  EXPECT_EQ(shown("01133612345678", "FR"), "01133612345678");
  EXPECT_EQ(shown("001133612345678", "AU"), "+33612345678");
  EXPECT_EQ(shown("81033612345678", "RU"), "+33612345678");
  EXPECT_EQ(shown("00123456", "FR"), "00123456");
}

TEST(ContactAddress, KeepsShortCodesExact) {
  EXPECT_EQ(read("22222").kind, Kind::kShort);
  EXPECT_EQ(shown("222-22"), "22222");
  EXPECT_EQ(shown("022222"), "022222");
  EXPECT_EQ(read("0222222").kind, Kind::kNumber);
}

TEST(ContactAddress, LowersEmailAddressesAndUnwrapsThem) {
  EXPECT_EQ(read("Ann@Example.com").kind, Kind::kEmail);
  EXPECT_EQ(shown(" Ann@Example.com "), "ann@example.com");
  EXPECT_EQ(shown("mailto:ANN@example.com"), "ann@example.com");
  EXPECT_EQ(shown("Ann <ann@example.com>"), "ann@example.com");
  EXPECT_EQ(shown("ÄNN@example.com"), "änn@example.com");
  EXPECT_EQ(read("@@").kind, Kind::kEmail);
}

TEST(ContactAddress, TakesBusinessIdentifiersAndNothingForNobody) {
  for (const char* text : {"", "  ", "\u202A\u202C", "urn:biz:15550100-1234-5555", "URN:BIZ:1", "tel:"}) {
    EXPECT_EQ(read(text).kind, Kind::kNothing) << text;
  }
  EXPECT_EQ(shown("tel:+15550100123"), "+15550100123");
}

TEST(ContactAddress, ReadsBytesThatAreNoText) {
  EXPECT_EQ(read("\xFF\xFE\x80").kind, Kind::kName);
  EXPECT_EQ(shown("555\xFF"
                  "0100123"),
            "5550100123");
  EXPECT_EQ(read(std::string("\x80")).kind, Kind::kName);
}

TEST(CompareNumbers, PutsTheSameDigitsFirst) {
  EXPECT_EQ(compared("+1 (555) 010-0123", "+15550100123", "US"), SameNumber::kExactly);
  EXPECT_EQ(compared("(555) 010-0123", "5550100123", ""), SameNumber::kExactly);
}

TEST(CompareNumbers, AddsTheHomeCountrysCode) {
  EXPECT_EQ(compared("+1 (555) 010-0123", "5550100123", "US"), SameNumber::kAtHome);
  EXPECT_EQ(compared("+1 (555) 010-0123", "15550100123", "US"), SameNumber::kAtHome);
  EXPECT_EQ(compared("5550100123", "15550100123", "US"), SameNumber::kAtHome);
  EXPECT_EQ(compared("+33 6 12 34 56 78", "0612345678", "FR"), SameNumber::kAtHome);
  EXPECT_EQ(compared("+36 1 555 0100", "06 1 555 0100", "HU"), SameNumber::kAtHome);
  EXPECT_EQ(compared("+7 912 555-01-00", "8 (912) 555-01-00", "RU"), SameNumber::kAtHome);
  EXPECT_EQ(compared("+39 06 5550 100", "06 5550 100", "IT"), SameNumber::kAtHome);
  EXPECT_EQ(compared("+52 1 55 5550 1001", "55 5550 1001", "MX"), SameNumber::kAtHome);
  EXPECT_EQ(compared("+54 9 11 5550 1001", "011 15 5550-1001", "AR"), SameNumber::kAtHome);
  EXPECT_EQ(compared("+54 9 11 5550 1001", "+54 11 5550 1001", "US"), SameNumber::kAtHome);
}

TEST(CompareNumbers, TellsItalysZeroFromATrunkPrefix) {
  EXPECT_EQ(compared("+39 347 555 0100", "0347 555 0100", "IT"), SameNumber::kNot);
}

TEST(CompareNumbers, ComparesNationalFormsOfOtherCountries) {
  EXPECT_EQ(compared("+33612345678", "0612345678", "US"), SameNumber::kBySuffix);
  EXPECT_EQ(compared("+33612345678", "612345678", "US"), SameNumber::kBySuffix);
  EXPECT_EQ(compared("+15550100123", "5550100123", "FR"), SameNumber::kBySuffix);
  EXPECT_EQ(compared("+15550100123", "15550100123", "FR"), SameNumber::kBySuffix);
  EXPECT_EQ(compared("+33612345678", "0612345678", ""), SameNumber::kBySuffix);
}

TEST(CompareNumbers, LeavesAHomeNumberAtHome) {
  EXPECT_EQ(compared("+34612345678", "0612345678", "FR"), SameNumber::kNot);
  EXPECT_EQ(compared("+445550100123", "5550100123", "US"), SameNumber::kNot);
}

TEST(CompareNumbers, NeverComparesPartsOfANumber) {
  EXPECT_EQ(compared("+15550100123", "0100123", "US"), SameNumber::kNot);
  EXPECT_EQ(compared("+15550100123", "+445550100123", "US"), SameNumber::kNot);
  EXPECT_EQ(compared("+15550100123", "+25550100123", ""), SameNumber::kNot);
  EXPECT_EQ(compared("5550100123", "15550100123", ""), SameNumber::kNot);
}

}  // namespace
}  // namespace chatsum::platform::system
