#include <gtest/gtest.h>

#include <memory>

#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIView.h"

namespace chatsum::platform::test {
namespace {

std::shared_ptr<UIView> viewWith(std::int64_t tag) {
  auto view = std::make_shared<UIView>();
  view->setTag(tag);
  return view;
}

TEST(View, StandsInOneViewAtATime) {
  UIView first, second;
  const auto child = viewWith(1);
  first.addSubview(child);
  EXPECT_EQ(child->superview(), &first);
  second.addSubview(child);
  EXPECT_EQ(child->superview(), &second);
  EXPECT_TRUE(first.subviews().empty());
  EXPECT_EQ(second.subviews().size(), 1U);
}

TEST(View, StandsInAViewOnceHoweverOftenItIsAddedAndComesToTheFront) {
  UIView view;
  const auto child = viewWith(1);
  view.addSubview(child);
  view.addSubview(viewWith(2));
  view.addSubview(view.subviews()[0]);
  ASSERT_EQ(view.subviews().size(), 2U);
  EXPECT_EQ(view.subviews()[1], child);
}

TEST(View, LeavesTheViewItStandsIn) {
  UIView view;
  const auto child = viewWith(1);
  view.addSubview(child);
  child->removeFromSuperview();
  EXPECT_EQ(child->superview(), nullptr);
  EXPECT_TRUE(view.subviews().empty());
  child->removeFromSuperview();
  EXPECT_EQ(child->superview(), nullptr);
}

TEST(View, OutlivesTheViewItStoodIn) {
  const auto child = viewWith(1);
  {
    UIView view;
    view.addSubview(child);
  }
  EXPECT_EQ(child->superview(), nullptr);
}

TEST(View, FindsByTagItselfFirstAndThenDeepDown) {
  UIView view;
  const auto left = viewWith(1), deep = viewWith(3), right = viewWith(3);
  left->addSubview(deep);
  view.addSubview(left);
  view.addSubview(right);
  view.setTag(1);
  EXPECT_EQ(view.viewWithTag(1), &view);
  EXPECT_EQ(view.viewWithTag(3), deep.get());
  EXPECT_EQ(view.viewWithTag(4), nullptr);
}

TEST(Spinner, SpinsUntilItIsStopped) {
  UIActivityIndicatorView spinner(UIActivityIndicatorViewStyle::kGray);
  EXPECT_FALSE(spinner.isAnimating());
  spinner.startAnimating();
  spinner.startAnimating();
  EXPECT_TRUE(spinner.isAnimating());
  spinner.stopAnimating();
  EXPECT_FALSE(spinner.isAnimating());
  EXPECT_EQ(static_cast<int>(spinner.style()), 2);
}

}  // namespace
}  // namespace chatsum::platform::test
