#include <gtest/gtest.h>

#include <latch>
#include <memory>
#include <thread>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"

namespace chatsum::test {
namespace {

class BusyIndicator : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};
  const std::shared_ptr<platform::UIViewController> presenter = std::make_shared<platform::UIViewController>();

  /// Nothing may be left shown for the next test.
  void TearDown() override {
    ChatsumUtils::hideHud();
    fake.dispatch.runMain();
  }
  void useOldScreens() { fake.runtime.classes.clear(); }
  platform::fake::FakeIndicator& indicator(std::size_t index) { return *fake.companion.indicators.at(index); }
  std::size_t made() { return fake.companion.indicators.size(); }
};

TEST_F(BusyIndicator, DoesNothingBeforeTheMainQueueRuns) {
  ChatsumUtils::showHud("Title", "Message", presenter);
  EXPECT_EQ(made(), 0U);
  EXPECT_EQ(fake.dispatch.mainWaiting(), 1U);
  fake.dispatch.runMain();
  EXPECT_EQ(made(), 1U);
  EXPECT_EQ(fake.dispatch.globalWaiting(), 0U);
}

TEST_F(BusyIndicator, IsAnAlertControllerWithRoomForItsSpinner) {
  ChatsumUtils::showHud("Title", "Please wait", presenter);
  fake.dispatch.runMain();
  EXPECT_TRUE(indicator(0).isController);
  EXPECT_EQ(indicator(0).title, "Title");
  EXPECT_EQ(indicator(0).message, "Please wait\n\n\n");
  EXPECT_EQ(indicator(0).preferredStyle, 1);
  EXPECT_EQ(indicator(0).shown, 1);
  EXPECT_EQ(indicator(0).presenter, presenter.get());
}

TEST_F(BusyIndicator, IsAnAlertViewWithThePlainMessageOnOldScreens) {
  useOldScreens();
  ChatsumUtils::showHud("Title", "Please wait", presenter);
  fake.dispatch.runMain();
  EXPECT_FALSE(indicator(0).isController);
  EXPECT_EQ(indicator(0).title, "Title");
  EXPECT_EQ(indicator(0).message, "Please wait");
  EXPECT_EQ(indicator(0).shown, 1);
  EXPECT_EQ(indicator(0).presenter, nullptr);
}

TEST_F(BusyIndicator, ShowsPlaceholdersInItsWordsAsTheyStand) {
  ChatsumUtils::showHud("%@", "100% %@", nullptr);
  fake.dispatch.runMain();
  EXPECT_EQ(indicator(0).title, "%@");
  EXPECT_EQ(indicator(0).message, "100% %@\n\n\n");
}

TEST_F(BusyIndicator, IsDismissedWithAnimationAndTheCompletion) {
  fake.companion.keepCompletions = true;
  int completions = 0;
  ChatsumUtils::showHud("Title", "Message", presenter);
  ChatsumUtils::hideHud([&] { ++completions; });
  fake.dispatch.runMain();
  EXPECT_EQ(indicator(0).hidden, 1);
  EXPECT_TRUE(indicator(0).animated);
  EXPECT_EQ(completions, 0);  // the dismissal has not ended
  indicator(0).completion();
  EXPECT_EQ(completions, 1);
}

TEST_F(BusyIndicator, IsClosedAndThenCompletedAtOnceOnOldScreens) {
  useOldScreens();
  ChatsumUtils::showHud("Title", "Message", presenter);
  int hiddenWhenCompleted = -1;
  ChatsumUtils::hideHud([&] { hiddenWhenCompleted = indicator(0).hidden; });
  EXPECT_EQ(hiddenWhenCompleted, -1);
  fake.dispatch.runMain();
  EXPECT_EQ(hiddenWhenCompleted, 1);
}

TEST_F(BusyIndicator, IsHiddenWithoutACompletion) {
  ChatsumUtils::showHud("Title", "Message", presenter);
  ChatsumUtils::hideHud();
  fake.dispatch.runMain();
  useOldScreens();
  ChatsumUtils::showHud("Title", "Message", presenter);
  ChatsumUtils::hideHud(nullptr);
  fake.dispatch.runMain();
  EXPECT_EQ(indicator(0).hidden, 1);
  EXPECT_FALSE(indicator(0).completion);
  EXPECT_EQ(indicator(1).hidden, 1);
}

TEST_F(BusyIndicator, NeverCompletesWhenNothingIsShown) {
  int completions = 0;
  ChatsumUtils::hideHud([&] { ++completions; });
  fake.dispatch.runMain();
  ChatsumUtils::showHud("Title", "Message", presenter);
  fake.dispatch.runMain();
  EXPECT_EQ(completions, 0);
  EXPECT_EQ(indicator(0).hidden, 0);
}

TEST_F(BusyIndicator, IsHiddenOnlyOnce) {
  int completions = 0;
  ChatsumUtils::showHud("Title", "Message", presenter);
  ChatsumUtils::hideHud([&] { ++completions; });
  ChatsumUtils::hideHud([&] { ++completions; });
  fake.dispatch.runMain();
  EXPECT_EQ(indicator(0).hidden, 1);
  EXPECT_EQ(completions, 1);
}

