#include "hosts/device/report/RowCount.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/hosts/conversations/StoreFixture.h"

namespace chatsum::device {
namespace {

using testing::kMonday;
using testing::StoreFixture;

TEST(RowCount, CountsAMessageOncePerAttachment) {
  StoreFixture store;
  const auto chat = store.chat("iMessage", "+15550100101"), other = store.chat("SMS", "+15550100101");
  const std::int64_t files[] = {store.writer->addAttachment({.guid = "A1"}),
                                store.writer->addAttachment({.guid = "A2"}),
                                store.writer->addAttachment({.guid = "A3"})};
  const std::int64_t chats[] = {chat, other};
  store.writer->addMessage({.guid = "three", .text = "x", .date = kMonday, .chats = chats, .attachments = files});
  store.message({chat}, kMonday);
  store.message({other}, kMonday);
  store.finish();
  EXPECT_EQ(countRows(store.connect(), {chat, other}).rows, 5U);
  EXPECT_EQ(countRows(store.connect(), {chat}).rows, 4U);
}

TEST(RowCount, FindsTheDatesThatTheLibraryCannotTell) {
  StoreFixture store;
  const auto chat = store.chat("iMessage", "+15550100101"), other = store.chat("SMS", "+15550100102");
  store.message({chat}, kMonday);                    // M1
  store.message({chat}, 600'000'000);                // M2, seconds: the view makes them nanoseconds
  store.message({chat}, 0);                          // M3
  store.message({chat}, 50'000'000'000'000'000);     // M4
  store.message({chat}, 1'100'000'000'000'000'000);  // M5
  store.message({other}, 0);                         // M6
  store.finish();
  const RowCount count = countRows(store.connect(), {chat});
  EXPECT_FALSE(count.failure.has_value());
  ASSERT_EQ(count.oddDates.size(), 3U);
  EXPECT_FALSE(count.oddDates.at("M3").has_value());
  EXPECT_EQ(count.oddDates.at("M4"), (Date{50'000'000.0 + 978307200}));
  EXPECT_EQ(count.oddDates.at("M5"), (Date{1'100'000'000.0 + 978307200}));
}

TEST(RowCount, TellsApartWhyRowsHaveNoText) {
  StoreFixture store;
  const auto chat = store.chat("iMessage", "+15550100101");
  store.message({chat}, kMonday);
  store.writer->addMessage({.guid = "empty", .date = kMonday, .chats = std::span(&chat, 1)});
  store.writer->addMessage({.guid = "odd", .attributedBody = "no body", .date = kMonday, .chats = std::span(&chat, 1)});
  store.finish();
  const auto counters = std::make_shared<BodyCounters>();
  const auto connection = store.connect();
  ASSERT_TRUE(MessageView::install(connection.get(), {}, counters));
  const TextlessRows count = countTextlessRows(connection, *counters, {chat});
  EXPECT_FALSE(count.failure.has_value());
  EXPECT_EQ(count.withoutBody, 1U);
  EXPECT_EQ(count.withUnreadableBody, 1U);
}

TEST(RowCount, SaysWhyItFails) {
  StoreFixture store;
  store.chat("iMessage", "+15550100101");
  store.finish();
  ASSERT_TRUE(store.connect().execute("DROP TABLE chat_message_join"));
  EXPECT_TRUE(countRows(store.connect(), {1}).failure.has_value());
}

}  // namespace
}  // namespace chatsum::device
