// The report screen on the sample device, with the real library and its real queues: the session works on the main
// thread here, and the main queue is drained by events as in the program.
#pragma once

#include <gtest/gtest.h>

#include <QMetaObject>
#include <QObject>
#include <QSignalSpy>
#include <filesystem>
#include <memory>
#include <string>

#include "hosts/desktop/report/ReportScreen.h"
#include "hosts/device/conversations/ConversationList.h"
#include "hosts/device/report/ConversationReading.h"
#include "hosts/device/sample/SampleDevice.h"
#include "hosts/device/session/DeviceSession.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "platform/fake/TemporaryFolder.h"
#include "tests/desktop/report/PreviewFiles.h"

namespace chatsum::desktop::test {

class ReportStory : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto problem = device::writeSampleDevice(folder.path() + "/device");
    ASSERT_FALSE(problem.has_value()) << *problem;
    device::DeviceSession::Options options;
    options.source = folder.path() + "/device";
    options.home = home();
    options.screen = report.hostScreen([this] {
      QMetaObject::invokeMethod(&mainThread_, [this] { drain(); }, Qt::QueuedConnection);
    });
    auto opened = device::DeviceSession::open(options);
    ASSERT_TRUE(opened) << opened.problem().sentence;
    session = std::move(opened.value());
    session->startLibrary();
  }
  void TearDown() override {
    report.close();
    session.reset();
  }

  [[nodiscard]] std::string home() const { return folder.path() + "/home"; }
  [[nodiscard]] std::string reports() const { return home() + "/Library/Preferences/Chatsum"; }

  /// All messages of the conversation of that name.
  SelectedReport select(const std::string& name) {
    SelectedReport selected;
    const auto store = session->connect();
    auto list = device::ConversationList::read(store.value(), session->findPerson());
    const auto found = list.value().find(name);
    EXPECT_EQ(found.size(), 1U) << name;
    if (found.empty()) return selected;
    auto reading = device::readConversation(*session, list.value().conversations()[found.front()], {});
    EXPECT_TRUE(reading) << reading.problem().sentence;
    selected.request = device::makeRequest({}, name, reading.value().records);
    selected.request.remove(request::kReportFormat);
    return selected;
  }

  /// Presses the button of what is asked.
  void answer(const QString& title) {
    const auto* alert = qobject_cast<DesktopAlert*>(report.alert());
    ASSERT_TRUE(alert) << "nothing is asked";
    const QVariantList buttons = alert->buttons();
    for (int i = 0; i < buttons.size(); ++i) {
      if (buttons[i].toMap()["title"] == title) return report.choose(i);
    }
    FAIL() << "no button " << title.toStdString();
  }
  void chooseFormat(const QString& title) {
    report.activate(2);
    answer(title);
  }
  /// Makes the report and waits for its end; answers its path, empty when it failed.
  QString generate() {
    QSignalSpy finished(&report, &ReportScreen::finished);
    const QSignalSpy failed(&report, &ReportScreen::failed);
    report.generate();
    waitUntil([&] { return finished.size() + failed.size() > 0 && !report.busy(); }, "the end of the report");
    return finished.isEmpty() ? QString() : finished[0][0].toString();
  }
  [[nodiscard]] QStringList fileNames() {
    QStringList names;
    for (int row = 0; row < report.table()->rowCount(); ++row) {
      const QString name = report.table()->index(row, 0).data(ReportTableModel::kFileNameRole).toString();
      if (!name.isEmpty()) names.append(name);
    }
    return names;
  }
  void waitForFiles(const QStringList& names) {
    waitUntil([&] { return fileNames() == names; }, names.join(", ").toUtf8().constData());
    EXPECT_EQ(fileNames(), names);
  }
  [[nodiscard]] int rowOf(const QString& fileName) {
    for (int row = 0; row < report.table()->rowCount(); ++row) {
      if (report.table()->index(row, 0).data(ReportTableModel::kFileNameRole) == fileName) return row;
    }
    return -1;
  }

  platform::fake::TemporaryFolder folder;
  ReportScreen report;
  std::unique_ptr<device::DeviceSession> session;

 private:
  void drain() {
    if (session) session->drainMain();
  }

  QObject mainThread_;
};

}  // namespace chatsum::desktop::test
