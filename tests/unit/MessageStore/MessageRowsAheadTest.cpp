#include "libchatsum/ChatsumUtils/MessageRowsAhead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/sqlite/Connection.h"
#include "tests/support/NoMoreThreads.h"

namespace chatsum {
namespace {

/// A statement with the columns of the message statement and as many rows as wanted; a row's date is its number.
class MessageRowsAhead : public ::testing::Test {
 protected:
  MessageRowsAhead() {
    sqlite3* handle = nullptr;
    sqlite3_open(":memory:", &handle);
    connection_ = sqlite::Connection(handle);
    sqlite3_create_function(handle, "checked", 1, SQLITE_UTF8, this, &MessageRowsAhead::checked, nullptr, nullptr);
  }

  sqlite::Statement rows(int count, const std::string& text = "'text ' || n") {
    return {connection_.get(), "WITH RECURSIVE t(n) AS (SELECT 1 WHERE " + std::to_string(count) +
                                   " > 0 UNION ALL SELECT n + 1 FROM t WHERE n < " + std::to_string(count) +
                                   ") SELECT 'guid ' || n, " + text + ", checked(n), n % 2, NULL, 3, '' FROM t"};
  }

  std::int64_t failingRow_ = 0, outOfMemoryAt_ = 0;
  int failures_ = 0;
  std::atomic<int> stepped_ = 0;  // rows that were asked for their date
  sqlite::Connection connection_;

 private:
  static void checked(sqlite3_context* context, int, sqlite3_value** values) {
    auto& test = *static_cast<MessageRowsAhead*>(sqlite3_user_data(context));
    const std::int64_t row = sqlite3_value_int64(values[0]);
    ++test.stepped_;
    if (row == test.outOfMemoryAt_) {
      sqlite3_result_error_nomem(context);
    } else if (row == test.failingRow_ && test.failures_ > 0) {
      --test.failures_;
      sqlite3_result_error(context, "made to fail", -1);
    } else {
      sqlite3_result_int64(context, row);
    }
  }
};

TEST_F(MessageRowsAhead, ComeInOrderAndWholeWhateverTheirNumber) {
  for (const int count : {0, 1, 2, 1023, 1024, 1025, 4096, 4097, 10'000}) {
    int taken = 0;
    const auto caller = std::this_thread::get_id();
    EXPECT_TRUE(takeRowsAhead(rows(count), [&](const MessageRow& row) {
      ++taken;
      const std::string number = std::to_string(taken);
      ASSERT_EQ(std::this_thread::get_id(), caller);
      ASSERT_EQ(row.date, taken);
      ASSERT_EQ(row.guid, "guid " + number);
      ASSERT_EQ(row.text, "text " + number);
      ASSERT_EQ(row.isFromMe, taken % 2);
      ASSERT_EQ(row.handle, std::nullopt);
      ASSERT_EQ(row.hasAttachments, 3);
      ASSERT_EQ(row.fileName, "");
    }));
    EXPECT_EQ(taken, count);
  }
}

TEST_F(MessageRowsAhead, HoldLongTexts) {
  int taken = 0;
  EXPECT_TRUE(takeRowsAhead(rows(40, "printf('%.*c', 100000 + n, 'x')"), [&](const MessageRow& row) {
    ++taken;
    ASSERT_EQ(row.text->size(), static_cast<std::size_t>(100'000 + taken));
  }));
  EXPECT_EQ(taken, 40);
}

// Four batches of three such rows are all that may wait at once: each ends when it holds 256 KB.
TEST_F(MessageRowsAhead, AreNotReadFarAheadWhenTheyAreLong) {
  constexpr int kWaiting = 4 * 3;
  int taken = 0;
  EXPECT_TRUE(takeRowsAhead(rows(40, "printf('%.*c', 100000, 'x')"), [&](const MessageRow&) {
    if (taken++ > 0) return;
    // Gives a reader that knows no bound the time to show it.
    for (int round = 0; round < 200 && stepped_ <= kWaiting + 1; ++round) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_LE(stepped_, kWaiting + 1);
  }));
  EXPECT_EQ(taken, 40);
}

TEST_F(MessageRowsAhead, GoOnAfterAStepThatFailedOnce) {
  failingRow_ = 3000;
  failures_ = 1;
  std::int64_t taken = 0;
  EXPECT_TRUE(takeRowsAhead(rows(5000), [&](const MessageRow& row) { ASSERT_EQ(row.date, ++taken); }));
  EXPECT_EQ(taken, 5000);
  EXPECT_EQ(failures_, 0);
}

TEST_F(MessageRowsAhead, EndWhereAStepFailsForEver) {
  failingRow_ = 3000;
  failures_ = 1'000'000;
  std::int64_t taken = 0;
  EXPECT_FALSE(takeRowsAhead(rows(5000), [&](const MessageRow& row) { ASSERT_EQ(row.date, ++taken); }));
  EXPECT_EQ(taken, 2999);
}

TEST_F(MessageRowsAhead, LeaveNoThreadWaitingWhenTheTakerGivesUp) {
  const sqlite::Statement statement = rows(20'000);
  int taken = 0;
  EXPECT_THROW(static_cast<void>(takeRowsAhead(statement,
                                               [&](const MessageRow&) {
                                                 if (++taken == 1500) throw std::runtime_error("enough");
                                               })),
               std::runtime_error);
  EXPECT_EQ(taken, 1500);
}

TEST_F(MessageRowsAhead, ComeWithoutASecondThreadToo) {
  const test::NoMoreThreads none;
  int taken = 0;
  EXPECT_TRUE(takeRowsAhead(rows(100), [&](const MessageRow&) { ++taken; }));
  EXPECT_EQ(taken, 100);
}

TEST_F(MessageRowsAhead, EndWithTheMissingMemoryOfTheThreadThatSteps) {
  // Missing memory is no failing step: that would be a row without values.
  for (const int row : {1, 2000, 9000}) {
    outOfMemoryAt_ = row;
    int taken = 0;
    EXPECT_THROW(static_cast<void>(takeRowsAhead(rows(10'000), [&](const MessageRow&) { ++taken; })), std::bad_alloc);
    EXPECT_LT(taken, row);
  }
}

}  // namespace
}  // namespace chatsum
