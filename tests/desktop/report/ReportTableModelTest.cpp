// The list follows the library's table step by step, and a tester of Qt's looks on.

#include "hosts/desktop/report/ReportTableModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <filesystem>

#include "platform/foundation/NotificationCenter.h"
#include "tests/desktop/report/FakeDesk.h"
#include "tests/support/OrdinaryUser.h"

namespace chatsum::desktop::test {
namespace {

class ReportTableModelTest : public ::testing::Test {
 protected:
  FakeDesk desk;
  QAbstractItemModel& table = *desk.report.table();
  QAbstractItemModelTester tester{&table, QAbstractItemModelTester::FailureReportingMode::Fatal};
  QSignalSpy inserted{&table, &QAbstractItemModel::rowsInserted};
  QSignalSpy removed{&table, &QAbstractItemModel::rowsRemoved};
  QSignalSpy reset{&table, &QAbstractItemModel::modelReset};
  QSignalSpy changed{&table, &QAbstractItemModel::dataChanged};

  [[nodiscard]] QStringList titles() const { return desk.column(ReportTableModel::kTitleRole); }
  [[nodiscard]] QStringList texts(int role) const { return desk.column(role); }
  void forget() {
    for (auto* spy : {&inserted, &removed, &reset, &changed}) spy->clear();
  }
  static void reload() {
    NotificationCenter::defaultCenter().post(CSReportGenerationViewController::kReportFileDeleted);
  }
};

TEST_F(ReportTableModelTest, ShowsCriteriaAndEarlierReportsWithTheirSections) {
  desk.putReport("Old.csv", 86400, "ab");
  desk.putReport("New.pdf", 60, "abcde");
  desk.open("Anna");
  EXPECT_EQ(titles(), (QStringList{"Name", "Sort By", "File Format", "New", "Old"}));
  EXPECT_EQ(texts(ReportTableModel::kKindRole), (QStringList{"name", "choice", "choice", "file", "file"}));
  EXPECT_EQ(texts(ReportTableModel::kSectionRole), (QStringList{"0", "0", "0", "1", "1"}));
  EXPECT_EQ(texts(ReportTableModel::kSectionTitleRole), (QStringList{"Criteria", "", "", "Messages", ""}));
  EXPECT_EQ(texts(ReportTableModel::kSectionFooterRole), (QStringList{"", "", "You have selected 3 records.", "", ""}));
  EXPECT_EQ(texts(ReportTableModel::kFileNameRole), (QStringList{"", "", "", "New.pdf", "Old.csv"}));
  EXPECT_EQ(texts(ReportTableModel::kSizeRole), (QStringList{"", "", "", "5 bytes", "2 bytes"}));
  EXPECT_EQ(texts(ReportTableModel::kEditableRole), (QStringList{"false", "false", "false", "true", "true"}));
  const QStringList details = texts(ReportTableModel::kDetailRole);
  EXPECT_EQ(details.mid(0, 3), (QStringList{"Anna", "Date, Asc", "Text"}));
  EXPECT_FALSE(details[3].isEmpty());
  EXPECT_EQ(table.index(3, 0).data(Qt::DisplayRole).toString(), "New");
}

TEST_F(ReportTableModelTest, KeepsItsRowsWhenTheListIsLoadedAnew) {
  desk.putReport("Old.csv", 86400);
  desk.open();
  forget();
  reload();
  desk.settle();
  EXPECT_EQ(inserted.size() + removed.size() + reset.size() + changed.size(), 0);
}

TEST_F(ReportTableModelTest, InsertsOnlyTheNewReport) {
  desk.putReport("Old.csv", 86400);
  desk.open();
  forget();
  desk.putReport("New.pdf", 60);
  reload();
  desk.settle();
  EXPECT_EQ(titles(), (QStringList{"Name", "Sort By", "File Format", "New", "Old"}));
  ASSERT_EQ(inserted.size(), 1);
  EXPECT_EQ(inserted[0][1].toInt(), 3);
  EXPECT_EQ(inserted[0][2].toInt(), 3);
  EXPECT_EQ(removed.size() + reset.size(), 0);
  EXPECT_EQ(texts(ReportTableModel::kSectionTitleRole)[4], "");  // moved to the new first one
}

TEST_F(ReportTableModelTest, LosesTheRowWithItsFile) {
  desk.putReport("One.csv", 60);
  desk.putReport("Two.csv", 120);
  desk.putReport("Three.csv", 180);
  desk.open();
  forget();
  desk.report.remove(4);
  EXPECT_FALSE(desk.hasReport("Two.csv"));
  EXPECT_EQ(titles().mid(3), (QStringList{"One", "Three"}));
  desk.report.remove(4);  // before any queue ran
  EXPECT_EQ(titles().mid(3), QStringList{"One"});
  EXPECT_FALSE(desk.hasReport("Three.csv"));
  ASSERT_EQ(removed.size(), 2);
  EXPECT_EQ(removed[0][1].toInt(), 4);
  EXPECT_EQ(removed[1][1].toInt(), 4);
  desk.settle();
  EXPECT_EQ(titles().mid(3), QStringList{"One"});
  EXPECT_TRUE(desk.hasReport("One.csv"));
  EXPECT_EQ(inserted.size() + reset.size(), 0);
}

TEST_F(ReportTableModelTest, ListsWhatTheCommandLineLists) {
  desk.putReport("One.csv", 60);
  desk.putReport("One.csv.evidence.json", 60);
  desk.putReport(".chatsum-0011223344556677.csv", 60);
  desk.putReport("Folder/inner.txt", 60);
  desk.open();
  EXPECT_EQ(texts(ReportTableModel::kFileNameRole).mid(3), QStringList{"One.csv"});
}

TEST_F(ReportTableModelTest, ShowsTheReportsOfEachApplicationUnderItsName) {
  desk.putReportIn(desk.reportsIn("facetime"), "FaceTime calls.csv", 10);
  desk.putReportIn(desk.reportsIn("phone"), "Phone calls.csv", 20);
  desk.putReportIn(desk.reportsIn("phone"), "Older calls.csv", 50);
  desk.putReport("Anna.csv", 30);
  desk.open();
  EXPECT_EQ(titles().mid(3), (QStringList{"Anna", "Phone calls", "Older calls", "FaceTime calls"}));
  EXPECT_EQ(texts(ReportTableModel::kSectionTitleRole).mid(3), (QStringList{"Messages", "Phone", "", "FaceTime"}));
  EXPECT_EQ(texts(ReportTableModel::kSectionRole).mid(3), (QStringList{"1", "2", "2", "3"}));
  desk.report.remove(4);
  desk.settle();
  EXPECT_FALSE(desk.fake.files.exists(desk.reportsIn("phone") + "/Phone calls.csv"));
  EXPECT_EQ(texts(ReportTableModel::kSectionTitleRole).mid(3), (QStringList{"Messages", "Phone", "FaceTime"}));
  desk.report.activate(4);
  EXPECT_EQ(desk.report.preview().path().toStdString(), desk.reportsIn("phone") + "/Older calls.csv");
}

TEST_F(ReportTableModelTest, GivesTheTitleOfASectionToTheRowThatBecomesTheFirst) {
  desk.putReport("One.csv", 60);
  desk.putReport("Two.csv", 120);
  desk.open();
  desk.report.remove(3);
  desk.settle();
  EXPECT_EQ(titles().mid(3), QStringList{"Two"});
  EXPECT_EQ(texts(ReportTableModel::kSectionTitleRole)[3], "Messages");
}

TEST_F(ReportTableModelTest, LosesTheSectionWithItsLastReport) {
  desk.putReport("One.csv", 60);
  desk.open();
  forget();
  desk.report.remove(3);
  desk.settle();
  EXPECT_EQ(titles(), (QStringList{"Name", "Sort By", "File Format"}));
  EXPECT_EQ(removed.size(), 1);
  EXPECT_EQ(reset.size(), 0);
}

TEST_F(ReportTableModelTest, NeverDeletesWhatIsNoReport) {
  desk.putReport("One.csv", 60);
  desk.open();
  for (const int row : {-1, 0, 1, 2, 4, 100}) desk.report.remove(row);
  desk.settle();
  EXPECT_EQ(titles().size(), 4);
  EXPECT_TRUE(desk.hasReport("One.csv"));
}

TEST_F(ReportTableModelTest, KeepsTheRowOfAFileThatCannotBeDeletedAndTellsWhy) {
  desk.putReport("One.csv", 60);
  desk.open();
  std::filesystem::permissions(desk.reports, std::filesystem::perms(0555));
  {
    const chatsum::test::OrdinaryUser user;
    desk.report.remove(3);
  }
  std::filesystem::permissions(desk.reports, std::filesystem::perms(0755));
  desk.settle();
  EXPECT_EQ(titles().mid(3), QStringList{"One"});
  const auto* alert = qobject_cast<DesktopAlert*>(desk.report.alert());
  ASSERT_TRUE(alert);
  EXPECT_EQ(alert->title(), "Error");
  EXPECT_TRUE(alert->message().contains("denied")) << alert->message().toStdString();
  desk.answer("Close");
  EXPECT_FALSE(desk.report.alert());
}

TEST_F(ReportTableModelTest, NeverDeletesAFolderThatTookTheReportsPlace) {
  desk.putReport("One.csv", 60);
  desk.open();
  EXPECT_FALSE(desk.fake.files.remove(desk.reports + "/One.csv"));
  desk.putReport("One.csv/kept.txt", 60);
  desk.report.remove(3);
  desk.settle();
  EXPECT_TRUE(desk.hasReport("One.csv/kept.txt"));
  ASSERT_TRUE(desk.report.alert());
  desk.answer("Close");
}

TEST_F(ReportTableModelTest, FollowsANameThatIsTyped) {
  desk.open("Anna");
  desk.report.setName("Trip");
  EXPECT_EQ(texts(ReportTableModel::kDetailRole)[0], "Trip");
}

TEST_F(ReportTableModelTest, IsEmptyWhenTheScreenIsClosed) {
  desk.putReport("One.csv", 60);
  desk.open();
  desk.report.close();
  EXPECT_EQ(table.rowCount(), 0);
  desk.settle();
  EXPECT_EQ(table.rowCount(), 0);
}

TEST_F(ReportTableModelTest, ShowsAThousandReports) {
  for (int i = 0; i < 1000; ++i) desk.putReport("Report " + std::to_string(i) + ".txt", 10 + i);
  desk.open();
  EXPECT_EQ(table.rowCount(), 1003);
  EXPECT_EQ(titles()[1002], "Report 999");
  desk.report.remove(500);
  desk.settle();
  EXPECT_EQ(table.rowCount(), 1002);
}

}  // namespace
}  // namespace chatsum::desktop::test
