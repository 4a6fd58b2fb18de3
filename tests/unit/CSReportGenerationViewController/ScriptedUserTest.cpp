// Somebody uses the screen from beginning to end, on both generations and for all three applications. Every step is
// printed with the screen as it then stands: run the tests verbosely to read it.

#include <array>
#include <iostream>
#include <sstream>
#include <tuple>

#include "tests/unit/CSReportGenerationViewController/ReportScreenTest.h"

namespace chatsum::test {
namespace {

using Texts = std::vector<std::string>;

std::string screenText(CSReportGenerationViewController& screen) {
  auto& table = screen.tableView();
  std::ostringstream text;
  const auto& button = screen.navigationItem().rightBarButtonItem();
  text << "  +-- " << screen.title() << " " << (button->isEnabled() ? "[" : "(") << button->title()
       << (button->isEnabled() ? "]" : ")") << "\n";
  for (std::int64_t section = 0; section < table.numberOfSections(); ++section) {
    text << "  | " << table.titleForHeaderInSection(section).value_or("(no header)") << "\n";
    for (std::int64_t row = 0; row < table.numberOfRowsInSection(section); ++row) {
      const auto cell = table.cellForRowAtIndexPath({section, row});
      const auto& field = screen.nameTextField();
      const bool hasField = field && field->superview() == cell.get();
      text << "  |   " << cell->textLabel().text() << " | "
           << (hasField ? "<" + field->text() + ">" : cell->detailTextLabel().text()) << "\n";
    }
    if (const auto footer = table.titleForFooterInSection(section)) text << "  | " << *footer << "\n";
  }
  return text.str();
}

class ScriptedUser : public ReportScreenTest, public ::testing::WithParamInterface<std::tuple<bool, std::int64_t>> {
 protected:
  ScriptedUser() {
    if (!hasAlertControllers()) useOldScreens();
  }
  [[nodiscard]] static bool hasAlertControllers() { return std::get<0>(GetParam()); }
  [[nodiscard]] static std::int64_t appType() { return std::get<1>(GetParam()); }
  [[nodiscard]] static bool lists() { return appType() == kAppTypeMessages; }

  /// Lets all queues run, then prints what was done and what is to be seen.
  void step(const std::string& what) {
    settle();
    showAllRows();
    std::cout << "\n" << what << "\n" << screenText(*screen);
    if (questions() == asked_) return;
    asked_ = questions();
    const auto question = lastQuestion();
    std::cout << "  ? " << question.title.value_or("(no title)") << "\n   ";
    for (const auto& button : question.buttons) std::cout << " [" << button << "]";
    std::cout << "\n";
  }
  void answerAndShow(const std::string& button) {
    answer(button);
    step("answers " + button);
  }

 private:
  std::size_t asked_ = 0;
};

TEST_P(ScriptedUser, MakesLooksAtAndDeletesReports) {
  putReport("Ben.csv", 86400);
  screen->setHasAttachments(true);
  open(request("Anna - January", kPDF), appType());
  step("opens the screen");

  type("");
  step("clears the name");
  EXPECT_FALSE(screen->navigationItem().rightBarButtonItem()->isEnabled());
  type("Trip - draft");
  screen->nameTextField()->pressReturn();
  step("types a name");
  EXPECT_EQ(fileName(), "Trip - draft");

  tap(kSortRow);
  step("taps the sort order");
  answerAndShow("Descending");
  EXPECT_EQ(detail(kSortRow), "Date, Desc");

  tap(kFormatRow);
  step("taps the file format");
  answerAndShow("Cancel");
  EXPECT_EQ(detail(kFormatRow), "PDF");
  tap(kFormatRow);
  step("taps the file format again");
  answerAndShow("Text");
  EXPECT_EQ(detail(kFormatRow), "Text");

  pressGenerate();
  step("presses Generate");
  EXPECT_THAT(lastQuestion().title.value_or(""), ::testing::HasSubstr("image/audio/video files"));
  answerAndShow("Cancel");
  EXPECT_FALSE(hasReport("Trip - draft.txt"));
  pressGenerate();
  step("presses Generate again");
  answerAndShow("Continue");
  EXPECT_THAT(report("Trip - draft.txt"), ::testing::StartsWith("Anna: third"));
  EXPECT_EQ(fileName(), "Trip");
  fake.clock.advance(60);
  EXPECT_EQ(titles(1), lists() ? (Texts{"Trip - draft", "Ben"}) : Texts());

  type("Trip - draft");
  tap(kSortRow);
  step("types the same name and taps the sort order");
  answerAndShow("Ascending");
  pressGenerate();
  answerAndShow("Continue");
  EXPECT_EQ(lastQuestion().title, "'Trip - draft.txt' already exists. Do you want to replace it?");
  answerAndShow("Replace");
  EXPECT_THAT(report("Trip - draft.txt"), ::testing::StartsWith("Anna: first"));
  EXPECT_EQ(indicatorsLeft(), 0);

  if (lists()) {
    tap({1, 0});
    step("taps the new report: " + screen->previewFilePath().value_or("no preview"));
    EXPECT_EQ(fake.screen.previews.back().preview->previewItemAtIndex(0)->path, reports + "/Trip - draft.txt");
    fake.screen.previews.back().preview->dismiss();
    step("closes the preview");
    EXPECT_EQ(screen->previewFilePath(), std::nullopt);

    table().confirmDeletion({1, 1});
    step("swipes Ben");
    EXPECT_EQ(titles(1), Texts{"Trip - draft"});
    table().confirmDeletion({1, 0});
    step("swipes the last report");
    EXPECT_EQ(table().numberOfSections(), 1);
    EXPECT_FALSE(hasReport("Trip - draft.txt"));
  } else {
    EXPECT_EQ(table().numberOfRowsInSection(1), 0);
    EXPECT_TRUE(hasReport("Ben.csv"));
  }
  EXPECT_EQ(indicatorsLeft(), 0);
}

std::string scriptName(const ::testing::TestParamInfo<std::tuple<bool, std::int64_t>>& param) {
  constexpr std::array<const char*, 3> kApplications = {"Messages", "Phone", "FaceTime"};
  const auto [hasAlertControllers, appType] = param.param;
  return std::string(hasAlertControllers ? "AlertControllers" : "ActionSheets") + "For" +
         kApplications.at(static_cast<std::size_t>(appType));
}
INSTANTIATE_TEST_SUITE_P(Screens, ScriptedUser,
                         ::testing::Combine(::testing::Bool(), ::testing::Values<std::int64_t>(0, 1, 2)), scriptName);

}  // namespace
}  // namespace chatsum::test
