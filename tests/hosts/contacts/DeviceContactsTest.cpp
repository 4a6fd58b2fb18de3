#include "hosts/device/contacts/DeviceContacts.h"

#include <gtest/gtest.h>

#include "tests/unit/contacts/BookFixture.h"

namespace chatsum::device {
namespace {

using tests::BookFixture;

TEST(DeviceContacts, NamesAndLabelsAHandle) {
  BookFixture fixture;
  const int ann = fixture.person("Ann", "Example");
  fixture.phone(ann, "555.010.0123", "_$!<Work>!$_");
  fixture.email(ann, "ann@example.com", "");
  const DeviceContacts contacts(fixture.book());
  const ResolvedHandle number = contacts.resolve("+15550100123");
  EXPECT_EQ(number.record, ann);
  EXPECT_EQ(number.name, "Ann Example");
  EXPECT_EQ(number.label, "work");
  EXPECT_FALSE(number.ambiguous);
  EXPECT_EQ(contacts.resolve("Ann@example.com").record, ann);
  EXPECT_EQ(contacts.resolve("Ann@example.com").label, "");
}

TEST(DeviceContacts, NamesNobodyWhenItIsNotClearWho) {
  BookFixture fixture;
  fixture.phone(fixture.person("Ann", "Example"), "+15550100123");
  fixture.phone(fixture.person("Bob", "Example"), "+15550100123");
  const DeviceContacts contacts(fixture.book());
  const ResolvedHandle shared = contacts.resolve("+15550100123");
  EXPECT_EQ(shared.record, -1);
  EXPECT_EQ(shared.name, "");
  EXPECT_TRUE(shared.ambiguous);
  EXPECT_EQ(shared.candidates, (std::vector<std::string>{"Ann Example", "Bob Example"}));
  const ResolvedHandle stranger = contacts.resolve("+15550100199");
  EXPECT_EQ(stranger.record, -1);
  EXPECT_FALSE(stranger.ambiguous);
}

TEST(DeviceContacts, KnowsTheOwner) {
  BookFixture fixture;
  fixture.person("Ann", "Example");
  fixture.run("INSERT INTO ABStore (ROWID, MeIdentifier) VALUES (0, 1)");
  EXPECT_EQ(DeviceContacts(fixture.book()).ownName(), "Ann Example");
  EXPECT_EQ(DeviceContacts(BookFixture().book()).ownName(), "");
}

}  // namespace
}  // namespace chatsum::device
