#include "platform/system/contacts/ContactNames.h"

#include <gtest/gtest.h>

#include "platform/system/bundle/SharedFolder.h"
#include "platform/system/contacts/ContactLabels.h"
#include "platform/system/translations/Translations.h"

namespace chatsum::platform::system {
namespace {

ContactNameParts person(const std::string& first, const std::string& last) {
  ContactNameParts parts;
  parts.first = first;
  parts.last = last;
  return parts;
}

TEST(ContactNames, JoinsThePartsInWesternOrder) {
  ContactNameParts parts = person(" Ann ", "Example");
  parts.prefix = "Dr.";
  parts.middle = "Bea";
  parts.suffix = "Jr.";
  EXPECT_EQ(shownContactName(parts), "Dr. Ann Bea Example Jr.");
  EXPECT_EQ(shownContactName(person("Ann", "")), "Ann");
  EXPECT_EQ(shownContactName(person("", "Example")), "Example");
}

TEST(ContactNames, PutsTheFamilyNameFirstInEastAsianScripts) {
  EXPECT_EQ(shownContactName(person("小明", "王")), "王小明");
  EXPECT_EQ(shownContactName(person("철수", "김")), "김철수");
  EXPECT_EQ(shownContactName(person("はなこ", "見本")), "見本 はなこ");
  EXPECT_EQ(shownContactName(person("Ming", "王")), "Ming 王");
}

TEST(ContactNames, FallsBackInTheOrderOfTheAddressBook) {
  ContactNameParts parts;
  EXPECT_EQ(shownContactName(parts), "");
  parts.prefix = "Dr.";
  EXPECT_EQ(shownContactName(parts), "");
  parts.compositeNameFallback = "Fallback";
  EXPECT_EQ(shownContactName(parts), "Fallback");
  parts.displayName = "Display";
  EXPECT_EQ(shownContactName(parts), "Display");
  parts.organization = "Example Ltd";
  EXPECT_EQ(shownContactName(parts), "Example Ltd");
  parts.nickname = "Nick";
  EXPECT_EQ(shownContactName(parts), "Nick");
  parts.first = "Ann";
  EXPECT_EQ(shownContactName(parts), "Dr. Ann");
}

TEST(ContactNames, ShowsACompanyByItsOwnName) {
  ContactNameParts parts = person("Ann", "Example");
  parts.isOrganization = true;
  EXPECT_EQ(shownContactName(parts), "Ann Example");
  parts.organization = "Example Ltd";
  EXPECT_EQ(shownContactName(parts), "Example Ltd");
}

TEST(ContactLabels, PutsBuiltInLabelsIntoWords) {
  EXPECT_EQ(contactLabelInWords("_$!<Mobile>!$_"), "mobile");
  EXPECT_EQ(contactLabelInWords("_$!<HomeFAX>!$_"), "home fax");
  EXPECT_EQ(contactLabelInWords("iPhone"), "iPhone");
  EXPECT_EQ(contactLabelInWords("_$!<iPhone>!$_"), "iPhone");
  EXPECT_EQ(contactLabelInWords("_$!<Aunt>!$_"), "Aunt");
}

TEST(ContactLabels, LeavesOtherLabelsAsTheyAre) {
  EXPECT_EQ(contactLabelInWords("unknown"), "unknown");
  EXPECT_EQ(contactLabelInWords("Mobile"), "Mobile");
  EXPECT_EQ(contactLabelInWords("Beach house"), "Beach house");
  EXPECT_EQ(contactLabelInWords("_$!<"), "_$!<");
  EXPECT_EQ(contactLabelInWords(""), "other");
}

TEST(ContactLabels, TranslatesBuiltInLabelsOnly) {
  const Translations german(sharedFolder() + "/locale", {"de"});
  EXPECT_EQ(contactLabelInWords("_$!<Mobile>!$_", &german), "Mobil");
  EXPECT_EQ(contactLabelInWords("_$!<WorkFAX>!$_", &german), "Fax Arbeit");
  EXPECT_EQ(contactLabelInWords("", &german), "Andere");
  EXPECT_EQ(contactLabelInWords("mobile", &german), "mobile");  // somebody's own word
  EXPECT_EQ(contactLabelInWords("_$!<Aunt>!$_", &german), "Aunt");
}

}  // namespace
}  // namespace chatsum::platform::system
