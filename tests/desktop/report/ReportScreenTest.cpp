// The screen step by step, each queue run by hand, on a disk that fails when it is told to.

#include "hosts/desktop/report/ReportScreen.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "libchatsum/ChatsumSettings/ChatsumSettings.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/NotificationCenter.h"
#include "tests/desktop/report/FakeDesk.h"

namespace chatsum::desktop::test {
namespace {

using platform::fake::FileOperation;

class ReportScreenTest : public ::testing::Test {
 protected:
  FakeDesk desk;
  ReportScreen& report = desk.report;
  QSignalSpy finished{&report, &ReportScreen::finished};
  QSignalSpy failed{&report, &ReportScreen::failed};

  [[nodiscard]] static QStringList asked(const ReportScreen& screen) {
    QStringList titles;
    const auto* alert = qobject_cast<DesktopAlert*>(screen.alert());
    if (!alert) return titles;
    for (const QVariant& button : alert->buttons()) titles.append(button.toMap()["title"].toString());
    return titles;
  }
  [[nodiscard]] QString detail(int row) const { return desk.column(ReportTableModel::kDetailRole)[row]; }
};

TEST_F(ReportScreenTest, IsClosedAtFirst) {
  EXPECT_FALSE(report.isOpen());
  EXPECT_FALSE(report.canReport());
  EXPECT_FALSE(report.busy());
  report.generate();
  report.activate(0);
  report.remove(0);
  report.setName("x");
  report.close();
  EXPECT_EQ(report.name(), "");
}

TEST_F(ReportScreenTest, OpensWithTheSelection) {
  const QSignalSpy opened(&report, &ReportScreen::isOpenChanged);
  desk.open("Anna", kFileFormatCSV);
  EXPECT_TRUE(report.isOpen());
  EXPECT_EQ(opened.size(), 1);
  EXPECT_EQ(report.title(), "Generate Report");
  EXPECT_EQ(report.reportTitle(), "Generate");
  EXPECT_EQ(report.name(), "Anna");
  EXPECT_TRUE(report.canReport());
  EXPECT_EQ(detail(2), "CSV");
}

TEST_F(ReportScreenTest, BeginsWithTheFormatOfTheSettingsAndAFreeName) {
  desk.putReport("Anna.pdf", 60);
  ChatsumSettings::sharedSettings().setMsgDefaultFileFormat(kFileFormatPDF);
  SelectedReport selected = FakeDesk::selection("Anna", 0);
  selected.request.remove(request::kFileFormat);
  desk.open(selected);
  EXPECT_EQ(detail(2), "PDF");
  EXPECT_EQ(report.name(), "Anna - 1");
}

TEST_F(ReportScreenTest, NeedsAName) {
  desk.open();
  QSignalSpy changed(&report, &ReportScreen::canReportChanged);
  report.setName("");
  EXPECT_FALSE(report.canReport());
  EXPECT_EQ(changed.size(), 1);
  report.generate();
  desk.settle();
  EXPECT_EQ(finished.size() + failed.size(), 0);
  report.setName("T");
  EXPECT_TRUE(report.canReport());
}

TEST_F(ReportScreenTest, AsksForOrderAndFormat) {
  desk.open();
  report.activate(1);
  EXPECT_EQ(asked(report), (QStringList{"Ascending", "Descending", "Cancel"}));
  desk.answer("Descending");
  EXPECT_EQ(detail(1), "Date, Desc");
  report.activate(2);
  EXPECT_EQ(asked(report), (QStringList{"CSV", "PDF", "Text", "Cancel"}));
  desk.answer("PDF");
  EXPECT_EQ(detail(2), "PDF");
  report.activate(2);
  desk.answer("Cancel");
  EXPECT_EQ(detail(2), "PDF");
  EXPECT_FALSE(report.alert());
}

TEST_F(ReportScreenTest, IsBusyFromTheButtonToTheEnd) {
  desk.open();
  QSignalSpy busy(&report, &ReportScreen::busyChanged);
  report.generate();
  EXPECT_TRUE(report.busy());
  EXPECT_FALSE(report.canReport());
  report.generate();  // is already on its way
  EXPECT_EQ(desk.fake.dispatch.globalWaiting(), 1U);
  desk.fake.dispatch.runGlobal();  // writes; the indicator waits on the main queue
  EXPECT_TRUE(report.busy());
  EXPECT_EQ(finished.size(), 0);
  desk.settle();
  EXPECT_FALSE(report.busy());
  EXPECT_TRUE(report.canReport());
  ASSERT_EQ(finished.size(), 1);
  EXPECT_EQ(finished[0][0].toString().toStdString(), desk.reports + "/Anna.txt");
  EXPECT_TRUE(desk.bytesOf("Anna.txt").starts_with("Anna: first ("));
  EXPECT_EQ(report.name(), "Anna - 1");
  EXPECT_EQ(desk.rowOf("Anna"), 3);
}

TEST_F(ReportScreenTest, ShowsWhatTheLibraryIsBusyWith) {
  desk.open();
  report.generate();
  QStringList titles;
  QObject::connect(&report, &ReportScreen::busyChanged,
                   [&] { titles.append(report.busyTitle() + "/" + report.busyText()); });
  desk.settle();
  EXPECT_TRUE(titles.contains("Generating/Please wait...")) << titles.join(", ").toStdString();
}

TEST_F(ReportScreenTest, WritesEachFormatWithItsOwnLine) {
  desk.open("Anna", kFileFormatText);
  report.activate(2);
  desk.answer("CSV");
  report.generate();
  desk.settle();
  ASSERT_EQ(finished.size(), 1);
  const std::string csv = desk.bytesOf("Anna.csv");
  EXPECT_TRUE(csv.starts_with("Name,Text,Date\nAnna,first,\"") || csv.starts_with("Name,Text,Date\nAnna,first,"))
      << csv;
  report.activate(2);
  desk.answer("Text");
  report.setName("Anna");
  report.generate();
  desk.settle();
  EXPECT_TRUE(desk.bytesOf("Anna.txt").starts_with("Anna: first (")) << desk.bytesOf("Anna.txt");
}

TEST_F(ReportScreenTest, TurnsTheRecordsRoundForTheOtherOrder) {
  desk.open();
  report.activate(1);
  desk.answer("Descending");
  report.generate();
  desk.settle();
  EXPECT_TRUE(desk.bytesOf("Anna.txt").starts_with("Anna: third ("));
}

TEST_F(ReportScreenTest, AsksBeforeItReplacesAReport) {
  desk.putReport("Trip.txt", 60);
  desk.open();
  report.setName("Trip");
  report.generate();
  const auto* alert = qobject_cast<DesktopAlert*>(report.alert());
  ASSERT_TRUE(alert);
  EXPECT_TRUE(alert->title().contains("'Trip.txt' already exists"));
  EXPECT_FALSE(report.busy());
  desk.answer("Cancel");
  desk.settle();
  EXPECT_FALSE(report.busy());
  EXPECT_EQ(desk.bytesOf("Trip.txt"), "earlier");
  EXPECT_EQ(finished.size() + failed.size(), 0);
  report.generate();
  desk.answer("Replace");
  EXPECT_TRUE(report.busy());
  desk.settle();
  EXPECT_EQ(finished.size(), 1);
  EXPECT_TRUE(desk.bytesOf("Trip.txt").starts_with("Anna: first ("));
}

TEST_F(ReportScreenTest, LeavesNoManifestOfTheReportThatItReplaces) {
  for (const std::string extension : {"txt", "csv"}) {
    desk.putReport("Trip." + extension, 60);
    desk.putReport("Trip." + extension + ".evidence.json", 60);
    desk.open("Anna", extension == "txt" ? kFileFormatText : kFileFormatCSV);
    report.setName("Trip");
    report.generate();
    desk.answer("Cancel");
    desk.settle();
    EXPECT_TRUE(desk.hasReport("Trip." + extension + ".evidence.json"));
    report.generate();
    desk.answer("Replace");
    desk.settle();
    EXPECT_TRUE(desk.hasReport("Trip." + extension));
    EXPECT_FALSE(desk.hasReport("Trip." + extension + ".evidence.json"));
  }
  EXPECT_EQ(finished.size(), 2);
}

TEST_F(ReportScreenTest, WarnsOfAttachmentsThenAsksAboutTheOlderReport) {
  desk.putReport("Trip.csv", 60, "older\n");
  SelectedReport selected = FakeDesk::selection("Anna", kFileFormatCSV);
  selected.hasAttachments = true;
  desk.open(selected);
  report.setName("Trip");
  report.generate();
  EXPECT_EQ(asked(report), (QStringList{"Continue", "Cancel"}));
  desk.answer("Continue");
  EXPECT_EQ(asked(report), (QStringList{"Replace", "Cancel"}));
  EXPECT_FALSE(report.busy());
  desk.answer("Replace");
  desk.settle();
  ASSERT_EQ(finished.size(), 1);
  EXPECT_TRUE(desk.bytesOf("Trip.csv").starts_with("Name,Text,Date\n"));  // nothing of the older one
}

TEST_F(ReportScreenTest, TakesTheExtensionOutOfAName) {
  desk.putReport("Trip.txt", 60);
  desk.open();
  report.setName("Trip.TXT");
  report.generate();
  EXPECT_EQ(report.name(), "Trip");
  EXPECT_EQ(asked(report), (QStringList{"Replace", "Cancel"}));
  desk.answer("Replace");
  desk.settle();
  EXPECT_EQ(finished[0][0].toString().toStdString(), desk.reports + "/Trip.txt");
}

TEST_F(ReportScreenTest, MakesAReportWithADotInItsName) {
  desk.open("Dr. Smith");
  report.generate();
  desk.settle();
  ASSERT_EQ(finished.size(), 1) << report.failure().toStdString();
  EXPECT_TRUE(desk.hasReport("Dr. Smith.txt"));
  EXPECT_FALSE(desk.hasReport("Dr. Smith"));
  EXPECT_EQ(desk.rowOf("Dr. Smith"), 3);
  EXPECT_EQ(desk.column(ReportTableModel::kFileNameRole)[3], "Dr. Smith.txt");
  EXPECT_EQ(report.name(), "Dr. Smith - 1");
}

TEST_F(ReportScreenTest, RefusesNamesThatCannotBe) {
  desk.putReport("notes.pdf", 60);
  desk.open();
  for (const char* name : {"a/b", "..", "   ", "notes.pdf"}) {
    failed.clear();
    report.setName(name);
    report.generate();
    desk.settle();
    ASSERT_EQ(failed.size(), 1) << name;
    EXPECT_EQ(failed[0][0].toString(), report.failure());
    EXPECT_FALSE(report.busy());
  }
  EXPECT_EQ(desk.bytesOf("notes.pdf"), "earlier");
  EXPECT_EQ(finished.size(), 0);
  report.forgetFailure();
  EXPECT_EQ(report.failure(), "");
}

TEST_F(ReportScreenTest, TellsWhyAReportFailed) {
  desk.open("Anna", kFileFormatText);
  desk.fake.files.fail(FileOperation::kWriteAtomically, ENOSPC);
  report.generate();
  desk.settle();
  ASSERT_EQ(failed.size(), 1);
  EXPECT_EQ(finished.size(), 0);
  EXPECT_TRUE(report.failure().contains("No space left")) << report.failure().toStdString();
  EXPECT_TRUE(report.failure().contains(QString::fromStdString(desk.reports))) << report.failure().toStdString();
  EXPECT_FALSE(report.busy());
  desk.fake.files.succeed(FileOperation::kWriteAtomically);
  report.generate();
  desk.settle();
  EXPECT_EQ(report.failure(), "");
  EXPECT_EQ(finished.size(), 1);
}

TEST_F(ReportScreenTest, KeepsNothingOfAReportThatTheLibraryTakesForWhole) {
  desk.open("Anna", kFileFormatCSV);
  desk.fake.files.fail(FileOperation::kHandleWrite, ENOSPC);
  report.generate();
  desk.settle();
  ASSERT_EQ(failed.size(), 1);
  EXPECT_EQ(finished.size(), 0);
  EXPECT_FALSE(desk.hasReport("Anna.csv"));
  EXPECT_EQ(desk.rowOf("Anna"), -1);  // nor in the list
}

TEST_F(ReportScreenTest, TellsWhenTheFolderCannotBeMade) {
  desk.open();
  desk.fake.files.fail(FileOperation::kCreateDirectory, EROFS);
  report.generate();
  desk.settle();
  ASSERT_EQ(failed.size(), 1);
  EXPECT_TRUE(report.failure().contains("Read-only")) << report.failure().toStdString();
  EXPECT_FALSE(report.busy());
}

TEST_F(ReportScreenTest, RefusesAPageForRowsThatAreTooWide) {
  SelectedReport selected = FakeDesk::selection("Anna", kFileFormatPDF);
  selected.request.set(request::kReportFormat, Record{{"%@ %@ %@ %@", "Name,Text,Date,guid"}});
  selected.request.set(request::kColumns, Array{"Name", "Text", "Date", "guid"});
  desk.open(selected);
  report.generate();
  desk.settle();
  ASSERT_EQ(failed.size(), 1);
  report.activate(2);
  desk.answer("CSV");
  report.generate();
  desk.settle();
  EXPECT_TRUE(desk.bytesOf("Anna.csv").starts_with("Name,Text,Date,guid\n"));
}

TEST_F(ReportScreenTest, PutsReportsOfCallsWhereTheirApplicationHasThem) {
  desk.putReportIn(desk.reportsIn("phone"), "Calls.csv", 60);
  SelectedReport selected = FakeDesk::selection("Calls", kFileFormatCSV);
  selected.request.set(request::kAppType, kAppTypePhone);
  selected.appType = kAppTypePhone;
  desk.open(selected);
  EXPECT_EQ(desk.rowOf("Calls"), 3);
  EXPECT_EQ(report.name(), "Calls - 1");
  report.generate();
  desk.settle();
  ASSERT_EQ(finished.size(), 1) << report.failure().toStdString();
  EXPECT_EQ(finished[0][0].toString().toStdString(), desk.reportsIn("phone") + "/Calls - 1.csv");
  EXPECT_TRUE(desk.fake.log.contains("for appType 1"));
  EXPECT_EQ(desk.column(ReportTableModel::kSectionTitleRole)[3], "Phone");
  desk.open();
  report.generate();
  desk.settle();
  ASSERT_EQ(finished.size(), 2);
  EXPECT_EQ(finished[1][0].toString().toStdString(), desk.reports + "/Anna.txt");
}

TEST_F(ReportScreenTest, AsksBeforeItDeletesAReportWithItsManifest) {
  desk.putReport("Trip.csv", 60);
  desk.putReport("Trip.csv.evidence.json", 60);
  desk.open();
  report.askToRemove(0);
  EXPECT_FALSE(report.alert());
  report.askToRemove(3);
  EXPECT_EQ(asked(report), (QStringList{"Delete", "Cancel"}));
  EXPECT_TRUE(qobject_cast<DesktopAlert*>(report.alert())->title().contains("“Trip.csv”"));
  desk.answer("Cancel");
  desk.settle();
  EXPECT_TRUE(desk.hasReport("Trip.csv"));
  EXPECT_EQ(desk.rowOf("Trip"), 3);
  report.askToRemove(3);
  desk.answer("Delete");
  EXPECT_FALSE(desk.hasReport("Trip.csv"));
  EXPECT_FALSE(desk.hasReport("Trip.csv.evidence.json"));
  EXPECT_EQ(desk.rowOf("Trip"), -1);
}

TEST_F(ReportScreenTest, DeletesTheReportThatItAskedAboutWhateverStandsInItsRowNow) {
  desk.putReport("Trip.csv", 60);
  desk.open();
  report.askToRemove(3);
  desk.putReport("Newer.csv", 10);
  NotificationCenter::defaultCenter().post(CSReportGenerationViewController::kReportFileDeleted);
  desk.settle();
  EXPECT_EQ(desk.rowOf("Newer"), 3);
  desk.answer("Delete");
  EXPECT_TRUE(desk.hasReport("Newer.csv"));
  EXPECT_FALSE(desk.hasReport("Trip.csv"));
}

TEST_F(ReportScreenTest, FollowsTheSettingsWhenItIsTold) {
  desk.open("Anna", kFileFormatText);
  ChatsumSettings::sharedSettings().setMsgDefaultFileFormat(kFileFormatPDF);
  ChatsumSettings::sharedSettings().setMsgDefaultDateSortOrder(1);
  NotificationCenter::defaultCenter().post(CSReportGenerationViewController::kDateSortChanged);
  desk.settle();
  EXPECT_EQ(detail(1), "Date, Desc");
  EXPECT_EQ(detail(2), "PDF");
  EXPECT_EQ(report.name(), "Anna");
}

TEST_F(ReportScreenTest, ShowsAPreviewUntilTheUserClosesIt) {
  desk.putReport("Trip.csv", 60, "Name\nAnna\n");
  desk.open();
  report.activate(3);
  EXPECT_EQ(report.preview().path().toStdString(), desk.reports + "/Trip.csv");
  desk.settle();
  EXPECT_FALSE(report.busy());  // "Loading" came and went
  report.preview().close();
  EXPECT_FALSE(report.preview().isOpen());
  report.activate(3);
  EXPECT_TRUE(report.preview().isOpen());
  report.close();
  EXPECT_FALSE(report.preview().isOpen());
}

TEST_F(ReportScreenTest, EndsAReportThatIsWrittenWhileTheScreenIsClosed) {
  desk.open();
  report.generate();
  report.close();
  EXPECT_FALSE(report.busy());
  desk.settle();
  EXPECT_FALSE(report.busy());
  EXPECT_EQ(finished.size() + failed.size(), 0);
}

TEST_F(ReportScreenTest, LeavesNoQuestionWhenItIsClosed) {
  desk.putReport("Trip.txt", 60);
  desk.open();
  report.setName("Trip");
  report.generate();
  EXPECT_TRUE(report.alert());
  report.close();
  EXPECT_FALSE(report.alert());
  desk.open("Ben");
  EXPECT_EQ(report.name(), "Ben");
  EXPECT_TRUE(report.canReport());
}

TEST_F(ReportScreenTest, AsksTheSameOnScreensOfTheOlderGeneration) {
  desk.fake.runtime.classes.clear();
  desk.putReport("Trip.txt", 60);
  desk.open();
  report.activate(2);
  EXPECT_EQ(asked(report), (QStringList{"Cancel", "CSV", "PDF", "Text"}));
  desk.answer("Text");
  EXPECT_EQ(detail(2), "Text");
  report.setName("Trip");
  report.generate();
  EXPECT_EQ(asked(report), (QStringList{"Replace", "Cancel"}));
  EXPECT_FALSE(report.busy());
  desk.answer("Replace");
  EXPECT_TRUE(report.busy());
  desk.settle();
  EXPECT_FALSE(report.busy());
  EXPECT_EQ(finished.size(), 1);
  EXPECT_TRUE(desk.bytesOf("Trip.txt").starts_with("Anna: first ("));
}

}  // namespace
}  // namespace chatsum::desktop::test
