#include "hosts/desktop/app/SettingsModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QVariantMap>
#include <filesystem>
#include <fstream>

#include "hosts/device/home/HomePaths.h"
#include "hosts/device/settings/SettingsFile.h"
#include "platform/fake/TemporaryFolder.h"

namespace chatsum::desktop {
namespace {

constexpr int kWait = 5000;
constexpr int kEnabled = 0, kFormat = 3, kOrder = 4;

class SettingsModelTest : public ::testing::Test {
 protected:
  [[nodiscard]] QString at(int row, int role = SettingsModel::Value) const {
    return model_.data(model_.index(row), role).toString();
  }
  [[nodiscard]] bool settle() {
    QSignalSpy busy(&model_, &SettingsModel::busyChanged);
    return !model_.isBusy() || busy.wait(kWait);
  }
  [[nodiscard]] std::string file() const { return device::settingsFileIn(folder_.path()); }

  platform::fake::TemporaryFolder folder_;
  SettingsModel model_{folder_.path()};
  QAbstractItemModelTester tester_{&model_, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(SettingsModelTest, BeginsWithTheDefaults) {
  ASSERT_EQ(model_.rowCount(), 5);
  EXPECT_EQ(at(kEnabled), "no");
  EXPECT_EQ(at(kFormat, SettingsModel::Kind), "choice");
  EXPECT_EQ(at(kOrder), "asc");
  EXPECT_EQ(at(kEnabled, SettingsModel::Kind), "switch");
  for (int row = 0; row < 5; ++row) {
    EXPECT_FALSE(at(row, SettingsModel::Title).isEmpty());
    EXPECT_FALSE(at(row, SettingsModel::About).isEmpty());
  }
}

TEST_F(SettingsModelTest, EveryChoiceIsAWordThatTheFileTakes) {
  for (int row = 0; row < 5; ++row) {
    const QVariantList choices = model_.data(model_.index(row), SettingsModel::Choices).toList();
    ASSERT_GE(choices.size(), 2);
    for (const QVariant& choice : choices) {
      const QString word = choice.toMap().value(QStringLiteral("word")).toString();
      model_.set(row, word);
      ASSERT_TRUE(settle());
      EXPECT_EQ(at(row), word);
    }
  }
}

TEST_F(SettingsModelTest, WritesWhatAnotherReads) {
  QSignalSpy written(&model_, &SettingsModel::written);
  model_.set(kFormat, QStringLiteral("pdf"));
  model_.set(kOrder, QStringLiteral("desc"));
  ASSERT_TRUE(settle());
  EXPECT_EQ(written.count(), 2);
  SettingsModel other(folder_.path());
  QSignalSpy busy(&other, &SettingsModel::busyChanged);
  other.reload();
  ASSERT_TRUE(busy.count() == 2 || busy.wait(kWait));
  EXPECT_EQ(other.data(other.index(kFormat), SettingsModel::Value).toString(), "pdf");
  EXPECT_EQ(other.data(other.index(kOrder), SettingsModel::Value).toString(), "desc");
}

TEST_F(SettingsModelTest, LeavesNonsenseAlone) {
  QSignalSpy busy(&model_, &SettingsModel::busyChanged);
  model_.set(kFormat, QStringLiteral("docx"));
  model_.set(17, QStringLiteral("yes"));
  model_.set(-1, QStringLiteral("yes"));
  EXPECT_EQ(busy.count(), 0);
  EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(SettingsModelTest, ABrokenFileIsToldAndLeft) {
  std::filesystem::create_directories(std::filesystem::path(file()).parent_path());
  std::ofstream(file()) << "no property list";
  model_.set(kFormat, QStringLiteral("pdf"));
  ASSERT_TRUE(settle());
  EXPECT_FALSE(model_.error().isEmpty());
  std::ifstream stream(file());
  std::string text;
  std::getline(stream, text);
  EXPECT_EQ(text, "no property list");
}

}  // namespace
}  // namespace chatsum::desktop
