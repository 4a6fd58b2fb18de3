#include "tests/unit/CSReportGenerationViewController/ReportScreenTest.h"

namespace chatsum::test {
namespace {

using Texts = std::vector<std::string>;
using FileRecords = CSReportGenerationViewController::FileRecords;
using platform::fake::FileOperation;

class PreviousReports : public ReportScreenTest {};

TEST_F(PreviousReports, AreOneListOfAllFormatsNewestFirst) {
  putReport("b.txt", 300);
  putReport("a.pdf", 200);
  putReport("d.txt", 100);
  putReport("c.csv", 400);
  open();
  EXPECT_EQ(titles(1), (Texts{"d", "a", "b", "c"}));
  EXPECT_EQ(table().titleForHeaderInSection(1), "Messages");
  EXPECT_EQ(table().titleForFooterInSection(1), std::nullopt);
}

TEST_F(PreviousReports, ComeLastWithoutADate) {
  putReport("old.txt", 300);
  open();
  fake.files.fail(FileOperation::kAttributes, EACCES, 1);
  putReport("a.csv", 1);
  putReport("z.pdf", 2);
  screen->loadPreviousReports();
  settle();
  const auto all = *screen->fileRecordsDictionary()->find(0);
  ASSERT_EQ(all.second.size(), 3U);
  EXPECT_EQ(all.second[2].asRecord()->find("NSFileCreationDate"), nullptr);
  EXPECT_NE(all.second[1].asRecord()->find("NSFileCreationDate"), nullptr);
}

TEST_F(PreviousReports, AreAnEmptySectionWithoutAHeaderWhenThereAreNone) {
  open();
  ASSERT_TRUE(screen->fileRecordsDictionary());
  EXPECT_EQ(screen->fileRecordsDictionary()->at(0).size(), 0U);
  EXPECT_EQ(table().numberOfSections(), 2);
  EXPECT_EQ(table().numberOfRowsInSection(1), 0);
  EXPECT_EQ(table().titleForHeaderInSection(1), std::nullopt);
}

TEST_F(PreviousReports, AreReadOnTheGlobalQueueAndShownFromTheMainOne) {
  putReport("a.pdf", 200);
  screen->setSelectedRecords(request());
  navigation.pushViewController(screen, true);
  EXPECT_EQ(fake.dispatch.globalWaiting(), 1U);
  EXPECT_EQ(fake.dispatch.mainWaiting(), 0U);
  fake.dispatch.runGlobal();
  EXPECT_EQ(table().numberOfRowsInSection(1), 0);
  EXPECT_EQ(fake.dispatch.mainWaiting(), 1U);
  fake.dispatch.runMain();
  EXPECT_EQ(titles(1), Texts{"a"});
}

TEST_F(PreviousReports, AreShownAsTheNewestLoadReadThem) {
  putReport("a.pdf", 200);
  open();
  screen->loadPreviousReports();
  fake.dispatch.runGlobal();  // read, not shown yet
  putReport("b.pdf", 100);
  screen->loadPreviousReports();
  settle();
  EXPECT_EQ(titles(1), (Texts{"b", "a"}));
}

TEST_F(PreviousReports, AreNotReplacedByAnOlderLoadThatComesLate) {
  putReport("a.pdf", 200);
  open();
  screen->loadPreviousReports();
  fake.dispatch.runGlobal();
  putReport("b.pdf", 100);
  screen->loadPreviousReports();
  fake.dispatch.runGlobal();
  fake.dispatch.turnMainRound();
  settle();
  EXPECT_EQ(titles(1), (Texts{"b", "a"}));
}

TEST_F(PreviousReports, AreReadByManyThreadsAtOnce) {
  fake.dispatch.globalOnThreads = true;
  for (int i = 0; i < 20; ++i) putReport("report " + std::to_string(i) + ".txt", i);
  open();
  for (int i = 0; i < 8; ++i) {
    screen->loadPreviousReports();
    table().reloadData();
    fake.dispatch.runMain();
  }
  settle();
  EXPECT_EQ(titles(1).size(), 20U);
  EXPECT_EQ(title({1, 19}), "report 19");
}

class Preview : public ReportScreenTest {};

TEST_F(Preview, ShowsTheTappedReport) {
  putReport("a.pdf", 200);
  putReport("b.txt", 100);
  open();
  fake.screen.keepCompletions = true;
  tap({1, 1});
  EXPECT_EQ(screen->previewFilePath(), "a.pdf");
  ASSERT_EQ(fake.screen.previews.size(), 1U);
  const auto& shown = fake.screen.previews[0];
  EXPECT_EQ(shown.presenter, &navigation);
  EXPECT_TRUE(shown.animated);
  EXPECT_EQ(shown.preview->numberOfPreviewItems(), 1);
  EXPECT_EQ(shown.preview->previewItemAtIndex(0)->path, reports + "/a.pdf");
  EXPECT_EQ(screen->previewItemAtIndex(*shown.preview, 17).path, reports + "/a.pdf") << "the index does not matter";
  EXPECT_EQ(table().indexPathForSelectedRow(), std::nullopt);
}

TEST_F(Preview, IsBusyUntilItIsOnTheScreen) {
  fake.mainBundle.strings["Loading"] = "<Loading>";
  putReport("a.pdf", 200);
  open();
  fake.screen.keepCompletions = true;
  tap({1, 0});
  settle();
  ASSERT_EQ(fake.companion.indicators.size(), 1U);
  EXPECT_EQ(fake.companion.indicators[0]->title, "<Loading>");
  EXPECT_EQ(fake.companion.indicators[0]->message, "\n\n\n") << "no words but room for the spinner";
  EXPECT_EQ(fake.companion.indicators[0]->presenter, screen.get());
  EXPECT_EQ(indicatorsLeft(), 1);
  fake.screen.previews[0].completion();
  settle();
  EXPECT_EQ(indicatorsLeft(), 0);
}

TEST_F(Preview, IsForgottenWhenItIsDismissed) {
  putReport("a.pdf", 200);
  open();
  tap({1, 0});
  fake.screen.previews[0].preview->dismiss();
  EXPECT_EQ(screen->previewFilePath(), std::nullopt);
}

TEST_F(Preview, TakesTheNameFromTheFieldFirst) {
  putReport("a.pdf", 200);
  open(request("Anna"));
  type("");
  tap({1, 0});
  EXPECT_EQ(fileName(), "");
  EXPECT_FALSE(screen->nameTextField()->isFirstResponder());
}

TEST_F(Preview, ShowsAFileThatWentMeanwhileAsItIs) {
  putReport("a.pdf", 200);
  open();
  EXPECT_FALSE(fake.realFiles.remove(reports + "/a.pdf"));
  tap({1, 0});
  EXPECT_EQ(fake.screen.previews.at(0).preview->previewItemAtIndex(0)->path, reports + "/a.pdf");
}

TEST_F(Preview, DoesNothingForARowThatIsNoLongerListed) {
  putReport("a.pdf", 200);
  open();
  screen->setFileRecordsDictionary(FileRecords());
  tap({1, 0});
  settle();
  EXPECT_TRUE(fake.screen.previews.empty());
  EXPECT_TRUE(fake.companion.indicators.empty());
}

TEST_F(Preview, DoesNothingWithoutANavigationStack) {
  putReport("a.pdf", 200);
  open();
  navigation.popViewController(true);
  tap({1, 0});
  settle();
  EXPECT_TRUE(fake.screen.previews.empty());
  EXPECT_TRUE(fake.companion.indicators.empty());
}

/// Keeps what the table tells its host.
struct Updates final : platform::UITableViewListener {
  Texts told;
  void didReload(platform::UITableView&) override { told.push_back("reload"); }
  void didUpdate(platform::UITableView&, const platform::UITableViewUpdate& update) override {
    std::string line;
    for (const auto& place : update.deletedRows) {
      line += "row " + std::to_string(place.section) + "." + std::to_string(place.row) + " ";
    }
    for (const auto section : update.deletedSections) line += "section " + std::to_string(section) + " ";
    told.push_back(line + "animation " + std::to_string(static_cast<int>(update.animation)));
  }
  void didDeselectRow(platform::UITableView&, IndexPath, bool) override {}
};

class Deletion : public BothGenerations {
 protected:
  Updates updates;
  void openWith(const std::vector<std::string>& names) {
    double age = 0;
    for (const auto& name : names) putReport(name, age += 10);
    open();
    table().setListener(&updates);
  }
  ~Deletion() override { table().setListener(nullptr); }
};

TEST_P(Deletion, IsOfferedForEarlierReportsOnly) {
  openWith({"a.txt"});
  using platform::UITableViewCellEditingStyle;
  for (const auto place : {kNameRow, kSortRow, kFormatRow}) {
    EXPECT_FALSE(screen->canEditRowAtIndexPath(table(), place));
    EXPECT_EQ(screen->editingStyleForRowAtIndexPath(table(), place), UITableViewCellEditingStyle::kNone);
  }
  EXPECT_TRUE(screen->canEditRowAtIndexPath(table(), {1, 0}));
  EXPECT_EQ(screen->editingStyleForRowAtIndexPath(table(), {1, 0}), UITableViewCellEditingStyle::kDelete);
}

TEST_P(Deletion, TakesFileAndRow) {
  openWith({"a.txt", "b.pdf", "c.csv"});
  table().confirmDeletion({1, 1});
  EXPECT_FALSE(hasReport("b.pdf"));
  EXPECT_TRUE(updates.told.empty()) << "the table follows from the main queue";
  settle();
  EXPECT_EQ(updates.told, Texts{"row 1.1 animation 100"});
  EXPECT_EQ(titles(1), (Texts{"a", "c"}));
  EXPECT_EQ(fake.dispatch.globalWaiting(), 0U);
}

TEST_P(Deletion, OfTheLastFileTakesTheSectionInTheSameStep) {
  openWith({"a.txt"});
  table().confirmDeletion({1, 0});
  EXPECT_EQ(screen->fileRecordsDictionary()->at(0).size(), 0U);
  settle();
  EXPECT_EQ(updates.told, Texts{"row 1.0 section 1 animation 100"});
  EXPECT_TRUE(screen->fileRecordsDictionary()->empty());
  EXPECT_EQ(table().numberOfSections(), 1);
}

TEST_P(Deletion, ThatFailsKeepsTheRowAndTellsTheUser) {
  openWith({"a.txt"});
  fake.files.fail(FileOperation::kRemove, EACCES);
  table().confirmDeletion({1, 0});
  settle();
  const std::string path = reports + "/a.txt";
  const std::string reason = Error::posix(EACCES, "“" + path + "” was made to fail").localizedDescription();
  EXPECT_TRUE(hasReport("a.txt"));
  EXPECT_EQ(titles(1), Texts{"a"});
  EXPECT_TRUE(updates.told.empty());
  EXPECT_TRUE(logged(error("-[CSReportGenerationViewController removeFile:completion:]", 587,
                           "Error while deleting file " + path + ". Error: " + reason)));
  EXPECT_TRUE(
      logged(error("-[CSReportGenerationViewController tableView:commitEditingStyle:forRowAtIndexPath:]_block_invoke",
                   618, "Error while deleting file a.txt. Error: " + reason)));
  if (GetParam()) {
    ASSERT_EQ(fake.screen.alerts.size(), 1U);
    EXPECT_EQ(fake.screen.alerts[0].alert->message(), reason);
  } else {
    ASSERT_EQ(fake.screen.alertViews.size(), 1U);
    EXPECT_EQ(fake.screen.alertViews[0]->message(), reason);
  }
}

TEST_P(Deletion, OfAFileThatIsGoneFailsToo) {
  openWith({"a.txt"});
  EXPECT_FALSE(fake.realFiles.remove(reports + "/a.txt"));
  table().confirmDeletion({1, 0});
  settle();
  EXPECT_EQ(titles(1), Texts{"a"});
  EXPECT_EQ(fake.screen.alerts.size() + fake.screen.alertViews.size(), 1U);
}

TEST_P(Deletion, OfTwoRowsBeforeTheTableFollowsTakesTheFilesOfTheseRows) {
  openWith({"a.txt", "b.pdf", "c.csv", "d.txt"});
  table().confirmDeletion({1, 0});
  table().confirmDeletion({1, 1});  // the table still shows all four
  EXPECT_FALSE(hasReport("a.txt"));
  EXPECT_FALSE(hasReport("b.pdf"));
  EXPECT_EQ(screen->fileRecordsDictionary()->at(0).size(), 2U) << "the list has lost them at once";
  settle();
  EXPECT_EQ(updates.told, Texts{"row 1.0 row 1.1 animation 100"});
  EXPECT_EQ(titles(1), (Texts{"c", "d"}));
  EXPECT_TRUE(hasReport("c.csv"));
  EXPECT_TRUE(hasReport("d.txt"));
}

TEST_P(Deletion, OfALaterRowFirstTakesTheFilesOfBothRows) {
  openWith({"a.txt", "b.pdf", "c.csv"});
  table().confirmDeletion({1, 2});
  table().confirmDeletion({1, 0});
  settle();
  EXPECT_EQ(titles(1), Texts{"b"});
  EXPECT_FALSE(hasReport("a.txt"));
  EXPECT_TRUE(hasReport("b.pdf"));
  EXPECT_FALSE(hasReport("c.csv"));
}

TEST_P(Deletion, OfARowThatIsLeavingTakesNoOtherFile) {
  openWith({"a.txt", "b.pdf"});
  table().confirmDeletion({1, 0});
  table().confirmDeletion({1, 0});
  settle();
  EXPECT_EQ(titles(1), Texts{"b"});
  EXPECT_TRUE(hasReport("b.pdf"));
}

TEST_P(Deletion, OfAllRowsBeforeTheTableFollowsTakesTheSection) {
  openWith({"a.txt", "b.pdf"});
  table().confirmDeletion({1, 0});
  table().confirmDeletion({1, 1});
  settle();
  EXPECT_EQ(updates.told, Texts{"row 1.0 row 1.1 section 1 animation 100"});
  EXPECT_TRUE(screen->fileRecordsDictionary()->empty());
  EXPECT_EQ(table().numberOfSections(), 1);
}

TEST_P(Deletion, BeforeATapShowsTheReportOfTheTappedRow) {
  openWith({"a.txt", "b.pdf", "c.csv"});
  table().confirmDeletion({1, 0});
  tap({1, 1});
  EXPECT_EQ(screen->previewFilePath(), "b.pdf");
}

TEST_P(Deletion, WhileAListIsBeingReadLeavesNoRowWithoutAFile) {
  openWith({"a.txt", "b.pdf"});
  screen->loadPreviousReports();
  fake.dispatch.runGlobal();  // it was read with both, and waits to be shown
  table().confirmDeletion({1, 0});
  settle();
  EXPECT_EQ(titles(1), Texts{"b"});
}

TEST_P(Deletion, AfterAListWasReadThatIsShownLaterLeavesNoRowWithoutAFile) {
  openWith({"a.txt", "b.pdf"});
  screen->loadPreviousReports();
  fake.dispatch.runGlobal();  // it was read with both
  table().confirmDeletion({1, 0});
  fake.dispatch.turnMainRound();
  settle();
  EXPECT_EQ(updates.told.at(0), "row 1.0 animation 100");
  EXPECT_EQ(titles(1), Texts{"b"});
}

TEST_P(Deletion, BeforeAListIsReadToTheEndLeavesNoRowWithoutAFile) {
  openWith({"a.txt", "b.pdf"});
  table().confirmDeletion({1, 0});
  screen->loadPreviousReports();
  fake.dispatch.runMain();
  EXPECT_EQ(updates.told, Texts{"row 1.0 animation 100"});
  settle();
  EXPECT_EQ(titles(1), Texts{"b"});
}

TEST_P(Deletion, OnlyDeletes) {
  openWith({"a.txt"});
  screen->commitEditingStyle(table(), platform::UITableViewCellEditingStyle::kNone, {1, 0});
  screen->commitEditingStyle(table(), platform::UITableViewCellEditingStyle::kDelete, {1, 4});
  screen->commitEditingStyle(table(), platform::UITableViewCellEditingStyle::kDelete, {7, 0});
  EXPECT_TRUE(hasReport("a.txt"));
}
INSTANTIATE_TEST_SUITE_P(Screens, Deletion, kGenerations, generationName);

class RemoveFile : public ReportScreenTest {};

TEST_F(RemoveFile, AnswersBeforeItReturns) {
  putReport("a.txt", 10);
  open();
  int calls = 0;
  bool failed = true;
  screen->removeFile("a.txt", [&](const auto& problem) {
    ++calls;
    failed = problem.has_value();
  });
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(failed);
  screen->removeFile("a.txt", [&](const auto& problem) { failed = problem.has_value(); });
  EXPECT_TRUE(failed);
}

TEST_F(RemoveFile, NeedsNoCompletion) {
  putReport("a.txt", 10);
  open();
  screen->removeFile("a.txt", nullptr);
  EXPECT_FALSE(hasReport("a.txt"));
  screen->removeFile("a.txt", nullptr);
  EXPECT_TRUE(fake.log.contains("Error while deleting file " + reports + "/a.txt. Error: "));
}

TEST_F(RemoveFile, RemovesNothingWhoseNameIsNotOneComponent) {
  putReport("a.txt", 10);
  putReport("sub/b.txt", 10);
  fake.put("/var/mobile/Library/Preferences/other.plist", "another's");
  open();
  fake.files.forgetCalls();
  for (const char* name : {"", ".", "..", "/", "a.txt/", "./a.txt", "../Chatsum", "../other.plist", "sub/b.txt"}) {
    int code = 0;
    screen->removeFile(name, [&](const auto& problem) { code = problem ? problem->code : 0; });
    EXPECT_EQ(code, EINVAL) << name;
  }
  EXPECT_EQ(fake.files.calls(), Texts{});
  EXPECT_TRUE(
      logged(error("-[CSReportGenerationViewController removeFile:completion:]", 587,
                   "Error while deleting file " + reports + ". Error: “” couldn’t be removed: Invalid argument")));
  EXPECT_TRUE(hasReport("a.txt"));
  putReport("..a", 10);
  screen->removeFile("..a", nullptr);
  EXPECT_FALSE(hasReport("..a"));
}

}  // namespace
}  // namespace chatsum::test
