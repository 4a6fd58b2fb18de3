#include "tests/unit/CSReportGenerationViewController/ReportScreenTest.h"

namespace chatsum::test {
namespace {

class Alerts : public ReportScreenTest {
 protected:
  Alerts() {
    fake.companion.labels = {{"Error", "Fehler"}, {"Close", "Schließen"}};
    fake.mainBundle.strings["Error"] = "A word of the host's";
  }
};

TEST_F(Alerts, HaveTheSystemsWordForErrorAsTheirTitleWhateverTheTitle) {
  open();
  screen->showMessage("Any title", "What went wrong");
  ASSERT_EQ(fake.screen.alerts.size(), 1U);
  const auto& shown = fake.screen.alerts[0];
  EXPECT_EQ(shown.alert->title(), "Fehler");
  EXPECT_EQ(shown.alert->message(), "What went wrong");
  EXPECT_EQ(shown.alert->preferredStyle(), platform::UIAlertControllerStyle::kAlert);
  EXPECT_EQ(shown.presenter, screen.get());
  EXPECT_TRUE(shown.animated);
  EXPECT_FALSE(shown.hasCompletion);
  ASSERT_EQ(shown.alert->actions().size(), 1U);
  EXPECT_EQ(shown.alert->actions()[0].title, "Schließen");
  EXPECT_EQ(shown.alert->actions()[0].style, platform::UIAlertActionStyle::kCancel);
}

TEST_F(Alerts, AreDismissedByTheirButton) {
  open();
  screen->showMessage("Title", "Message");
  const auto alert = fake.screen.alerts[0].alert;
  alert->choose(0);
  ASSERT_EQ(fake.screen.dismissed.size(), 1U);
  EXPECT_EQ(fake.screen.dismissed[0].alert, alert.get());
  EXPECT_TRUE(fake.screen.dismissed[0].animated);
  EXPECT_FALSE(fake.screen.dismissed[0].hasCompletion);
}

TEST_F(Alerts, AreNotKeptByTheirButton) {
  open();
  screen->showMessage("Title", "Message");
  const std::weak_ptr<platform::UIAlertController> alert = fake.screen.alerts[0].alert;
  fake.screen.alerts.clear();
  EXPECT_TRUE(alert.expired());
}

TEST_F(Alerts, HaveTheGivenTitleInTheOlderGeneration) {
  useOldScreens();
  open();
  screen->showMessage("Any title", "What went wrong");
  ASSERT_EQ(fake.screen.alertViews.size(), 1U);
  const auto& alert = *fake.screen.alertViews[0];
  EXPECT_EQ(alert.title(), "Any title");
  EXPECT_EQ(alert.message(), "What went wrong");
  EXPECT_EQ(alert.cancelButtonTitle(), "Schließen");
  EXPECT_EQ(alert.alertViewStyle(), platform::UIAlertViewStyle::kDefault);
  EXPECT_EQ(alert.tag(), 400);
  EXPECT_TRUE(fake.screen.alerts.empty());
}

TEST_F(Alerts, OfErrorsHaveTheHostsWordInTheOlderGeneration) {
  useOldScreens();
  open();
  screen->showError("What went wrong");
  EXPECT_EQ(fake.screen.alertViews.at(0)->title(), "A word of the host's");
  EXPECT_EQ(fake.screen.alertViews.at(0)->message(), "What went wrong");
}

TEST_F(Alerts, OfErrorsHaveTheSystemsWordInTheNewerGeneration) {
  open();
  screen->showError("What went wrong");
  EXPECT_EQ(fake.screen.alerts.at(0).alert->title(), "Fehler");
}

}  // namespace
}  // namespace chatsum::test
