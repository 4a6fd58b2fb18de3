// The lines and the statement of a read, and what becomes of excluded messages and of stores that cannot be read.

#include <thread>

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* kErrorStart =
    "com.orbelle.Chatsum: Error => +[ChatsumUtils allMessagesForConversation:excludedGuids:order:completion:], [Line "
    "722], Error while preparing statement. Error: '";
constexpr const char* kGettingOneChat =
    "com.orbelle.Chatsum: Information => +[ChatsumUtils allMessagesForConversation:excludedGuids:order:completion:], "
    "[Line 549], Getting all messages for GUIDs => (\n    \"iMessage;-;+15550100123\"\n)";

/// The statement as it must reach the store, to the letter.
std::string statementLine(const std::string& filter, const std::string& sortWord, const std::string& exclusion) {
  return "********** sqlStatement => SELECT message_guid, text, date, is_from_me, id, cache_has_attachments, filename "
         "from (SELECT * FROM ((SELECT m.ROWID as MESSAGE_ROWID, m.guid as message_guid, m.text, m.date, m.handle_id, "
         "m.is_from_me, m.cache_has_attachments FROM message m WHERE ROWID in (SELECT message_id FROM "
         "chat_message_join WHERE chat_id in (select ROWID FROM chat WHERE " +
         filter + ")) ORDER BY m.date " + sortWord +
         ") LEFT JOIN handle h on handle_id=h.ROWID) LEFT JOIN message_attachment_join mj on MESSAGE_ROWID="
         "mj.message_id) LEFT JOIN attachment a on a.ROWID=attachment_id " +
         exclusion;
}

class MessageStatement : public ReadingTest {
 protected:
  std::string onlyStatementLine() {
    const auto lines = linesWith("sqlStatement");
    return lines.size() == 1 ? lines.front() : std::to_string(lines.size()) + " lines";
  }
  void expectNothingRead(const ReadOutcome& outcome) {
    EXPECT_EQ(outcome.completions, 1);
    EXPECT_TRUE(outcome.records.empty());
    EXPECT_FALSE(outcome.hasAttachments);
    EXPECT_FALSE(outcome.hasMultiMediaAttachments);
  }
};

TEST_F(MessageStatement, LogsTheChatsAndTheStatementAndNothingElseInAPlainRead) {
  addMessage({});
  EXPECT_EQ(read(kNewest).records.size(), 1U);
  EXPECT_THAT(fake.log.lines(),
              ElementsAre(kGettingOneChat, statementLine("guid='iMessage;-;+15550100123'", "DESC", "")));
}

TEST_F(MessageStatement, JoinsTheGuidsOfMergedChatsWithOr) {
  store();
  conversation.guids = {"G1", "G2", "G3"};
  expectNothingRead(read());
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Information => +[ChatsumUtils "
                          "allMessagesForConversation:excludedGuids:order:completion:], [Line 549], Getting all "
                          "messages for GUIDs => (\n    G1,\n    G2,\n    G3\n)",
                          statementLine("guid='G1' OR guid='G2' OR guid='G3'", "ASC", "")));
}

TEST_F(MessageStatement, SortsNewestFirstForOrderOneOnly) {
  store();
  const auto sortWordOf = [&](std::int64_t order) {
    fake.log.clear();
    read(order);
    return onlyStatementLine();
  };
  const std::string filter = "guid='iMessage;-;+15550100123'";
  EXPECT_EQ(sortWordOf(1), statementLine(filter, "DESC", ""));
  EXPECT_EQ(sortWordOf(0), statementLine(filter, "ASC", ""));
  EXPECT_EQ(sortWordOf(2), statementLine(filter, "ASC", ""));
  EXPECT_EQ(sortWordOf(-1), statementLine(filter, "ASC", ""));
}

TEST_F(MessageStatement, SortsNewestFirstInTheShorterForm) {
  addMessage({.guid = "OLD", .date = 1});
  addMessage({.guid = "NEW", .date = 2});
  ReadOutcome outcome;
  ChatsumUtils::allMessagesForConversation(conversation, {"OTHER"}, keepIn(outcome));
  EXPECT_EQ(outcome.completions, 1);
  EXPECT_THAT(outcome.all("guid"), ElementsAre("NEW", "OLD"));
  EXPECT_EQ(onlyStatementLine(),
            statementLine("guid='iMessage;-;+15550100123'", "DESC", "WHERE message_guid not in ('OTHER')"));
}

