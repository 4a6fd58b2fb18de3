#include "hosts/device/session/DeviceSession.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <semaphore>
#include <thread>

#include "hosts/device/evidence/EvidenceWriting.h"
#include "hosts/device/sample/DevicePaths.h"
#include "hosts/device/sample/SampleDevice.h"
#include "hosts/device/sample/SamplePictures.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/interfaces/Platform.h"
#include "platform/sqlite/Statement.h"
#include "tests/support/BackupWriter.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class DeviceSessionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto problem = writeSampleDevice(device());
    ASSERT_FALSE(problem.has_value()) << *problem;
  }
  [[nodiscard]] fs::path device() const { return fs::path(folder_.path()) / "device"; }
  [[nodiscard]] std::unique_ptr<DeviceSession> open() const { return open(folder_.path() + "/home"); }
  [[nodiscard]] std::unique_ptr<DeviceSession> open(const fs::path& home) const {
    DeviceSession::Options options;
    options.source = device().string();
    options.home = home.string();
    auto session = DeviceSession::open(options);
    if (session) return std::move(session.value());
    ADD_FAILURE() << session.problem().sentence;
    return nullptr;
  }

  platform::fake::TemporaryFolder folder_;
};

std::int64_t numberOf(const sqlite::Connection& connection, const char* sql) {
  const sqlite::Statement statement(connection.get(), sql);
  return statement && statement.step() == SQLITE_ROW ? statement.integer(0) : -1;
}

TEST_F(DeviceSessionTest, ConnectsToTheStoreWithItsTextsOrWithout) {
  const auto session = open();
  const auto counters = std::make_shared<BodyCounters>();
  const auto plain = session->connect();
  const auto texts = session->connectWithTexts(counters);
  ASSERT_TRUE(plain && texts);
  const char* const kTextless = "SELECT count(*) FROM message WHERE text IS NULL";
  EXPECT_GT(numberOf(plain.value(), kTextless), numberOf(texts.value(), kTextless));
  EXPECT_GT(counters->decoded, 0U);
}

TEST_F(DeviceSessionTest, KnowsPeopleByTheirHandles) {
  const auto session = open();
  const auto maya = session->findPerson()("+15550100142");
  ASSERT_TRUE(maya.has_value());
  EXPECT_EQ(maya->name, "Maya Lindqvist");
  EXPECT_GT(maya->recordID, 0);
  EXPECT_FALSE(session->findPerson()("ann@example.com").has_value());
  EXPECT_EQ(session->contactsProblem(), "");
}

TEST_F(DeviceSessionTest, GivesTheLibraryTheDevicesPaths) {
  platform::Platform* before = platform::install(nullptr);
  platform::install(before);
  {
    const auto session = open();
    session->startLibrary();
    auto& files = platform::current().files;
    EXPECT_TRUE(files.exists(kMessagesStorePath));
    EXPECT_TRUE(files.exists(kAddressBookPath));
    EXPECT_TRUE(files.isDirectory("User/Library/SMS/Attachments"));
    EXPECT_FALSE(files.exists("/var/mobile/../../etc/passwd"));
    EXPECT_EQ(files.homeDirectory(), folder_.path() + "/home");
    for (const char* path : {kMessagesStorePath, kAddressBookPath}) {
      sqlite3* handle = nullptr;
      EXPECT_EQ(files.openDatabase(path, &handle), SQLITE_OK) << path;
      const sqlite::Connection connection(handle);
      EXPECT_FALSE(connection.execute("CREATE TABLE main.x(y)")) << path;
    }
  }
  EXPECT_EQ(platform::install(before), before);  // the one before is back
}

TEST_F(DeviceSessionTest, ShowsMessagesNoPictureOfItsHome) {
  const fs::path attachments = device() / "var/mobile/Library/SMS/Attachments";
  const auto isShown = [&](const fs::path& home, const fs::path& file) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << boatJpeg();
    const auto session = open(home);
    session->startLibrary();
    const auto& artwork = platform::current().artwork;
    EXPECT_EQ(artwork.imageWithContentsOfFile(file.string()), nullptr);
    return artwork.imageWithContentsOfFile("~/" + fs::relative(file, device() / "var/mobile").string()) != nullptr;
  };
  EXPECT_TRUE(isShown(folder_.path() + "/home", attachments / "own.jpg"));
  EXPECT_FALSE(isShown(folder_.path() + "/home", folder_.path() + "/home/a.jpg"));
  // A source in the home.
  EXPECT_TRUE(isShown(folder_.path(), attachments / "own.jpg"));
}

