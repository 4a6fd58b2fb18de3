#include "hosts/device/stores/SnapshotFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/hosts/stores/StoreFixtures.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::AsOrdinaryUser;
using testing::TestFolder;
using testing::writeFile;

std::size_t entryCount(const fs::path& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

// Another process that makes a folder in `parent` with a file in it. It tells when it is ready and waits for its end.
class Neighbour {
 public:
  explicit Neighbour(const std::string& parent) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(::pipe(ends), 0);
    process_ = ::fork();
    if (process_ == 0) {
      auto folder = SnapshotFolder::create(parent);
      const bool made = static_cast<bool>(folder);
      if (made) writeFile(folder.value().path() + "/store", "rows");
      const char answer = made ? 'y' : 'n';
      if (::write(ends[1], &answer, 1) == 1) ::pause();
      ::_exit(1);
    }
    char answer = 'n';
    EXPECT_EQ(::read(ends[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    ::close(ends[0]);
    ::close(ends[1]);
  }
  Neighbour(const Neighbour&) = delete;
  Neighbour& operator=(const Neighbour&) = delete;
  ~Neighbour() { kill(); }

  void kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
  }

 private:
  pid_t process_ = -1;
};

TEST(SnapshotFolder, IsPrivateAndGoneWithItsOwner) {
  const TestFolder parent;
  std::string path;
  {
    auto folder = SnapshotFolder::create(parent.path().string());
    ASSERT_TRUE(folder) << folder.problem().sentence;
    path = folder.value().path();
    EXPECT_EQ(fs::path(path).parent_path(), parent.path());
    EXPECT_EQ(fs::path(path).filename().string().substr(0, 8), "chatsum-");
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    fs::create_directories(path + "/inner/deeper");
    writeFile(path + "/inner/deeper/file", "x");
  }
  EXPECT_FALSE(fs::exists(path));
}

TEST(SnapshotFolder, IsRemovedOnceWhenItIsMoved) {
  const TestFolder parent;
  {
    auto first = SnapshotFolder::create(parent.path().string());
    auto second = SnapshotFolder::create(parent.path().string());
    ASSERT_TRUE(first && second);
    SnapshotFolder kept = std::move(first.value());
    kept = std::move(second.value());
    EXPECT_EQ(entryCount(parent.path()), 2U);
  }
  EXPECT_EQ(entryCount(parent.path()), 0U);
}

TEST(SnapshotFolder, RemoveAllRemovesWhatTheProcessHas) {
  const TestFolder parent;
  const auto first = SnapshotFolder::create(parent.path().string());
  const auto second = SnapshotFolder::create(parent.path().string());
  ASSERT_TRUE(first && second);
  SnapshotFolder::removeAll();
  EXPECT_EQ(entryCount(parent.path()), 0U);
}

TEST(SnapshotFolder, SaysWhenItCannotBeMade) {
  const auto folder = SnapshotFolder::create("/there/is/no/such/folder");
  ASSERT_FALSE(folder);
  EXPECT_EQ(folder.problem().sentence,
            "No private folder can be made in '/there/is/no/such/folder' (No such file or directory); set TMPDIR to a "
            "folder that can be written.");
}

TEST(SnapshotFolder, GoesWhereTmpdirSays) {
  const TestFolder parent;
  ::setenv("TMPDIR", parent.path().c_str(), 1);
  EXPECT_EQ(SnapshotFolder::defaultParent(), parent.path().string());
  ::setenv("TMPDIR", (parent / "missing").c_str(), 1);
  EXPECT_EQ(SnapshotFolder::defaultParent(), "/tmp");
  ::setenv("TMPDIR", "relative", 1);
  EXPECT_EQ(SnapshotFolder::defaultParent(), "/tmp");
  ::unsetenv("TMPDIR");
  EXPECT_EQ(SnapshotFolder::defaultParent(), "/tmp");
}

TEST(SnapshotFolder, RemovesWhatAKilledProcessLeft) {
  const TestFolder parent;
  Neighbour neighbour(parent.path().string());
  EXPECT_EQ(SnapshotFolder::removeOrphans(parent.path().string()), 0) << "its owner still lives";
  EXPECT_EQ(entryCount(parent.path()), 1U);
  neighbour.kill();
  EXPECT_EQ(SnapshotFolder::removeOrphans(parent.path().string()), 1);
  EXPECT_EQ(entryCount(parent.path()), 0U);
}

TEST(SnapshotFolder, LeavesItsOwnFoldersInPeace) {
  const TestFolder parent;
  const auto folder = SnapshotFolder::create(parent.path().string());
  ASSERT_TRUE(folder);
  EXPECT_EQ(SnapshotFolder::removeOrphans(parent.path().string()), 0);
  EXPECT_TRUE(fs::exists(folder.value().path()));
}

TEST(SnapshotFolder, FollowsNoLinkWhenItRemoves) {
  const TestFolder outside;
  writeFile(outside / "keep", "kept");
  const std::string inner = outside.folder("folder");
  writeFile(inner + "/keep", "kept");
  const TestFolder parent;
  {
    Neighbour neighbour(parent.path().string());
    for (const auto& entry : fs::directory_iterator(parent.path())) {
      fs::create_symlink(outside.path(), entry.path() / "folder-link");
      fs::create_symlink(outside / "keep", entry.path() / "file-link");
      fs::create_directory(entry.path() / "inner");
      fs::create_symlink(inner, entry.path() / "inner" / "link");
    }
  }
  // A link that has the name of a folder of ours, to one that looks like ours.
  const TestFolder lookalike;
  writeFile(lookalike / "lock", "");
  fs::create_directory_symlink(lookalike.path(), parent / "chatsum-Abc123");
  EXPECT_EQ(SnapshotFolder::removeOrphans(parent.path().string()), 1);
  EXPECT_EQ(entryCount(parent.path()), 1U);
  EXPECT_TRUE(fs::exists(lookalike / "lock"));
  EXPECT_EQ(testing::readFile(outside / "keep"), "kept");
  EXPECT_EQ(testing::readFile(inner + "/keep"), "kept");
}

TEST(SnapshotFolder, LeavesForeignThingsAlone) {
  const TestFolder parent;
  const std::string noLock = parent.folder("chatsum-noLock");
  writeFile(noLock + "/something", "kept");
  const std::string otherName = parent.folder("chatsum-desktop");
  writeFile(otherName + "/lock", "");
  writeFile(parent / "chatsum-a-file", "kept");
  writeFile(parent / "chatsum-abcdef", "a file with such a name");
  EXPECT_EQ(SnapshotFolder::removeOrphans(parent.path().string()), 0);
  EXPECT_EQ(entryCount(parent.path()), 4U);
  EXPECT_EQ(SnapshotFolder::removeOrphans("/there/is/no/such/folder"), 0);
}

TEST(SnapshotFolder, LeavesFoldersOfOtherUsersAlone) {
  if (::getuid() != 0) GTEST_SKIP() << "needs two users";
  const TestFolder parent;
  const std::string theirs = parent.folder("chatsum-theirs");
  writeFile(theirs + "/lock", "");
  testing::giveToOrdinaryUser(theirs);
  EXPECT_EQ(SnapshotFolder::removeOrphans(parent.path().string()), 0);
  EXPECT_TRUE(fs::exists(theirs + "/lock"));
}

TEST(SnapshotFolder, RemovesAnEmptyFolderWhoseOwnerDiedBeforeLocking) {
  const TestFolder parent;
  (void)parent.folder("chatsum-empty1");
  EXPECT_EQ(SnapshotFolder::removeOrphans(parent.path().string()), 1);
  EXPECT_EQ(entryCount(parent.path()), 0U);
}

}  // namespace
}  // namespace chatsum::device
