#include "hosts/desktop/report/DesktopScreen.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "platform/fake/FakePlatform.h"
#include "platform/uikit/QLPreviewController.h"
#include "platform/uikit/UIActionSheet.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIAlertView.h"

namespace chatsum::desktop {
namespace {

using platform::UIAlertAction;
using platform::UIAlertActionStyle;
using platform::UIAlertController;
using platform::UIAlertControllerStyle;

struct Presenter final : platform::UIViewController {};

QStringList titlesOf(const DesktopAlert& alert) {
  QStringList titles;
  for (const QVariant& button : alert.buttons()) titles.append(button.toMap()["title"].toString());
  return titles;
}
QStringList stylesOf(const DesktopAlert& alert) {
  QStringList styles;
  for (const QVariant& button : alert.buttons()) styles.append(button.toMap()["style"].toString());
  return styles;
}

class DesktopScreenTest : public ::testing::Test {
 protected:
  std::shared_ptr<UIAlertController> alert(const std::string& title) {
    auto made = std::make_shared<UIAlertController>(title, std::nullopt, UIAlertControllerStyle::kAlert);
    made->addAction({"Replace", UIAlertActionStyle::kDestructive, [this, title] { done.push_back(title); }});
    made->addAction({"Cancel", UIAlertActionStyle::kCancel, nullptr});
    return made;
  }
  void present(const std::shared_ptr<UIAlertController>& shown, std::function<void()> completion = nullptr) {
    screen.presentAlert(presenter, shown, true, std::move(completion));
  }

  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};
  Presenter presenter;
  DesktopScreen screen;
  std::vector<std::string> done;
};

TEST_F(DesktopScreenTest, ShowsAnAlertWithItsWordsAndButtons) {
  const auto shown = std::make_shared<UIAlertController>("Error", "It did not work.", UIAlertControllerStyle::kAlert);
  shown->addAction({"Close", UIAlertActionStyle::kCancel, nullptr});
  present(shown);
  ASSERT_TRUE(screen.alert());
  EXPECT_EQ(screen.alert()->title(), "Error");
  EXPECT_EQ(screen.alert()->message(), "It did not work.");
  EXPECT_FALSE(screen.alert()->isSheet());
  EXPECT_EQ(titlesOf(*screen.alert()), QStringList{"Close"});
  EXPECT_EQ(stylesOf(*screen.alert()), QStringList{"cancel"});
  EXPECT_EQ(screen.alert()->cancelIndex(), 0);
}

TEST_F(DesktopScreenTest, TakesAnAlertAwayBeforeItsAnswerHasItsEffect) {
  const auto shown = std::make_shared<UIAlertController>(std::nullopt, std::nullopt, UIAlertControllerStyle::kActionSheet);
  bool wasGone = false;
  shown->addAction({"PDF", UIAlertActionStyle::kDefault, [&] { wasGone = !screen.alert(); }});
  present(shown);
  EXPECT_TRUE(screen.alert()->isSheet());
  screen.choose(0);
  EXPECT_TRUE(wasGone);
}

TEST_F(DesktopScreenTest, ShowsAlertsOneAfterTheOther) {
  const QSignalSpy changes(&screen, &DesktopScreen::alertChanged);
  present(alert("one"));
  present(alert("two"));
  EXPECT_EQ(screen.alert()->title(), "one");
  EXPECT_EQ(changes.size(), 1);
  screen.choose(0);
  EXPECT_EQ(screen.alert()->title(), "two");
  screen.choose(1);
  EXPECT_FALSE(screen.alert());
  EXPECT_EQ(done, std::vector<std::string>{"one"});
}

TEST_F(DesktopScreenTest, IgnoresAnswersThatAreNotThere) {
  screen.choose(0);
  present(alert("one"));
  screen.choose(-1);
  screen.choose(2);
  EXPECT_TRUE(screen.alert());
  EXPECT_TRUE(done.empty());
}

TEST_F(DesktopScreenTest, TellsBeforeAndAfterAnAnswerWhetherItCancels) {
  QSignalSpy answering(&screen, &DesktopScreen::answering);
  const QSignalSpy answered(&screen, &DesktopScreen::answered);
  present(alert("one"));
  present(alert("two"));
  screen.choose(0);
  screen.choose(1);
  ASSERT_EQ(answering.size(), 2);
  EXPECT_FALSE(answering[0][0].toBool());
  EXPECT_TRUE(answering[1][0].toBool());
  EXPECT_EQ(answered.size(), 2);
}

TEST_F(DesktopScreenTest, RunsCompletionsBehindWhatWaitsOnTheMainQueue) {
  std::vector<int> order;
  fake.dispatch.asyncOnMain([&] { order.push_back(1); });
  const auto shown = alert("one");
  present(shown, [&] { order.push_back(2); });
  screen.dismissAlert(*shown, true, [&] { order.push_back(3); });
  EXPECT_TRUE(order.empty());
  fake.dispatch.runMain();
  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST_F(DesktopScreenTest, DismissesAnAlertWhereverItWaits) {
  const auto one = alert("one"), two = alert("two"), three = alert("three");
  present(one);
  present(two);
  present(three);
  screen.dismissAlert(*two, false, nullptr);
  EXPECT_EQ(screen.alert()->title(), "one");
  screen.dismissAlert(*one, false, nullptr);
  EXPECT_EQ(screen.alert()->title(), "three");
  screen.dismissAlert(*one, false, nullptr);  // not shown any more
  EXPECT_EQ(screen.alert()->title(), "three");
  EXPECT_TRUE(done.empty());
}

struct SheetDelegate final : platform::UIActionSheetDelegate {
  std::vector<std::int64_t> clicked;
  void clickedButtonAtIndex(platform::UIActionSheet& /*actionSheet*/, std::int64_t buttonIndex) override {
    clicked.push_back(buttonIndex);
  }
};

TEST_F(DesktopScreenTest, ShowsSheetsOfTheOlderGeneration) {
  const auto delegate = std::make_shared<SheetDelegate>();
  const auto sheet = std::make_shared<platform::UIActionSheet>("Really?", delegate, "Cancel", "Delete",
                                                               std::vector<std::string>{"Keep"});
  platform::UIView view;
  sheet->showInView(view);  // on the fake's screen
  screen.showActionSheet(sheet, view);
  ASSERT_TRUE(screen.alert());
  EXPECT_TRUE(screen.alert()->isSheet());
  EXPECT_EQ(screen.alert()->title(), "Really?");
  EXPECT_EQ(titlesOf(*screen.alert()), (QStringList{"Delete", "Keep", "Cancel"}));
  EXPECT_EQ(stylesOf(*screen.alert()), (QStringList{"destructive", "default", "cancel"}));
  EXPECT_EQ(screen.alert()->cancelIndex(), 2);
  screen.choose(1);
  EXPECT_EQ(delegate->clicked, std::vector<std::int64_t>{1});
  EXPECT_FALSE(screen.alert());
}

TEST_F(DesktopScreenTest, ShowsAlertsOfTheOlderGeneration) {
  screen.showAlertView(std::make_shared<platform::UIAlertView>("Error", "No.", "Close"));
  ASSERT_TRUE(screen.alert());
  EXPECT_EQ(screen.alert()->title(), "Error");
  EXPECT_EQ(screen.alert()->message(), "No.");
  EXPECT_EQ(titlesOf(*screen.alert()), QStringList{"Close"});
  screen.choose(0);
  EXPECT_FALSE(screen.alert());
}

struct Previewed final : platform::QLPreviewControllerDataSource, platform::QLPreviewControllerDelegate {
  int dismissed = 0;
  std::int64_t numberOfPreviewItemsInPreviewController(platform::QLPreviewController& /*controller*/) override {
    return 1;
  }
  platform::QLPreviewItem previewItemAtIndex(platform::QLPreviewController& /*controller*/,
                                             std::int64_t /*index*/) override {
    return {"/tmp/Ann.pdf"};
  }
  void previewControllerDidDismiss(platform::QLPreviewController& /*controller*/) override { ++dismissed; }
};

TEST_F(DesktopScreenTest, PresentsAPreviewAndTellsWhenTheUserClosesIt) {
  const auto previewed = std::make_shared<Previewed>();
  const auto controller = std::make_shared<platform::QLPreviewController>();
  controller->setDataSource(previewed);
  controller->setDelegate(previewed);
  QSignalSpy presented(&screen, &DesktopScreen::previewPresented);
  bool isUp = false;
  screen.presentPreview(presenter, controller, true, [&] { isUp = true; });
  ASSERT_EQ(presented.size(), 1);
  EXPECT_EQ(presented[0][0].toString(), "/tmp/Ann.pdf");
  EXPECT_FALSE(isUp);
  fake.dispatch.runMain();
  EXPECT_TRUE(isUp);
  screen.closePreview();
  screen.closePreview();
  EXPECT_EQ(previewed->dismissed, 1);
}

/// A library that forgets what it shows as soon as a preview is gone.
struct Forgetful final : platform::QLPreviewControllerDataSource, platform::QLPreviewControllerDelegate {
  std::int64_t numberOfPreviewItemsInPreviewController(platform::QLPreviewController& /*controller*/) override {
    return 1;
  }
  platform::QLPreviewItem previewItemAtIndex(platform::QLPreviewController& /*controller*/,
                                             std::int64_t /*index*/) override {
    return {"/tmp/" + name};
  }
  void previewControllerDidDismiss(platform::QLPreviewController& /*controller*/) override { name.clear(); }

  std::string name;
};

TEST_F(DesktopScreenTest, PresentsASecondPreviewInPlaceOfTheFirst) {
  const auto previewed = std::make_shared<Forgetful>();
  const QSignalSpy presented(&screen, &DesktopScreen::previewPresented);
  for (const char* name : {"Ann.pdf", "Bob.csv"}) {
    previewed->name = name;
    const auto controller = std::make_shared<platform::QLPreviewController>();
    controller->setDataSource(previewed);
    controller->setDelegate(previewed);
    screen.presentPreview(presenter, controller, true, nullptr);
  }
  ASSERT_EQ(presented.size(), 2);
  EXPECT_EQ(presented[1][0].toString().toStdString(), "/tmp/Bob.csv");
}

TEST_F(DesktopScreenTest, LetsGoOfEverythingWhenItIsCleared) {
  const auto shown = alert("one");
  present(shown);
  present(alert("two"));
  EXPECT_GT(shown.use_count(), 1);
  screen.clear();
  EXPECT_FALSE(screen.alert());
  EXPECT_EQ(shown.use_count(), 1);
  EXPECT_TRUE(done.empty());
}

}  // namespace
}  // namespace chatsum::desktop
