// Who may read what the program writes.
#include <sys/stat.h>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;

class PrivateFiles : public testing::ProgramTest {
 protected:
  PrivateFiles() { writeSample(); }
  /// Runs the program under a umask, which must succeed.
  void run(mode_t mask, const std::vector<std::string>& arguments) const {
    const mode_t before = ::umask(mask);
    const testing::Outcome outcome = ProgramTest::run(arguments);
    ::umask(before);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
  }
  [[nodiscard]] static unsigned modeOf(const fs::path& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  }
};

TEST_F(PrivateFiles, AreReportsTheirEvidenceAndTheFoldersAboveThem) {
  for (const std::string format : {"text", "csv", "pdf"}) {
    run(0, {"report", "55501", "--format", format, "--evidence", "--name", format});
  }
  run(0, {"report", "--app", "phone"});
  std::size_t files = 0;
  for (const auto& entry : fs::directory_iterator(reports())) {
    EXPECT_EQ(modeOf(entry.path()), 0600U) << entry.path();
    ++files;
  }
  EXPECT_EQ(files, 7U);
  for (fs::path folder = reports(); folder != root(); folder = folder.parent_path()) {
    EXPECT_EQ(modeOf(folder), 0700U) << folder;
  }
}

TEST_F(PrivateFiles, AreTheSettings) {
  run(0, {"settings", "ChatsumMessagesDefaultFileFormat", "1"});
  const fs::path folder = home() / "Library/Preferences";
  std::size_t files = 0;
  for (const auto& entry : fs::directory_iterator(folder)) {
    EXPECT_EQ(modeOf(entry.path()), 0600U) << entry.path();
    ++files;
  }
  EXPECT_EQ(files, 1U);
  EXPECT_EQ(modeOf(folder), 0700U);
}

TEST_F(PrivateFiles, ObeyAUmaskThatIsStricterStill) {
  run(0277, {"report", "55501"});
  EXPECT_EQ(modeOf(reports() / "55501.txt"), 0400U);
}

TEST_F(PrivateFiles, AreNotTheCopiesThatTheUserAsksForElsewhere) {
  run(022, {"report", "55501", "--evidence", "--output", (root() / "copy.txt").string()});
  run(002, {"report", "55501", "--evidence", "--replace", "--output", (root() / "shared.txt").string()});
  EXPECT_EQ(modeOf(reports() / "55501.txt"), 0600U);
  for (const char* name : {"copy.txt", "copy.txt.evidence.json"}) EXPECT_EQ(modeOf(root() / name), 0644U) << name;
  for (const char* name : {"shared.txt", "shared.txt.evidence.json"}) EXPECT_EQ(modeOf(root() / name), 0664U) << name;
}

}  // namespace
}  // namespace chatsum::cli
