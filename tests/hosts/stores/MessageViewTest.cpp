#include "hosts/device/stores/MessageView.h"

#include <gtest/gtest.h>

#include <thread>

#include "hosts/device/body/TypedStreamWriter.h"
#include "hosts/device/stores/StoreCheck.h"
#include "tests/hosts/stores/StoreFixtures.h"

namespace chatsum::device {
namespace {

using testing::connect;
using testing::messagesSchema;
using testing::rows;
using testing::TestFolder;
using testing::value;

// The statements that run over the view, as the reader writes them.
const std::string kMessages =
    "SELECT message_guid, text, date, is_from_me, id, cache_has_attachments, filename from (SELECT * FROM ((SELECT "
    "m.ROWID as MESSAGE_ROWID, m.guid as message_guid, m.text, m.date, m.handle_id, m.is_from_me, "
    "m.cache_has_attachments FROM message m WHERE ROWID in (SELECT message_id FROM chat_message_join WHERE chat_id in "
    "(select ROWID FROM chat WHERE guid='X')) ORDER BY m.date ASC) LEFT JOIN handle h on handle_id=h.ROWID) LEFT JOIN "
    "message_attachment_join mj on MESSAGE_ROWID=mj.message_id) LEFT JOIN attachment a on a.ROWID=attachment_id ";
const std::string kCount =
    "SELECT count (*) as count FROM message m WHERE ROWID in (SELECT message_id FROM chat_message_join WHERE chat_id "
    "in "
    "(select ROWID FROM chat WHERE guid='X'))";
const std::string kChat =
    "INSERT INTO chat(ROWID, guid) VALUES (1, 'X');"
    "INSERT INTO handle(ROWID, id, service) VALUES (1, '+15550100101', 'iMessage');";
const std::string kJoin = "INSERT INTO chat_message_join(chat_id, message_id) SELECT 1, ROWID FROM message;";

std::string blob(const std::string& bytes) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string literal = "x'";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    literal += {kHex[byte >> 4U], kHex[byte & 0x0FU]};
  }
  return literal + "'";
}

// A store with the view installed.
class Viewed {
 public:
  explicit Viewed(const std::string& sql, const MessageView::Options& options = {}) {
    testing::makeStore(folder_ / "sms.db", sql);
    auto taken = StoreSnapshot::take(folder_ / "sms.db");
    EXPECT_TRUE(taken) << taken.problem().sentence;
    snapshot_.emplace(std::move(taken.value()));
    connection = connect(*snapshot_);
    EXPECT_TRUE(MessageView::install(connection.get(), options, counters)) << connection.lastError();
  }

  // The steps of a statement's plan.
  [[nodiscard]] std::vector<std::string> plan(const std::string& sql) const {
    return rows(connection, "EXPLAIN QUERY PLAN " + sql);
  }

  sqlite::Connection connection;
  std::shared_ptr<BodyCounters> counters = std::make_shared<BodyCounters>();

 private:
  TestFolder folder_;
  std::optional<StoreSnapshot> snapshot_;
};

std::string message(const std::string& guid, const std::string& text, const std::string& body,
                    const std::string& date = "700000000000000000") {
  return "INSERT INTO message(guid, text, attributedBody, date, handle_id, is_from_me) VALUES ('" + guid + "', " +
         text + ", " + body + ", " + date + ", 1, 0);";
}

TEST(MessageView, ServesTextsAndBodies) {
  const std::string whole = encodeBody("from the body");
  const Viewed store(messagesSchema(17) + kChat + message("a", "'own text'", blob(encodeBody("not this one"))) +
                     message("b", "NULL", blob(whole)) + message("c", "NULL", "NULL") + message("d", "NULL", "x''") +
                     message("e", "NULL", blob("garbage")) + message("f", "NULL", blob(whole.substr(0, 80))) +
                     message("g", "''", blob(whole)) + message("h", "NULL", blob(encodeBody(""))) +
                     message("i", "NULL", blob(encodeBody("bad \xFF"))) + kJoin);
  const std::vector<std::string> expected = {
      "a|own text", "b|from the body",   "c|NULL", "d|NULL", "e|NULL", "f|from t", "g|from the body",
      "h|",         "i|bad \xEF\xBF\xBD"};
  std::vector<std::string> found;
  for (const std::string& row : rows(store.connection, kMessages)) {
    found.push_back(row.substr(0, row.find('|', row.find('|') + 1)));
  }
  EXPECT_EQ(found, expected);
  EXPECT_EQ(store.counters->decoded, 4U);
  EXPECT_EQ(store.counters->recovered, 1U);
  EXPECT_EQ(store.counters->undecodable, 1U);
  EXPECT_EQ(store.counters->absent, 2U);
  EXPECT_EQ(store.counters->replacedSequences, 1U);
}

