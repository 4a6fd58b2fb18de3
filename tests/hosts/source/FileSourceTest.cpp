#include "hosts/device/source/FileSource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "hosts/device/sample/StoreFile.h"
#include "platform/fake/TemporaryFolder.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class FileSourceTest : public ::testing::Test {
 protected:
  void put(const std::string& path, const std::string& bytes = "x") {
    fs::create_directories((folder() / path).parent_path());
    std::ofstream(folder() / path) << bytes;
  }
  void putStore(const std::string& name, const std::string& tables, Placement placement = Placement::mainFile) {
    StoreFile file(folder() / name, placement, tables);
    ASSERT_FALSE(file.finish("").has_value());
  }
  [[nodiscard]] std::unique_ptr<DeviceSource> open(const std::string& name) {
    auto source = FileSource::open(real(name), [this](const std::vector<std::string>& books, const auto&) {
      converted_ = books;
      return StoreResult<ConvertedBook>(StoreProblem{"not now"});
    });
    if (!source) throw std::runtime_error(source.problem().sentence);
    return std::move(source.value());
  }
  static std::string pathOf(DeviceSource& source, SourceStore store) {
    const auto location = source.store(store);
    if (!location) return "problem: " + location.problem().sentence;
    return location.value() ? location.value()->main : "";
  }
  [[nodiscard]] fs::path folder() const { return fs::path(folder_.path()) / "papers"; }
  [[nodiscard]] std::string real(const std::string& path) const { return (folder() / path).string(); }

  platform::fake::TemporaryFolder folder_;
  std::vector<std::string> converted_;
};

TEST_F(FileSourceTest, StandsAlone) {
  put("sms.db");
  const auto source = open("sms.db");
  EXPECT_EQ(source->facts().kind, SourceKind::kFile);
  EXPECT_EQ(source->facts().path, real("sms.db"));
  EXPECT_EQ(pathOf(*source, SourceStore::kMessages), real("sms.db"));
  for (const SourceStore store :
       {SourceStore::kAddressBook, SourceStore::kCalls, SourceStore::kTemporaryCalls, SourceStore::kOldCalls}) {
    EXPECT_EQ(pathOf(*source, store), "");
    EXPECT_NE(source->whyMissing(store).find("beside '" + real("sms.db") + "'"), std::string::npos);
    EXPECT_TRUE(source->originals(store).empty());
  }
}

TEST_F(FileSourceTest, FindsItsNeighbours) {
  for (const std::string name : {"sms.db", "AddressBook.sqlitedb", "AddressBook-v22.abcddb", "CallHistory.storedata",
                                 "CallHistoryTemp.storedata", "call_history.db"}) {
    put(name);
  }
  const auto source = open("sms.db");
  EXPECT_EQ(pathOf(*source, SourceStore::kAddressBook), real("AddressBook.sqlitedb"));
  EXPECT_EQ(pathOf(*source, SourceStore::kCalls), real("CallHistory.storedata"));
  EXPECT_EQ(pathOf(*source, SourceStore::kTemporaryCalls), real("CallHistoryTemp.storedata"));
  EXPECT_EQ(pathOf(*source, SourceStore::kOldCalls), real("call_history.db"));
  EXPECT_TRUE(converted_.empty());
}

TEST_F(FileSourceTest, HasTheBookOfAMacConverted) {
  put("chat.db");
  put("AddressBook-v22.abcddb");
  put("AddressBook-v22.abcddb-wal");
  const auto source = open("chat.db");
  EXPECT_EQ(pathOf(*source, SourceStore::kAddressBook), "problem: not now");
  EXPECT_EQ(converted_, std::vector<std::string>{real("AddressBook-v22.abcddb")});
  const auto files = source->originals(SourceStore::kAddressBook);
  ASSERT_EQ(files.size(), 2U);
  EXPECT_EQ(files[1].name, "AddressBook-v22.abcddb-wal");
}

