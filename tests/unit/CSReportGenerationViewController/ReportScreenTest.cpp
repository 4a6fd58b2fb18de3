#include "tests/unit/CSReportGenerationViewController/ReportScreenTest.h"

#include <algorithm>

namespace chatsum::test {

ReportScreenTest::ReportScreenTest() {
  ChatsumSettings::sharedSettings().setMsgDefaultDateSortOrder(0);
  ChatsumSettings::sharedSettings().setMsgDefaultFileFormat(0);
}

ReportScreenTest::~ReportScreenTest() {
  // The process may run another test: nothing stays shown.
  ChatsumUtils::hideHud();
  fake.dispatch.runAll();
}

void ReportScreenTest::putReport(const std::string& name, double secondsAgo, const std::string& bytes) {
  fake.put(reports + "/" + name, bytes);
  fake.files.setCreationDate(reports + "/" + name, {fake.clock.now().secondsSince1970 - secondsAgo});
}

Record ReportScreenTest::request(const std::string& name, std::int64_t format) {
  const auto message = [](const char* sender, const char* text, double seconds) {
    return Record{{"Name", sender}, {"Text", text}, {"Date", Date{1578300000 + seconds}}};
  };
  return {{"FILE_NAME", name},
          {"FILE_FORMAT", format},
          {"APP_TYPE", 0},
          {"COLUMNS", Array{"Name", "Text", "Date"}},
          {"HOST", "its own"},
          {"RECORDS", Array{message("Anna", "first", 0), message("Me", "second", 60), message("Anna", "third", 120)}}};
}

void ReportScreenTest::open(const Record& request, std::int64_t appType) {
  screen->setSelectedRecords(request);
  screen->setAppType(appType);
  navigation.pushViewController(screen, true);
  settle();
  showAllRows();
}

void ReportScreenTest::showAllRows() const {
  for (std::int64_t section = 0; section < table().numberOfSections(); ++section) {
    for (std::int64_t row = 0; row < table().numberOfRowsInSection(section); ++row) {
      table().cellForRowAtIndexPath({section, row});
    }
  }
}

std::string ReportScreenTest::title(IndexPath place) const {
  const auto cell = table().cellForRowAtIndexPath(place);
  return cell ? cell->textLabel().text() : "no such row";
}

std::string ReportScreenTest::detail(IndexPath place) const {
  const auto cell = table().cellForRowAtIndexPath(place);
  return cell ? cell->detailTextLabel().text() : "no such row";
}

std::vector<std::string> ReportScreenTest::titles(std::int64_t section) const {
  std::vector<std::string> result;
  for (std::int64_t row = 0; row < table().numberOfRowsInSection(section); ++row) {
    result.push_back(title({section, row}));
  }
  return result;
}

std::vector<std::string> ReportScreenTest::textsOfRecords() const {
  std::vector<std::string> texts;
  const Value records = screen->selectedRecords()->value("RECORDS");
  for (const Value& record : *records.asArray()) texts.push_back((*record.asRecord())["Text"].description());
  return texts;
}

Question ReportScreenTest::lastQuestion() const {
  if (fake.runtime.classes.empty()) {
    const auto& sheet = *fake.screen.sheets.at(fake.screen.sheets.size() - 1).sheet;
    return {sheet.title(), sheet.buttonTitles()};
  }
  const auto& alert = *fake.screen.alerts.at(fake.screen.alerts.size() - 1).alert;
  Question question{alert.title(), {}};
  for (const auto& action : alert.actions()) question.buttons.push_back(action.title);
  return question;
}

void ReportScreenTest::answer(const std::string& button) {
  const auto buttons = lastQuestion().buttons;
  const auto place = std::find(buttons.begin(), buttons.end(), button);
  ASSERT_NE(place, buttons.end()) << "no button " << button;
  if (fake.runtime.classes.empty()) {
    fake.screen.sheets.back().sheet->clickButton(place - buttons.begin());
  } else {
    fake.screen.alerts.back().alert->choose(static_cast<std::size_t>(place - buttons.begin()));
  }
}

int ReportScreenTest::indicatorsLeft() const {
  int left = 0;
  for (const auto& indicator : fake.companion.indicators) left += indicator->shown - indicator->hidden;
  return left;
}

bool ReportScreenTest::logged(const std::string& line) const {
  const auto lines = fake.log.lines();
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

}  // namespace chatsum::test