TEST(MessageView, ShowsNulCharactersAndNoBodiesThatAreText) {
  const std::string text("a\0b", 3);
  const Viewed store(messagesSchema(17) + message("a", "NULL", blob(encodeBody(text))) +
                     message("b", "NULL", "'a text where a body should be'") + message("c", "x'610062'", "NULL") +
                     message("d", "'a' || char(0) || 'b' || char(0)", blob(encodeBody("another"))));
  EXPECT_EQ(rows(store.connection, "SELECT text FROM message"),
            (std::vector<std::string>{"a␀b", "NULL", "a␀b", "a␀b␀"}));
}

TEST(MessageView, KeepsTheTildesOfNamesApartFromThatOfTheHome) {
  const Viewed store(messagesSchema(17) + kChat + message("a", "'t'", "NULL") +
                     "INSERT INTO attachment(ROWID, guid, filename) VALUES (1, 'A', '~/ab/IMG~1.png'), (2, 'B', "
                     "'~/b.png'), (3, 'C', '/ab/c~1.png'), (4, 'D', NULL);" +
                     "INSERT INTO message_attachment_join VALUES (1, 1), (1, 2), (1, 3), (1, 4);" + kJoin);
  EXPECT_EQ(rows(store.connection, "SELECT filename FROM attachment"),
            (std::vector<std::string>{"User/ab/IMG~1.png", "~/b.png", "/ab/c~1.png", "NULL"}));
  EXPECT_EQ(rows(store.connection, kMessages).size(), 4U);
  for (const std::string& step : store.plan(kMessages)) {
    EXPECT_EQ(step.find("MATERIALIZE"), std::string::npos) << step;
    EXPECT_EQ(step.find("SCAN"), std::string::npos) << step;
  }
}

TEST(MessageView, LooksAtNoBodyUnlessTheTextIsAskedForAndMissing) {
  std::string sql = messagesSchema(17) + kChat;
  for (int i = 0; i < 50; ++i) sql += message(std::to_string(i), "'text'", blob(encodeBody("body")));
  sql += message("null", "NULL", blob(encodeBody("body"))) + kJoin;
  const Viewed store(sql);
  EXPECT_EQ(value(store.connection, kCount), "51");
  EXPECT_EQ(rows(store.connection, "SELECT guid, date FROM message").size(), 51U);
  EXPECT_EQ(store.counters->decoded, 0U);
  EXPECT_EQ(rows(store.connection, kMessages).size(), 51U);
  EXPECT_EQ(store.counters->decoded, 1U);
  EXPECT_EQ(store.counters->absent, 0U);
}

TEST(MessageView, AnswersTheWholeRow) {
  const Viewed store(messagesSchema(17) + kChat +
                     "INSERT INTO message(guid, text, date, handle_id, is_from_me, cache_has_attachments) VALUES "
                     "('g1', 'one', 700000000000000001, 1, 1, 1), ('g2', 'two', 700000000000000002, 0, 0, 0);"
                     "INSERT INTO attachment(ROWID, guid, filename) VALUES (5, 'A', '~/a.jpg'), (6, 'B', '~/b.jpg');"
                     "INSERT INTO message_attachment_join VALUES (1, 5), (1, 6);" +
                     kJoin);
  EXPECT_EQ(rows(store.connection, kMessages),
            (std::vector<std::string>{"g1|one|700000000000000001|1|+15550100101|1|~/a.jpg",
                                      "g1|one|700000000000000001|1|+15550100101|1|~/b.jpg",
                                      "g2|two|700000000000000002|0|NULL|0|NULL"}));
}

TEST(MessageView, ServesStoresOfEveryGeneration) {
  for (const int system : {6, 9, 10, 11, 14, 17, 18}) {
    const std::string date = system < 11 ? "400000000" : "400000000000000000";
    const Viewed store(messagesSchema(system) + kChat + message("a", "NULL", blob(encodeBody("body")), date) + kJoin);
    EXPECT_EQ(rows(store.connection, kMessages),
              std::vector<std::string>{"a|body|400000000000000000|0|+15550100101|0|NULL"})
        << system;
    EXPECT_EQ(value(store.connection, kCount), "1") << system;
    EXPECT_EQ(
        rows(store.connection, "SELECT name FROM pragma_table_info('message', 'temp')"),
        (std::vector<std::string>{"ROWID", "guid", "text", "date", "handle_id", "is_from_me", "cache_has_attachments"}))
        << system;
  }
}

