#include "hosts/desktop/report/DesktopIndicator.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "platform/fake/FakePlatform.h"

namespace chatsum::desktop {
namespace {

TEST(DesktopIndicator, ShowsItsWordsWithoutTheRoomForASpinner) {
  BusyState state;
  DesktopIndicator indicator(state, "Generating", "Please wait...\n\n\n");
  EXPECT_FALSE(state.isBusy());
  indicator.show(nullptr);
  EXPECT_TRUE(state.isBusy());
  EXPECT_EQ(state.title(), "Generating");
  EXPECT_EQ(state.text(), "Please wait...");
}

TEST(DesktopIndicator, TellsWhichOneEnded) {
  BusyState state;
  QSignalSpy ended(&state, &BusyState::ended);
  DesktopIndicator indicator(state, "Loading", "");
  indicator.dismissViewController(true, nullptr);  // not shown: nothing ends
  EXPECT_EQ(ended.size(), 0);
  indicator.show(nullptr);
  indicator.dismissViewController(true, nullptr);
  ASSERT_EQ(ended.size(), 1);
  EXPECT_EQ(ended[0][0].toString(), "Loading");
  EXPECT_FALSE(state.isBusy());
}

TEST(DesktopIndicator, ShowsTheLastOneOfSeveral) {
  BusyState state;
  DesktopIndicator one(state, "one", ""), two(state, "two", "");
  one.show(nullptr);
  two.show(nullptr);
  EXPECT_EQ(state.title(), "two");
  two.dismissViewController(true, nullptr);
  EXPECT_EQ(state.title(), "one");
  EXPECT_TRUE(state.isBusy());
  state.clear();
  EXPECT_FALSE(state.isBusy());
}

TEST(DesktopIndicator, RunsItsCompletionBehindWhatWaitsOnTheMainQueue) {
  platform::fake::FakePlatform fake;
  const platform::fake::ScopedPlatform scope(fake);
  BusyState state;
  DesktopIndicator indicator(state, "Generating", "");
  indicator.show(nullptr);
  std::vector<int> order;
  fake.dispatch.asyncOnMain([&] { order.push_back(1); });
  indicator.dismissViewController(true, [&] { order.push_back(2); });
  EXPECT_FALSE(state.isBusy());
  EXPECT_TRUE(order.empty());
  fake.dispatch.runMain();
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

}  // namespace
}  // namespace chatsum::desktop
