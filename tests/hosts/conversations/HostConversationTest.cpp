#include "hosts/device/conversations/HostConversation.h"

#include <gtest/gtest.h>

#include "tests/hosts/conversations/StoreFixture.h"

namespace chatsum::device {
namespace {

using testing::kMonday;
using testing::StoreFixture;

std::optional<KnownPerson> everybody(const std::string& handle) {
  if (handle == "+15550100109") return std::nullopt;
  return KnownPerson{static_cast<platform::ABRecordID>(handle.back() - '0'),
                     "Person " + handle.substr(handle.size() - 1)};
}

Conversation groupOf(std::int64_t chat) {
  Conversation conversation;
  conversation.chats = {chat};
  conversation.guids = {"g1"};
  conversation.members = {{"+15550100101", "Person 1", 1}};
  return conversation;
}

TEST(HostConversation, KeepsThePeopleWhoLeft) {
  StoreFixture store;
  const auto one = store.handleRow("iMessage", "+15550100101"), two = store.handleRow("iMessage", "+15550100102"),
             three = store.handleRow("iMessage", "+15550100103"), nobody = store.handleRow("iMessage", "+15550100109");
  const std::int64_t members[] = {one};
  const auto chat = store.writer->addChat({.guid = "g1", .identifier = "chat1", .group = true, .handles = members});
  const auto other = store.writer->addChat({.guid = "g2", .identifier = "chat2", .group = true, .handles = members});
  store.message({chat}, kMonday, one);
  store.message({chat}, kMonday, two);
  store.message({other}, kMonday, three);
  store.message({chat}, kMonday, nobody);
  store.finish();
  const auto people = peopleOf(store.connect(), groupOf(chat), everybody);
  ASSERT_EQ(people.size(), 2U);
  EXPECT_EQ(people[0].handle, "+15550100101");
  EXPECT_EQ(people[1].handle, "+15550100102");
  EXPECT_EQ(people[1].recordID, 2);
  EXPECT_EQ(people[1].name, "Person 2");
}

TEST(HostConversation, IsTheMembersAloneWithoutAnAddressBook) {
  StoreFixture store;
  const auto chat = store.chat("SMS", "+15550100101");
  store.finish();
  EXPECT_EQ(peopleOf(store.connect(), groupOf(chat), nullptr).size(), 1U);
}

TEST(HostConversation, ShowsTheLibraryEachPersonsNameAndRecord) {
  const HostConversation conversation({"g1", "g2"}, {{"+15550100101", "Ann", 7}, {"55501", "55501", -1}});
  EXPECT_EQ(conversation.chatGuids(), (std::vector<std::string>{"g1", "g2"}));
  const auto recipients = conversation.recipients();
  ASSERT_EQ(recipients.size(), 2U);
  EXPECT_EQ(recipients[0]->name(), "Ann");
  ASSERT_TRUE(recipients[0]->handle().person.has_value());
  ASSERT_TRUE(recipients[0]->handle().person->has_value());
  EXPECT_EQ((*recipients[0]->handle().person)->recordID, 7);
  EXPECT_FALSE(recipients[1]->handle().person->has_value());
  EXPECT_FALSE(recipients[0]->abRecord().has_value());
}

}  // namespace
}  // namespace chatsum::device
