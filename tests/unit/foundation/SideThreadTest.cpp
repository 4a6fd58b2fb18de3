#include "platform/foundation/SideThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <stdexcept>
#include <thread>

#include "tests/support/NoMoreThreads.h"

namespace chatsum {
namespace {

TEST(SideThread, WorksBesideItsOwner) {
  std::thread::id where;
  SideThread side([&] { where = std::this_thread::get_id(); });
  EXPECT_TRUE(side.hasThread());
  side.join();
  EXPECT_NE(where, std::thread::id());
  EXPECT_NE(where, std::this_thread::get_id());
}

TEST(SideThread, HandsWhatItsWorkThrowsToTheOneThatJoins) {
  SideThread side([] { throw std::bad_alloc(); });
  EXPECT_THROW(side.join(), std::bad_alloc);
}

TEST(SideThread, IsWaitedForByAnOwnerThatGivesUp) {
  std::atomic<bool> isDone = false;
  try {
    const SideThread side([&] {
      for (int i = 0; i < 1000; ++i) std::this_thread::yield();
      isDone = true;
      throw std::bad_alloc();
    });
    throw std::runtime_error("enough");
  } catch (const std::runtime_error&) {
    EXPECT_TRUE(isDone);
  }
}

TEST(SideThread, LetsItsOwnerWorkWhereNoThreadCanBeStarted) {
  const test::NoMoreThreads none;
  std::thread::id where;
  SideThread side([&] { where = std::this_thread::get_id(); });
  EXPECT_FALSE(side.hasThread());
  EXPECT_EQ(where, std::thread::id());
  side.join();
  EXPECT_EQ(where, std::this_thread::get_id());
}

}  // namespace
}  // namespace chatsum
