// What every screen promises, whether it shows anything or not.

#include <gtest/gtest.h>

#include <memory>

#include "platform/fake/FakeDispatch.h"
#include "platform/fake/FakeScreen.h"
#include "platform/system/screen/SystemScreen.h"
#include "platform/uikit/QLPreviewController.h"
#include "platform/uikit/UIActionSheet.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIAlertView.h"

namespace chatsum::platform::test {
namespace {

class ScreenContract : public ::testing::TestWithParam<bool> {
 protected:
  fake::FakeDispatch dispatch;
  fake::FakeScreen fake;
  system::SystemScreen real{dispatch};
  Screen& screen = GetParam() ? static_cast<Screen&>(real) : fake;
  UIViewController presenter;
  std::shared_ptr<UIAlertController> alert =
      std::make_shared<UIAlertController>("T", "M", UIAlertControllerStyle::kAlert);
  std::shared_ptr<QLPreviewController> preview = std::make_shared<QLPreviewController>();
};

TEST_P(ScreenContract, EndsEveryMovementOnceOnTheMainQueue) {
  int presented = 0, previewed = 0, dismissed = 0;
  screen.presentAlert(presenter, alert, true, [&] { ++presented; });
  screen.presentPreview(presenter, preview, true, [&] { ++previewed; });
  screen.dismissAlert(*alert, true, [&] { ++dismissed; });
  dispatch.runMain();
  EXPECT_EQ(presented, 1);
  EXPECT_EQ(previewed, 1);
  EXPECT_EQ(dismissed, 1);
}

TEST_P(ScreenContract, NeedsNoCompletions) {
  screen.presentAlert(presenter, alert, true, nullptr);
  screen.presentPreview(presenter, preview, false, nullptr);
  screen.dismissAlert(*alert, false, nullptr);
  EXPECT_EQ(dispatch.runMain(), 0U);
}

TEST_P(ScreenContract, TakesTheOlderGeneration) {
  UIView view;
  const auto sheet = std::make_shared<UIActionSheet>(std::nullopt, std::weak_ptr<UIActionSheetDelegate>(), "Cancel",
                                                     std::nullopt, std::vector<std::string>());
  screen.showActionSheet(sheet, view);
  screen.showAlertView(std::make_shared<UIAlertView>("T", "M", "Close"));
  EXPECT_EQ(dispatch.runMain(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Screens, ScreenContract, ::testing::Values(false, true),
                         [](const auto& param) { return param.param ? "System" : "Fake"; });

}  // namespace
}  // namespace chatsum::platform::test
