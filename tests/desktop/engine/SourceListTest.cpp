#include "hosts/desktop/engine/SourceList.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QUrl>
#include <string>

#include "tests/desktop/engine/EngineFixture.h"

namespace chatsum::desktop {
namespace {

using testing::happens;

class SourceListTest : public testing::EngineTest {
 protected:
  [[nodiscard]] SourceList& sources() { return engine->sources(); }
  [[nodiscard]] QVariant at(int row, int role) { return sources().index(row).data(role); }
  [[nodiscard]] std::string textAt(int row, int role) { return at(row, role).toString().toStdString(); }
  [[nodiscard]] bool search() {
    sources().search();
    return happens([&] { return !sources().isSearching(); });
  }
  [[nodiscard]] bool open(const std::string& path) {
    library().open(shownText(path));
    return becomes(State::Open);
  }
  [[nodiscard]] std::string writeDevice(const std::string& name) {
    const std::string path = folder.path() + "/" + name;
    EXPECT_EQ(device::writeSampleDevice(path), std::nullopt);
    return path;
  }
};

TEST_F(SourceListTest, FindsTheBackupsOfAHome) {
  const QAbstractItemModelTester tester(&sources(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  const std::string backup = writeBackup();
  QSignalSpy searching(&sources(), &SourceList::searchingChanged);
  ASSERT_TRUE(search());
  EXPECT_EQ(searching.count(), 2);
  ASSERT_EQ(sources().count(), 1);
  EXPECT_EQ(textAt(0, SourceList::PathRole), backup);
  EXPECT_EQ(textAt(0, SourceList::KindRole), "backup");
  EXPECT_EQ(textAt(0, SourceList::DeviceRole), test::kBackupDeviceName);
  EXPECT_NE(textAt(0, SourceList::DateTextRole), "");
  EXPECT_EQ(textAt(0, SourceList::HoldsRole), "Messages");
  EXPECT_FALSE(at(0, SourceList::EncryptedRole).toBool());
  EXPECT_FALSE(at(0, SourceList::IsRecentRole).toBool());
  EXPECT_FALSE(sources().places().isEmpty());
  EXPECT_EQ(sources().roleNames().value(SourceList::DateTextRole), "dateText");
}

TEST_F(SourceListTest, DoesNotAskWhatAnEncryptedBackupHolds) {
  (void)writeBackup("secret");
  ASSERT_TRUE(search());
  ASSERT_EQ(sources().count(), 1);
  EXPECT_TRUE(at(0, SourceList::EncryptedRole).toBool());
  EXPECT_EQ(textAt(0, SourceList::HoldsRole), "");
}

TEST_F(SourceListTest, KeepsWhatWasOpenedLastInFrontAndOnce) {
  const QAbstractItemModelTester tester(&sources(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  const std::string backup = writeBackup(), one = writeDevice("one"), two = writeDevice("two");
  ASSERT_TRUE(open(one) && open(two) && open(backup) && open(one) && search());
  ASSERT_EQ(sources().count(), 3);
  EXPECT_EQ(textAt(0, SourceList::PathRole), one);
  EXPECT_EQ(textAt(0, SourceList::DeviceRole), "one");
  EXPECT_EQ(textAt(1, SourceList::PathRole), backup);
  EXPECT_EQ(textAt(2, SourceList::PathRole), two);
  EXPECT_NE(at(0, SourceList::HoldsRole).toString().indexOf("call"), -1);
  EXPECT_TRUE(at(1, SourceList::IsRecentRole).toBool());

  sources().forget(shownText(backup));
  sources().forget(shownText(two));
  ASSERT_EQ(sources().count(), 2);
  EXPECT_EQ(textAt(1, SourceList::PathRole), backup);  // that was found stays
  EXPECT_FALSE(at(1, SourceList::IsRecentRole).toBool());
}

TEST_F(SourceListTest, KeepsRecentOnesFromOneStartToTheNext) {
  const std::string backup = writeBackup(), one = writeDevice("one");
  ASSERT_TRUE(open(backup) && open(one));
  begin();
  ASSERT_EQ(sources().count(), 2);
  EXPECT_EQ(textAt(0, SourceList::PathRole), one);
  EXPECT_EQ(textAt(0, SourceList::DateTextRole), "");
  EXPECT_EQ(textAt(1, SourceList::DeviceRole), test::kBackupDeviceName);
  EXPECT_NE(textAt(1, SourceList::DateTextRole), "");
  sources().forget(shownText(one));
  begin();
  EXPECT_EQ(sources().count(), 1);
}

TEST_F(SourceListTest, NamesTakeOneLineAndPathsStayWhatTheyAre) {
  const std::string odd = writeDevice("my\nbackup\u202E");
  ASSERT_TRUE(open(odd));
  ASSERT_EQ(sources().count(), 1);
  EXPECT_EQ(textAt(0, SourceList::DeviceRole), "my backup");
  EXPECT_EQ(textAt(0, SourceList::PathRole), odd);
}

TEST_F(SourceListTest, AsksForWhatIsDroppedToBeOpened) {
  const std::string one = writeDevice("o n#e");
  sources().openUrl(QUrl("https://example.com/one"));
  EXPECT_EQ(library().state(), State::Closed);
  sources().openUrl(QUrl::fromLocalFile(shownText(one)));
  ASSERT_TRUE(becomes(State::Open));
  EXPECT_EQ(library().path().toStdString(), one);
}

}  // namespace
}  // namespace chatsum::desktop
