#include "tests/support/HostileJournal.h"

#include <gtest/gtest.h>

#include "hosts/device/sample/DevicePaths.h"
#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/BackupWriter.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using testing::everythingBelow;
using testing::Outcome;
using testing::putBytes;

/// A source whose stores carry journals that name a file. Opening one must never delete it, and shows what was in the
/// store before the interrupted change.
class HostileJournal : public testing::ProgramTest {
 protected:
  HostileJournal() {
    writeSample();
    conversations_ = listing(device(), {"conversations", "--json"});
    messages_ = listing(device(), {"messages", "Maya Lindqvist"});
    calls_ = listing(device(), {"calls", "--app", "phone"});
  }

  [[nodiscard]] fs::path outside() const { return root() / "a letter.txt"; }
  [[nodiscard]] fs::path backup() const { return root() / "backup"; }
  [[nodiscard]] std::vector<fs::path> storesOfDevice() const {
    return {storePath(), addressBookPath(), device::callListPath(device())};
  }

  [[nodiscard]] std::string listing(const fs::path& source, const std::vector<std::string>& command,
                                    const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"--source", source.string(), "--home", home().string()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    arguments.insert(arguments.end(), command.begin(), command.end());
    const Outcome outcome = runPlain(arguments);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return outcome.out;
  }
  /// Reading `source` shows what the device holds and leaves every file where it is.
  void expectHarmless(const fs::path& source, bool hasCalls = true, const std::vector<std::string>& more = {}) const {
    putBytes(outside(), "dear Maya");
    const auto before = everythingBelow(source);
    EXPECT_EQ(listing(source, {"conversations", "--json"}, more), conversations_);
    EXPECT_EQ(listing(source, {"messages", "Maya Lindqvist"}, more), messages_);
    if (hasCalls) {
      EXPECT_EQ(listing(source, {"calls", "--app", "phone"}, more), calls_);
    }
    EXPECT_EQ(everythingBelow(source), before);
    EXPECT_TRUE(fs::exists(outside())) << "the named file is gone";
    EXPECT_TRUE(everythingBelow(temporary()).empty());
  }

  std::string conversations_, messages_, calls_;
};

TEST_F(HostileJournal, OfADevicesStoresDeletesNoFileOutside) {
  for (const fs::path& store : storesOfDevice()) {
    SCOPED_TRACE(store);
    ASSERT_EQ(test::putHostileJournal(store, outside()), "");
    expectHarmless(device());
  }
}

TEST_F(HostileJournal, DeletesNoFileOfTheSource) {
  const fs::path victim = storePath().parent_path() / "a picture.jpg";
  putBytes(victim, "a picture");
  for (const fs::path& store : storesOfDevice()) {
    SCOPED_TRACE(store);
    ASSERT_EQ(test::putHostileJournal(store, victim), "");
    expectHarmless(device());
  }
}

TEST_F(HostileJournal, RollsBackWhetherTheNamedFileIsThereOrNot) {
  ASSERT_EQ(test::putHostileJournal(storePath(), root() / "nothing", "UPDATE chat SET guid = 'x' || guid"), "");
  expectHarmless(device());
}

TEST_F(HostileJournal, OfABackupsStoresDeletesNothing) {
  for (const fs::path& store : storesOfDevice()) ASSERT_EQ(test::putHostileJournal(store, outside()), "");
  putBytes(root() / "password", "secret-Pa55\n");
  for (const bool isEncrypted : {false, true}) {
    SCOPED_TRACE(isEncrypted);
    test::BackupOptions options;
    std::vector<std::string> more;
    if (isEncrypted) {
      options.password = "secret-Pa55";
      more = {"--password-file", (root() / "password").string()};
    }
    fs::remove_all(backup());
    const auto problem = test::writeBackup(device(), backup(), options);
    ASSERT_FALSE(problem) << *problem;
    expectHarmless(backup(), isEncrypted, more);  // only encrypted backups have calls
  }
}

TEST_F(HostileJournal, OfABackupsListDeletesNothing) {
  for (const fs::path& victim : {outside(), backup() / "Info.plist"}) {
    SCOPED_TRACE(victim);
    fs::remove_all(backup());
    const auto problem = test::writeBackup(device(), backup(), {});
    ASSERT_FALSE(problem) << *problem;
    ASSERT_EQ(test::putHostileJournal(backup() / "Manifest.db", victim), "");
    expectHarmless(backup(), false);
  }
}

}  // namespace
}  // namespace chatsum::cli
