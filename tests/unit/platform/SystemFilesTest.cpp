#include "platform/system/files/SystemFiles.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "platform/fake/TemporaryFolder.h"

namespace chatsum::platform::system {
namespace {

namespace fs = std::filesystem;

class RealFiles : public ::testing::Test {
 protected:
  [[nodiscard]] std::string at(const std::string& name) const { return folder_.path() + "/" + name; }
  [[nodiscard]] static std::string read(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }
  static void put(const std::string& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }
  static unsigned modeOf(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  }
  [[nodiscard]] std::size_t count() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()));
  }

  fake::TemporaryFolder folder_;
  SystemFiles files_{{.homeDirectory = "/home", .mapPath = {}, .openDatabase = {}}};
};

/// Lets this process write no more than so many bytes into a file, as a full disk would.
class SmallFiles {
 public:
  explicit SmallFiles(rlim_t bytes) {
    signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SmallFiles() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

TEST_F(RealFiles, LeaveNothingNewBehindWhenTheDiskIsFull) {
  put(at("old.txt"), "old");
  const std::string bytes(100000, 'x');
  const SmallFiles limit(5000);
  const auto error = files_.writeAtomically(at("old.txt"), bytes);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, EFBIG);
  EXPECT_EQ(error->localizedDescription(),
            "The file “old.txt” couldn’t be saved in the folder “" + folder_.path() + "”: File too large");
  EXPECT_TRUE(files_.writeAtomically(at("new.txt"), bytes));
  EXPECT_EQ(read(at("old.txt")), "old");
  EXPECT_EQ(count(), 1u);
}

TEST_F(RealFiles, LeaveNoPartOfACopyBehindWhenTheDiskIsFull) {
  fs::create_directories(at("from/sub"));
  put(at("from/a"), "small");
  put(at("from/sub/b"), std::string(100000, 'x'));
  const SmallFiles limit(5000);
  ASSERT_TRUE(files_.copy(at("from/sub/b"), at("b")));
  EXPECT_FALSE(files_.exists(at("b")));
  ASSERT_TRUE(files_.copy(at("from"), at("to")));
  EXPECT_FALSE(files_.exists(at("to")));
  EXPECT_EQ(read(at("from/a")), "small");
}

TEST_F(RealFiles, ReportAWriteThatDoesNotFit) {
  put(at("file"), "");
  const auto handle = files_.openForWriting(at("file"));
  ASSERT_NE(handle, nullptr);
  const SmallFiles limit(5000);
  const auto error = handle->write(std::string(100000, 'x'));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, EFBIG);
  EXPECT_NE(error->localizedDescription().find("“file” couldn’t be written"), std::string::npos);
}

TEST_F(RealFiles, BelongToTheirOwnerAloneWhateverTheProcessAllows) {
  struct Case {
    mode_t mask;
    unsigned file, folder;
  };
  for (const auto& [mask, file, folder] : {Case{0, 0600, 0700}, Case{022, 0600, 0700}, Case{0277, 0400, 0500}}) {
    const mode_t before = umask(mask);
    EXPECT_FALSE(files_.writeAtomically(at("new"), "x"));
    EXPECT_FALSE(files_.createFile(at("made")));
    EXPECT_FALSE(files_.createDirectory(at("folder")));
    umask(before);
    EXPECT_EQ(modeOf(at("new")), file);
    EXPECT_EQ(modeOf(at("made")), file);
    EXPECT_EQ(modeOf(at("folder")), folder);
    for (const char* name : {"new", "made", "folder"}) fs::remove(at(name));
  }
}

TEST_F(RealFiles, MakeMissingParentsPrivateAndLeaveOthersAsTheyAre) {
  fs::create_directory(at("shared"));
  ASSERT_EQ(chmod(at("shared").c_str(), 0775), 0);
  const mode_t before = umask(0);
  EXPECT_FALSE(files_.createDirectory(at("shared/a/b")));
  umask(before);
  EXPECT_EQ(modeOf(at("shared")), 0775u);
  EXPECT_EQ(modeOf(at("shared/a")), 0700u);
  EXPECT_EQ(modeOf(at("shared/a/b")), 0700u);
}

