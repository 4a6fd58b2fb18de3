#include "tests/unit/CSReportGenerationViewController/ReportScreenTest.h"

namespace chatsum::test {
namespace {

using platform::UITableViewCellAccessoryType;
using platform::UITableViewCellSelectionStyle;
using platform::UITableViewCellStyle;

class ReportLayout : public ReportScreenTest {};

TEST_F(ReportLayout, HasATitleAndAButton) {
  open();
  EXPECT_EQ(screen->title(), "Generate Report");
  const auto button = screen->navigationItem().rightBarButtonItem();
  ASSERT_TRUE(button);
  EXPECT_EQ(button->title(), "Generate");
  EXPECT_EQ(button->style(), platform::UIBarButtonItemStyle::kPlain);
  EXPECT_TRUE(button->isEnabled());
  EXPECT_TRUE(screen->navigationItem().rightBarButtonItemWasAnimated());
}

TEST_F(ReportLayout, TakesFormatAndOrderFromRequestAndSettings) {
  ChatsumSettings::sharedSettings().setMsgDefaultDateSortOrder(2);
  open(request("Anna", kText));
  EXPECT_EQ(screen->fileFormat(), 2U);
  EXPECT_TRUE(screen->sortDesc());
}

TEST_F(ReportLayout, TakesEveryOrderButZeroForDescending) {
  for (const std::int64_t order : {-1, 1, 7}) {
    ChatsumSettings::sharedSettings().setMsgDefaultDateSortOrder(order);
    screen = CSReportGenerationViewController::create();
    open(request("Anna", kText));
    EXPECT_TRUE(screen->sortDesc()) << order;
  }
}

TEST_F(ReportLayout, TakesTheFirstFormatForARequestWithoutOne) {
  open(Record{{"FILE_NAME", "Anna"}});
  EXPECT_EQ(screen->fileFormat(), 0U);
  EXPECT_FALSE(screen->sortDesc());
}

TEST_F(ReportLayout, EditsACopyOfTheRequest) {
  const Record mine = request("Anna");
  screen->setSelectedRecords(mine);
  const auto edited = screen->selectedRecords();
  edited->set("FILE_NAME", "Ben");
  EXPECT_EQ(mine["FILE_NAME"], Value("Anna"));
  EXPECT_EQ(screen->selectedRecords(), edited) << "the same dictionary every time";
  EXPECT_EQ(fileName(), "Ben");
  screen->setSelectedRecords(mine);
  EXPECT_NE(screen->selectedRecords(), edited);
  EXPECT_EQ(edited->value("FILE_NAME"), Value("Ben"));
}

TEST_F(ReportLayout, HasAnEmptySecondSectionBeforeTheListIsLoaded) {
  putReport("old.txt", 100);
  screen->setSelectedRecords(request());
  navigation.pushViewController(screen, true);
  EXPECT_FALSE(screen->fileRecordsDictionary());
  EXPECT_EQ(table().numberOfSections(), 2);
  EXPECT_EQ(table().numberOfRowsInSection(0), 3);
  EXPECT_EQ(table().numberOfRowsInSection(1), 0);
  EXPECT_EQ(table().titleForHeaderInSection(1), std::nullopt);
  EXPECT_EQ(table().titleForFooterInSection(1), std::nullopt);
}

TEST_F(ReportLayout, HasOnlyTheCriteriaWhenTheLoadedListIsEmpty) {
  open();
  screen->setFileRecordsDictionary(CSReportGenerationViewController::FileRecords());
  table().reloadData();
  EXPECT_EQ(table().numberOfSections(), 1);
  EXPECT_EQ(table().numberOfRowsInSection(0), 3);
}

TEST_F(ReportLayout, ListsNoReportsForTheOtherApplications) {
  putReport("old.txt", 100);
  open(request(), kAppTypePhone);
  ASSERT_TRUE(screen->fileRecordsDictionary());
  EXPECT_EQ(screen->fileRecordsDictionary()->at(1).size(), 1U);
  EXPECT_EQ(table().numberOfSections(), 2);
  EXPECT_EQ(table().numberOfRowsInSection(1), 0);
  EXPECT_EQ(table().titleForHeaderInSection(1), std::nullopt);
}

TEST_F(ReportLayout, NamesTheSectionsByTheirNumber) {
  open();
  const Array one{Record{{"name", "a.txt"}}};
  screen->setFileRecordsDictionary(
      CSReportGenerationViewController::FileRecords{{0, one}, {1, one}, {2, one}, {3, one}});
  table().reloadData();
  EXPECT_EQ(table().numberOfSections(), 5);
  EXPECT_EQ(table().titleForHeaderInSection(0), "Criteria");
  EXPECT_EQ(table().titleForHeaderInSection(1), "Messages");
  EXPECT_EQ(table().titleForHeaderInSection(2), "Phone");
  EXPECT_EQ(table().titleForHeaderInSection(3), "FaceTime");
  EXPECT_EQ(table().titleForHeaderInSection(4), std::nullopt);
}

TEST_F(ReportLayout, CountsTheSelectedRecordsInTheFooter) {
  open();
  EXPECT_EQ(table().titleForFooterInSection(0), "You have selected 3 records.");
  EXPECT_EQ(table().titleForFooterInSection(1), std::nullopt);
}

TEST_F(ReportLayout, CountsNoRecordsWhenTheRequestHasNone) {
  open(Record{{"FILE_NAME", "Anna"}});
  EXPECT_EQ(table().titleForFooterInSection(0), "You have selected 0 records.");
}

TEST_F(ReportLayout, ShowsTheCriteria) {
  open(request("Anna - January", kText));
  EXPECT_EQ(titles(0), (std::vector<std::string>{"Name", "Sort By", "File Format"}));
  EXPECT_EQ(detail(kSortRow), "Date, Asc");
  EXPECT_EQ(detail(kFormatRow), "Text");
  for (const auto place : {kNameRow, kSortRow, kFormatRow}) {
    const auto cell = table().cellForRowAtIndexPath(place);
    EXPECT_EQ(cell->reuseIdentifier(), "MoreCellIdentifier");
    EXPECT_EQ(cell->style(), UITableViewCellStyle::kValue1);
    EXPECT_EQ(cell->accessoryType(), UITableViewCellAccessoryType::kDisclosureIndicator);
    EXPECT_EQ(cell->selectionStyle(),
              place == kNameRow ? UITableViewCellSelectionStyle::kNone : UITableViewCellSelectionStyle::kBlue);
  }
}

TEST_F(ReportLayout, NamesTheOrderAndTheFormats) {
  open();
  screen->setSortDesc(true);
  const std::vector<std::string> names = {"CSV", "PDF", "Text", ""};
  for (std::uint64_t code = 0; code < names.size(); ++code) {
    screen->setFileFormat(code);
    table().reloadData();
    EXPECT_EQ(detail(kFormatRow), names[code]);
  }
  EXPECT_EQ(detail(kSortRow), "Date, Desc");
}

TEST_F(ReportLayout, SpeaksTheHostsLanguageButForTheFormats) {
  for (const char* key : {"Generate Report", "Generate", "Criteria", "You have selected", "records.", "Name", "Sort By",
                          "Date, %@", "Desc", "Asc", "File Format", "Messages", "CSV", "PDF", "Text"}) {
    fake.mainBundle.strings[key] = "<" + std::string(key) + ">";
  }
  putReport("old.txt", 100);
  open();
  EXPECT_EQ(screen->title(), "<Generate Report>");
  EXPECT_EQ(screen->navigationItem().rightBarButtonItem()->title(), "<Generate>");
  EXPECT_EQ(titles(0), (std::vector<std::string>{"<Name>", "<Sort By>", "<File Format>"}));
  EXPECT_EQ(detail(kSortRow), "<Date, <Asc>>");
  EXPECT_EQ(detail(kFormatRow), "Text");
  EXPECT_EQ(table().titleForHeaderInSection(0), "<Criteria>");
  EXPECT_EQ(table().titleForHeaderInSection(1), "<Messages>");
  EXPECT_EQ(table().titleForFooterInSection(0), "<You have selected> 3 <records.>");
}

TEST_F(ReportLayout, ShowsAnEarlierReportWithItsDayAndIcon) {
  const auto icon = std::make_shared<platform::fake::FakeImage>(Size{29, 29});
  fake.device.scale = 2;
  fake.artwork.files["/System/Library/PreferenceBundles/ChatsumSettings.bundle/pdf@2x.png"] = icon;
  putReport("Anna - 2019.PDF", 3600);
  putReport("Ben.v1.csv", 90000);
  open();
  const auto cell = table().cellForRowAtIndexPath({1, 0});
  ASSERT_TRUE(cell);
  EXPECT_EQ(cell->reuseIdentifier(), "CellIdentifier");
  EXPECT_EQ(cell->style(), UITableViewCellStyle::kSubtitle);
  EXPECT_EQ(cell->selectionStyle(), UITableViewCellSelectionStyle::kBlue);
  EXPECT_EQ(cell->accessoryType(), UITableViewCellAccessoryType::kDisclosureIndicator);
  EXPECT_EQ(title({1, 0}), "Anna - 2019");
  EXPECT_THAT(detail({1, 0}), ::testing::MatchesRegex("Today.*9:40.AM"));
  EXPECT_EQ(cell->image(), icon);
  EXPECT_EQ(title({1, 1}), "Ben.v1");
  EXPECT_THAT(detail({1, 1}), ::testing::MatchesRegex("Yesterday.*9:40.AM"));
  EXPECT_EQ(table().cellForRowAtIndexPath({1, 1})->image(), nullptr);
}

TEST_F(ReportLayout, ShowsTheDayOfAnOlderReportInMediumStyle) {
  putReport("old.txt", 40 * 86400);
  open();
  EXPECT_THAT(detail({1, 0}), ::testing::MatchesRegex("Nov 27, 2019.*10:40.AM"));
}

TEST_F(ReportLayout, ShowsAReportWithoutADate) {
  open();
  screen->setFileRecordsDictionary(
      CSReportGenerationViewController::FileRecords{{0, Array{Record{{"name", "a.txt"}}}}});
  table().reloadData();
  EXPECT_EQ(title({1, 0}), "a");
  EXPECT_EQ(detail({1, 0}), "");
}

TEST_F(ReportLayout, GivesALoadingCellForAnEarlierReportThatIsNotLoaded) {
  screen->setSelectedRecords(request());
  navigation.pushViewController(screen, true);
  const auto cell = screen->cellForRowAtIndexPath(table(), {1, 0});
  EXPECT_EQ(cell->reuseIdentifier(), "LoadingCellIdentifier");
  EXPECT_TRUE(cell->viewWithTag(4545));
  EXPECT_EQ(cell->accessoryType(), UITableViewCellAccessoryType::kNone);
  EXPECT_EQ(cell->selectionStyle(), UITableViewCellSelectionStyle::kBlue);
}

TEST_F(ReportLayout, GivesAnEmptyCellForARowThatWentMeanwhile) {
  putReport("old.txt", 100);
  open();
  screen->setFileRecordsDictionary(CSReportGenerationViewController::FileRecords());
  const auto cell = screen->cellForRowAtIndexPath(table(), {1, 0});
  EXPECT_EQ(cell->textLabel().text(), "");
  EXPECT_EQ(cell->detailTextLabel().text(), "");
}

TEST_F(ReportLayout, AsksForTheRowsAnewWhenTheScreenTurns) {
  open();
  EXPECT_EQ(screen->nameTextField()->frame().size.width, 320 - 135);
  table().setFrame({{0, 0}, {480, 320}});
  screen->willRotateToInterfaceOrientation(platform::UIInterfaceOrientation::kLandscapeLeft, 0.3);
  EXPECT_EQ(screen->nameTextField()->frame(), (Rect{{100, 7}, {480 - 135, 30}}));
}

TEST_F(ReportLayout, EndsWhenTheHostLetsGoOfIt) {
  putReport("old.txt", 100);
  open();
  tap(kSortRow);
  const std::weak_ptr<CSReportGenerationViewController> weak = screen;
  screen->loadPreviousReports();
  NotificationCenter::defaultCenter().post(CSReportGenerationViewController::kDateSortChanged);
  screen.reset();
  navigation.popViewController(true);
  EXPECT_TRUE(weak.expired()) << "nothing that waits keeps it";
  settle();
  fake.screen.alerts.back().alert->choose(0);
  NotificationCenter::defaultCenter().post(CSReportGenerationViewController::kFileFormatChanged);
  settle();
  screen = CSReportGenerationViewController::create();
}

}  // namespace
}  // namespace chatsum::test
