#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/fake/FakePlatform.h"
#include "platform/uikit/UIActionSheet.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIAlertView.h"

namespace chatsum::platform::test {
namespace {

class Questions : public ::testing::Test {
 protected:
  fake::FakePlatform fake;
  fake::ScopedPlatform scope{fake};
};

struct Delegate final : UIActionSheetDelegate {
  std::vector<std::int64_t> clicked;
  void clickedButtonAtIndex(UIActionSheet& /*sheet*/, std::int64_t index) override { clicked.push_back(index); }
};

TEST_F(Questions, RunTheBlockOfTheChosenAction) {
  UIAlertController alert("Title", std::nullopt, UIAlertControllerStyle::kActionSheet);
  int chosen = 0;
  alert.addAction({"One", UIAlertActionStyle::kDefault, [&] { chosen += 1; }});
  alert.addAction({"Two", UIAlertActionStyle::kDestructive, [&] { chosen += 10; }});
  alert.addAction({"Cancel", UIAlertActionStyle::kCancel, nullptr});
  alert.choose(1);
  EXPECT_EQ(chosen, 10);
  alert.choose(2);
  alert.choose(3);
  EXPECT_EQ(chosen, 10);
}

TEST_F(Questions, SurviveABlockThatEndsTheAlert) {
  auto alert = std::make_unique<UIAlertController>("Title", "Message", UIAlertControllerStyle::kAlert);
  std::string seen;
  auto& shown = *alert;
  shown.addAction({"Close", UIAlertActionStyle::kCancel, [&alert, &seen, word = std::string("a long word of its own")] {
                     alert.reset();
                     seen = word;
                   }});
  shown.choose(0);
  EXPECT_EQ(seen, "a long word of its own");
}

TEST_F(Questions, AreDismissedThroughTheScreen) {
  UIAlertController alert("Title", "Message", UIAlertControllerStyle::kAlert);
  bool gone = false;
  alert.dismissViewController(true, [&] { gone = true; });
  ASSERT_EQ(fake.screen.dismissed.size(), 1U);
  EXPECT_EQ(fake.screen.dismissed[0].alert, &alert);
  EXPECT_TRUE(fake.screen.dismissed[0].animated);
  EXPECT_TRUE(gone);
}

TEST_F(Questions, NumberTheButtonsOfASheetDestructiveOthersCancel) {
  UIActionSheet sheet("Title", {}, "Cancel", "Delete", {"A", "B"});
  EXPECT_EQ(sheet.buttonTitles(), (std::vector<std::string>{"Delete", "A", "B", "Cancel"}));
  EXPECT_EQ(sheet.destructiveButtonIndex(), 0);
  EXPECT_EQ(sheet.cancelButtonIndex(), 3);
}

TEST_F(Questions, PutButtonsThatAreAddedLaterBehindTheCancelButton) {
  UIActionSheet sheet(std::nullopt, {}, "Cancel", std::nullopt, {});
  EXPECT_EQ(sheet.addButtonWithTitle("A"), 1);
  EXPECT_EQ(sheet.addButtonWithTitle("B"), 2);
  EXPECT_EQ(sheet.buttonTitles(), (std::vector<std::string>{"Cancel", "A", "B"}));
  EXPECT_EQ(sheet.cancelButtonIndex(), 0);
  EXPECT_EQ(sheet.destructiveButtonIndex(), -1);
}

TEST_F(Questions, TellTheDelegateOfASheetTheButtonThatIsThere) {
  auto delegate = std::make_shared<Delegate>();
  UIView view;
  const auto sheet =
      std::make_shared<UIActionSheet>(std::nullopt, delegate, "Cancel", std::nullopt, std::vector<std::string>{"A"});
  sheet->showInView(view);
  ASSERT_EQ(fake.screen.sheets.size(), 1U);
  EXPECT_EQ(fake.screen.sheets[0].sheet, sheet);
  EXPECT_EQ(fake.screen.sheets[0].inView, &view);
  sheet->clickButton(0);
  sheet->clickButton(2);
  sheet->clickButton(-1);
  EXPECT_EQ(delegate->clicked, std::vector<std::int64_t>{0});
  delegate.reset();
  sheet->clickButton(0);
}

TEST_F(Questions, ShowAnAlertViewThroughTheScreen) {
  const auto alert = std::make_shared<UIAlertView>("Title", "Message", "Close");
  alert->setTag(7);
  alert->show();
  ASSERT_EQ(fake.screen.alertViews.size(), 1U);
  EXPECT_EQ(fake.screen.alertViews[0], alert);
  EXPECT_EQ(alert->cancelButtonTitle(), "Close");
}

}  // namespace
}  // namespace chatsum::platform::test
