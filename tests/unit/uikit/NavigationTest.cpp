#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/fake/FakePlatform.h"
#include "platform/uikit/UINavigationController.h"

namespace chatsum::platform::test {
namespace {

/// A screen of one empty table.
class PlainScreen final : public UITableViewController {
 public:
  PlainScreen() : UITableViewController(UITableViewStyle::kPlain) {}
  void viewDidLoad() override {
    UITableViewController::viewDidLoad();
    ++loads;
  }
  std::int64_t numberOfSectionsInTableView(UITableView&) override { return 1; }
  std::int64_t numberOfRowsInSection(UITableView&, std::int64_t) override { return 0; }
  std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView& table, IndexPath place) override {
    return table.dequeueReusableCellWithIdentifier("Cell", place);
  }
  std::optional<std::string> titleForHeaderInSection(UITableView&, std::int64_t) override { return std::nullopt; }
  std::optional<std::string> titleForFooterInSection(UITableView&, std::int64_t) override { return std::nullopt; }
  bool canEditRowAtIndexPath(UITableView&, IndexPath) override { return false; }
  void commitEditingStyle(UITableView&, UITableViewCellEditingStyle, IndexPath) override {}
  void didSelectRowAtIndexPath(UITableView&, IndexPath) override {}
  UITableViewCellEditingStyle editingStyleForRowAtIndexPath(UITableView&, IndexPath) override {
    return UITableViewCellEditingStyle::kNone;
  }
  int loads = 0;
};

struct Source final : QLPreviewControllerDataSource, QLPreviewControllerDelegate {
  int dismissed = 0;
  std::int64_t numberOfPreviewItemsInPreviewController(QLPreviewController&) override { return 2; }
  QLPreviewItem previewItemAtIndex(QLPreviewController&, std::int64_t index) override {
    return {"/" + std::to_string(index)};
  }
  void previewControllerDidDismiss(QLPreviewController&) override { ++dismissed; }
};

class Navigation : public ::testing::Test {
 protected:
  fake::FakePlatform fake;
  fake::ScopedPlatform scope{fake};
};

TEST_F(Navigation, LoadsTheViewOfAScreenOnce) {
  UINavigationController navigation;
  const auto screen = std::make_shared<PlainScreen>();
  EXPECT_EQ(screen->loads, 0);
  EXPECT_EQ(screen->navigationController(), nullptr);
  navigation.pushViewController(screen, true);
  EXPECT_EQ(screen->loads, 1);
  EXPECT_EQ(screen->navigationController(), &navigation);
  screen->loadViewIfNeeded();
  EXPECT_EQ(screen->loads, 1);
}

TEST_F(Navigation, GivesTheTopScreenBack) {
  UINavigationController navigation;
  const auto first = std::make_shared<PlainScreen>(), second = std::make_shared<PlainScreen>();
  navigation.pushViewController(first, true);
  navigation.pushViewController(second, true);
  EXPECT_EQ(navigation.viewControllers().size(), 2U);
  EXPECT_EQ(navigation.popViewController(true), second);
  EXPECT_EQ(second->navigationController(), nullptr);
  EXPECT_EQ(navigation.popViewController(true), first);
  EXPECT_EQ(navigation.popViewController(true), nullptr);
}

TEST_F(Navigation, LeavesAScreenThatOutlivesItWithoutAStack) {
  const auto screen = std::make_shared<PlainScreen>();
  {
    UINavigationController navigation;
    navigation.pushViewController(screen, false);
  }
  EXPECT_EQ(screen->navigationController(), nullptr);
}

TEST_F(Navigation, PresentsThroughTheScreen) {
  UINavigationController navigation;
  const auto screen = std::make_shared<PlainScreen>();
  navigation.pushViewController(screen, true);
  const auto preview = std::make_shared<QLPreviewController>();
  bool shown = false;
  navigation.presentViewController(preview, true, [&] { shown = true; });
  EXPECT_TRUE(shown);
  ASSERT_EQ(fake.screen.previews.size(), 1U);
  EXPECT_EQ(fake.screen.previews[0].presenter, &navigation);

  const auto alert = std::make_shared<UIAlertController>("T", "M", UIAlertControllerStyle::kAlert);
  screen->presentViewController(alert, true, nullptr);
  ASSERT_EQ(fake.screen.alerts.size(), 1U);
  EXPECT_EQ(fake.screen.alerts[0].presenter, screen.get());
  EXPECT_EQ(fake.screen.alerts[0].alert, alert);
}

TEST_F(Navigation, PreviewsWhatTheDataSourceOffers) {
  auto source = std::make_shared<Source>();
  QLPreviewController preview;
  preview.setDataSource(source);
  preview.setDelegate(source);
  EXPECT_EQ(preview.numberOfPreviewItems(), 2);
  EXPECT_EQ(preview.previewItemAtIndex(1)->path, "/1");
  EXPECT_FALSE(preview.previewItemAtIndex(2));
  EXPECT_FALSE(preview.previewItemAtIndex(-1));
  preview.dismiss();
  EXPECT_EQ(source->dismissed, 1);
  source.reset();
  EXPECT_EQ(preview.numberOfPreviewItems(), 0);
  EXPECT_FALSE(preview.previewItemAtIndex(0));
  preview.dismiss();
}

TEST_F(Navigation, PressesAButtonOnlyWhileItIsEnabled) {
  struct Listener final : ChangeListener {
    int changes = 0;
    void changed() override { ++changes; }
  } listener;
  int pressed = 0;
  UIBarButtonItem button("Generate", UIBarButtonItemStyle::kPlain, [&](UIBarButtonItem& sender) {
    EXPECT_EQ(sender.title(), "Generate");
    ++pressed;
  });
  button.setListener(&listener);
  button.tap();
  button.setEnabled(false);
  button.setEnabled(false);
  button.tap();
  EXPECT_EQ(pressed, 1);
  button.setEnabled(true);
  button.tap();
  EXPECT_EQ(pressed, 2);
  EXPECT_EQ(listener.changes, 2);
}

}  // namespace
}  // namespace chatsum::platform::test
