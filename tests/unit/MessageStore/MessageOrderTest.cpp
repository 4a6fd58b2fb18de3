// Newest or oldest first, whatever the order of the store's rows.

#include <algorithm>
#include <map>

#include "hosts/device/sample/StoreSchema.h"
#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class MessageOrder : public ReadingTest {
 protected:
  /// A message with a date in seconds since 2001.
  std::int64_t add(const std::string& guid, std::int64_t seconds) {
    return addMessage({.guid = guid, .date = seconds * 1'000'000'000});
  }
};

TEST_F(MessageOrder, FollowsTheDatesOfAStoreInDateOrder) {
  add("A", 600'000'001);
  add("B", 600'000'002);
  add("C", 600'000'003);
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAre("A", "B", "C"));
  EXPECT_THAT(read(kNewest).all("guid"), ElementsAre("C", "B", "A"));
  EXPECT_THAT(read(2).all("guid"), ElementsAre("A", "B", "C"));
  EXPECT_THAT(read(-1).all("guid"), ElementsAre("A", "B", "C"));
}

TEST_F(MessageOrder, FollowsTheDatesOfAStoreInReverse) {
  add("C", 600'000'003);
  add("B", 600'000'002);
  add("A", 600'000'001);
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAre("A", "B", "C"));
  EXPECT_THAT(read(kNewest).all("guid"), ElementsAre("C", "B", "A"));
}

TEST_F(MessageOrder, FollowsTheDatesWhenOnlyTheLastRowStepsBack) {
  add("B", 600'000'002);
  add("C", 600'000'003);
  add("A", 600'000'001);
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAre("A", "B", "C"));
  EXPECT_THAT(read(kNewest).all("guid"), ElementsAre("C", "B", "A"));
}

TEST_F(MessageOrder, KeepsMessagesOfOneDateInTheOrderOfTheStoreForBothSortWords) {
  add("C1", 600'000'003);
  add("A1", 600'000'001);
  add("C2", 600'000'003);
  add("B1", 600'000'002);
  add("A2", 600'000'001);
  add("C3", 600'000'003);
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAre("A1", "A2", "B1", "C1", "C2", "C3"));
  EXPECT_THAT(read(kNewest).all("guid"), ElementsAre("C1", "C2", "C3", "B1", "A1", "A2"));
}

TEST_F(MessageOrder, KeepsMessagesThatAllHaveOneDateInTheOrderOfTheStore) {
  for (const char* guid : {"A", "B", "C", "D"}) add(guid, 600'000'000);
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAre("A", "B", "C", "D"));
  EXPECT_THAT(read(kNewest).all("guid"), ElementsAre("A", "B", "C", "D"));
}

