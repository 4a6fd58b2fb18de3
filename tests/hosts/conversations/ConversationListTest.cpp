#include "hosts/device/conversations/ConversationList.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/hosts/conversations/StoreFixture.h"

namespace chatsum::device {
namespace {

using testing::kMonday;
using testing::kMondaySince1970;
using testing::kSecond;
using testing::StoreFixture;

FindPerson people(const std::map<std::string, KnownPerson>& known) {
  return [known](const std::string& handle) -> std::optional<KnownPerson> {
    const auto found = known.find(handle);
    return found == known.end() ? std::nullopt : std::optional(found->second);
  };
}

ConversationList listOf(const StoreFixture& store, const FindPerson& findPerson = nullptr) {
  const sqlite::Connection one = store.connect(), two = store.connect();
  auto list = ConversationList::read(one, findPerson);
  EXPECT_TRUE(list) << list.problem().sentence;
  EXPECT_FALSE(list.value().countMessages(one, two).has_value());
  return std::move(list.value());
}

TEST(ConversationList, NamesAPersonByTheContactElseByTheHandle) {
  StoreFixture store;
  store.chat("iMessage", "+15550100101");
  store.chat("iMessage", "o'brien@example.com");
  store.finish();
  const auto list = listOf(store, people({{"+15550100101", {3, "Ann Lee"}}}));
  ASSERT_EQ(list.conversations().size(), 2U);
  EXPECT_EQ(list.conversations()[0].name, "Ann Lee");
  EXPECT_EQ(list.conversations()[0].members[0].recordID, 3);
  EXPECT_EQ(list.conversations()[1].name, "o'brien@example.com");
  EXPECT_FALSE(list.conversations()[1].isGroup);
}

TEST(ConversationList, MergesTheChatsOfOnePerson) {
  StoreFixture store;
  const auto sms = store.chat("SMS", "+15550100101");
  const auto iMessage = store.chat("iMessage", "+15550100101");
  const auto mail = store.chat("iMessage", "ann@example.com");
  store.message({sms}, kMonday);
  store.message({iMessage}, kMonday + 60 * kSecond);
  store.message({mail}, kMonday + 120 * kSecond);
  store.finish();
  const auto list = listOf(store, people({{"+15550100101", {3, "Ann Lee"}}, {"ann@example.com", {3, "Ann Lee"}}}));
  ASSERT_EQ(list.conversations().size(), 1U);
  const Conversation& ann = list.conversations()[0];
  EXPECT_EQ(ann.guids,
            (std::vector<std::string>{"SMS;-;+15550100101", "iMessage;-;+15550100101", "iMessage;-;ann@example.com"}));
  EXPECT_EQ(ann.identifiers, (std::vector<std::string>{"+15550100101", "ann@example.com"}));
  ASSERT_EQ(ann.members.size(), 2U);
  EXPECT_EQ(ann.members[1].handle, "ann@example.com");
  EXPECT_EQ(ann.messages, 3);
  EXPECT_EQ(ann.first, (Date{kMondaySince1970}));
  EXPECT_EQ(ann.last, (Date{kMondaySince1970 + 120}));
}

TEST(ConversationList, NamesAGroupByItsTitleElseByItsMembers) {
  StoreFixture store;
  const std::int64_t handles[] = {store.handleRow("iMessage", "+15550100101"),
                                  store.handleRow("iMessage", "+15550100102")};
  store.writer->addChat(
      {.guid = "g1", .identifier = "chat1", .group = true, .displayName = "Hikers", .handles = handles});
  store.writer->addChat({.guid = "g2", .identifier = "chat2", .group = true, .handles = handles});
  store.writer->addChat({.guid = "g3", .identifier = "chat3", .group = true});
  store.finish();
  const auto list = listOf(store, people({{"+15550100102", {4, "Bo"}}}));
  ASSERT_EQ(list.conversations().size(), 3U);
  EXPECT_EQ(list.conversations()[0].name, "Hikers");
  EXPECT_EQ(list.conversations()[1].name, "+15550100101, Bo");
  EXPECT_EQ(list.conversations()[2].name, "chat3");
  EXPECT_TRUE(list.conversations()[0].isGroup);
}

TEST(ConversationList, PutsTheNewestFirstAndThoseWithoutADateLast) {
  StoreFixture store;
  store.chat("iMessage", "empty@example.com");
  const auto old = store.chat("iMessage", "old@example.com");
  const auto young = store.chat("iMessage", "young@example.com");
  store.message({young}, kMonday + kSecond);
  store.message({old}, kMonday);
  store.finish();
  const auto list = listOf(store);
  ASSERT_EQ(list.conversations().size(), 3U);
  EXPECT_EQ(list.conversations()[0].name, "young@example.com");
  EXPECT_EQ(list.conversations()[1].name, "old@example.com");
  EXPECT_EQ(list.conversations()[2].name, "empty@example.com");
  EXPECT_EQ(list.conversations()[2].messages, 0);
  EXPECT_FALSE(list.conversations()[2].first.has_value());
}

TEST(ConversationList, CountsAMessageOfTwoMergedChatsOnce) {
  StoreFixture store;
  const auto sms = store.chat("SMS", "+15550100101");
  const auto iMessage = store.chat("iMessage", "+15550100101");
  store.message({sms, iMessage}, kMonday);
  store.message({iMessage}, kMonday);
  store.finish();
  EXPECT_EQ(listOf(store).conversations()[0].messages, 2);
}

TEST(ConversationList, CountsOnlyMessagesThatExist) {
  StoreFixture store;
  const auto chat = store.chat("SMS", "+15550100101");
  store.message({chat}, kMonday);
  store.message({chat}, kMonday + kSecond);
  store.finish();
  ASSERT_TRUE(store.connect().execute("PRAGMA foreign_keys=OFF; DELETE FROM message WHERE guid='M2'"));
  const auto list = listOf(store);
  EXPECT_EQ(list.conversations()[0].messages, 1);
  EXPECT_EQ(list.conversations()[0].last, (Date{kMondaySince1970}));
}

TEST(ConversationList, TellsSecondsFromNanosecondsByTheValue) {
  StoreFixture store;
  const auto chat = store.chat("SMS", "+15550100101");
  store.message({chat}, 500'000'000);  // seconds, 2016-11-05
  store.message({chat}, kMonday);
  store.message({chat}, 0);
  store.finish();
  const auto list = listOf(store);
  EXPECT_EQ(list.conversations()[0].messages, 3);
  EXPECT_EQ(list.conversations()[0].first, (Date{500'000'000.0 + 978307200}));
  EXPECT_EQ(list.conversations()[0].last, (Date{kMondaySince1970}));
}

TEST(ConversationList, DoesNotTrustTheMirroredDates) {
  StoreFixture store;
  const auto chat = store.chat("SMS", "+15550100101");
  store.message({chat}, kMonday);
  store.finish();
  ASSERT_TRUE(store.connect().execute("UPDATE chat_message_join SET message_date=0"));
  EXPECT_EQ(listOf(store).conversations()[0].first, (Date{kMondaySince1970}));
}

TEST(ConversationList, ReadsStoresOfEveryGeneration) {
  for (const Generation generation : allGenerations()) {
    StoreFixture store(generation);
    const auto chat = store.chat("SMS", "+15550100101");
    store.message({chat}, 600'000'000);
    store.finish();
    const auto list = listOf(store);
    ASSERT_EQ(list.conversations().size(), 1U) << generationName(generation);
    EXPECT_EQ(list.conversations()[0].messages, 1) << generationName(generation);
    EXPECT_EQ(list.conversations()[0].last, (Date{kMondaySince1970})) << generationName(generation);
  }
}

TEST(ConversationList, CountsMessagesWithScatteredRowNumbers) {
  StoreFixture store;
  const auto chat = store.chat("SMS", "+15550100101");
  store.message({chat}, kMonday);
  store.finish();
  ASSERT_TRUE(store.connect().execute(
      "UPDATE message SET ROWID=9000000000000000000; UPDATE chat_message_join SET message_id=9000000000000000000;"
      "INSERT INTO message(ROWID,guid,text,date) VALUES(-5,'N','x',600000001000000000);"
      "INSERT INTO chat_message_join(chat_id,message_id) VALUES(1,-5)"));
  const auto list = listOf(store);
  EXPECT_EQ(list.conversations()[0].messages, 2);
  EXPECT_EQ(list.conversations()[0].last, (Date{kMondaySince1970 + 1}));
}

TEST(ConversationList, FindsByGuidThenIdentifierThenNameWithoutRegardToCase) {
  StoreFixture store;
  store.chat("iMessage", "+15550100101");
  store.chat("iMessage", "+15550100102");
  store.chat("SMS", "+15550100103");
  store.finish();
  // Somebody is called like the other's GUID.
  const auto list =
      listOf(store, people({{"+15550100101", {1, "Élodie GROß"}}, {"+15550100102", {2, "SMS;-;+15550100103"}}}));
  EXPECT_EQ(list.find("SMS;-;+15550100103"), (std::vector<std::size_t>{2}));
  EXPECT_EQ(list.find("+15550100102"), (std::vector<std::size_t>{1}));
  EXPECT_EQ(list.find("e\u0301LODIE gross"), (std::vector<std::size_t>{0}));
  EXPECT_TRUE(list.find("Elodie").empty());
  EXPECT_TRUE(list.find("Élodie").empty());
}

TEST(ConversationList, FindsEveryConversationOfAName) {
  StoreFixture store;
  store.chat("iMessage", "+15550100101");
  store.chat("iMessage", "+15550100102");
  store.finish();
  const auto list = listOf(store, people({{"+15550100101", {1, "Sam"}}, {"+15550100102", {2, "sam"}}}));
  EXPECT_EQ(list.find("SAM").size(), 2U);
}

TEST(ConversationList, ReadsAChatWhoseMembersTheStoreLost) {
  StoreFixture store;
  store.writer->addChat({.guid = "SMS;-;55501", .identifier = "55501", .service = "SMS"});
  store.finish();
  const auto list = listOf(store);
  ASSERT_EQ(list.conversations()[0].members.size(), 1U);
  EXPECT_EQ(list.conversations()[0].members[0].handle, "55501");
}

TEST(ConversationList, SaysThatADamagedStoreCannotBeRead) {
  StoreFixture store;
  store.chat("iMessage", "+15550100101");
  store.finish();
  ASSERT_TRUE(store.connect().execute("DROP TABLE chat_handle_join"));
  const auto connection = store.connect();
  const auto list = ConversationList::read(connection, nullptr);
  ASSERT_FALSE(list);
  EXPECT_NE(list.problem().sentence.find("chat_handle_join"), std::string::npos);
}

TEST(ConversationList, FindsAPersonByTheirAddressHoweverItIsWritten) {
  StoreFixture store;
  store.chat("iMessage", "+15550100101");
  store.chat("SMS", "+15550100102");
  store.chat("SMS", "55501");
  store.chat("iMessage", "ann@example.com");
  store.finish();
  const auto list = listOf(store);
  const auto namesOf = [&](const std::string& wanted) {
    std::vector<std::string> names;
    for (const std::size_t place : list.find(wanted, "US")) names.push_back(list.conversations()[place].name);
    return names;
  };
  using Names = std::vector<std::string>;
  EXPECT_EQ(namesOf("(555) 010-0101"), Names{"+15550100101"});
  EXPECT_EQ(namesOf("+1 555 010 0102"), Names{"+15550100102"});
  EXPECT_EQ(namesOf("ANN@example.com"), Names{"ann@example.com"});
  EXPECT_EQ(namesOf("555-01"), Names{"55501"});
  for (const std::string part : {"0101", "555", "ann", "example.com", "+1555010010", "1"}) {
    EXPECT_EQ(namesOf(part), Names{}) << part;  // never by a part
  }
}

}  // namespace
}  // namespace chatsum::device
