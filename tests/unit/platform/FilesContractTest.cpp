#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/sqlite/Connection.h"
#include "tests/unit/platform/PlatformHosts.h"

namespace chatsum::platform {
namespace {

namespace fs = std::filesystem;

template <class Host>
class FilesContract : public ::testing::Test {
 protected:
  Files& files() { return host_.platform().files; }
  [[nodiscard]] std::string real(const std::string& path) const { return host_.realPath(path); }
  [[nodiscard]] std::string read(const std::string& path) const {
    std::ifstream stream(real(path), std::ios::binary);
    EXPECT_TRUE(stream) << path;
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }
  void put(const std::string& path, const std::string& bytes) {
    fs::create_directories(fs::path(real(path)).parent_path());
    std::ofstream(real(path), std::ios::binary) << bytes;
  }
  // What became of files is looked up in the file system itself, never through the operations that are tested.
  [[nodiscard]] bool stands(const std::string& path) const { return fs::exists(fs::symlink_status(real(path))); }
  [[nodiscard]] bool isFolder(const std::string& path) const { return fs::is_directory(real(path)); }
  void makeFolder(const std::string& path) const { fs::create_directories(real(path)); }
  /// Names in a folder, sorted.
  [[nodiscard]] std::vector<std::string> names(const std::string& path) const {
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator(real(path))) found.push_back(entry.path().filename());
    std::sort(found.begin(), found.end());
    return found;
  }
  static void expectError(const std::optional<Error>& error, int number, const std::string& words) {
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain, "NSPOSIXErrorDomain");
    EXPECT_EQ(error->code, number);
    EXPECT_NE(error->localizedDescription().find(words), std::string::npos) << error->localizedDescription();
  }

  Host host_;
};
TYPED_TEST_SUITE(FilesContract, Hosts);

TYPED_TEST(FilesContract, NameTheHomeWithoutATrailingSlash) {
  EXPECT_EQ(this->files().homeDirectory(), "/var/mobile");
  EXPECT_TRUE(this->isFolder("/var/mobile"));
}

TYPED_TEST(FilesContract, TellWhatExists) {
  this->put("/a/file", "x");
  fs::create_symlink("file", this->real("/a/link"));
  fs::create_symlink("nowhere", this->real("/a/dangling"));
  fs::create_symlink(".", this->real("/a/linkToFolder"));
  Files& files = this->files();
  EXPECT_TRUE(files.exists("/a"));
  EXPECT_TRUE(files.exists("/a/file"));
  EXPECT_TRUE(files.exists("/a/link"));
  EXPECT_FALSE(files.exists("/a/dangling"));
  EXPECT_FALSE(files.exists("/a/none"));
  EXPECT_FALSE(files.exists("/a/file/below"));
  EXPECT_FALSE(files.exists(""));
  EXPECT_TRUE(files.isDirectory("/a"));
  EXPECT_TRUE(files.isDirectory("/a/linkToFolder"));
  EXPECT_FALSE(files.isDirectory("/a/file"));
  EXPECT_FALSE(files.isDirectory("/a/none"));
}

TYPED_TEST(FilesContract, ListNamesOfOneLevel) {
  this->put("/a/.hidden", "");
  this->put("/a/ünï 😀.txt", "");
  this->put("/a/sub/deeper", "");
  auto listed = this->files().list("/a");
  ASSERT_TRUE(listed);
  std::sort(listed->begin(), listed->end());
  EXPECT_EQ(*listed, (std::vector<std::string>{".hidden", "sub", "ünï 😀.txt"}));
  EXPECT_FALSE(this->files().list("/none"));
  EXPECT_FALSE(this->files().list("/a/.hidden"));
  EXPECT_FALSE(this->files().list(""));
}

TYPED_TEST(FilesContract, KnowSizeAndCreationDate) {
  const double before = std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
  this->put("/a/file", "12345");
  const FileAttributes attributes = this->files().attributes("/a/file");
  EXPECT_EQ(attributes.size, 5u);
  ASSERT_TRUE(attributes.creationDate);
  EXPECT_NEAR(attributes.creationDate->secondsSince1970, before, 60);
  const FileAttributes none = this->files().attributes("/a/none");
  EXPECT_FALSE(none.size);
  EXPECT_FALSE(none.creationDate);
}

TYPED_TEST(FilesContract, MakeFoldersWithTheirParents) {
  EXPECT_FALSE(this->files().createDirectory("/a/b/c"));
  EXPECT_TRUE(this->isFolder("/a/b/c"));
  EXPECT_FALSE(this->files().createDirectory("/a/b/c"));
  EXPECT_FALSE(this->files().createDirectory("/a/d/"));
  EXPECT_TRUE(this->isFolder("/a/d"));
}