TEST_F(MessageOrder, SortsByTheStoredDateAndNotByItsSeconds) {
  addMessage({.guid = "LATER", .date = 600'000'000'900'000'000});
  addMessage({.guid = "SOONER", .date = 600'000'000'100'000'000});
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAre("SOONER", "LATER"));
  EXPECT_THAT(read(kNewest).all("guid"), ElementsAre("LATER", "SOONER"));
}

TEST_F(MessageOrder, SortsByTheStoredDateWhereDatesOfTwoKindsMeet) {
  addMessage({.guid = "NANOSECONDS", .date = 100'000'000'000'000'000});  // shown as 2004
  addMessage({.guid = "SECONDS", .date = 1'000'000'000});                // shown as 2001
  addMessage({.guid = "NEGATIVE", .date = -5});
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAre("NEGATIVE", "SECONDS", "NANOSECONDS"));
}

TEST_F(MessageOrder, PutsADateThatIsMissingAtZero) {
  add("A", 1);
  store().run(
      "INSERT INTO message (guid, text, date) VALUES ('NONE', 'x', NULL);"
      "INSERT INTO chat_message_join SELECT 1, max(ROWID) FROM message;");
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAre("NONE", "A"));
  EXPECT_EQ(read(kOldest).at(0, "Date").asDate()->secondsSince1970, 0);
}

TEST_F(MessageOrder, PutsADateThatIsMissingBeforeNegativeOnes) {
  add("A", 1);
  addMessage({.guid = "NEGATIVE", .date = -5});
  addMessage({.guid = "ZERO", .date = 0});
  store().run(
      "INSERT INTO message (guid, text, date) VALUES ('NONE', 'x', NULL);"
      "INSERT INTO chat_message_join SELECT 1, max(ROWID) FROM message;");
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAre("NONE", "NEGATIVE", "ZERO", "A"));
  EXPECT_THAT(read(kNewest).all("guid"), ElementsAre("A", "ZERO", "NEGATIVE", "NONE"));
}

TEST_F(MessageOrder, GivesThreeRecordsInARowForThreeAttachments) {
  add("A", 600'000'001);
  const std::int64_t b = add("B", 600'000'002);
  add("C", 600'000'003);
  for (const char* name : {"1.jpeg", "2.jpeg", "3.jpeg"}) store().attachment(b, name);
  for (const std::int64_t order : {kOldest, kNewest}) {
    const ReadOutcome outcome = read(order);
    EXPECT_THAT(outcome.all("guid"),
                order == kOldest ? ElementsAre("A", "B", "B", "B", "C") : ElementsAre("C", "B", "B", "B", "A"));
    EXPECT_THAT(outcome.all("Text"), order == kOldest ? ElementsAre("Hello", "1.jpeg", "2.jpeg", "3.jpeg", "Hello")
                                                      : ElementsAre("Hello", "1.jpeg", "2.jpeg", "3.jpeg", "Hello"));
    EXPECT_EQ(outcome.at(1, "Date"), outcome.at(3, "Date"));
  }
}

TEST_F(MessageOrder, KeepsAttachmentsInARowWhereRowsAreNotInDateOrder) {
  const std::int64_t late = add("LATE", 600'000'009);
  const std::int64_t twinA = add("TWIN-A", 600'000'005);
  add("EARLY", 600'000'001);
  const std::int64_t twinB = add("TWIN-B", 600'000'005);
  // Joined in another order than the messages came in.
  store().attachment(twinB, "b1.jpeg");
  store().attachment(twinA, "a1.jpeg");
  store().attachment(late, "l1.jpeg");
  store().attachment(twinB, "b2.jpeg");
  store().attachment(twinA, "a2.jpeg");
  EXPECT_THAT(read(kOldest).all("Text"), ElementsAre("Hello", "a1.jpeg", "a2.jpeg", "b1.jpeg", "b2.jpeg", "l1.jpeg"));
  EXPECT_THAT(read(kNewest).all("Text"), ElementsAre("l1.jpeg", "a1.jpeg", "a2.jpeg", "b1.jpeg", "b2.jpeg", "Hello"));
}

TEST_F(MessageOrder, MergesTheChatsOfAConversationByDate) {
  const std::int64_t other = (store(), store().chat("SMS;-;+15550100123"));
  const auto addTo = [&](std::int64_t to, const std::string& guid, std::int64_t seconds) {
    store().message(to, {.guid = guid, .date = seconds * 1'000'000'000});
  };
  addTo(other, "S1", 600'000'002);
  addTo(chat, "I1", 600'000'001);
  addTo(other, "S2", 600'000'004);
  addTo(chat, "I2", 600'000'004);
  addTo(other, "S3", 600'000'004);
  addTo(chat, "I3", 600'000'003);
  conversation.guids = {kChat, "SMS;-;+15550100123"};
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAre("I1", "S1", "I3", "S2", "I2", "S3"));
  EXPECT_THAT(read(kNewest).all("guid"), ElementsAre("S2", "I2", "S3", "I3", "S1", "I1"));
}

TEST_F(MessageOrder, GivesAMessageThatStandsInTwoMergedChatsOnce) {
  const std::int64_t shared = add("SHARED", 600'000'001);
  const std::int64_t other = store().chat("SMS;-;+15550100123");
  store().insert("chat_message_join", {{"chat_id", other}, {"message_id", shared}});
  conversation.guids = {kChat, "SMS;-;+15550100123"};
  EXPECT_THAT(read().all("guid"), ElementsAre("SHARED"));
}

TEST_F(MessageOrder, PassesOverMessagesWithoutText) {
  const std::int64_t pictureOnly = addMessage({.guid = "A", .text = std::nullopt, .date = 3, .hasAttachments = 1});
  store().attachment(pictureOnly, "a.mov");
  addMessage({.guid = "B", .date = 2});
  const ReadOutcome outcome = read();
  EXPECT_THAT(outcome.all("guid"), ElementsAre("B"));
  EXPECT_FALSE(outcome.hasAttachments);
  EXPECT_FALSE(outcome.hasMultiMediaAttachments);
  EXPECT_THAT(linesWith("hasMultiMediaAttachments"), IsEmpty());
}

TEST_F(MessageOrder, HoldsForManyMessagesInNoOrderAtAll) {
  store().run("BEGIN");
  std::multimap<std::int64_t, std::string> byDate;
  std::uint32_t state = 7;
  for (int i = 0; i < 3000; ++i) {
    state = state * 1664525 + 1013904223;
    const std::int64_t seconds = 600'000'000 + (state >> 16) % 500;
    const std::string guid = std::to_string(i);
    add(guid, seconds);
    byDate.emplace(seconds, guid);  // equal keys stay in the order they came in
  }
  store().run("COMMIT");
  std::vector<std::string> oldestFirst, newestFirst;
  for (const auto& [date, guid] : byDate) oldestFirst.push_back(guid);
  for (auto at = byDate.end(); at != byDate.begin();) {
    const auto first = byDate.lower_bound(std::prev(at)->first);
    for (auto same = first; same != at; ++same) newestFirst.push_back(same->second);
    at = first;
  }
  EXPECT_THAT(read(kOldest).all("guid"), ElementsAreArray(oldestFirst));
  EXPECT_THAT(read(kNewest).all("guid"), ElementsAreArray(newestFirst));
}

// The indexes of a device's store are tempting ways to walk through it; none may change the order.
TEST_F(MessageOrder, HoldsInTheStoreOfEverySystem) {
  for (const device::Generation generation : device::allGenerations()) {
    const std::filesystem::path path = fake.realPath(kMessagesPath);
    std::filesystem::remove(path);
    {
      SmallDatabase database(path);
      database.run(device::messageStoreTables(generation) + device::messageStoreIndexes(generation));
      database.run("INSERT INTO chat (ROWID, guid) VALUES (1, 'iMessage;-;+15550100123')");
      database.run("INSERT INTO handle (ROWID, id, service) VALUES (1, '+15550100123', 'iMessage')");
      const auto message = [&](std::int64_t rowid, const std::string& guid, std::int64_t date) {
        database.insert("message", {{"ROWID", rowid},
                                    {"guid", guid},
                                    {"text", guid},
                                    {"handle_id", std::int64_t{1}},
                                    {"date", date * 1'000'000'000},
                                    {"is_from_me", std::int64_t{0}},
                                    {"cache_has_attachments", std::int64_t{1}}});
        database.insert("chat_message_join", {{"chat_id", std::int64_t{1}}, {"message_id", rowid}});
      };
      message(1, "D", 600'000'004);
      message(2, "A1", 600'000'001);
      message(3, "A2", 600'000'001);
      message(5, "C", 600'000'003);
      message(4, "A3", 600'000'001);
      const auto columns = device::columnsOf("attachment", generation);
      const bool hasOriginal = std::find(columns.begin(), columns.end(), "original_guid") != columns.end();
      database.run(std::string("INSERT INTO attachment (ROWID, filename, guid") +
                   (hasOriginal ? ", original_guid" : "") + ") SELECT column1, column2, column3" +
                   (hasOriginal ? ", column3" : "") +
                   " FROM (VALUES (1, '~/p.jpeg', 'P'), (2, '~/q.jpeg', 'Q'));"
                   "INSERT INTO message_attachment_join (message_id, attachment_id) VALUES (3, 1), (3, 2); ANALYZE;");
    }
    SCOPED_TRACE(std::string(device::generationName(generation)));
    EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 5);
    const ReadOutcome outcome = read(kOldest);
    EXPECT_THAT(outcome.all("guid"), ElementsAre("A1", "A2", "A2", "A3", "C", "D"));
    EXPECT_THAT(outcome.all("Text"), ElementsAre("A1", "User/p.jpeg", "User/q.jpeg", "A3", "C", "D"));
    EXPECT_THAT(outcome.all("Name"), testing::Each("+15550100123"));
    EXPECT_THAT(read(kNewest).all("guid"), ElementsAre("D", "C", "A1", "A2", "A2", "A3"));
  }
  EXPECT_THAT(errorLines(), IsEmpty());
}

}  // namespace
}  // namespace chatsum::tests
