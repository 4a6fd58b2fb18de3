#include "hosts/device/sample/StoreSchema.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/hosts/sample/StoreReading.h"

namespace chatsum::device {
namespace {

sqlite::Connection storeWith(const std::string& sql) {
  sqlite3* handle = nullptr;
  sqlite3_open(":memory:", &handle);
  sqlite::Connection store(handle);
  EXPECT_TRUE(store.execute(sql)) << store.lastError();
  return store;
}

sqlite::Connection messageStore(Generation generation) {
  return storeWith(messageStoreTables(generation) + messageStoreIndexes(generation));
}

std::vector<std::int64_t> columnCounts(const std::string& table) {
  std::vector<std::int64_t> counts;
  for (Generation generation : allGenerations()) {
    counts.push_back(numberOf(messageStore(generation), "SELECT count(*) FROM pragma_table_info('" + table + "')"));
  }
  return counts;
}

bool hasColumn(const sqlite::Connection& store, const std::string& table, const std::string& column) {
  return numberOf(store, "SELECT count(*) FROM pragma_table_info('" + table + "') WHERE name = '" + column + "'") == 1;
}

TEST(StoreSchema, MessagesHaveTheColumnsOfTheirGeneration) {
  EXPECT_EQ(columnCounts("message"), (std::vector<std::int64_t>{38, 51, 60, 64, 74, 88, 95}));
}

TEST(StoreSchema, TheOtherTablesGrowAsWell) {
  EXPECT_EQ(columnCounts("chat"), (std::vector<std::int64_t>{12, 16, 16, 22, 27, 31, 31}));
  EXPECT_EQ(columnCounts("attachment"), (std::vector<std::int64_t>{9, 12, 16, 20, 23, 24, 27}));
  EXPECT_EQ(columnCounts("handle"), (std::vector<std::int64_t>{5, 5, 5, 5, 6, 6, 6}));
}

TEST(StoreSchema, JoinsCarryTheDateSinceIos11) {
  EXPECT_FALSE(hasColumn(messageStore(Generation::ios10), "chat_message_join", "message_date"));
  EXPECT_TRUE(hasColumn(messageStore(Generation::ios11), "chat_message_join", "message_date"));
  EXPECT_FALSE(hasNanosecondDates(Generation::ios10));
  EXPECT_TRUE(hasNanosecondDates(Generation::ios11));
}

TEST(StoreSchema, ColumnListsMatchTheTablesThatAreMade) {
  for (Generation generation : allGenerations()) {
    const sqlite::Connection store = messageStore(generation);
    for (const std::string table : {"message", "chat", "handle", "attachment", "chat_message_join"}) {
      std::string names;
      for (std::string_view name : columnsOf(table, generation)) names += std::string(name) + "\n";
      EXPECT_EQ(names, rowsOf(store, "SELECT name FROM pragma_table_info('" + table + "')"))
          << table << " of " << generationName(generation);
    }
  }
}

TEST(StoreSchema, ReadingOneChatByDateNeedsNoSort) {
  const sqlite::Connection store = messageStore(Generation::ios17);
  const std::string plan = rowsOf(store,
                                  "EXPLAIN QUERY PLAN SELECT message_id FROM chat_message_join WHERE chat_id = 1 "
                                  "ORDER BY message_date, message_id");
  EXPECT_NE(plan.find("chat_message_join_idx_message_date_id_chat_id"), std::string::npos) << plan;
  EXPECT_EQ(plan.find("TEMP B-TREE"), std::string::npos) << plan;
}

TEST(StoreSchema, TheAddressBookCanBeMade) {
  const sqlite::Connection store = storeWith(addressBookTables() + addressBookIndexes());
  EXPECT_TRUE(hasColumn(store, "ABPerson", "PersonLink"));
  EXPECT_TRUE(hasColumn(store, "ABMultiValue", "record_id"));
}

TEST(StoreSchema, GenerationsAreFoundByTheirNames) {
  for (Generation generation : allGenerations()) {
    Generation found = Generation::ios6;
    EXPECT_TRUE(generationNamed(generationName(generation), found));
    EXPECT_EQ(found, generation);
  }
  Generation untouched = Generation::ios9;
  EXPECT_FALSE(generationNamed("ios5", untouched));
  EXPECT_EQ(untouched, Generation::ios9);
}

}  // namespace
}  // namespace chatsum::device