TEST_F(MessageStatement, LeavesOutTheOneExcludedMessageWithAllItsRows) {
  const std::int64_t excluded = addMessage({.guid = "A", .hasAttachments = 1});
  store().attachment(excluded, "a.mov");
  store().attachment(excluded, "b.mov");
  addMessage({.guid = "B"});
  addMessage({.guid = "C"});
  const ReadOutcome outcome = read(kOldest, {"A"});
  EXPECT_THAT(outcome.all("guid"), ElementsAre("B", "C"));
  EXPECT_FALSE(outcome.hasAttachments);
  EXPECT_FALSE(outcome.hasMultiMediaAttachments);
  EXPECT_EQ(onlyStatementLine(),
            statementLine("guid='iMessage;-;+15550100123'", "ASC", "WHERE message_guid not in ('A')"));
}

TEST_F(MessageStatement, AlsoLosesMessagesWithoutGuidWhenOneIsExcluded) {
  addMessage({.guid = std::nullopt});
  addMessage({.guid = "B"});
  // NULL is neither in a list nor out of it.
  EXPECT_THAT(read(kOldest, {"A"}).all("guid"), ElementsAre("B"));
}

TEST_F(MessageStatement, ExcludesAMessageWhoseGuidHoldsQuotes) {
  addMessage({.guid = "it's'"});
  addMessage({.guid = "B"});
  EXPECT_THAT(read(kOldest, {"it's'"}).all("guid"), ElementsAre("B"));
  EXPECT_EQ(onlyStatementLine(),
            statementLine("guid='iMessage;-;+15550100123'", "ASC", "WHERE message_guid not in ('it''s''')"));
  EXPECT_THAT(errorLines(), IsEmpty());
}

TEST_F(MessageStatement, TakesAnEmptyExcludedGuidAsAGuid) {
  addMessage({.guid = ""});
  addMessage({.guid = "B"});
  EXPECT_THAT(read(kOldest, {""}).all("guid"), ElementsAre("B"));
}

TEST_F(MessageStatement, IsRefusedWithTwoExcludedMessages) {
  const std::int64_t message = addMessage({.guid = "A", .hasAttachments = 1});
  store().attachment(message, "a.mov");
  addMessage({.guid = "B"});
  addMessage({.guid = "C"});
  expectNothingRead(read(kOldest, {"A", "B"}));
  EXPECT_THAT(fake.log.lines(),
              ElementsAre(kGettingOneChat,
                          statementLine("guid='iMessage;-;+15550100123'", "ASC", ", 'WHERE message_guid not in ('A'')"),
                          std::string(kErrorStart) + "near \"''\": syntax error'"));
}

TEST_F(MessageStatement, IsRefusedWithThreeExcludedMessages) {
  addMessage({.guid = "A"});
  expectNothingRead(read(kOldest, {"X", "Y", "Z"}));
  EXPECT_THAT(fake.log.lines(), ElementsAre(kGettingOneChat,
                                            statementLine("guid='iMessage;-;+15550100123'", "ASC",
                                                          ", ', 'WHERE message_guid not in ('X''')"),
                                            std::string(kErrorStart) + "no such table: , '"));
}

TEST_F(MessageStatement, IsRefusedWithSeveralExcludedMessagesWhateverTheirGuids) {
  addMessage({.guid = "A"});
  for (const char* guid : {"it's", "(", ")", "'", "''", "", "a b", "--", "x'(", "%@", ";"}) {
    fake.log.clear();
    expectNothingRead(read(kOldest, {guid, "B"}));
    ASSERT_THAT(errorLines(), ElementsAre(StartsWith(kErrorStart))) << guid;
    expectNothingRead(read(kOldest, {guid, guid, guid}));
    ASSERT_EQ(errorLines().size(), 2U) << guid;
  }
}

