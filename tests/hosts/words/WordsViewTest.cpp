#include "hosts/device/words/WordsView.h"

#include <gtest/gtest.h>

#include "platform/sqlite/Statement.h"
#include "tests/hosts/words/WordsFixture.h"

namespace chatsum::device {
namespace {

using testing::Texts;
using testing::WordsFixture;

// The statement that runs over the view, as the library writes it.
const std::string kMessages =
    "SELECT message_guid, text, date, is_from_me, id, cache_has_attachments, filename from (SELECT * FROM ((SELECT "
    "m.ROWID as MESSAGE_ROWID, m.guid as message_guid, m.text, m.date, m.handle_id, m.is_from_me, "
    "m.cache_has_attachments FROM message m WHERE ROWID in (SELECT message_id FROM chat_message_join WHERE chat_id in "
    "(select ROWID FROM chat WHERE guid='maya')) ORDER BY m.date ASC) LEFT JOIN handle h on handle_id=h.ROWID) LEFT "
    "JOIN "
    "message_attachment_join mj on MESSAGE_ROWID=mj.message_id) LEFT JOIN attachment a on a.ROWID=attachment_id ";

class WordsViewTest : public ::testing::Test {
 protected:
  /// Opens the device's store with every message of Maya's conversation in words.
  void open(const WordsOptions& options = {}) {
    session_ = device_.open();
    session_->startLibrary();
    auto plain = session_->connect();
    auto list = ConversationList::read(plain.value(), session_->findPerson());
    const Conversation conversation = list.value().conversations()[list.value().find("maya").at(0)];
    auto facts = ReadingFacts::read(plain.value(), conversation, session_->findPerson(), "Me", options);
    ASSERT_TRUE(facts) << facts.problem().sentence;
    words_ = std::make_shared<MessageWords>(std::move(plain.value()), facts.value(), nullptr);
    auto connection = session_->connectWithWords(words_);
    ASSERT_TRUE(connection) << connection.problem().sentence;
    store_ = std::move(connection.value());
  }
  [[nodiscard]] Texts rows(const std::string& sql, int column) const {
    Texts rows;
    const sqlite::Statement statement(store_.get(), sql);
    EXPECT_TRUE(statement) << store_.lastError();
    while (statement && statement.step() == SQLITE_ROW) rows.emplace_back(statement.text(column));
    return rows;
  }

  WordsFixture device_;
  std::unique_ptr<DeviceSession> session_;
  std::shared_ptr<MessageWords> words_;
  sqlite::Connection store_;
};

TEST_F(WordsViewTest, CostsTheStatementNeitherAScanNorACopy) {
  device_.add({.text = "Hello"});
  for (const WordsOptions& options : {WordsOptions{}, WordsOptions{true, true}}) {
    open(options);
    const Texts plan = rows("EXPLAIN QUERY PLAN " + kMessages, 3);
    ASSERT_FALSE(plan.empty());
    EXPECT_NE(plan.front().find("message USING INTEGER PRIMARY KEY (rowid=?)"), std::string::npos) << plan.front();
    for (const std::string& step : plan) {
      EXPECT_EQ(step.find("MATERIALIZE"), std::string::npos) << step;
      EXPECT_EQ(step.find("CO-ROUTINE"), std::string::npos) << step;
      EXPECT_TRUE(step.find("SCAN") == std::string::npos || step.find("VIRTUAL TABLE INDEX") != std::string::npos)
          << step;
    }
  }
}

TEST_F(WordsViewTest, AsksOnlyForMessagesThatHaveMoreToSay) {
  for (int i = 0; i < 50; ++i) device_.add({.text = "ordinary"});
  device_.add({.text = "Lost", .fromMe = true, .error = 22});
  open();
  const Texts asked = rows("SELECT sql FROM temp.sqlite_master WHERE name = 'message'", 0);
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_NE(asked[0].find("chatsum_marked(ROWID) OR "), std::string::npos) << asked[0];
  EXPECT_EQ(rows(kMessages, 1).back(), "Lost [not sent, error 22]");
  EXPECT_EQ(rows("SELECT count(*) FROM message WHERE text = 'ordinary'", 0), Texts{"50"});
}

TEST_F(WordsViewTest, ServesFilesForOneMessageOnly) {
  const std::int64_t file = device_.addFile("boat.jpeg");
  device_.add({.text = "\uFFFC Look", .attachments = std::span(&file, 1)});
  device_.add({.text = "Hello"});
  open();
  EXPECT_EQ(rows("SELECT attachment_id FROM message_attachment_join WHERE message_id = 1", 0), (Texts{"", "1"}));
  EXPECT_TRUE(rows("SELECT attachment_id FROM message_attachment_join WHERE message_id = 2", 0).empty());
  EXPECT_FALSE(sqlite::Statement(store_.get(), "SELECT * FROM message_attachment_join"));
}

TEST_F(WordsViewTest, ChangesNothingInTheStore) {
  device_.add({.text = "Hello"});
  open({true, true});
  EXPECT_FALSE(store_.execute("INSERT INTO main.message(guid) VALUES ('x')"));
  EXPECT_FALSE(session_->checkUnchanged().has_value());
}

}  // namespace
}  // namespace chatsum::device