TEST_F(RealFiles, KeepTheRightsOfAFileThatIsReplaced) {
  for (const mode_t mode : {0600u, 0644u, 0666u, 0400u}) {
    fs::remove(at("file"));
    put(at("file"), "old");
    ASSERT_EQ(chmod(at("file").c_str(), mode), 0);
    EXPECT_FALSE(files_.writeAtomically(at("file"), "new"));
    EXPECT_EQ(modeOf(at("file")), mode);
    EXPECT_EQ(read(at("file")), "new");
  }
}

TEST_F(RealFiles, KeepTheOwnersRightsAndTheTimesOfCopies) {
  fs::create_directory(at("from"));
  put(at("from/file"), "x");
  ASSERT_EQ(chmod(at("from/file").c_str(), 0640), 0);
  fs::last_write_time(at("from/file"), fs::file_time_type::clock::now() - std::chrono::hours(1000));
  fs::permissions(at("from"), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_FALSE(files_.copy(at("from"), at("to")));
  EXPECT_EQ(modeOf(at("from/file")), 0640u);
  EXPECT_EQ(modeOf(at("to/file")), 0600u);
  EXPECT_EQ(modeOf(at("to")), 0500u);
  EXPECT_EQ(fs::last_write_time(at("to/file")), fs::last_write_time(at("from/file")));
}

TEST_F(RealFiles, ReplaceALinkInsteadOfFollowingIt) {
  put(at("target"), "precious");
  fs::create_symlink("target", at("link"));
  EXPECT_FALSE(files_.writeAtomically(at("link"), "new"));
  EXPECT_EQ(read(at("target")), "precious");
  EXPECT_FALSE(fs::is_symlink(at("link")));
  EXPECT_EQ(read(at("link")), "new");
}

TEST_F(RealFiles, SayPlainlyThatAFolderMayNotBeWritten) {
  fs::create_directory(at("locked"));
  put(at("locked/old.txt"), "old");
  ASSERT_EQ(chmod(at("locked").c_str(), 0555), 0);
  ASSERT_EQ(chmod(folder_.path().c_str(), 0755), 0);
  // The superuser may write everywhere: be somebody else for the calls.
  const bool isSuperuser = geteuid() == 0;
  ASSERT_TRUE(!isSuperuser || seteuid(65534) == 0);
  const auto saved = files_.writeAtomically(at("locked/a.txt"), "x");
  const auto replaced = files_.writeAtomically(at("locked/old.txt"), "x");
  const auto made = files_.createDirectory(at("locked/sub"));
  const auto removed = files_.remove(at("locked/old.txt"));
  ASSERT_TRUE(!isSuperuser || seteuid(0) == 0);
  ASSERT_TRUE(saved && replaced && made && removed);
  EXPECT_EQ(saved->localizedDescription(),
            "The file “a.txt” couldn’t be saved in the folder “" + at("locked") + "”: Permission denied");
  for (const auto& error : {replaced, made, removed}) EXPECT_EQ(error->code, EACCES);
  EXPECT_EQ(read(at("locked/old.txt")), "old");
}

TEST_F(RealFiles, CopyNoPipesAndSockets) {
  fs::create_directory(at("from"));
  put(at("from/file"), "x");
  ASSERT_EQ(mkfifo(at("from/pipe").c_str(), 0600), 0);
  const auto error = files_.copy(at("from"), at("to"));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, ENOTSUP);
  EXPECT_FALSE(files_.exists(at("to")));
}

