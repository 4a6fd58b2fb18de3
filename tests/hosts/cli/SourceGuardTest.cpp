#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/BackupWriter.h"

namespace chatsum::cli::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* kMaya = "+15550100142";

/// Nothing is written into a source, however its place is called.
class SourceGuard : public ProgramTest {
 protected:
  SourceGuard() { writeSample(); }

  /// The command fails because of the place, and the source stays as it was.
  void expectRefused(const fs::path& source, const fs::path& guarded, std::vector<std::string> arguments) const {
    SCOPED_TRACE(::testing::PrintToString(arguments));
    const auto before = everythingBelow(guarded);
    arguments.insert(arguments.begin(), {"--source", source.string()});
    const Outcome outcome = runPlain(arguments);
    EXPECT_EQ(outcome.code, 1) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find("inside the source"), std::string::npos) << outcome.err;
    EXPECT_EQ(everythingBelow(guarded), before);
    EXPECT_FALSE(before.empty());
  }
  [[nodiscard]] std::vector<std::string> reportTo(const fs::path& output) const {
    return {"--home", home().string(), "report", kMaya, "--replace", "--output", output.string()};
  }
};

TEST_F(SourceGuard, RefusesAnOutputInsideADeviceAlsoThroughLinks) {
  expectRefused(device(), device(), reportTo(storePath()));
  expectRefused(device(), device(), reportTo(device() / "new.txt"));
  fs::create_directory_symlink(device() / "var", root() / "way in");
  expectRefused(device(), device(), reportTo(root() / "way in/mobile/Library/SMS/sms.db"));
  fs::create_symlink(storePath(), root() / "looks harmless.txt");
  expectRefused(device(), device(), reportTo(root() / "looks harmless.txt"));
  fs::create_symlink(device() / "not there.txt", root() / "leads nowhere.txt");
  expectRefused(device(), device(), reportTo(root() / "leads nowhere.txt"));
  fs::create_directory_symlink(device(), root() / "link to device");
  expectRefused(root() / "link to device", device(), reportTo(device() / "new.txt"));
  EXPECT_EQ(run({"report", kMaya, "--output", (root() / "beside.txt").string()}).code, 0);
}

TEST_F(SourceGuard, RefusesAHomeInsideADeviceByEveryCommand) {
  fs::create_directory_symlink(device(), root() / "home link");
  fs::create_directories(root() / "tricky");
  fs::create_directory_symlink(device() / "var", root() / "tricky/Library");
  for (const fs::path& place : {device(), root() / "home link", device() / "var/deeper", root() / "tricky"}) {
    const std::string home = place.string();
    expectRefused(device(), device(), {"--home", home, "report", kMaya});
    expectRefused(device(), device(), {"--home", home, "report", "--app", "phone"});
    expectRefused(device(), device(), {"--home", home, "settings", "ChatsumEnabled", "no"});
    expectRefused(device(), device(), {"--home", home, "reports", "delete", "x.txt", "--yes"});
    expectRefused(device(), device(), {"--home", home, "demo", (root() / "elsewhere").string()});
  }
  expectRefused(device(), device(), {"demo", (device() / "demo").string()});
}

TEST_F(SourceGuard, RefusesPlacesInsideABackup) {
  const fs::path backup = root() / "backup";
  ASSERT_FALSE(test::writeBackup(device(), backup, {}));
  expectRefused(backup, backup, reportTo(backup / "Manifest.db"));
  expectRefused(backup, backup, reportTo(backup / "ab/new.txt"));
  expectRefused(backup, backup, {"--home", backup.string(), "settings", "ChatsumEnabled", "no"});
}

TEST_F(SourceGuard, OfAMacsHomeIsForItsStoresOnly) {
  const fs::path mac = root() / "maya", messages = mac / "Library/Messages";
  fs::create_directories(messages);
  fs::create_directories(mac / "Library/Application Support/CallHistoryDB");
  fs::copy_file(storePath(), messages / "chat.db");
  const fs::path calls = mac / "Library/Application Support/CallHistoryDB/CallHistory.storedata";
  expectRefused(mac, messages, reportTo(messages / "chat.db"));
  expectRefused(mac, messages, reportTo(calls));
  expectRefused(mac, messages, reportTo(mac / "Library/Application Support/AddressBook/new"));
  expectRefused(mac, messages, {"--home", messages.string(), "report", kMaya});
  expectRefused(messages / "chat.db", messages, reportTo(messages / "new.txt"));
  const Outcome own = runPlain({"--source", mac.string(), "--home", mac.string(), "report", kMaya, "--output",
                                (mac / "Library/copy.txt").string()});
  EXPECT_EQ(own.code, 0) << own.err;
  EXPECT_TRUE(fs::exists(mac / "Library/copy.txt"));
}

TEST_F(SourceGuard, OfASingleStoreIsForTheStoreAndWhatBelongsToIt) {
  const fs::path folder = root() / "bare", store = folder / "renamed.db";
  fs::create_directories(folder / "Attachments");
  fs::copy_file(storePath(), store);
  fs::copy_file(addressBookPath(), folder / "AddressBook.sqlitedb");
  for (const char* name : {"renamed.db", "renamed.db-wal", "renamed.db-journal", "AddressBook.sqlitedb",
                           "AddressBook.sqlitedb-wal", "Attachments/new.txt"}) {
    expectRefused(store, folder, reportTo(folder / name));
  }
  EXPECT_EQ(runPlain({"--source", store.string(), "--home", folder.string(), "report", kMaya, "--output",
                      (folder / "maya.txt").string()})
                .code,
            0);
}

}  // namespace
}  // namespace chatsum::cli::testing