TYPED_TEST(FilesContract, MakeNoFolderWhereAFileStands) {
  this->put("/a/file", "x");
  this->expectError(this->files().createDirectory("/a/file"), EEXIST,
                    "The folder “file” couldn’t be created in the folder “/a”: ");
  this->expectError(this->files().createDirectory("/a/file/below"), ENOTDIR, "“below”");
  this->expectError(this->files().createDirectory(""), ENOENT, "couldn’t be created");
  EXPECT_EQ(this->read("/a/file"), "x");
}

TYPED_TEST(FilesContract, MoveWithoutOverwriting) {
  this->put("/a/one", "1");
  this->put("/a/two", "2");
  this->expectError(this->files().move("/a/one", "/a/two"), EEXIST, "“one” couldn’t be moved to “/a/two”");
  EXPECT_EQ(this->read("/a/one"), "1");
  EXPECT_EQ(this->read("/a/two"), "2");
  EXPECT_FALSE(this->files().move("/a/one", "/a/three"));
  EXPECT_EQ(this->read("/a/three"), "1");
  EXPECT_EQ(this->names("/a"), (std::vector<std::string>{"three", "two"}));
  this->expectError(this->files().move("/a/none", "/a/four"), ENOENT, "“none”");
  this->expectError(this->files().move("/a/two", "/a/two"), EEXIST, "“two”");
  this->expectError(this->files().move("/a/two", "/none/two"), ENOENT, "“two”");
}

TYPED_TEST(FilesContract, MoveAFolderAsOneItem) {
  this->put("/a/sub/file", "x");
  this->put("/b/other", "y");
  this->makeFolder("/empty");
  this->expectError(this->files().move("/a", "/b"), EEXIST, "“a”");
  this->expectError(this->files().move("/a", "/empty"), EEXIST, "“a”");
  this->expectError(this->files().move("/a", "/a/inside"), EINVAL, "“a”");
  EXPECT_FALSE(this->files().move("/a", "/c"));
  EXPECT_EQ(this->read("/c/sub/file"), "x");
  EXPECT_FALSE(this->stands("/a"));
}

TYPED_TEST(FilesContract, CopyWithoutOverwriting) {
  const std::string large(700000, 'x');
  this->put("/a/one", large);
  this->put("/a/two", "2");
  this->expectError(this->files().copy("/a/one", "/a/two"), EEXIST, "“one” couldn’t be copied to “/a/two”");
  EXPECT_EQ(this->read("/a/two"), "2");
  EXPECT_FALSE(this->files().copy("/a/one", "/a/three"));
  EXPECT_EQ(this->read("/a/three"), large);
  EXPECT_EQ(this->read("/a/one"), large);
  this->expectError(this->files().copy("/a/none", "/a/four"), ENOENT, "“none”");
  this->expectError(this->files().copy("/a/one", "/none/one"), ENOENT, "“one”");
}

TYPED_TEST(FilesContract, CopyAFolderWithAllItHolds) {
  this->put("/a/sub/file", "x");
  fs::create_symlink("sub/file", this->real("/a/link"));
  EXPECT_FALSE(this->files().copy("/a", "/b"));
  EXPECT_EQ(this->read("/b/sub/file"), "x");
  EXPECT_TRUE(fs::is_symlink(this->real("/b/link")));
  EXPECT_EQ(this->read("/a/sub/file"), "x");
  this->expectError(this->files().copy("/a", "/a/sub/copy"), EINVAL, "“a”");
  EXPECT_EQ(this->names("/a/sub"), (std::vector<std::string>{"file"}));
}

TYPED_TEST(FilesContract, RemoveFilesFoldersAndLinksButNotWhatLinksPointTo) {
  this->put("/a/sub/file", "x");
  this->put("/kept/file", "y");
  fs::create_directory_symlink(this->real("/kept"), this->real("/a/link"));
  fs::create_directory_symlink(this->real("/kept"), this->real("/link"));
  EXPECT_FALSE(this->files().remove("/link/"));
  EXPECT_FALSE(this->files().remove("/a"));
  EXPECT_FALSE(this->stands("/a"));
  EXPECT_EQ(this->read("/kept/file"), "y");
  EXPECT_FALSE(this->files().remove("/kept/file"));
  this->expectError(this->files().remove("/kept/file"), ENOENT, "“file” couldn’t be removed");
  EXPECT_TRUE(this->stands("/kept"));
}

TYPED_TEST(FilesContract, MakeAndEmptyFiles) {
  EXPECT_FALSE(this->files().createFile("/file"));
  EXPECT_EQ(this->read("/file"), "");
  this->put("/file", "old");
  EXPECT_FALSE(this->files().createFile("/file"));
  EXPECT_EQ(this->read("/file"), "");
  this->expectError(this->files().createFile("/none/file"), ENOENT,
                    "The file “file” couldn’t be created in the folder “/none”");
}