TEST_F(RealFiles, MoveAcrossFileSystems) {
  struct stat here {};
  struct stat there {};
  if (stat(folder_.path().c_str(), &here) != 0 || stat("/dev/shm", &there) != 0 || here.st_dev == there.st_dev ||
      access("/dev/shm", W_OK) != 0) {
    GTEST_SKIP() << "there is no second file system";
  }
  setenv("TMPDIR", "/dev/shm", 1);
  const fake::TemporaryFolder other;
  fs::create_directories(at("folder/sub"));
  put(at("folder/sub/file"), "x");
  ASSERT_EQ(chmod(at("folder/sub/file").c_str(), 0640), 0);
  fs::create_symlink("sub/file", at("folder/link"));
  EXPECT_FALSE(files_.move(at("folder"), other.path() + "/folder"));
  EXPECT_EQ(read(other.path() + "/folder/sub/file"), "x");
  EXPECT_EQ(modeOf(other.path() + "/folder/sub/file"), 0640u);
  EXPECT_TRUE(fs::is_symlink(other.path() + "/folder/link"));
  EXPECT_FALSE(files_.exists(at("folder")));

  put(at("file"), "new");
  put(other.path() + "/file", "old");
  const auto error = files_.move(at("file"), other.path() + "/file");
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code, EEXIST);
  EXPECT_EQ(read(other.path() + "/file"), "old");
  EXPECT_EQ(read(at("file")), "new");
}

TEST_F(RealFiles, MayBeWrittenByManyThreadsAtOnce) {
  const std::string one(50000, '1');
  const std::string two(70000, '2');
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&, i] {
        for (int n = 0; n < 20; ++n) EXPECT_FALSE(files_.writeAtomically(at("file"), i % 2 ? one : two));
      });
    }
    for (int n = 0; n < 200; ++n) {
      const std::string seen = read(at("file"));
      EXPECT_TRUE(seen.empty() || seen == one || seen == two) << seen.size();
    }
  }
  EXPECT_EQ(count(), 1u);
}

TEST_F(RealFiles, SeeDevicePathsThroughTheMap) {
  SystemFiles mapped({.homeDirectory = "/var/mobile",
                      .mapPath = [this](const std::string& path) { return folder_.path() + path; },
                      .openDatabase = {}});
  EXPECT_FALSE(mapped.createDirectory("/var/mobile"));
  EXPECT_FALSE(mapped.writeAtomically("/var/mobile/a.txt", "x"));
  EXPECT_EQ(read(at("var/mobile/a.txt")), "x");
  const auto error = mapped.writeAtomically("/var/none/a.txt", "x");
  ASSERT_TRUE(error);
  EXPECT_EQ(error->localizedDescription().find(folder_.path()), std::string::npos) << error->localizedDescription();
  EXPECT_EQ(mapped.homeDirectory(), "/var/mobile");
}

TEST_F(RealFiles, LeaveDatabasesToTheHostThatWantsThem) {
  std::vector<std::string> asked;
  SystemFiles files({.homeDirectory = "/home",
                     .mapPath = [this](const std::string& path) { return folder_.path() + path; },
                     .openDatabase = [&](const std::string& path, sqlite3** database) -> std::optional<int> {
                       asked.push_back(path);
                       if (path != "/var/sms.db") return std::nullopt;
                       return sqlite3_open(":memory:", database);
                     }});
  sqlite3* database = nullptr;
  EXPECT_EQ(files.openDatabase("/var/sms.db", &database), SQLITE_OK);
  EXPECT_NE(database, nullptr);
  sqlite3_close(database);
  EXPECT_FALSE(fs::exists(at("var/sms.db")));
  EXPECT_EQ(files.openDatabase("/other.db", &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, "CREATE TABLE t (a)", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(database);
  EXPECT_TRUE(fs::exists(at("other.db")));
  EXPECT_EQ(asked, (std::vector<std::string>{"/var/sms.db", "/other.db"}));
}

}  // namespace
}  // namespace chatsum::platform::system
