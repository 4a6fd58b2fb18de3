#include <thread>

#include "tests/unit/CSReportGenerationViewController/ReportScreenTest.h"

namespace chatsum::test {
namespace {

using Texts = std::vector<std::string>;
using platform::fake::FileOperation;

class Generation : public ReportScreenTest {
 protected:
  /// The three messages the other way round.
  static Record newestFirst() {
    Record turned = request("Anna", kText);
    const Array records = *turned["RECORDS"].asArray();
    turned.set("RECORDS", Array{records[2], records[1], records[0]});
    return turned;
  }
  void generate() {
    pressGenerate();
    settle();
  }
};

TEST_F(Generation, WorksOnTheGlobalQueue) {
  open(request("Anna", kText));
  fake.files.forgetCalls();
  pressGenerate();
  EXPECT_TRUE(fake.files.calls().empty());
  EXPECT_EQ(fake.dispatch.globalWaiting(), 1U);
  EXPECT_TRUE(fake.companion.indicators.empty());
  settle();
  EXPECT_TRUE(hasReport("Anna.txt"));
}

TEST_F(Generation, ShowsThatItIsBusyUntilTheFileIsThere) {
  fake.mainBundle.strings["Generating"] = "<Generating>";
  fake.mainBundle.strings["Please wait..."] = "<Please wait...>";
  open(request("Anna", kText));
  generate();
  ASSERT_EQ(fake.companion.indicators.size(), 1U);
  const auto& indicator = *fake.companion.indicators[0];
  EXPECT_EQ(indicator.title, "<Generating>");
  EXPECT_EQ(indicator.message, "<Please wait...>\n\n\n");
  EXPECT_EQ(indicator.presenter, screen.get());
  EXPECT_EQ(indicator.shown, 1);
  EXPECT_EQ(indicator.hidden, 1);
  EXPECT_TRUE(fake.screen.previews.empty()) << "the new file is not opened";
}

TEST_F(Generation, IsBusyNoLongerWhenMemoryIsMissing) {
  open(request("Anna", kPDF));
  fake.graphics.failingText = 1;
  generate();
  EXPECT_EQ(fake.graphics.abandonedDocuments, 1U);
  ASSERT_EQ(fake.companion.indicators.size(), 1U);
  EXPECT_EQ(fake.companion.indicators[0]->shown, 1);
  EXPECT_EQ(fake.companion.indicators[0]->hidden, 1);
}

TEST_F(Generation, HandsTheRequestOverWithTheHostsKeys) {
  Record mine = request("Anna", kText);
  mine.set("REPORT_FORMAT", Record{{"%@!", "Text"}});
  open(mine);
  generate();
  EXPECT_EQ(report("Anna.txt"), "first!\nsecond!\nthird!\n");
  EXPECT_EQ(screen->selectedRecords()->value("HOST"), Value("its own"));
  EXPECT_EQ(screen->selectedRecords()->record().size(), mine.size()) << "no key is added";
}

TEST_F(Generation, SaysWhereTheReportWasSavedAndListsIt) {
  putReport("old.csv", 100);
  open(request("Anna", kText));
  generate();
  EXPECT_TRUE(logged(information("-[CSReportGenerationViewController generateReport]_block_invoke", 507,
                                 "Report save to " + reports + "/Anna.txt")));
  EXPECT_EQ(titles(1), (Texts{"Anna", "old"}));
}

TEST_F(Generation, EmptiesTheListUntilItIsReadAnew) {
  putReport("old.csv", 100);
  open(request("Anna", kText));
  pressGenerate();
  fake.dispatch.runGlobal();
  ASSERT_TRUE(screen->fileRecordsDictionary());
  EXPECT_TRUE(screen->fileRecordsDictionary()->empty());
  settle();
  EXPECT_EQ(titles(1), (Texts{"Anna", "old"}));
}

TEST_F(Generation, TurnsTheRecordsRoundWhenTheyStandAgainstTheOrder) {
  open(request("Anna", kText));
  screen->setSortDesc(true);
  generate();
  EXPECT_EQ(textsOfRecords(), (Texts{"third", "second", "first"}));
  EXPECT_THAT(report("Anna.txt"), ::testing::StartsWith("Anna: third"));
}

TEST_F(Generation, TurnsRecordsThatStandNewestFirst) {
  open(newestFirst());
  generate();
  EXPECT_EQ(textsOfRecords(), (Texts{"first", "second", "third"}));
}

TEST_F(Generation, LeavesRecordsThatStandInTheOrder) {
  open(request("Anna", kText));
  generate();
  EXPECT_EQ(textsOfRecords(), (Texts{"first", "second", "third"}));
}

TEST_F(Generation, LeavesRecordsThatStandNewestFirstWhenThatIsTheOrder) {
  open(newestFirst());
  screen->setSortDesc(true);
  generate();
  EXPECT_EQ(textsOfRecords(), (Texts{"third", "second", "first"}));
}

TEST_F(Generation, NeverLooksAtTheRecordsInBetween) {
  Record mixed = request("Anna", kText);
  const Array records = *mixed["RECORDS"].asArray();
  mixed.set("RECORDS", Array{records[0], records[2], records[1], records[2]});
  open(mixed);
  generate();
  EXPECT_EQ(textsOfRecords(), (Texts{"first", "third", "second", "third"}));
}

TEST_F(Generation, LeavesRecordsOfOneMoment) {
  const auto message = [](const char* text) { return Record{{"Text", text}, {"Date", Date{1578300000}}}; };
  Record same = request("Anna", kText);
  same.set("RECORDS", Array{message("first"), message("second")});
  open(same);
  generate();
  EXPECT_EQ(textsOfRecords(), (Texts{"first", "second"}));
  screen->setSortDesc(true);
  generate();
  EXPECT_EQ(textsOfRecords(), (Texts{"first", "second"}));
}

TEST_F(Generation, TakesARequestWithoutRecords) {
  open(Record{{"FILE_NAME", "Anna"}, {"FILE_FORMAT", kText}});
  generate();
  EXPECT_EQ(report("Anna.txt"), "");
  EXPECT_EQ(screen->selectedRecords()->record().find("RECORDS"), nullptr);
  EXPECT_EQ(indicatorsLeft(), 0);
}

TEST_F(Generation, TakesRecordsWithoutDates) {
  open(Record{{"FILE_NAME", "Anna"},
              {"FILE_FORMAT", kText},
              {"RECORDS", Array{Record{{"Text", "a"}}, Record{{"Text", "b"}}, "no record"}}});
  screen->setSortDesc(true);
  generate();
  EXPECT_TRUE(hasReport("Anna.txt"));
  EXPECT_EQ(screen->selectedRecords()->value("RECORDS").asArray()->size(), 3U);
}

TEST_F(Generation, ProposesTheNextNameFromWhatStandsBeforeTheHyphen) {
  open(request("Anna - January - 2", kText));
  generate();
  EXPECT_TRUE(hasReport("Anna - January - 2.txt"));
  EXPECT_EQ(fileName(), "Anna");
  EXPECT_EQ(screen->nameTextField()->text(), "Anna");
  generate();
  EXPECT_TRUE(hasReport("Anna.txt"));
  EXPECT_EQ(fileName(), "Anna - 1");
  generate();
  EXPECT_TRUE(hasReport("Anna - 1.txt"));
  EXPECT_EQ(fileName(), "Anna - 2");
}

TEST_F(Generation, TrimsAllKindsOfWhiteSpaceOffTheNextName) {
  open(request("\t\u00A0Anna B\u3000 -x", kText));
  generate();
  EXPECT_EQ(fileName(), "Anna B");
}

TEST_F(Generation, OnlyHidesTheIndicatorWhenTheFileCannotBeWritten) {
  putReport("old.csv", 100);
  open(request("Anna - January", kText));
  fake.files.fail(FileOperation::kWriteAtomically, ENOSPC);
  generate();
  EXPECT_EQ(fake.companion.indicators.size(), 1U);
  EXPECT_EQ(indicatorsLeft(), 0);
  EXPECT_EQ(questions(), 0U);
  EXPECT_TRUE(fake.screen.alertViews.empty());
  EXPECT_EQ(fileName(), "Anna - January");
  EXPECT_EQ(titles(1), Texts{"old"});
  EXPECT_FALSE(fake.log.contains("Report save to"));
}

TEST_F(Generation, DoesNotStayBusyWhenTheFolderCannotBeMade) {
  open(request("Anna", kText));
  fake.files.fail(FileOperation::kCreateDirectory, EACCES);
  generate();
  EXPECT_EQ(fake.companion.indicators.size(), 1U);
  EXPECT_EQ(indicatorsLeft(), 0);
  EXPECT_EQ(fileName(), "Anna");
}

TEST_F(Generation, DoesNotStayBusyForAFormatWithoutAWriter) {
  open(request("Anna", 7));
  EXPECT_EQ(screen->fileFormat(), 7U);
  generate();
  EXPECT_TRUE(logged(information("-[CSReportGenerationViewController checkFileAndGenerateReport]", 446,
                                 "Checking file 'Anna' exists or not.")));
  EXPECT_EQ(indicatorsLeft(), 0);
}

TEST_F(Generation, WritesForEveryApplication) {
  for (const std::int64_t appType : {kAppTypeMessages, kAppTypePhone, kAppTypeFaceTime}) {
    screen = CSReportGenerationViewController::create();
    const std::string name = "Calls " + std::to_string(appType);
    open(request(name + " - all", kText), appType);
    generate();
    EXPECT_TRUE(hasReport(name + " - all.txt"));
    EXPECT_EQ(fileName(), name);
    EXPECT_EQ(titles(1).empty(), appType != kAppTypeMessages);
  }
}

TEST_F(Generation, DoesNothingWhenTheScreenIsGone) {
  open(request("Anna", kText));
  pressGenerate();
  screen.reset();
  navigation.popViewController(true);
  settle();
  EXPECT_FALSE(hasReport("Anna.txt"));
  EXPECT_TRUE(fake.companion.indicators.empty());
}

TEST_F(Generation, KeepsTheScreenUntilTheIndicatorIsUpAndFinishesWithoutIt) {
  open(request("Anna", kText));
  pressGenerate();
  fake.dispatch.runGlobal();
  const std::weak_ptr<CSReportGenerationViewController> weak = screen;
  screen.reset();
  navigation.popViewController(true);
  EXPECT_FALSE(weak.expired()) << "the indicator's presenter";
  settle();
  EXPECT_TRUE(weak.expired());
  EXPECT_TRUE(hasReport("Anna.txt"));
  EXPECT_EQ(indicatorsLeft(), 0);
}

TEST_F(Generation, RunsWhileTheTableIsRead) {
  fake.dispatch.globalOnThreads = true;
  open(request("Anna - January", kText));
  screen->setSortDesc(true);
  pressGenerate();
  for (int round = 0; round < 100; ++round) {
    table().reloadData();
    EXPECT_EQ(table().titleForFooterInSection(0), "You have selected 3 records.");
    fake.dispatch.runMain();
    screen->setSortDesc(true);
  }
  settle();
  EXPECT_EQ(titles(1), Texts{"Anna - January"});
  EXPECT_EQ(fileName(), "Anna");
  EXPECT_EQ(textsOfRecords(), (Texts{"third", "second", "first"}));
}

}  // namespace
}  // namespace chatsum::test
