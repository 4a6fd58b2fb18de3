#include "platform/foundation/NotificationCenter.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace chatsum::test {
namespace {

class Notifications : public ::testing::Test {
 protected:
  NotificationCenter center;
  std::vector<std::string> told;
  int anna = 0, ben = 0;  // observers are known by their addresses

  void observe(const void* observer, const char* name, const std::string& word) {
    center.addObserver(observer, name,
                       [this, word](std::string_view posted) { told.push_back(word + " " + std::string(posted)); });
  }
};

TEST_F(Notifications, ReachTheObserversOfTheirNameInOrder) {
  observe(&anna, "One", "anna");
  observe(&ben, "Two", "ben");
  observe(&ben, "One", "ben");
  center.post("One");
  EXPECT_EQ(told, (std::vector<std::string>{"anna One", "ben One"}));
  center.post("Three");
  EXPECT_EQ(told.size(), 2U);
}

TEST_F(Notifications, ReachAnObserverAsOftenAsItWasAdded) {
  observe(&anna, "One", "anna");
  observe(&anna, "One", "anna again");
  center.post("One");
  EXPECT_EQ(told, (std::vector<std::string>{"anna One", "anna again One"}));
}

TEST_F(Notifications, LeaveARemovedObserverAloneUnderAllNames) {
  observe(&anna, "One", "anna");
  observe(&anna, "Two", "anna");
  observe(&ben, "One", "ben");
  center.removeObserver(&anna);
  center.removeObserver(&anna);
  center.post("One");
  center.post("Two");
  EXPECT_EQ(told, std::vector<std::string>{"ben One"});
}

TEST_F(Notifications, MayBePostedAddedAndRemovedByAHandler) {
  center.addObserver(&anna, "One", [this](std::string_view) {
    told.push_back("anna");
    center.removeObserver(&anna);
    observe(&ben, "Two", "ben");
    center.post("Two");
  });
  center.post("One");
  center.post("One");
  EXPECT_EQ(told, (std::vector<std::string>{"anna", "ben Two"}));
}

TEST_F(Notifications, IgnoreAnEmptyHandler) {
  center.addObserver(&anna, "One", nullptr);
  center.post("One");
  EXPECT_TRUE(told.empty());
}

TEST_F(Notifications, ComeFromManyThreadsAtOnce) {
  std::atomic<int> count = 0;
  std::array<char, 4> ids{};
  center.addObserver(&anna, "One", [&](std::string_view) { ++count; });
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < ids.size(); ++i) {
      threads.emplace_back([&, i] {
        for (int round = 0; round < 100; ++round) {
          center.post("One");
          center.addObserver(&ids[i], "One", [](std::string_view) {});
          center.removeObserver(&ids[i]);
        }
      });
    }
  }
  EXPECT_EQ(count, 400);
}

TEST_F(Notifications, HaveOneCentreForTheProcess) {
  EXPECT_EQ(&NotificationCenter::defaultCenter(), &NotificationCenter::defaultCenter());
}

}  // namespace
}  // namespace chatsum::test
