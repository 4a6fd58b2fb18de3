#include "hosts/desktop/engine/Worker.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QThread>
#include <latch>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "hosts/desktop/engine/PasswordQuestion.h"
#include "tests/desktop/engine/Waiting.h"

namespace chatsum::desktop {
namespace {

using testing::happens;
using testing::runEvents;
using Number = device::StoreResult<int>;

TEST(WorkerTest, JobsRunInTheirOrderOnOneOtherThread) {
  Worker worker;
  std::vector<int> order;
  std::vector<std::thread::id> threads;
  std::latch done(1);
  for (int i = 0; i < 100; ++i) {
    worker.post([&, i] {
      order.push_back(i);
      threads.push_back(std::this_thread::get_id());
    });
  }
  worker.post([&] { done.count_down(); });
  done.wait();
  ASSERT_EQ(order.size(), 100U);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
  EXPECT_EQ(std::vector<std::thread::id>(100, threads.front()), threads);
  EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST(WorkerTest, ResultsComeBackToTheMainThreadInTheOrderOfTheWork) {
  Worker worker;
  QObject receiver;
  std::vector<int> results;
  for (int i = 0; i < 10; ++i) {
    worker.run(
        &receiver, [i](const Cancellation&) { return Number(i * i); },
        [&](const Number& result) {
          EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
          results.push_back(result.value());
        });
  }
  EXPECT_TRUE(happens([&] { return results.size() == 10; }));
  EXPECT_EQ(results, (std::vector<int>{0, 1, 4, 9, 16, 25, 36, 49, 64, 81}));
}

TEST(WorkerTest, WorkThatIsCancelledBeforeItBeginsIsLeftOut) {
  Worker worker;
  QObject receiver;
  std::latch gate(1);
  bool hasRun = false, isLastDone = false;
  worker.post([&] { gate.wait(); });
  const Cancellation cancellation = worker.run(
      &receiver,
      [&](const Cancellation&) {
        hasRun = true;
        return Number(1);
      },
      [](const Number&) { ADD_FAILURE() << "was told"; });
  worker.run(
      &receiver, [](const Cancellation&) { return Number(2); }, [&](const Number&) { isLastDone = true; });
  cancellation.cancel();
  gate.count_down();
  EXPECT_TRUE(happens([&] { return isLastDone; }));
  EXPECT_FALSE(hasRun);
}

TEST(WorkerTest, AResultThatIsCancelledOnItsWayIsDroppedOnTheWorker) {
  Worker worker;
  QObject receiver;
  std::thread::id destroyedOn;
  const auto large = [&destroyedOn] {
    return std::shared_ptr<int>(new int(7), [&destroyedOn](const int* number) {
      destroyedOn = std::this_thread::get_id();
      delete number;
    });
  };
  std::latch isMade(1);
  using Result = device::StoreResult<std::shared_ptr<int>>;
  const Cancellation cancellation = worker.run(
      &receiver, [&](const Cancellation&) { return Result(large()); },
      [](const Result&) { ADD_FAILURE() << "was told"; });
  worker.post([&] { isMade.count_down(); });
  isMade.wait();  // its result is on the way
  cancellation.cancel();
  runEvents();
  std::thread::id workers;
  std::latch isDropped(1);
  worker.post([&] {
    workers = std::this_thread::get_id();
    isDropped.count_down();
  });
  isDropped.wait();
  EXPECT_EQ(destroyedOn, workers);
}

TEST(WorkerTest, ACancelledWorkCanFindOutAndEnd) {
  Worker worker;
  QObject receiver;
  std::latch hasBegun(1), hasEnded(1);
  const Cancellation cancellation = worker.run(
      &receiver,
      [&](const Cancellation& asked) {
        hasBegun.count_down();
        while (!asked.isCancelled()) std::this_thread::yield();
        hasEnded.count_down();
        return Number(0);
      },
      [](const Number&) { ADD_FAILURE() << "was told"; });
  hasBegun.wait();
  cancellation.cancel();
  hasEnded.wait();
  worker.stop();
  runEvents();
}

TEST(WorkerTest, AReceiverThatIsGoneIsNotTold) {
  Worker worker;
  auto receiver = std::make_unique<QObject>();
  std::latch isMade(1);
  worker.run(
      receiver.get(), [](const Cancellation&) { return Number(1); },
      [](const Number&) { ADD_FAILURE() << "was told"; });
  worker.post([&] { isMade.count_down(); });
  isMade.wait();
  receiver.reset();
  runEvents();
}

TEST(WorkerTest, WhatMemoryDoesNotSufficeForIsAProblem) {
  Worker worker;
  QObject receiver;
  std::string sentence;
  worker.run(
      &receiver, [](const Cancellation&) -> Number { throw std::bad_alloc(); },
      [&](const Number& result) { sentence = result ? "" : result.problem().sentence; });
  EXPECT_TRUE(happens([&] { return !sentence.empty(); }));
  EXPECT_NE(sentence.find("could not be done"), std::string::npos);
}

TEST(WorkerTest, StoppingWaitsForTheJobThatRunsAndTakesNoOthers) {
  std::latch hasBegun(1);
  bool hasEnded = false;
  Worker worker;
  worker.post([&] {
    hasBegun.count_down();
    for (int i = 0; i < 1000; ++i) std::this_thread::yield();
    hasEnded = true;
  });
  hasBegun.wait();
  worker.stop();
  EXPECT_TRUE(hasEnded);
  worker.post([] { ADD_FAILURE() << "runs after the end"; });
}

TEST(PasswordQuestionTest, GivesEachAnswerOnce) {
  PasswordQuestion question;
  question.answer("first");
  EXPECT_EQ(question.wait(), "first");
  question.answer("second");
  EXPECT_EQ(question.wait(), "second");
}

TEST(PasswordQuestionTest, WhoWaitsIsLetGoWhenItIsGivenUp) {
  PasswordQuestion question;
  std::optional<std::string> given = "something";
  {
    const std::jthread waiting([&] { given = question.wait(); });
    question.giveUp();
  }
  EXPECT_FALSE(given.has_value());
  question.answer("too late");
  EXPECT_FALSE(question.wait().has_value());
}

}  // namespace
}  // namespace chatsum::desktop