TEST_F(MessageStatement, IsRefusedWithoutChatGuids) {
  addMessage({});
  conversation.guids = {};
  expectNothingRead(read());
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Information => +[ChatsumUtils "
                          "allMessagesForConversation:excludedGuids:order:completion:], [Line 549], Getting all "
                          "messages for GUIDs => (\n)",
                          statementLine("", "ASC", ""), std::string(kErrorStart) + "near \")\": syntax error'"));
}

TEST_F(MessageStatement, IsRefusedWhenATableIsMissing) {
  addMessage({});
  store().run("DROP TABLE attachment");
  expectNothingRead(read());
  EXPECT_THAT(errorLines(), ElementsAre(std::string(kErrorStart) + "no such table: attachment'"));
}

TEST_F(MessageStatement, IsRefusedWhenTheFileIsNoDatabase) {
  fake.put(kMessagesPath, "Dear diary, this is a text file.\n" + std::string(4096, '.'));
  expectNothingRead(read());
  EXPECT_THAT(errorLines(), ElementsAre(std::string(kErrorStart) + "file is not a database'"));
}

TEST_F(MessageStatement, IsRefusedByAnEmptyFile) {
  fake.put(kMessagesPath, "");
  expectNothingRead(read());
  EXPECT_THAT(errorLines(), ElementsAre(StartsWith(std::string(kErrorStart) + "no such table: ")));
}

TEST_F(MessageStatement, IsNotMadeWithoutAStore) {
  expectNothingRead(read());
  EXPECT_THAT(fake.log.lines(), ElementsAre(kGettingOneChat));
  EXPECT_EQ(opens(kMessagesPath), 0);
  EXPECT_EQ(fake.addressBook.created, 0);
}

TEST_F(MessageStatement, IsNotMadeWhenTheStoreCannotBeOpened) {
  addMessage({});
  fake.files.fail(platform::fake::FileOperation::kOpenDatabase, 13);
  expectNothingRead(read());
  EXPECT_THAT(fake.log.lines(), ElementsAre(kGettingOneChat));
  EXPECT_EQ(opens(kMessagesPath), 1);
  EXPECT_EQ(fake.addressBook.created, 0);
}

TEST_F(MessageStatement, AsksForAnAddressBookOnceEvenWhenItIsRefused) {
  addMessage({});
  addMessage({});
  read();
  EXPECT_EQ(fake.addressBook.created, 1);
  EXPECT_EQ(fake.addressBook.access.requests(), 1);
  read(kOldest, {"A", "B"});
  EXPECT_EQ(fake.addressBook.created, 2);
}

TEST_F(MessageStatement, ToleratesAnEmptyCompletion) {
  addMessage({});
  ChatsumUtils::allMessagesForConversation(conversation, {}, kNewest, nullptr);
  ChatsumUtils::allMessagesForConversation(conversation, {}, {});
  EXPECT_EQ(linesWith("sqlStatement").size(), 2U);
  EXPECT_THAT(errorLines(), IsEmpty());
}

TEST_F(MessageStatement, CompletesOnTheCallersThreadBeforeTheReadReturnsAndWithTheStoreClosed) {
  addMessage({});
  bool isCompleted = false;
  const auto caller = std::this_thread::get_id();
  ChatsumUtils::allMessagesForConversation(conversation, {}, kOldest, [&](const Array& records, bool, bool) {
    EXPECT_EQ(std::this_thread::get_id(), caller);
    EXPECT_EQ(records.size(), 1U);
    store().run("BEGIN EXCLUSIVE; COMMIT");
    isCompleted = true;
  });
  EXPECT_TRUE(isCompleted);
}

TEST_F(MessageStatement, FindsAChatWhoseGuidHoldsQuotes) {
  const std::int64_t quoted = store().chat("iMessage;-;o'brien@example.com");
  store().message(quoted, {.guid = "A"});
  conversation.guids = {"iMessage;-;o'brien@example.com"};
  EXPECT_THAT(read().all("guid"), ElementsAre("A"));
  EXPECT_EQ(onlyStatementLine(), statementLine("guid='iMessage;-;o''brien@example.com'", "ASC", ""));
}

}  // namespace
}  // namespace chatsum::tests