TEST(MessageView, ReplacesColumnsThatTheStoreLacks) {
  const std::string others =
      "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY, id TEXT, service TEXT); CREATE TABLE chat (ROWID INTEGER "
      "PRIMARY "
      "KEY, guid TEXT); CREATE TABLE chat_message_join (chat_id INTEGER, message_id INTEGER);";
  const Viewed withoutBody("CREATE TABLE message (ROWID INTEGER PRIMARY KEY, guid TEXT, text TEXT, date INTEGER);" +
                           others + kChat + "INSERT INTO message VALUES (7, 'a', 'hello', 5); " + kJoin);
  EXPECT_EQ(rows(withoutBody.connection, kMessages), std::vector<std::string>{"a|hello|5000000000|0|NULL|0|NULL"});
  const Viewed withoutText(
      "CREATE TABLE message (ROWID INTEGER PRIMARY KEY, guid TEXT, attributedBody BLOB, date INTEGER);" + others +
      kChat + "INSERT INTO message VALUES (7, 'a', " + blob(encodeBody("b")) + ", 5); " + kJoin);
  EXPECT_EQ(rows(withoutText.connection, kMessages), std::vector<std::string>{"a|b|5000000000|0|NULL|0|NULL"});
  const Viewed withoutBoth("CREATE TABLE message (ROWID INTEGER PRIMARY KEY, guid TEXT, date INTEGER);" + others +
                           kChat + "INSERT INTO message VALUES (7, 'a', 5); " + kJoin);
  EXPECT_EQ(rows(withoutBoth.connection, kMessages), std::vector<std::string>{"a|NULL|5000000000|0|NULL|0|NULL"});
}

TEST(MessageView, ServesStoresWithoutAttachments) {
  for (const std::string drop : {"DROP TABLE message_attachment_join;", "DROP TABLE attachment;",
                                 "DROP TABLE attachment; DROP TABLE message_attachment_join;",
                                 "ALTER TABLE attachment RENAME COLUMN filename TO other;"}) {
    for (const bool plain : {false, true}) {
      const Viewed store(messagesSchema(11) + kChat + message("a", "'hello'", "NULL") + kJoin + drop, {plain});
      EXPECT_EQ(rows(store.connection, kMessages),
                std::vector<std::string>{"a|hello|700000000000000000|0|+15550100101|0|NULL"})
          << drop;
    }
  }
}

TEST(MessageView, PlainLeavesTheTableAsItIs) {
  const Viewed store(messagesSchema(17) + kChat + message("a", "NULL", blob(encodeBody("body")), "400000000") + kJoin,
                     {true});
  EXPECT_EQ(rows(store.connection, kMessages), std::vector<std::string>{"a|NULL|400000000|0|+15550100101|0|NULL"});
  EXPECT_TRUE(rows(store.connection, "SELECT name FROM temp.sqlite_master").empty());
}

TEST(MessageView, TurnsSecondsIntoNanosecondsValueByValue) {
  // {system, index on the date}: without the index the store is not searched beforehand.
  for (const auto& [system, hasIndex] : {std::pair(10, false), {11, true}}) {
    const Viewed store(messagesSchema(system) + message("old", "'t'", "NULL", "400000000") +
                       message("new", "'t'", "NULL", "600000000123456789") + message("none", "'t'", "NULL", "0") +
                       message("null", "'t'", "NULL", "NULL") + message("before 2001", "'t'", "NULL", "-86400") +
                       message("long before", "'t'", "NULL", "-86400000000000") +
                       message("latest seconds", "'t'", "NULL", "9000000000") +
                       message("real", "'t'", "NULL", "400000000.5"));
    EXPECT_EQ(rows(store.connection, "SELECT guid, CAST(date AS INTEGER) FROM message ORDER BY ROWID"),
              (std::vector<std::string>{"old|400000000000000000", "new|600000000123456789", "none|0", "null|NULL",
                                        "before 2001|-86400000000000", "long before|-86400000000000",
                                        "latest seconds|9000000000000000000", "real|400000000500000000"}))
        << hasIndex;
  }
}

