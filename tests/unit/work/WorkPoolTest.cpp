#include "platform/system/work/WorkPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <new>
#include <set>
#include <vector>

#include "tests/support/NoMoreThreads.h"

namespace chatsum::platform::system {
namespace {

TEST(WorkPool, DoesEveryJobOnce) {
  constexpr std::size_t kJobs = 500;
  for (const unsigned threads : {0U, 1U, 4U}) {
    std::vector<std::atomic<int>> done(kJobs);
    WorkPool pool(threads);
    std::vector<WorkPool::TicketRef> tickets;
    for (std::size_t i = 0; i < kJobs; ++i) tickets.push_back(pool.submit([&done, i] { ++done[i]; }));
    for (const auto& ticket : tickets) pool.wait(ticket);
    for (const auto& count : done) EXPECT_EQ(count, 1);
  }
}

TEST(WorkPool, CountsTheOneThatWaits) {
  EXPECT_EQ(WorkPool(0).width(), 1U);
  EXPECT_EQ(WorkPool(3).width(), 4U);
  EXPECT_GE(WorkPool().width(), 2U);
}

TEST(WorkPool, WithoutThreadsWorksForTheOneThatWaits) {
  WorkPool pool(0);
  std::thread::id worker;
  const auto ticket = pool.submit([&worker] { worker = std::this_thread::get_id(); });
  EXPECT_EQ(worker, std::thread::id());
  pool.wait(ticket);
  EXPECT_EQ(worker, std::this_thread::get_id());
}

TEST(WorkPool, WaitsForAJobThatHasBegunElsewhereAndDoesOthersMeanwhile) {
  WorkPool pool(1);
  std::promise<void> begun, end;
  const auto slow = pool.submit([&] {
    begun.set_value();
    end.get_future().wait();
  });
  begun.get_future().wait();
  // The pool's only thread is busy, so the other job can only be done by the one that waits.
  std::thread::id worker;
  const auto other = pool.submit([&] {
    worker = std::this_thread::get_id();
    end.set_value();
  });
  pool.wait(slow);
  EXPECT_EQ(worker, std::this_thread::get_id());
  pool.wait(other);
}

TEST(WorkPool, MayBeWaitedForTwice) {
  WorkPool pool(1);
  int count = 0;
  const auto ticket = pool.submit([&count] { ++count; });
  pool.wait(ticket);
  pool.wait(ticket);
  EXPECT_EQ(count, 1);
}

TEST(WorkPool, HandsWhatAJobThrowsToTheOneThatWaits) {
  for (const unsigned threads : {0U, 2U}) {
    WorkPool pool(threads);
    const auto failing = pool.submit([] { throw std::bad_alloc(); });
    int done = 0;
    const auto other = pool.submit([&done] { ++done; });
    EXPECT_NO_THROW(pool.wait(other));
    EXPECT_THROW(pool.wait(failing), std::bad_alloc);
    EXPECT_EQ(done, 1);
  }
}

TEST(WorkPool, KeepsWhatAJobThrowsFromTheOneThatGivesUp) {
  for (const unsigned threads : {0U, 2U}) {
    WorkPool pool(threads);
    bool hasRun = false;
    const auto failing = pool.submit([&hasRun] {
      hasRun = true;
      throw std::bad_alloc();
    });
    pool.settle(failing);
    EXPECT_TRUE(hasRun);
    pool.settle(nullptr);
    static_cast<void>(pool.submit([] { throw std::bad_alloc(); }));  // nobody waits for it
  }
}

TEST(WorkPool, WorksForTheOneThatWaitsWhereNoThreadCanBeStarted) {
  const test::NoMoreThreads none;
  WorkPool pool(3);
  EXPECT_EQ(pool.width(), 1U);
  int done = 0;
  pool.wait(pool.submit([&done] { ++done; }));
  EXPECT_EQ(done, 1);
}

TEST(WorkPool, LetsGoOfWhatAJobHoldsOnceItIsDone) {
  for (const unsigned threads : {0U, 2U}) {
    WorkPool pool(threads);
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    const auto ticket = pool.submit([held = std::move(held)] {});
    pool.wait(ticket);
    EXPECT_TRUE(watched.expired());
  }
}

TEST(WorkPool, ForgetsJobsThatWereDoneByTheOneThatWaits) {
  WorkPool pool(0);
  const auto kept = pool.submit([] {});
  WorkPool::TicketRef last;
  for (int i = 0; i < 100; ++i) {
    last = pool.submit([] {});
    pool.wait(last);
  }
  // The queue holds a ticket of what it has yet to do, and of nothing else.
  EXPECT_EQ(last.use_count(), 1);
  EXPECT_EQ(kept.use_count(), 2);
}

TEST(WorkPool, DoesWhatIsQueuedBeforeItEnds) {
  for (const unsigned threads : {0U, 3U}) {
    std::atomic<int> done = 0;
    {
      WorkPool pool(threads);
      for (int i = 0; i < 100; ++i) static_cast<void>(pool.submit([&done] { ++done; }));
    }
    EXPECT_EQ(done, 100);
  }
}

TEST(WorkPool, TakesJobsOfJobs) {
  WorkPool pool(2);
  std::atomic<int> done = 0;
  std::vector<WorkPool::TicketRef> tickets;
  for (int i = 0; i < 20; ++i) {
    tickets.push_back(pool.submit([&pool, &done] {
      std::vector<WorkPool::TicketRef> parts;
      for (int j = 0; j < 5; ++j) parts.push_back(pool.submit([&done] { ++done; }));
      for (const auto& part : parts) pool.wait(part);
      ++done;
    }));
  }
  for (const auto& ticket : tickets) pool.wait(ticket);
  EXPECT_EQ(done, 120);
}

TEST(WorkPool, ServesSeveralThreadsAtATime) {
  WorkPool pool(2);
  std::atomic<int> done = 0;
  {
    std::vector<std::jthread> callers;
    for (int t = 0; t < 4; ++t) {
      callers.emplace_back([&] {
        for (int i = 0; i < 200; ++i) pool.wait(pool.submit([&done] { ++done; }));
      });
    }
  }
  EXPECT_EQ(done, 800);
}

}  // namespace
}  // namespace chatsum::platform::system