TEST_F(BusyIndicator, IsReplacedByASecondOneWithoutBeingHidden) {
  ChatsumUtils::showHud("One", "", presenter);
  ChatsumUtils::showHud("Two", "", presenter);
  ChatsumUtils::hideHud();
  fake.dispatch.runMain();
  EXPECT_EQ(indicator(0).hidden, 0);
  EXPECT_EQ(indicator(1).hidden, 1);
  ChatsumUtils::hideHud();
  fake.dispatch.runMain();
  EXPECT_EQ(indicator(0).hidden, 0);
}

TEST_F(BusyIndicator, FollowsTheOrderOfTheCalls) {
  std::vector<std::string> order;
  ChatsumUtils::showHud("One", "", presenter);
  ChatsumUtils::hideHud([&] { order.push_back("one gone with " + std::to_string(made())); });
  ChatsumUtils::showHud("Two", "", presenter);
  ChatsumUtils::hideHud([&] { order.push_back("two gone with " + std::to_string(made())); });
  fake.dispatch.runMain();
  EXPECT_EQ(order, (std::vector<std::string>{"one gone with 1", "two gone with 2"}));
}

TEST_F(BusyIndicator, IsHiddenInTheWayItWasMadeWhateverTheScreensAreNow) {
  useOldScreens();
  ChatsumUtils::showHud("Title", "Message", presenter);
  fake.dispatch.runMain();
  fake.runtime.classes = {"UIAlertController"};
  int completions = 0;
  ChatsumUtils::hideHud([&] { ++completions; });
  fake.dispatch.runMain();
  EXPECT_EQ(indicator(0).hidden, 1);
  EXPECT_FALSE(indicator(0).animated);
  EXPECT_EQ(completions, 1);
}

TEST_F(BusyIndicator, MayBeShownAgainFromTheCompletion) {
  for (const bool old : {false, true}) {
    if (old) useOldScreens();
    const std::size_t before = made();
    ChatsumUtils::showHud("One", "", presenter);
    ChatsumUtils::hideHud([&] { ChatsumUtils::showHud("Two", "", presenter); });
    fake.dispatch.runMain();
    ASSERT_EQ(made(), before + 2);
    EXPECT_EQ(indicator(before + 1).shown, 1);
    ChatsumUtils::hideHud();
    fake.dispatch.runMain();
    EXPECT_EQ(indicator(before + 1).hidden, 1);
  }
}

TEST_F(BusyIndicator, OutlivesACompletionThatRunsTheMainQueueAndShowsAnother) {
  for (const bool old : {false, true}) {
    if (old) useOldScreens();
    const std::size_t first = made();
    ChatsumUtils::showHud("One", "", presenter);
    ChatsumUtils::hideHud([&] {
      ChatsumUtils::showHud("Two", "", presenter);
      fake.dispatch.runMain();  // as a modal loop does
    });
    fake.dispatch.runMain();
    EXPECT_EQ(indicator(first).hidden, 1);
    EXPECT_EQ(indicator(first + 1).shown, 1);
  }
}

TEST_F(BusyIndicator, LeavesItsPlaceOnlyAfterTheCompletion) {
  for (const bool old : {false, true}) {
    if (old) useOldScreens();
    const std::size_t first = made();
    ChatsumUtils::showHud("One", "", presenter);
    ChatsumUtils::hideHud([&] {
      ChatsumUtils::hideHud();
      fake.dispatch.runMain();  // as a modal loop does
    });
    fake.dispatch.runMain();
    EXPECT_EQ(indicator(first).hidden, 2) << "the completion still found it in its place";
    ChatsumUtils::hideHud();
    fake.dispatch.runMain();
    EXPECT_EQ(indicator(first).hidden, 2);
  }
}

TEST_F(BusyIndicator, HoldsItsPresenterUntilItIsShown) {
  auto screen = std::make_shared<platform::UIViewController>();
  const platform::UIViewController* const place = screen.get();
  const std::weak_ptr<platform::UIViewController> left = screen;
  ChatsumUtils::showHud("Title", "Message", screen);
  screen.reset();
  EXPECT_FALSE(left.expired());
  fake.dispatch.runMain();
  EXPECT_EQ(indicator(0).presenter, place);
  EXPECT_TRUE(left.expired());
}

TEST_F(BusyIndicator, MayBeAskedForFromManyThreads) {
  {
    std::latch start(8);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 8; ++i) {
      threads.emplace_back([&] {
        start.arrive_and_wait();
        ChatsumUtils::showHud("Title", "Message", presenter);
        ChatsumUtils::hideHud();
      });
    }
  }
  EXPECT_EQ(fake.dispatch.runMain(), 16U);
  EXPECT_EQ(made(), 8U);
}

}  // namespace
}  // namespace chatsum::test