TEST_F(DeviceSessionTest, NotesWhatItReadsSoThatEvidenceIsOfNothingElse) {
  const fs::path root = folder_.path(), report = root / "report.txt";
  const std::string messages = "3d/3d0d7e5fb2ce288813306e4d4636395e047a3d28",
                    contacts = "31/31bb7ba8914766d4ba40d6dfb6113c8b614be442";
  const auto flipByte = [](const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    ASSERT_GT(bytes.size(), 40U) << path;
    bytes[40] = static_cast<char>(bytes[40] ^ 1);
    std::ofstream(path, std::ios::binary) << bytes;
  };
  for (const std::string name : {"plain", "encrypted"}) {
    test::BackupOptions options;
    if (name == "encrypted") options.password = "secret-Pa55";
    const auto problem = test::writeBackup(device(), root / name, options);
    ASSERT_FALSE(problem) << *problem;
  }
  const std::vector<std::pair<fs::path, std::vector<fs::path>>> sources = {
      {device(), {messageStorePath(device()), addressBookPath(device())}},
      {root / "plain", {messages, contacts, "Manifest.db", "Manifest.plist"}},
      {root / "encrypted", {messages, contacts, "Manifest.db", "Manifest.plist"}}};
  for (const auto& [source, files] : sources) {
    DeviceSession::Options options;
    options.source = source.string();
    options.home = (root / "home").string();
    options.access.password = [] { return std::optional<std::string>("secret-Pa55"); };
    options.access.digests = std::make_shared<ReadDigests>();
    const auto session = DeviceSession::open(options);
    ASSERT_TRUE(session) << session.problem().sentence;
    std::ofstream(report) << "a report";
    EvidenceRequest request;
    request.stores = {SourceStore::kMessages, SourceStore::kAddressBook};
    const auto isWritten = [&] {
      return static_cast<bool>(writeEvidence(session.value()->source(), {report.string()}, request));
    };
    EXPECT_TRUE(isWritten()) << source;
    for (const fs::path& file : files) {
      flipByte(source / file);
      EXPECT_FALSE(isWritten()) << source / file;
      flipByte(source / file);
    }
    EXPECT_TRUE(isWritten()) << source;
  }
}

TEST_F(DeviceSessionTest, NeverMakesAnAddressBookThatIsNotThere) {
  fs::remove(addressBookPath(device()));
  const auto session = open();
  session->startLibrary();
  sqlite3* handle = nullptr;
  EXPECT_EQ(platform::current().files.openDatabase(kAddressBookPath, &handle), SQLITE_OK);
  const sqlite::Connection connection(handle);
  EXPECT_FALSE(fs::exists(addressBookPath(device())));
  EXPECT_FALSE(platform::current().files.exists(kAddressBookPath));
  EXPECT_NE(session->contactsProblem().find("no address book"), std::string::npos);
}

TEST_F(DeviceSessionTest, WaitsForWhatTheLibraryIsDoingBeforeItTakesTheServicesAway) {
  auto session = open();
  session->startLibrary();
  std::binary_semaphore begun(0);
  std::atomic<bool> hasFiles = false;
  platform::current().dispatch.asyncOnGlobal([&] {
    begun.release();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    hasFiles = !platform::current().files.homeDirectory().empty();
  });
  begun.acquire();
  session.reset();
  EXPECT_TRUE(hasFiles);
}

TEST_F(DeviceSessionTest, NoticesThatTheStoreChanged) {
  const auto session = open();
  EXPECT_FALSE(session->checkUnchanged().has_value());
  std::ofstream(messageStorePath(device()), std::ios::app) << "more";
  EXPECT_TRUE(session->checkUnchanged().has_value());
}

}  // namespace
}  // namespace chatsum::device
