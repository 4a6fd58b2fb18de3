#include "tests/support/OpenDescriptors.h"
#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MessageCount : public ReadingTest {};

TEST_F(MessageCount, IsZeroWithoutAStoreAndSaysNothing) {
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 0);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
  EXPECT_EQ(opens(kMessagesPath), 0);
}

TEST_F(MessageCount, IsZeroWhenTheStoreCannotBeOpened) {
  addMessage({});
  fake.files.fail(platform::fake::FileOperation::kOpenDatabase, 13);
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 0);
  EXPECT_EQ(opens(kMessagesPath), 1);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(MessageCount, CountsMessagesAndNotTheirAttachments) {
  const std::int64_t pictures = addMessage({.hasAttachments = 1});
  store().attachment(pictures, "a.jpeg");
  store().attachment(pictures, "b.jpeg");
  addMessage({});
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 2);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(MessageCount, CountsMessagesWithoutTextToo) {
  addMessage({.text = std::nullopt});
  addMessage({});
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 2);
}

TEST_F(MessageCount, AddsUpTheChatsThatAConversationMerges) {
  addMessage({});
  const std::int64_t other = store().chat("SMS;-;+15550100123");
  const std::int64_t stranger = store().chat("SMS;-;+15550100199");
  store().message(other, {});
  store().message(other, {});
  store().message(stranger, {});
  conversation.guids = {kChat, "SMS;-;+15550100123"};
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 3);
}

TEST_F(MessageCount, CountsAMessageThatStandsInTwoOfTheChatsOnce) {
  const std::int64_t shared = addMessage({});
  const std::int64_t other = store().chat("SMS;-;+15550100123");
  store().insert("chat_message_join", {{"chat_id", other}, {"message_id", shared}});
  conversation.guids = {kChat, "SMS;-;+15550100123"};
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 1);
}

TEST_F(MessageCount, IsZeroForAChatThatIsNotInTheStore) {
  addMessage({});
  conversation.guids = {"iMessage;-;nobody@example.com"};
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 0);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(MessageCount, FindsAChatWhoseGuidHoldsQuotes) {
  const std::int64_t quoted = store().chat("iMessage;-;o'brien@example.com");
  store().message(quoted, {});
  conversation.guids = {"iMessage;-;o'brien@example.com"};
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 1);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(MessageCount, LogsTheErrorWhenThereAreNoChatGuids) {
  store();
  conversation.guids = {};
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 0);
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils totalMessageCount:], [Line 242], Error while "
                          "preparing statement. Error: 'near \")\": syntax error'"));
}

TEST_F(MessageCount, LogsTheErrorWhenATableIsMissing) {
  store().run("DROP TABLE chat_message_join");
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 0);
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils totalMessageCount:], [Line 242], Error while "
                          "preparing statement. Error: 'no such table: chat_message_join'"));
}

TEST_F(MessageCount, LogsTheErrorWhenTheFileIsNoDatabase) {
  fake.put(kMessagesPath, std::string(4096, 'x'));
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 0);
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils totalMessageCount:], [Line 242], Error while "
                          "preparing statement. Error: 'file is not a database'"));
}

TEST_F(MessageCount, TreatsAFolderInThePlaceOfTheStoreAsOneThatCannotBeOpened) {
  std::filesystem::create_directories(fake.realPath(kMessagesPath));
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 0);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(MessageCount, LeavesNoConnectionBehind) {
  addMessage({});
  const auto file = store().path();
  store().close();
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 1);
  EXPECT_EQ(openDescriptors(file), 0U);
  read();
  EXPECT_EQ(openDescriptors(file), 0U);
}

TEST_F(MessageCount, LeavesNoConnectionBehindWhenTheStatementIsRefused) {
  store().run("DROP TABLE chat_message_join");
  const auto file = store().path();
  store().close();
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 0);
  EXPECT_EQ(read().completions, 1);
  EXPECT_EQ(openDescriptors(file), 0U);
}

}  // namespace
}  // namespace chatsum::tests
