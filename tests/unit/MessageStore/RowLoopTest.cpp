#include "libchatsum/ChatsumUtils/RowLoop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "platform/sqlite/Connection.h"

namespace chatsum {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Rows 1 to 5 of a statement that calls a function at every row, which fails at some of them as often as told.
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

  std::map<std::int64_t, int> failures_;  // row → how often it fails from now on
  std::vector<std::int64_t> taken_;

 private:
  static void checked(sqlite3_context* context, int, sqlite3_value** values) {
    auto& test = *static_cast<RowLoop*>(sqlite3_user_data(context));
    const std::int64_t row = sqlite3_value_int64(values[0]);
    const auto failing = test.failures_.find(row);
    if (failing != test.failures_.end() && failing->second > 0) {
      --failing->second;
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
  for (std::int64_t row = 1; row <= 5; ++row) {
    failures_ = {{row, 1}};
    taken_.clear();
    EXPECT_TRUE(walk());
    EXPECT_EQ(failures_[row], 0);
    EXPECT_THAT(taken_, ElementsAre(1, 2, 3, 4, 5)) << row;
  }
}

TEST_F(RowLoop, TakesEveryRowOnceWhenStepsFailAtDifferentPlaces) {
  failures_ = {{2, 1}, {4, 1}, {5, 1}};
  EXPECT_TRUE(walk());
  EXPECT_THAT(taken_, ElementsAre(1, 2, 3, 4, 5));
  EXPECT_EQ(failures_, (std::map<std::int64_t, int>{{2, 0}, {4, 0}, {5, 0}}));
}

TEST_F(RowLoop, EndsAtTheSecondPlaceWhenOnlyThatFailsForEver) {
  failures_ = {{2, 1}, {4, 1'000'000}};
  EXPECT_FALSE(walk());
  EXPECT_THAT(taken_, ElementsAre(1, 2, 3));
}

TEST_F(RowLoop, EndsWhereAStepFailsForEver) {
  failures_ = {{4, 1'000'000}};
  EXPECT_FALSE(walk());
  EXPECT_THAT(taken_, ElementsAre(1, 2, 3));
  EXPECT_EQ(failures_[4], 1'000'000 - 2);
}

TEST_F(RowLoop, EndsWhenTheFirstStepFailsForEver) {
  failures_ = {{1, 1'000'000}};
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
