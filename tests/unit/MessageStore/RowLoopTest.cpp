#include "libchatsum/ChatsumUtils/RowLoop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "platform/sqlite/Connection.h"

namespace chatsum {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Rows 1 to 5 of a statement that calls a function at every row, which fails at one of them as often as told.
class RowLoop : public ::testing::Test {
 protected:
  RowLoop() {
    sqlite3* handle = nullptr;
    sqlite3_open(":memory:", &handle);
    connection_ = sqlite::Connection(handle);
    sqlite3_create_function(handle, "checked", 1, SQLITE_UTF8, this, &RowLoop::checked, nullptr, nullptr);
    EXPECT_TRUE(connection_.execute("CREATE TABLE t (n INTEGER); INSERT INTO t VALUES (1), (2), (3), (4), (5)"));
  }

  bool walk() {
    const sqlite::Statement statement(connection_.get(), "SELECT checked(n) FROM t");
    return forEachRow(statement, [&] { taken_.push_back(statement.integer(0)); });
  }

  std::int64_t failingRow_ = 0;
  int failures_ = 0;
  std::vector<std::int64_t> taken_;

 private:
  static void checked(sqlite3_context* context, int, sqlite3_value** values) {
    auto& test = *static_cast<RowLoop*>(sqlite3_user_data(context));
    const std::int64_t row = sqlite3_value_int64(values[0]);
    if (row == test.failingRow_ && test.failures_ > 0) {
      --test.failures_;
      sqlite3_result_error(context, "made to fail", -1);
    } else {
      sqlite3_result_int64(context, row);
    }
  }

  sqlite::Connection connection_;
};

TEST_F(RowLoop, TakesEveryRowInOrder) {
  EXPECT_TRUE(walk());
  EXPECT_THAT(taken_, ElementsAre(1, 2, 3, 4, 5));
}

TEST_F(RowLoop, TakesEveryRowOnceWhenAStepFailsOnce) {
  for (failingRow_ = 1; failingRow_ <= 5; ++failingRow_) {
    failures_ = 1;
    taken_.clear();
    EXPECT_TRUE(walk());
    EXPECT_EQ(failures_, 0);
    EXPECT_THAT(taken_, ElementsAre(1, 2, 3, 4, 5)) << failingRow_;
  }
}

TEST_F(RowLoop, EndsWhereAStepFailsForEver) {
  failingRow_ = 4;
  failures_ = 1'000'000;
  EXPECT_FALSE(walk());
  EXPECT_THAT(taken_, ElementsAre(1, 2, 3));
  EXPECT_EQ(failures_, 1'000'000 - 2);
}

TEST_F(RowLoop, EndsWhenTheFirstStepFailsForEver) {
  failingRow_ = 1;
  failures_ = 1'000'000;
  EXPECT_FALSE(walk());
  EXPECT_THAT(taken_, IsEmpty());
}

TEST_F(RowLoop, TakesNothingFromAStatementWithoutRows) {
  sqlite3* handle = nullptr;
  sqlite3_open(":memory:", &handle);
  const sqlite::Connection connection(handle);
  const sqlite::Statement statement(handle, "SELECT 1 WHERE 0");
  EXPECT_TRUE(forEachRow(statement, [&] { taken_.push_back(0); }));
  EXPECT_THAT(taken_, IsEmpty());
}

}  // namespace
}  // namespace chatsum