TEST(MessageView, FindsASingleOldDateAmongManyNewOnes) {
  for (const std::string date : {"400000000", "-5", "100000000000", "1"}) {
    const Viewed store(messagesSchema(17) +
                       "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) INSERT INTO "
                       "message(guid, date) SELECT 'n' || i, CASE i % 3 WHEN 0 THEN 0 ELSE 600000000000000000 + i END "
                       "FROM n;" +
                       message("old", "'t'", "NULL", date));
    EXPECT_NE(value(store.connection, "SELECT date FROM message WHERE guid = 'old'"), date);
    EXPECT_EQ(value(store.connection, "SELECT date FROM message WHERE guid = 'n1'"), "600000000000000001");
  }
}

TEST(MessageView, LeavesTheDateColumnAloneWhereNothingIsOld) {
  const Viewed store(messagesSchema(17) + message("a", "'t'", "NULL") + message("b", "'t'", "NULL", "0") +
                     message("c", "'t'", "NULL", "-9223372036854775808"));
  const std::string sql = value(store.connection, "SELECT sql FROM temp.sqlite_master WHERE name = 'message'");
  EXPECT_NE(sql.find(", date AS date"), std::string::npos) << sql;
  EXPECT_EQ(value(store.connection, "SELECT date FROM message WHERE guid = 'c'"), "-9223372036854775808");
}

TEST(MessageView, CostsTheStatementsNeitherALookUpNorACopy) {
  for (const int system : {10, 17}) {
    const std::string sql = messagesSchema(system) + kChat + message("a", "'t'", "NULL") + kJoin;
    const Viewed plain(sql, {true});
    const Viewed viewed(sql);
    for (const std::string& statement : {kMessages, kCount}) {
      const auto plan = viewed.plan(statement);
      EXPECT_EQ(plan.size(), plain.plan(statement).size());
      ASSERT_FALSE(plan.empty());
      EXPECT_NE(plan.front().find("message USING INTEGER PRIMARY KEY (rowid=?)"), std::string::npos) << plan.front();
      for (const std::string& step : plan) {
        EXPECT_EQ(step.find("MATERIALIZE"), std::string::npos) << step;
        EXPECT_EQ(step.find("CO-ROUTINE"), std::string::npos) << step;
        EXPECT_EQ(step.find("SCAN"), std::string::npos) << step;
      }
    }
  }
}

TEST(MessageView, WorksOnRowsThatStandInTheWal) {
  const TestFolder folder;
  testing::makeWalStore(folder / "sms.db",
                        messagesSchema(17) + kChat + message("a", "NULL", blob(encodeBody("in the wal"))) + kJoin);
  const auto snapshot = StoreSnapshot::take(folder / "sms.db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  const sqlite::Connection connection = connect(snapshot.value());
  ASSERT_TRUE(MessageView::install(connection.get(), {}, nullptr)) << connection.lastError();
  EXPECT_EQ(rows(connection, kMessages),
            std::vector<std::string>{"a|in the wal|700000000000000000|0|+15550100101|0|NULL"});
}

TEST(MessageView, CountsInOnePlaceForSeveralConnections) {
  const TestFolder folder;
  std::string sql = messagesSchema(17) + kChat;
  for (int i = 0; i < 200; ++i) sql += message(std::to_string(i), "NULL", blob(encodeBody("body")));
  testing::makeStore(folder / "sms.db", sql + kJoin);
  const auto snapshot = StoreSnapshot::take(folder / "sms.db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  const auto counters = std::make_shared<BodyCounters>();
  std::vector<std::thread> readers;
  for (int i = 0; i < 3; ++i) {
    readers.emplace_back([&] {
      const sqlite::Connection connection = connect(snapshot.value());
      EXPECT_TRUE(MessageView::install(connection.get(), {}, counters)) << connection.lastError();
      EXPECT_EQ(rows(connection, kMessages).size(), 200U);
    });
  }
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(counters->decoded, 600U);
}

TEST(MessageView, RefusesATableThatHasNoRowNumbers) {
  const TestFolder folder;
  testing::makeStore(folder / "sms.db",
                     "CREATE TABLE message (guid TEXT PRIMARY KEY, text TEXT, date INTEGER) WITHOUT ROWID");
  const auto snapshot = StoreSnapshot::take(folder / "sms.db");
  ASSERT_TRUE(snapshot) << snapshot.problem().sentence;
  const sqlite::Connection connection = connect(snapshot.value());
  EXPECT_FALSE(MessageView::install(connection.get(), {}, nullptr));
  EXPECT_EQ(connection.lastError(), "no such column: ROWID");
}

}  // namespace
}  // namespace chatsum::device
