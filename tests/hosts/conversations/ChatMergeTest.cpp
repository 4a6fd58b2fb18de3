#include "hosts/device/conversations/ChatMerge.h"

#include <gtest/gtest.h>

namespace chatsum::device {
namespace {

using Merged = std::vector<std::vector<std::size_t>>;

StoredChat person(std::int64_t id, const std::string& handle, const std::string& service = "iMessage",
                  const std::string& personCentricId = "") {
  StoredChat chat;
  chat.id = id;
  chat.guid = service + ";-;" + handle;
  chat.identifier = handle;
  chat.members = {{handle, personCentricId}};
  return chat;
}

StoredChat group(std::int64_t id, const std::vector<std::string>& handles, const std::string& title,
                 const std::string& groupId) {
  StoredChat chat;
  chat.id = id;
  chat.guid = "iMessage;+;chat" + std::to_string(id);
  chat.identifier = "chat" + std::to_string(id);
  chat.displayName = title;
  chat.groupId = groupId;
  chat.isGroup = true;
  for (const std::string& handle : handles) chat.members.push_back({handle, ""});
  return chat;
}

Merged merge(const StoredChats& rows, std::vector<int> cards = {}) {
  cards.resize(rows.chats.size(), -1);
  std::vector<std::vector<std::string>> keys;
  for (const StoredChat& chat : rows.chats) {
    keys.emplace_back();
    for (const StoredMember& member : chat.members) keys.back().push_back(member.handle);
  }
  return mergeChats(rows, cards, keys);
}

TEST(ChatMerge, PutsTheServicesOfOneHandleTogether) {
  const StoredChats rows{{person(1, "+15550100101"), person(2, "+15550100102"), person(3, "+15550100101", "SMS")}, {}};
  EXPECT_EQ(merge(rows), (Merged{{0, 2}, {1}}));
}

TEST(ChatMerge, PutsTheAddressesOfOnePersonOfTheStoreTogether) {
  const StoredChats rows{{person(1, "+15550100101", "iMessage", "P1"), person(2, "ann@example.com", "iMessage", "P1"),
                          person(3, "bob@example.com", "iMessage", "P2")},
                         {}};
  EXPECT_EQ(merge(rows), (Merged{{0, 1}, {2}}));
}

TEST(ChatMerge, PutsTheAddressesOfOneCardTogether) {
  const StoredChats rows{{person(1, "+15550100101"), person(2, "ann@example.com"), person(3, "bob@example.com")}, {}};
  EXPECT_EQ(merge(rows, {7, 7, 8}), (Merged{{0, 1}, {2}}));
}

TEST(ChatMerge, JoinsChainsOfReasons) {
  // 1 and 2 share a card, 2 and 3 a handle.
  const StoredChats rows{{person(1, "+15550100101"), person(2, "ann@example.com"), person(3, "ann@example.com", "SMS")},
                         {}};
  EXPECT_EQ(merge(rows, {7, 7, -1}), (Merged{{0, 1, 2}}));
}

TEST(ChatMerge, FollowsTheLookUpTableOfNewerStores) {
  const StoredChats rows{{person(4, "+15550100101"), person(9, "ann@example.com"), person(11, "bob@example.com")},
                         {{"ann@example.com", "4"}, {"+15550100101", "4"}}};
  EXPECT_EQ(merge(rows), (Merged{{0, 1}, {2}}));
}

TEST(ChatMerge, NeverMergesAGroupIntoAPersonsConversation) {
  const StoredChats rows{{person(1, "+15550100101"), group(2, {"+15550100101"}, "", "")}, {{"+15550100101", "2"}}};
  EXPECT_EQ(merge(rows, {7, 7}), (Merged{{0}, {1}}));
}

TEST(ChatMerge, LeavesAChatOfTwoPersonsAlone) {
  StoredChats rows{{person(1, "+15550100101"), person(2, "+15550100101")}, {}};
  rows.chats[1].members.push_back({"+15550100102", ""});
  EXPECT_EQ(merge(rows), (Merged{{0}, {1}}));
}

TEST(ChatMerge, MergesGroupsOfTheSamePeopleWithTheSameIdentity) {
  const StoredChats rows{{group(1, {"a", "b"}, "", "G1"), group(2, {"b", "a"}, "Other", "G1")}, {}};
  EXPECT_EQ(merge(rows), (Merged{{0, 1}}));
}

TEST(ChatMerge, MergesGroupsOfTheSamePeopleWithTheSameTitle) {
  const StoredChats rows{{group(1, {"a", "b"}, "Club", "G1"), group(2, {"b", "a"}, "Club", "G2")}, {}};
  EXPECT_EQ(merge(rows), (Merged{{0, 1}}));
}

TEST(ChatMerge, KeepsGroupsOfTheSamePeopleApartOtherwise) {
  const StoredChats rows{
      {group(1, {"a", "b"}, "", "G1"), group(2, {"a", "b"}, "", "G2"), group(3, {"a", "b"}, "Club", "")}, {}};
  EXPECT_EQ(merge(rows), (Merged{{0}, {1}, {2}}));
}

TEST(ChatMerge, KeepsGroupsOfOtherPeopleApartWhateverTheirTitle) {
  const StoredChats rows{{group(1, {"a", "b"}, "Club", "G1"), group(2, {"a", "c"}, "Club", "G1")}, {}};
  EXPECT_EQ(merge(rows), (Merged{{0}, {1}}));
}

TEST(ChatMerge, DoesNotTakeAMissingPersonOrCardForAReason) {
  const StoredChats rows{{person(1, "a@example.com"), person(2, "b@example.com")}, {}};
  EXPECT_EQ(merge(rows, {-1, -1}), (Merged{{0}, {1}}));
}

}  // namespace
}  // namespace chatsum::device
