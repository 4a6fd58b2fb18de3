#include <thread>

#include "tests/unit/CSReportGenerationViewController/ReportScreenTest.h"

namespace chatsum::test {
namespace {

class ScreenNotifications : public ReportScreenTest, public ::testing::WithParamInterface<const char*> {
 protected:
  void change(std::int64_t format, std::int64_t order) {
    ChatsumSettings::sharedSettings().setMsgDefaultFileFormat(format);
    ChatsumSettings::sharedSettings().setMsgDefaultDateSortOrder(order);
  }
  static void post(const char* name) { NotificationCenter::defaultCenter().post(name); }
};
class SettingsNotifications : public ScreenNotifications {};

TEST_P(SettingsNotifications, BringBothSettingsAndLeaveTheName) {
  open(request("Anna", kText));
  change(kPDF, 1);
  post(GetParam());
  EXPECT_EQ(screen->fileFormat(), 1U);
  EXPECT_EQ(screen->selectedRecords()->value("FILE_FORMAT"), Value(1));
  EXPECT_TRUE(screen->sortDesc());
  EXPECT_EQ(detail(kFormatRow), "Text") << "the table follows from the main queue";
  settle();
  EXPECT_EQ(detail(kFormatRow), "PDF");
  EXPECT_EQ(detail(kSortRow), "Date, Desc");
  EXPECT_EQ(fileName(), "Anna");
}

TEST_P(SettingsNotifications, MayComeOnAnyThread) {
  open(request("Anna", kText));
  {
    const std::jthread poster([this] {
      for (int round = 0; round < 50; ++round) {
        change(round % 3, round % 2);
        post(GetParam());
      }
    });
    for (int round = 0; round < 50; ++round) {
      table().reloadData();
      fake.dispatch.runMain();
      type("Name " + std::to_string(round));
    }
  }
  settle();
  EXPECT_EQ(screen->fileFormat(), 1U);
  EXPECT_EQ(detail(kFormatRow), "PDF");
  EXPECT_EQ(detail(kSortRow), "Date, Desc");
  EXPECT_EQ(fileName(), "Name 49");
}

TEST_P(SettingsNotifications, AreNotHeardAfterAMemoryWarning) {
  open(request("Anna", kText));
  screen->didReceiveMemoryWarning();
  change(kPDF, 1);
  post(GetParam());
  settle();
  EXPECT_EQ(screen->fileFormat(), 2U);
  EXPECT_FALSE(screen->sortDesc());
}

TEST_P(SettingsNotifications, BringEveryOrderButZeroAsDescending) {
  open(request("Anna", kText));
  for (const std::int64_t order : {-1, 0, 9}) {
    change(kText, order);
    post(GetParam());
    EXPECT_EQ(screen->sortDesc(), order != 0) << order;
  }
}

TEST_P(SettingsNotifications, AreNotHeardBeforeTheViewIsLoaded) {
  screen->setSelectedRecords(request("Anna", kText));
  change(kPDF, 1);
  post(GetParam());
  EXPECT_EQ(screen->fileFormat(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Names, SettingsNotifications,
                         ::testing::Values("com.orbelle.ChatsumMessagesFileFormatChanged",
                                           "com.orbelle.ChatsumMessagesDateSortChanged"),
                         [](const auto& param) { return param.index == 0 ? "FileFormat" : "DateSort"; });

TEST_F(ReportScreenTest, LeavesNoObserverBehindWhenItIsGone) {
  open();
  const void* const observer = screen.get();
  EXPECT_TRUE(NotificationCenter::defaultCenter().hasObserver(observer));
  navigation.popViewController(true);
  screen.reset();
  EXPECT_FALSE(NotificationCenter::defaultCenter().hasObserver(observer));
}

class DeletionNotification : public ScreenNotifications {};

TEST_F(DeletionNotification, LoadsTheListAnew) {
  putReport("old.txt", 100);
  putReport("new.txt", 10);
  open();
  EXPECT_EQ(titles(1), (std::vector<std::string>{"new", "old"}));
  EXPECT_FALSE(fake.realFiles.remove(reports + "/new.txt"));
  post("com.orbelle.ChatsumReportFileDeletedNotification");
  EXPECT_EQ(titles(1).size(), 2U);
  settle();
  EXPECT_EQ(titles(1), std::vector<std::string>{"old"});
}

TEST_F(DeletionNotification, IsNotHeardAfterAMemoryWarning) {
  putReport("old.txt", 100);
  open();
  screen->didReceiveMemoryWarning();
  EXPECT_FALSE(fake.realFiles.remove(reports + "/old.txt"));
  post("com.orbelle.ChatsumReportFileDeletedNotification");
  settle();
  EXPECT_EQ(titles(1), std::vector<std::string>{"old"});
}

TEST_F(DeletionNotification, DoesNotReachTheScreenThroughTheSystemWideCentre) {
  open();
  fake.darwinNotifications.post("com.orbelle.ChatsumReportFileDeletedNotification");
  EXPECT_EQ(fake.dispatch.globalWaiting(), 0U);
}

}  // namespace
}  // namespace chatsum::test