TEST_F(FileSourceTest, KnowsAStoreByItsTablesWhateverItsName) {
  putStore("copy of calls", "CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY);", Placement::wal);
  putStore("old", "CREATE TABLE call (address TEXT, date INTEGER);");
  putStore("3d0d7e5fb2ce288813306e4d4636395e047a3d28", "CREATE TABLE message (guid TEXT); CREATE TABLE call (a);");
  EXPECT_EQ(pathOf(*open("copy of calls"), SourceStore::kCalls), real("copy of calls"));
  EXPECT_EQ(pathOf(*open("copy of calls"), SourceStore::kMessages), "");
  EXPECT_EQ(pathOf(*open("old"), SourceStore::kOldCalls), real("old"));
  EXPECT_EQ(pathOf(*open("3d0d7e5fb2ce288813306e4d4636395e047a3d28"), SourceStore::kMessages),
            real("3d0d7e5fb2ce288813306e4d4636395e047a3d28"));
  put("notes.txt", "no database");
  EXPECT_EQ(pathOf(*open("notes.txt"), SourceStore::kMessages), real("notes.txt")) << "who reads it says what it is";
}

TEST_F(FileSourceTest, FindsMessagesBesideACallList) {
  put("CallHistory.storedata");
  put("chat.db");
  EXPECT_EQ(pathOf(*open("CallHistory.storedata"), SourceStore::kMessages), real("chat.db"));
}

TEST_F(FileSourceTest, SaysWhatIsMissingBesideACallList) {
  put("CallHistory.storedata");
  EXPECT_NE(open("CallHistory.storedata")->whyMissing(SourceStore::kMessages).find("sms.db, chat.db"),
            std::string::npos);
}

TEST_F(FileSourceTest, FindsFilesOfMessagesInItsFolder) {
  put("sms.db");
  put("Attachments/ab/IMG.png");
  put("StickerCache/s.png");
  const auto source = open("sms.db");
  for (const std::string start : {"~/Library/SMS/", "User/Library/SMS/", "/var/mobile/Library/SMS/",
                                  "~/Library/Messages/", "/Users/maya/Library/Messages/"}) {
    EXPECT_EQ(source->fileOfMessage(start + "Attachments/ab/IMG.png"), real("Attachments/ab/IMG.png")) << start;
  }
  EXPECT_EQ(source->fileOfMessage("~/Library/SMS/StickerCache/s.png"), real("StickerCache/s.png"));
  EXPECT_EQ(source->originalOfMessage("~/Library/SMS/Attachments/ab/IMG.png")->name, "Attachments/ab/IMG.png");
}

TEST_F(FileSourceTest, AnswersNoOtherFilesOfTheFolder) {
  put("sms.db");
  put("secret.txt");
  put("Attachments/IMG.png");
  std::ofstream(folder_.path() + "/outside.txt") << "x";
  fs::create_symlink("../secret.txt", folder() / "Attachments/up");
  fs::create_symlink(folder_.path() + "/outside.txt", folder() / "Attachments/out");
  fs::create_symlink(folder_.path(), folder() / "StickerCache");
  const auto source = open("sms.db");
  for (const std::string path :
       {"~/Library/SMS/secret.txt", "~/Library/SMS/Attachments/../secret.txt", "~/Library/SMS/Attachments/up",
        "~/Library/SMS/Attachments/out", "~/Library/SMS/StickerCache/outside.txt", "~/Library/SMS/../secret.txt",
        "/etc/passwd", "Attachments/IMG.png", "~/Library/SMS/sms.db"}) {
    EXPECT_EQ(source->fileOfMessage(path), std::nullopt) << path;
  }
}

TEST_F(FileSourceTest, TakesNoNeighbourByALinkThatLeadsOut) {
  put("sms.db");
  std::ofstream(folder_.path() + "/book") << "x";
  fs::create_symlink("../book", folder() / "AddressBook.sqlitedb");
  EXPECT_EQ(pathOf(*open("sms.db"), SourceStore::kAddressBook), "");
}

}  // namespace
}  // namespace chatsum::device
