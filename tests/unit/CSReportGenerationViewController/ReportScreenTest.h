// What the tests of the report screen share: a platform of fakes, the screen on a navigation stack, and a user who
// types, taps and answers whatever generation of questions the screen asks.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "libchatsum/CSReportGenerationViewController/CSReportGenerationViewController.h"
#include "libchatsum/ChatsumSettings/ChatsumSettings.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/UIAlertView.h"
#include "platform/uikit/UINavigationController.h"
#include "tests/support/LogLine.h"

namespace chatsum::test {

using platform::IndexPath;

constexpr IndexPath kNameRow{0, 0}, kSortRow{0, 1}, kFormatRow{0, 2};
constexpr std::int64_t kCSV = 0, kPDF = 1, kText = 2;

/// A question on the screen, of either generation.
struct Question {
  std::optional<std::string> title;
  std::vector<std::string> buttons;
};

class ReportScreenTest : public ::testing::Test {
 protected:
  ReportScreenTest();
  ~ReportScreenTest() override;

  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};
  platform::UINavigationController navigation;
  std::shared_ptr<CSReportGenerationViewController> screen = CSReportGenerationViewController::create();
  const std::string reports = "/var/mobile/Library/Preferences/Chatsum";

  void useOldScreens() { fake.runtime.classes.clear(); }

  /// A report in the reports folder, made that many seconds before now.
  void putReport(const std::string& name, double secondsAgo, const std::string& bytes = "earlier");
  [[nodiscard]] bool hasReport(const std::string& name) const { return fake.files.exists(reports + "/" + name); }
  [[nodiscard]] std::string report(const std::string& name) const { return fake.read(reports + "/" + name); }

  /// A request of three messages, oldest first.
  [[nodiscard]] static Record request(const std::string& name = "Anna - January", std::int64_t format = kText);
  /// Gives the request to the screen, pushes it and waits until the list is there.
  void open(const Record& request, std::int64_t appType = kAppTypeMessages);
  void open() { open(request()); }
  /// Runs all that waits on any queue.
  void settle() { fake.dispatch.runAll(); }

  [[nodiscard]] platform::UITableView& table() const { return screen->tableView(); }
  /// Shows every row, as a host does.
  void showAllRows() const;
  [[nodiscard]] std::string title(IndexPath place) const;
  [[nodiscard]] std::string detail(IndexPath place) const;
  /// Titles of the rows of a section.
  [[nodiscard]] std::vector<std::string> titles(std::int64_t section) const;
  [[nodiscard]] std::string fileName() const { return screen->selectedRecords()->value("FILE_NAME").description(); }
  [[nodiscard]] std::vector<std::string> textsOfRecords() const;

  void tap(IndexPath place) const { table().tapRow(place); }
  void type(const std::string& name) const { screen->nameTextField()->edit(name); }
  void pressGenerate() { screen->navigationItem().rightBarButtonItem()->tap(); }
  /// How many questions were asked so far.
  [[nodiscard]] std::size_t questions() const { return fake.screen.alerts.size() + fake.screen.sheets.size(); }
  [[nodiscard]] Question lastQuestion() const;
  /// Presses the button of the last question.
  void answer(const std::string& button);

  /// The busy indicators that were shown and not hidden again.
  [[nodiscard]] int indicatorsLeft() const;
  [[nodiscard]] bool logged(const std::string& line) const;
};

/// The same tests for screens of both generations: the parameter tells whether there are alert controllers.
class BothGenerations : public ReportScreenTest, public ::testing::WithParamInterface<bool> {
 protected:
  BothGenerations() {
    if (!GetParam()) useOldScreens();
  }
};
inline const auto kGenerations = ::testing::Values(true, false);
inline std::string generationName(const ::testing::TestParamInfo<bool>& param) {
  return param.param ? "AlertControllers" : "ActionSheets";
}

}  // namespace chatsum::test
