#include "hosts/device/calls/CallNames.h"

#include <gtest/gtest.h>

#include <map>

namespace chatsum::device {
namespace {

Call callWith(const std::vector<std::string>& addresses) {
  Call call;
  for (const std::string& address : addresses) call.people.push_back({.address = address});
  return call;
}

class CallNamesTest : public ::testing::Test {
 protected:
  [[nodiscard]] std::string nameOf(Call call) {
    names_.name(call);
    return peopleInWords(call);
  }
  [[nodiscard]] Call named(Call call) {
    names_.name(call);
    return call;
  }

  int questions_ = 0;
  FindPerson findPerson_ = [this](const std::string& handle) -> std::optional<KnownPerson> {
    ++questions_;
    if (handle == "+15550100142") return KnownPerson{1, "Maya Lindqvist"};
    if (handle == "daniel@example.com") return KnownPerson{2, "Daniel Okafor"};
    if (handle == "+15550100199") return KnownPerson{3, " "};
    return std::nullopt;
  };
  CallNames names_{findPerson_, "US"};
};

TEST_F(CallNamesTest, TakesTheCardThenTheListsMemoryThenTheNumber) {
  Call call = callWith({"+15550100142"});
  call.cachedName = "M. (old)";
  EXPECT_EQ(nameOf(call), "Maya Lindqvist (+15550100142)");
  call = callWith({"+15550100163"});
  EXPECT_EQ(nameOf(call), "+1 (555) 010-0163");
  call.cachedName = "Corner Bakery";
  EXPECT_EQ(nameOf(call), "Corner Bakery (+15550100163)");
  EXPECT_EQ(nameOf(callWith({"+15550100199"})), "+1 (555) 010-0199");  // a card without a name
  EXPECT_EQ(nameOf(callWith({"someone@example.com"})), "someone@example.com");
}

TEST_F(CallNamesTest, PrintsNumbersAsTheCountryOfTheCallDoes) {
  Call call = callWith({"0612345678"});
  EXPECT_EQ(nameOf(call), "0612345678");
  call.country = "fr";
  EXPECT_EQ(nameOf(call), "06 12 34 56 78");
}

TEST_F(CallNamesTest, NamesEverybodyOfAGroup) {
  Call call = callWith({"+15550100142", "daniel@example.com", "+15550100163"});
  call.cachedName = "Whoever";
  EXPECT_EQ(nameOf(call), "Maya Lindqvist (+15550100142), Daniel Okafor (daniel@example.com), +1 (555) 010-0163");
  call.unknownPeople = 2;
  EXPECT_TRUE(nameOf(call).ends_with(", 2 unknown"));
}

TEST_F(CallNamesTest, SaysWhyThereIsNobody) {
  EXPECT_EQ(nameOf(callWith({})), "No caller ID");
  Call encrypted;
  encrypted.people.push_back({.isEncrypted = true});
  EXPECT_EQ(nameOf(encrypted), "(encrypted)");
  Call gone;
  gone.unknownPeople = 1;
  EXPECT_EQ(nameOf(gone), "Unknown");
  Call remembered;
  remembered.cachedName = "Harbour Dental Clinic";
  EXPECT_EQ(nameOf(remembered), "Harbour Dental Clinic");
}

TEST_F(CallNamesTest, AsksForEachAddressOnce) {
  for (int i = 0; i < 3; ++i) static_cast<void>(named(callWith({"+15550100142", "+15550100163"})));
  EXPECT_EQ(questions_, 2);
}

TEST_F(CallNamesTest, FindsAPersonByAnyWayToWriteTheAddress) {
  const Call call = named(callWith({"+15550100142"}));
  for (const char* words : {"+15550100142", "(555) 010-0142", "555.010.0142", "1 555 010 0142", "tel:+15550100142"}) {
    EXPECT_TRUE(WantedPerson(words, "US").isIn(call)) << words;
  }
  for (const char* words : {"0142", "555", "5550142", "+15550100143", "+495550100142", "+1555010014", "", " "}) {
    EXPECT_FALSE(WantedPerson(words, "US").isIn(call)) << words;
  }
  const Call mail = named(callWith({"daniel@example.com"}));
  EXPECT_TRUE(WantedPerson("Daniel@Example.COM", "US").isIn(mail));
  EXPECT_FALSE(WantedPerson("iel@example.com", "US").isIn(mail));
  EXPECT_FALSE(WantedPerson("example.com", "US").isIn(mail));
}

TEST_F(CallNamesTest, FindsAPersonByTheWholeNameInAnyCase) {
  const Call call = named(callWith({"+15550100163", "+15550100142"}));
  EXPECT_TRUE(WantedPerson("maya LINDQVIST", "US").isIn(call));
  EXPECT_FALSE(WantedPerson("Maya", "US").isIn(call));
  EXPECT_FALSE(WantedPerson("Maya Lindqvist (+15550100142)", "US").isIn(call));
  EXPECT_FALSE(WantedPerson("%", "US").isIn(call));
  EXPECT_TRUE(WantedPerson("no caller id", "US").isIn(named(Call())));
}

TEST_F(CallNamesTest, TellsShortCodesAndSendersExactly) {
  const Call code = named(callWith({"55501"})), sender = named(callWith({"Parcelbox"}));
  EXPECT_TRUE(WantedPerson("55501", "US").isIn(code));
  EXPECT_FALSE(WantedPerson("5550", "US").isIn(code));
  EXPECT_TRUE(WantedPerson("parcelbox", "US").isIn(sender));
  EXPECT_FALSE(WantedPerson("parcel", "US").isIn(sender));
}

}  // namespace
}  // namespace chatsum::device
