// The report screen on a platform of fakes whose queues a test runs by hand, with real files that fail when a test
// wants them to.
#pragma once

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/desktop/report/ReportScreen.h"
#include "hosts/device/session/WatchedFiles.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "platform/fake/FakePlatform.h"
#include "platform/system/companion/IndicatorView.h"

namespace chatsum::desktop::test {

/// Indicators of the desktop, everything else of the fake.
class DeskCompanion final : public platform::Companion {
 public:
  DeskCompanion(platform::system::HostScreen host, platform::Companion& rest) : host_(std::move(host)), rest_(rest) {}
  [[nodiscard]] std::shared_ptr<platform::OBActivityAlertController> activityAlertController(
      const std::string& title, const std::string& message, int /*preferredStyle*/) override {
    return host_.indicator(title, message);
  }
  [[nodiscard]] std::shared_ptr<platform::OBActivityAlertView> activityAlertView(const std::string& title,
                                                                                 const std::string& message) override {
    return std::make_shared<platform::system::IndicatorView>(host_.indicator(title, message));
  }
  [[nodiscard]] std::string localizedLabelFromUIKit(std::string_view word) const override {
    return rest_.localizedLabelFromUIKit(word);
  }
  [[nodiscard]] std::optional<std::string> applicationDataContainerDirectory(std::string_view name) const override {
    return rest_.applicationDataContainerDirectory(name);
  }

 private:
  platform::system::HostScreen host_;
  platform::Companion& rest_;
};

class FakeDesk {
 public:
  FakeDesk() {
    report.setContainers({{"com.apple.MobileSMS", fake.root() + "/var/mobile"},
                          {"com.apple.mobilephone", fake.root() + "/phone"},
                          {"com.apple.facetime", fake.root() + "/facetime"}});
  }

  platform::fake::FakePlatform fake;
  device::WatchedFiles files{fake.files};
  ReportScreen report;
  const std::string reports = reportsIn("var/mobile");

  /// Three messages, oldest first.
  [[nodiscard]] static SelectedReport selection(const std::string& name, std::int64_t format) {
    const auto message = [](const char* sender, const char* text, double seconds) {
      return Record{{"Name", sender}, {"Text", text}, {"Date", Date{1578300000 + seconds}}};
    };
    return {.request = {{request::kFileName, name},
                        {request::kFileFormat, format},
                        {request::kColumns, Array{"Name", "Text", "Date"}},
                        {request::kRecords, Array{message("Anna", "first", 0), message("Me", "second", 60),
                                                  message("Anna", "third", 120)}}}};
  }
  void open(const SelectedReport& selected) {
    ASSERT_TRUE(report.open(selected));
    settle();
  }
  void open(const std::string& name = "Anna", std::int64_t format = kFileFormatText) { open(selection(name, format)); }

  /// Where the application with that container has its reports.
  [[nodiscard]] std::string reportsIn(const std::string& container) const {
    return fake.root() + "/" + container + "/Library/Preferences/Chatsum";
  }
  /// A report in the reports folder, made that many seconds before now.
  void putReport(const std::string& name, double secondsAgo, const std::string& bytes = "earlier") {
    putReportIn(reports, name, secondsAgo, bytes);
  }
  void putReportIn(const std::string& folder, const std::string& name, double secondsAgo,
                   const std::string& bytes = "earlier") {
    fake.put(folder + "/" + name, bytes);
    fake.files.setCreationDate(folder + "/" + name, {fake.clock.now().secondsSince1970 - secondsAgo});
  }
  [[nodiscard]] bool hasReport(const std::string& name) const { return fake.files.exists(reports + "/" + name); }
  [[nodiscard]] std::string bytesOf(const std::string& name) const { return fake.read(reports + "/" + name); }
  /// Runs all that waits on any queue.
  void settle() { fake.dispatch.runAll(); }
  /// Presses the button of what is asked.
  void answer(const QString& title) {
    const auto* alert = qobject_cast<DesktopAlert*>(report.alert());
    ASSERT_TRUE(alert) << "nothing is asked";
    const QVariantList buttons = alert->buttons();
    for (int i = 0; i < buttons.size(); ++i) {
      if (buttons[i].toMap()["title"] != title) continue;
      report.choose(i);
      return;
    }
    FAIL() << "no button " << title.toStdString();
  }
  [[nodiscard]] QStringList column(int role) const {
    QStringList texts;
    auto* table = const_cast<ReportScreen&>(report).table();
    for (int row = 0; row < table->rowCount(); ++row) texts.append(table->index(row, 0).data(role).toString());
    return texts;
  }
  [[nodiscard]] int rowOf(const QString& title) const {
    return static_cast<int>(column(ReportTableModel::kTitleRole).indexOf(title));
  }

 private:
  platform::system::HostScreen host_ = report.hostScreen();
  DeskCompanion companion_{host_, fake.companion};
  platform::Platform platform_ = withDesk(fake.platform());
  platform::fake::ScopedPlatform scope_{platform_};

  platform::Platform withDesk(const platform::Platform& base) {
    return {.log = base.log,
            .clock = base.clock,
            .files = files,
            .mainBundle = base.mainBundle,
            .device = base.device,
            .runtime = base.runtime,
            .uniformTypes = base.uniformTypes,
            .dateFormatting = base.dateFormatting,
            .strings = base.strings,
            .propertyLists = base.propertyLists,
            .graphics = base.graphics,
            .artwork = base.artwork,
            .contacts = base.contacts,
            .addressBook = base.addressBook,
            .messages = base.messages,
            .dispatch = base.dispatch,
            .darwinNotifications = base.darwinNotifications,
            .companion = companion_,
            .screen = *host_.screen};
  }
};

}  // namespace chatsum::desktop::test
