#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <new>
#include <semaphore>
#include <thread>

#include "platform/system/queues/SystemDispatch.h"
#include "tests/support/NoMoreThreads.h"

namespace chatsum::platform::system {
namespace {

TEST(Queues, RunGlobalBlocksOffTheCallersThread) {
  SystemDispatch dispatch;
  std::thread::id where;
  dispatch.asyncOnGlobal([&] { where = std::this_thread::get_id(); });
  dispatch.runMainUntilIdle();
  EXPECT_NE(where, std::thread::id());
  EXPECT_NE(where, std::this_thread::get_id());
}

TEST(Queues, RunMainBlocksOnTheThreadThatDrains) {
  SystemDispatch dispatch;
  std::thread::id where;
  dispatch.asyncOnGlobal([&] { dispatch.asyncOnMain([&] { where = std::this_thread::get_id(); }); });
  dispatch.runMainUntilIdle();
  EXPECT_EQ(where, std::this_thread::get_id());
}

TEST(Queues, RunGlobalBlocksWhereTheyAreBroughtWhenNoThreadCanBeStarted) {
  const test::NoMoreThreads none;
  SystemDispatch dispatch;
  std::thread::id where;
  dispatch.asyncOnGlobal([&] { where = std::this_thread::get_id(); });
  EXPECT_EQ(where, std::this_thread::get_id());
  dispatch.runMainUntilIdle();
}

TEST(Queues, LeaveBlocksToTheThreadsThatAreThereWhenNoMoreCanBeStarted) {
  SystemDispatch dispatch;
  std::binary_semaphore begun(0), end(0);
  std::atomic<int> done = 0;
  dispatch.asyncOnGlobal([&] {
    begun.release();
    end.acquire();
    ++done;
  });
  begun.acquire();
  const test::NoMoreThreads none;
  for (int i = 0; i < 3; ++i) dispatch.asyncOnGlobal([&] { ++done; });
  EXPECT_EQ(done, 0);
  end.release();
  dispatch.runMainUntilIdle();
  EXPECT_EQ(done, 4);
}

TEST(Queues, HandWhatAGlobalBlockThrowsToTheOneThatDrains) {
  std::atomic<int> told = 0;
  SystemDispatch dispatch([&] { ++told; });
  int ran = 0;
  dispatch.asyncOnGlobal([] { throw std::bad_alloc(); });
  EXPECT_THROW(dispatch.runMainUntilIdle(), std::bad_alloc);
  dispatch.asyncOnMain([&] { ++ran; });
  dispatch.runMainUntilIdle();  // said once
  EXPECT_EQ(ran, 1);
  dispatch.stop();
  EXPECT_EQ(told, 2);  // of the failure and of the block
}

TEST(Queues, LetBlocksWaitForEachOther) {
  SystemDispatch dispatch;
  std::binary_semaphore first(0);
  std::binary_semaphore second(0);
  std::atomic<int> done = 0;
  dispatch.asyncOnGlobal([&] {
    first.acquire();
    second.release();
    ++done;
  });
  dispatch.asyncOnGlobal([&] {
    first.release();
    second.acquire();
    ++done;
  });
  dispatch.runMainUntilIdle();
  EXPECT_EQ(done, 2);
}

TEST(Queues, AreIdleOnlyWhenChainsOfBlocksEnd) {
  SystemDispatch dispatch;
  std::atomic<int> ran = 0;
  std::function<void()> next = [&] {
    if (++ran >= 50) return;
    if (ran % 2) {
      dispatch.asyncOnMain([&] { next(); });
    } else {
      dispatch.asyncOnGlobal([&] { next(); });
    }
  };
  dispatch.asyncOnGlobal([&] { next(); });
  dispatch.runMainUntilIdle();
  EXPECT_EQ(ran, 50);
}

TEST(Queues, DrainOnlyWhatWaitsOnMain) {
  SystemDispatch dispatch;
  EXPECT_EQ(dispatch.drainMain(), 0u);
  int ran = 0;
  dispatch.asyncOnMain([&] { ++ran; });
  dispatch.asyncOnMain([&] { dispatch.asyncOnMain([&] { ++ran; }); });
  EXPECT_EQ(dispatch.drainMain(), 3u);
  EXPECT_EQ(ran, 2);
}

TEST(Queues, WaitForRunningBlocksAndDropWaitingOnesAtTheEnd) {
  std::atomic<bool> finished = false;
  std::atomic<bool> started = false;
  const auto held = std::make_shared<int>(1);
  {
    SystemDispatch dispatch;
    dispatch.asyncOnGlobal([&] {
      started = true;
      std::this_thread::sleep_for(std::chrono::milliseconds(30));
      finished = true;
    });
    dispatch.asyncOnMain([held] {});
    while (!started) std::this_thread::yield();
  }
  EXPECT_TRUE(finished);
  EXPECT_EQ(held.use_count(), 1);
}

TEST(Queues, AreStoppedWhileWhatTheirBlocksUseIsThere) {
  SystemDispatch dispatch;
  std::binary_semaphore begun(0);
  std::atomic<bool> isThere = true, wasThere = false;
  std::atomic<int> late = 0;
  const auto held = std::make_shared<int>(0);
  dispatch.asyncOnGlobal([&, held] {
    begun.release();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    wasThere = isThere.load();
    dispatch.asyncOnMain([&, held] { ++late; });
    dispatch.asyncOnGlobal([&, held] { ++late; });
  });
  begun.acquire();
  dispatch.asyncOnMain([&, held] { ++late; });
  dispatch.stop();
  isThere = false;
  EXPECT_TRUE(wasThere);
  EXPECT_EQ(held.use_count(), 1);  // no block is left
  dispatch.asyncOnMain([&] { ++late; });
  dispatch.asyncOnGlobal([&] { ++late; });
  EXPECT_EQ(dispatch.drainMain(), 0U);
  dispatch.stop();
  EXPECT_EQ(late, 0);
}

TEST(Queues, TakeBlocksFromManyThreads) {
  SystemDispatch dispatch;
  std::atomic<int> global = 0;
  int main = 0;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] {
        for (int n = 0; n < 250; ++n) {
          dispatch.asyncOnGlobal([&] { ++global; });
          dispatch.asyncOnMain([&] { ++main; });
        }
      });
    }
  }
  dispatch.runMainUntilIdle();
  EXPECT_EQ(global, 1000);
  EXPECT_EQ(main, 1000);
}

TEST(Queues, TellOfABlockThatComesOntoTheEmptyMainQueue) {
  int told = 0, ran = 0;
  SystemDispatch dispatch([&] { ++told; });
  dispatch.asyncOnMain([&] { ++ran; });
  dispatch.asyncOnMain([&] { ++ran; });
  EXPECT_EQ(told, 1);
  EXPECT_EQ(dispatch.drainMain(), 2U);
  EXPECT_EQ(ran, 2);
  dispatch.asyncOnMain([&] { ++ran; });
  EXPECT_EQ(told, 2);
}

}  // namespace
}  // namespace chatsum::platform::system
