// An engine with a folder of its own: settings, home, sources. The sample device is its usual source.
#pragma once

#include <gtest/gtest.h>

#include <QSettings>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "hosts/desktop/engine/Engine.h"
#include "hosts/desktop/engine/Texts.h"
#include "hosts/device/sample/SampleDevice.h"
#include "platform/fake/TemporaryFolder.h"
#include "tests/desktop/engine/Waiting.h"
#include "tests/support/BackupWriter.h"

namespace chatsum::desktop::testing {

class EngineTest : public ::testing::Test {
 protected:
  using State = Library::State;

  void SetUp() override { begin(); }
  void TearDown() override { engine.reset(); }

  void begin() {
    engine.reset();
    settings = std::make_unique<QSettings>(shownText(folder.path() + "/settings.ini"), QSettings::IniFormat);
    engine = std::make_unique<Engine>(options(), *settings);
    engine->sources().setRoots({.homes = {folder.path() + "/user"}, .volumes = {}});
  }

  [[nodiscard]] EngineOptions options() const {
    EngineOptions options;
    options.home = folder.path() + "/home";
    options.sampleFolder = folder.path() + "/sample";
    options.fixedTime = Date{1'718'452'800};  // 2024-06-15T12:00:00Z
    return options;
  }

  [[nodiscard]] Library& library() { return engine->source(); }
  [[nodiscard]] bool becomes(State state) {
    return happens([&] { return library().state() == state; });
  }
  [[nodiscard]] bool openSample() {
    library().openSample();
    return becomes(State::Open);
  }

  /// A backup of the sample device, where people have theirs.
  [[nodiscard]] std::string writeBackup(const std::optional<std::string>& password = std::nullopt) {
    const std::filesystem::path device = folder.path() + "/device";
    const auto path = std::filesystem::path(folder.path()) /
                      "user/Library/Application Support/MobileSync/Backup/00008110-0011223344556677";
    std::filesystem::create_directories(path.parent_path());
    auto problem = device::writeSampleDevice(device);
    EXPECT_EQ(problem.value_or(""), "");
    test::BackupOptions backup;
    backup.password = password;
    problem = test::writeBackup(device, path, backup);
    EXPECT_EQ(problem.value_or(""), "");
    return path.string();
  }

  /// Shows the messages of a conversation, known by its whole name.
  [[nodiscard]] bool select(const std::string& name) {
    ConversationFilter& list = engine->conversations();
    for (int row = 0; row < list.rowCount(); ++row) {
      const QModelIndex index = list.index(row, 0);
      if (index.data(ConversationModel::NameRole).toString() != shownText(name)) continue;
      list.select(index.data(ConversationModel::GuidRole).toString());
      return happens([&] { return engine->messages().state() == MessageModel::State::Ready; });
    }
    return false;
  }

  platform::fake::TemporaryFolder folder;
  std::unique_ptr<QSettings> settings;
  std::unique_ptr<Engine> engine;
};

}  // namespace chatsum::desktop::testing