TYPED_TEST(FilesContract, WriteWholeFiles) {
  const std::string bytes("a\0b\n", 4);
  EXPECT_FALSE(this->files().writeAtomically("/new", bytes));
  EXPECT_EQ(this->read("/new"), bytes);
  EXPECT_FALSE(this->files().writeAtomically("/new", ""));
  EXPECT_EQ(this->read("/new"), "");
  const std::string large(3 << 20, 'x');
  EXPECT_FALSE(this->files().writeAtomically("/new", large));
  EXPECT_EQ(this->read("/new"), large);
  EXPECT_EQ(this->names("/"), (std::vector<std::string>{"new", "var"}));
}

TYPED_TEST(FilesContract, WriteNothingWhereTheyCannot) {
  this->put("/folder/file", "x");
  this->expectError(this->files().writeAtomically("/none/a.txt", "x"), ENOENT,
                    "The file “a.txt” couldn’t be saved in the folder “/none”: No such file or directory");
  this->expectError(this->files().writeAtomically("/folder", "x"), EISDIR, "“folder”");
  this->expectError(this->files().writeAtomically("/folder/file/below", "x"), ENOTDIR, "“below”");
  this->expectError(this->files().writeAtomically("", "x"), ENOENT, "couldn’t be saved");
  this->expectError(this->files().writeAtomically("/folder/" + std::string(300, 'n'), "x"), ENAMETOOLONG,
                    "couldn’t be saved");
  EXPECT_EQ(this->names("/folder"), (std::vector<std::string>{"file"}));
}

TYPED_TEST(FilesContract, WriteNamesAsLongAsNamesCanBe) {
  const std::string name(255, 'n');
  EXPECT_FALSE(this->files().writeAtomically("/" + name, "x"));
  EXPECT_EQ(this->read("/" + name), "x");
}

TYPED_TEST(FilesContract, NeverCutAPathAtAZeroByte) {
  this->put("/file", "x");
  const std::string path("/file\0.txt", 10);
  Files& files = this->files();
  EXPECT_FALSE(files.exists(path));
  EXPECT_TRUE(files.remove(path));
  EXPECT_TRUE(files.writeAtomically(path, "y"));
  EXPECT_TRUE(files.createFile(path));
  EXPECT_TRUE(files.createDirectory(path));
  EXPECT_TRUE(files.copy("/file", path));
  EXPECT_TRUE(files.move("/file", path));
  EXPECT_EQ(files.openForWriting(path), nullptr);
  EXPECT_EQ(this->read("/file"), "x");
  EXPECT_EQ(this->names("/"), (std::vector<std::string>{"file", "var"}));
}

TYPED_TEST(FilesContract, AppendThroughAHandle) {
  this->put("/file", "old");
  const auto handle = this->files().openForWriting("/file");
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(handle->seekToEnd(), 3u);
  handle->truncateAt(3);
  EXPECT_FALSE(handle->write(" and"));
  EXPECT_FALSE(handle->write(" new"));
  EXPECT_EQ(this->read("/file"), "old and new");
  handle->truncateAt(4);
  EXPECT_FALSE(handle->write("x"));
  EXPECT_EQ(this->read("/file"), "old x");
}

TYPED_TEST(FilesContract, OpenNoHandleOnWhatIsNoFile) {
  this->makeFolder("/folder");
  EXPECT_EQ(this->files().openForWriting("/none"), nullptr);
  EXPECT_EQ(this->files().openForWriting("/folder"), nullptr);
  EXPECT_EQ(this->files().openForWriting(""), nullptr);
}

TYPED_TEST(FilesContract, NeverWaitForTheReaderOfAPipe) {
  ASSERT_EQ(mkfifo(this->real("/pipe").c_str(), 0600), 0);
  this->expectError(this->files().createFile("/pipe"), EEXIST,
                    "The file “pipe” couldn’t be created in the folder “/”: File exists");
  EXPECT_EQ(this->files().openForWriting("/pipe"), nullptr);

  const int reader = open(this->real("/pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  this->expectError(this->files().createFile("/pipe"), EEXIST, "“pipe”");
  EXPECT_EQ(this->files().openForWriting("/pipe"), nullptr);
  close(reader);
  EXPECT_TRUE(fs::is_fifo(this->real("/pipe")));
}

TYPED_TEST(FilesContract, OpenDatabases) {
  sqlite3* handle = nullptr;
  ASSERT_EQ(this->files().openDatabase("/store.db", &handle), SQLITE_OK);
  const sqlite::Connection database(handle);
  EXPECT_TRUE(database.execute("CREATE TABLE t (a)"));
  EXPECT_TRUE(fs::exists(this->real("/store.db")));

  sqlite3* none = nullptr;
  EXPECT_EQ(this->files().openDatabase("/missing/store.db", &none), SQLITE_CANTOPEN);
  sqlite3_close(none);
  EXPECT_EQ(this->files().openDatabase("", &none), SQLITE_CANTOPEN);
  EXPECT_EQ(none, nullptr);
}

}  // namespace
}  // namespace chatsum::platform
