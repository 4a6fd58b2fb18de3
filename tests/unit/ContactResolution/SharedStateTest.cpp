// What several threads use at once: the index while it is rebuilt, and the one date formatter.

#include <array>
#include <atomic>
#include <barrier>
#include <thread>

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

class SharedState : public ReadingTest {};

TEST_F(SharedState, LetsReadersSearchTheIndexWhileItIsRebuilt) {
  for (int i = 0; i < 200; ++i) addressBook().value(i + 1, "+1555010" + std::to_string(1000 + i));
  ChatsumUtils::loadAddressBook();
  ChatsumUtils::load();
  fake.dispatch.globalOnThreads = true;

  std::atomic<bool> isOver = false;
  std::atomic<int> answers = 0;
  std::vector<std::jthread> readers;
  for (int reader = 0; reader < 2; ++reader) {
    readers.emplace_back([&, reader] {
      for (int i = reader; !isOver; i = (i + 7) % 200) {
        const platform::ABRecordID found =
            ChatsumUtils::addressBookRecordForPhoneNumber("+1555010" + std::to_string(1000 + i), nullptr);
        // The index may have been seen while it was empty.
        if (found != i + 1 && found != -1) ADD_FAILURE() << found << " for " << i;
        ++answers;
      }
    });
  }
  for (int i = 0; i < 20; ++i) {
    fake.darwinNotifications.post("__ABDataBaseChangedByOtherProcessNotification");
    fake.dispatch.joinThreads();
  }
  while (answers < 100) std::this_thread::yield();
  isOver = true;
  readers.clear();
  EXPECT_EQ(ChatsumUtils::addressBookRecordForPhoneNumber("+15550101042", nullptr), 43);
}

TEST_F(SharedState, LetsTwoReadsRunWhileTheIndexIsRebuilt) {
  addressBook().value(7, "+15550100123");
  conversation.entities = {std::make_shared<platform::fake::FakeEntity>("Yara Example", platform::IMHandle{})};
  const std::int64_t known = store().handle("+15550100123"), unknown = store().handle("+15550100188");
  for (int i = 0; i < 50; ++i) addMessage({.handle = i % 2 == 0 ? known : unknown});
  std::vector<std::jthread> threads;
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([this] {
      const ReadOutcome outcome = read();
      EXPECT_EQ(outcome.records.size(), 50U);
      EXPECT_EQ(outcome.at(1, "Name"), Value("+15550100188"));
    });
  }
  threads.emplace_back([] {
    for (int i = 0; i < 10; ++i) ChatsumUtils::loadAddressBook();
  });
  threads.clear();
}

TEST_F(SharedState, GivesEveryThreadTheOneDateFormatter) {
  std::barrier start(2);
  std::array<DateFormatter*, 2> formatters{};
  std::array<std::string, 2> texts;
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < 2; ++i) {
      threads.emplace_back([&, i] {
        start.arrive_and_wait();
        DateFormatter& formatter = ChatsumUtils::dateFormatter();
        formatters[i] = &formatter;
        TextBuffer text;
        formatter.useDateFormat("yyyy-MM-dd")->append(Date{1'578'307'200}, text);
        texts[i] = text.view();
      });
    }
  }
  EXPECT_NE(formatters[0], nullptr);
  EXPECT_EQ(formatters[0], formatters[1]);
  EXPECT_EQ(texts[0], "2020-01-06");
  EXPECT_EQ(texts[1], "2020-01-06");
}

TEST_F(SharedState, StartsADateFormatterWithNothingSet) {
  // Fresh in a process of its own only; the tests before this one may have set a pattern.
  DateFormatter fresh;
  EXPECT_EQ(fresh.dateFormat(), "");
  EXPECT_EQ(fresh.stringFromDate(Date{0}), "");
}

}  // namespace
}  // namespace chatsum::tests
