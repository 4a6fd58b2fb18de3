#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/BackupWriter.h"
#include "tests/support/MacBookWriter.h"
#include "tests/support/OrdinaryUser.h"

namespace chatsum::cli::testing {
namespace {

namespace fs = std::filesystem;

class EvidenceTest : public ProgramTest {
 protected:
  EvidenceTest() {
    environment["SOURCE_DATE_EPOCH"] = "1700000000";
    writeSample();
  }
  /// Writes a report with evidence and answers the program's outcome.
  Outcome write(const std::string& format, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"report", "Sunday Hikers", "--format", format, "--replace", "--evidence"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments);
  }
  [[nodiscard]] fs::path manifest(const std::string& extension) const {
    return reports() / ("Sunday Hikers." + extension + ".evidence.json");
  }
  [[nodiscard]] nlohmann::json readManifest(const std::string& extension) const {
    return nlohmann::json::parse(bytesOf(manifest(extension)), nullptr, false);
  }
  [[nodiscard]] Outcome verify(const std::string& extension, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"verify", manifest(extension).string()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runPlain(arguments);
  }
  /// Everything of the test belongs to the user that an OrdinaryUser is.
  void giveAllToOrdinaryUser() const {
    if (::getuid() != 0) return;
    ASSERT_EQ(::lchown(root().c_str(), test::OrdinaryUser::kNobody, static_cast<gid_t>(-1)), 0);
    for (const auto& entry : fs::recursive_directory_iterator(root())) {
      ASSERT_EQ(::lchown(entry.path().c_str(), test::OrdinaryUser::kNobody, static_cast<gid_t>(-1)), 0);
    }
  }
  static void flipByte(const fs::path& path, std::size_t at) {
    std::string bytes = bytesOf(path);
    ASSERT_LT(at, bytes.size());
    bytes[at] = static_cast<char>(bytes[at] ^ 1);
    putBytes(path, bytes);
  }
};

TEST_F(EvidenceTest, SaysWhatAReportWasMadeOf) {
  const Outcome made = write("text");
  ASSERT_EQ(made.code, 0) << made.err;
  EXPECT_NE(made.err.find(manifest("txt").string()), std::string::npos) << made.err;
  const nlohmann::json evidence = readManifest("txt");
  ASSERT_TRUE(evidence.is_object());
  EXPECT_EQ(evidence["created"], "2023-11-14T22:13:20Z");
  EXPECT_EQ(evidence["timeZone"], "America/New_York");
  EXPECT_EQ(evidence["report"]["file"], "Sunday Hikers.txt");
  EXPECT_EQ(evidence["report"]["size"], fs::file_size(reports() / "Sunday Hikers.txt"));
  EXPECT_EQ(evidence["source"]["kind"], "device");
  EXPECT_EQ(evidence["options"]["format"], "text");
  EXPECT_EQ(evidence["options"]["sort"], "asc");
  EXPECT_GT(evidence["counts"]["written"].get<int>(), 0);
  std::vector<std::string> stores;
  for (const auto& store : evidence["stores"]) stores.push_back(store["file"]);
  EXPECT_NE(std::find(stores.begin(), stores.end(), "var/mobile/Library/SMS/sms.db"), stores.end());
  EXPECT_NE(std::find(stores.begin(), stores.end(), "var/mobile/Library/AddressBook/AddressBook.sqlitedb"),
            stores.end());
  EXPECT_FALSE(evidence["attachments"].empty());
}

TEST_F(EvidenceTest, HoldsUntilOneByteChanges) {
  ASSERT_EQ(write("pdf").code, 0);
  const Outcome good = verify("pdf");
  EXPECT_EQ(good.code, 0) << good.err;
  EXPECT_NE(good.out.find("are as they were"), std::string::npos) << good.out;
  const std::string attachment = readManifest("pdf")["attachments"][0]["file"];
  const std::vector<fs::path> files = {reports() / "Sunday Hikers.pdf", storePath(), addressBookPath(),
                                       device() / attachment};
  for (const fs::path& file : files) {
    flipByte(file, 40);
    const Outcome bad = verify("pdf");
    EXPECT_EQ(bad.code, 1) << file;
    EXPECT_NE(bad.err.find("'" + file.string() + "' was changed"), std::string::npos) << bad.err;
    EXPECT_NE(bad.err.find("does not hold"), std::string::npos) << bad.err;
    flipByte(file, 40);
    EXPECT_EQ(verify("pdf").code, 0) << file;
  }
}

TEST_F(EvidenceTest, FollowsTheSourceAndDoesWithoutIt) {
  ASSERT_EQ(write("csv").code, 0);
  fs::rename(device(), root() / "moved");
  const Outcome missing = verify("csv");
  EXPECT_EQ(missing.code, 1);
  EXPECT_NE(missing.err.find("--source"), std::string::npos) << missing.err;
  EXPECT_EQ(verify("csv", {"--source", (root() / "moved").string()}).code, 0);
  EXPECT_EQ(verify("csv", {"--report-only"}).code, 0);
  EXPECT_EQ(runPlain({"verify", (root() / "none.json").string()}).code, 1);
  EXPECT_EQ(runPlain({"verify"}).code, 2);
}

TEST_F(EvidenceTest, SeesAFileThatWasAddedBesideAStore) {
  ASSERT_EQ(write("text").code, 0);
  for (const fs::path& store : {storePath(), addressBookPath()}) {
    for (const char* const suffix : {"-wal", "-shm", "-journal"}) {
      const fs::path added = store.string() + suffix;
      ASSERT_FALSE(fs::exists(added));
      putBytes(added, "rows");
      const Outcome bad = verify("txt");
      EXPECT_EQ(bad.code, 1) << added;
      EXPECT_NE(bad.err.find("'" + added.string() + "' was added"), std::string::npos) << bad.err;
      fs::remove(added);
      fs::create_symlink("nowhere", added);
      EXPECT_EQ(verify("txt").code, 1) << added;
      fs::remove(added);
      EXPECT_EQ(verify("txt").code, 0);
    }
  }
}

TEST_F(EvidenceTest, SeesContactsThatWereAdded) {
  const std::string book = bytesOf(addressBookPath());
  fs::remove(addressBookPath());
  ASSERT_EQ(write("text").code, 0);
  EXPECT_EQ(verify("txt").code, 0);
  putBytes(addressBookPath(), book);
  EXPECT_EQ(verify("txt").code, 1);
}

TEST_F(EvidenceTest, SeesADeviceThatWasPutBeforeTheOneThatWasRead) {
  ASSERT_EQ(write("text").code, 0);
  const fs::path added = device() / "private/var/mobile/Library/SMS/sms.db";
  ASSERT_FALSE(fs::exists(added));
  fs::create_directories(added.parent_path());
  EXPECT_EQ(verify("txt").code, 0);
  fs::copy_file(storePath(), added);
  const Outcome bad = verify("txt");
  EXPECT_EQ(bad.code, 1);
  EXPECT_NE(bad.err.find("'" + added.string() + "' was added"), std::string::npos) << bad.err;
}

TEST_F(EvidenceTest, HoldsTheStoreAndEveryBookOfAMac) {
  fs::remove_all(device());
  const fs::path store = device() / "Library/Messages/chat.db";
  testing::SmallStore messages(store, device::Generation::ios18);
  messages.message(messages.chat("+15550100142"), "Tea at four?");
  messages.finish();
  const std::vector<fs::path> books = {test::macBookPath(device()), test::macBookPath(device(), "5D1A"),
                                       test::macBookPath(device(), "77B0")};
  for (const fs::path& book : books) {
    test::MacBookWriter writer(book);
    if (book == books[1]) writer.add({.first = "Maya", .last = "Lindqvist", .phones = {{"", "(555) 010-0142"}}});
    const auto problem = writer.finish();
    ASSERT_FALSE(problem) << *problem;
  }
  const Outcome made = run({"report", "Maya Lindqvist", "--name", "Sunday Hikers", "--format", "text", "--evidence"});
  ASSERT_EQ(made.code, 0) << made.err;
  EXPECT_EQ(readManifest("txt")["source"]["kind"], "mac");
  EXPECT_EQ(verify("txt").code, 0) << verify("txt").err;
  for (const fs::path& file : {store, books[0], books[1], books[2]}) {
    flipByte(file, 40);
    const Outcome bad = verify("txt");
    EXPECT_EQ(bad.code, 1) << file;
    EXPECT_NE(bad.err.find("'" + file.string() + "' was changed"), std::string::npos) << bad.err;
    flipByte(file, 40);
    const fs::path added = file.string() + "-wal";
    putBytes(added, "rows");
    EXPECT_EQ(verify("txt").code, 1) << added;
    fs::remove(added);
  }
  EXPECT_EQ(verify("txt").code, 0);
}

TEST_F(EvidenceTest, HoldsTheListsAndContactsOfABackup) {
  putBytes(root() / "password", "secret-Pa55\n");
  for (const bool isEncrypted : {false, true}) {
    SCOPED_TRACE(isEncrypted);
    const fs::path backup = root() / (isEncrypted ? "encrypted" : "plain");
    test::BackupOptions options;
    if (isEncrypted) options.password = "secret-Pa55";
    const auto problem = test::writeBackup(device(), backup, options);
    ASSERT_FALSE(problem) << *problem;
    std::vector<std::string> arguments = {"--source", backup.string(), "--home", home().string()};
    if (isEncrypted) arguments.insert(arguments.end(), {"--password-file", (root() / "password").string()});
    arguments.insert(arguments.end(), {"report", "Sunday Hikers", "--format", "text", "--replace", "--evidence"});
    const Outcome made = runPlain(arguments);
    ASSERT_EQ(made.code, 0) << made.err;
    EXPECT_EQ(verify("txt").code, 0) << verify("txt").err;
    const nlohmann::json evidence = readManifest("txt");
    EXPECT_EQ(evidence["source"]["encrypted"], isEncrypted);
    ASSERT_FALSE(evidence["attachments"].empty());
    for (const std::string& file :
         {std::string("Info.plist"), std::string("Manifest.plist"), std::string("Status.plist"),
          std::string("Manifest.db"), std::string("3d/3d0d7e5fb2ce288813306e4d4636395e047a3d28"),
          std::string("31/31bb7ba8914766d4ba40d6dfb6113c8b614be442"),
          evidence["attachments"][0]["file"].get<std::string>()}) {
      flipByte(backup / file, 40);
      const Outcome bad = verify("txt");
      EXPECT_EQ(bad.code, 1) << file;
      EXPECT_NE(bad.err.find((backup / file).string()), std::string::npos) << bad.err;
      flipByte(backup / file, 40);
    }
    for (const char* const file :
         {"Manifest.db-wal", "Manifest.db-journal", "Manifest.mbdb", "cd/cd47480f213dba9bc38ee792775d17e3f5a73a59",
          "cd47480f213dba9bc38ee792775d17e3f5a73a59"}) {
      putBytes(backup / file, "rows");
      EXPECT_EQ(verify("txt").code, 1) << file;
      fs::remove(backup / file);
    }
    EXPECT_EQ(verify("txt").code, 0);
  }
}

TEST_F(EvidenceTest, RefusesAManifestWithoutStoresOrWithPlacesElsewhere) {
  ASSERT_EQ(write("text").code, 0);
  const nlohmann::json good = readManifest("txt");
  nlohmann::json bad = good;
  bad["stores"] = nlohmann::json::array();
  putBytes(manifest("txt"), bad.dump());
  EXPECT_EQ(verify("txt").code, 1);
  EXPECT_NE(verify("txt").err.find("it names no file of a store"), std::string::npos) << verify("txt").err;
  const fs::path copy = root() / "copy of the store";
  fs::copy_file(storePath(), copy);
  for (const char* const list : {"stores", "attachments", "absent"}) {
    bad = good;
    bad[list][0]["file"] = copy.string();
    putBytes(manifest("txt"), bad.dump());
    EXPECT_EQ(verify("txt").code, 1) << list;
    EXPECT_NE(verify("txt").err.find("its 'file' is missing or damaged"), std::string::npos) << verify("txt").err;
  }
}

TEST_F(EvidenceTest, IsKnownByItsOwnDigest) {
  const Outcome made = write("text");
  ASSERT_EQ(made.code, 0);
  const std::string mark = "(SHA-256 ";
  const auto at = made.err.find(mark);
  ASSERT_NE(at, std::string::npos) << made.err;
  std::string digest = made.err.substr(at + mark.size(), 64);
  EXPECT_NE(verify("txt").out.find(digest), std::string::npos) << verify("txt").out;
  EXPECT_EQ(verify("txt", {"--expect", digest}).code, 0);
  std::string capitals = digest;
  for (char& digit : capitals) digit = static_cast<char>(std::toupper(digit));
  EXPECT_EQ(verify("txt", {"--expect", capitals}).code, 0);
  for (const std::string& none : {std::string(), std::string("abc"), digest + "0", std::string(64, 'g')}) {
    EXPECT_EQ(verify("txt", {"--expect", none}).code, 2) << none;
  }
  // Whoever changes report and manifest together is found out by the digest alone.
  nlohmann::json forged = readManifest("txt");
  forged["counts"]["written"] = 1;
  putBytes(manifest("txt"), forged.dump());
  EXPECT_EQ(verify("txt").code, 0);
  const Outcome bad = verify("txt", {"--expect", digest});
  EXPECT_EQ(bad.code, 1);
  EXPECT_NE(bad.err.find("should be " + digest), std::string::npos) << bad.err;
}

TEST_F(EvidenceTest, StatesAttachmentsThatAreNoFiles) {
  ASSERT_EQ(write("text").code, 0);
  const nlohmann::json before = readManifest("txt");
  ASSERT_GE(before["attachments"].size(), 2U);
  const fs::path folder = device() / before["attachments"][0]["file"].get<std::string>();
  const fs::path pipe = device() / before["attachments"][1]["file"].get<std::string>();
  fs::remove(folder);
  fs::create_directory(folder);
  fs::remove(pipe);
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const Outcome made = write("text");
  ASSERT_EQ(made.code, 0) << made.err;
  EXPECT_NE(made.err.find("2 attachments could not be digested"), std::string::npos) << made.err;
  const nlohmann::json evidence = readManifest("txt");
  EXPECT_EQ(evidence["attachments"].size() + 2, before["attachments"].size());
  ASSERT_EQ(evidence["unreadAttachments"].size(), 2U);
  EXPECT_EQ(evidence["unreadAttachments"][0]["why"], "folder");
  EXPECT_EQ(evidence["unreadAttachments"][1]["why"], "special");
  const Outcome good = verify("txt");
  EXPECT_EQ(good.code, 0) << good.err;
  EXPECT_NE(good.err.find("2 attachments could not be read"), std::string::npos) << good.err;
  fs::remove(folder);
  putBytes(folder, "a picture");
  EXPECT_EQ(verify("txt").code, 1);
  fs::remove(folder);
  EXPECT_EQ(verify("txt").code, 1);
}

TEST_F(EvidenceTest, StatesAnAttachmentThatMayNotBeRead) {
  ASSERT_EQ(write("text").code, 0);
  const nlohmann::json before = readManifest("txt");
  const std::string file = before["attachments"][0]["file"];
  giveAllToOrdinaryUser();
  fs::permissions(device() / file, fs::perms::none);
  Outcome made, good;
  {
    const test::OrdinaryUser user;
    made = write("text");
    good = verify("txt");
  }
  ASSERT_EQ(made.code, 0) << made.err;
  EXPECT_NE(made.err.find("1 attachment could not be digested"), std::string::npos) << made.err;
  const nlohmann::json evidence = readManifest("txt");
  EXPECT_EQ(evidence["attachments"].size() + 1, before["attachments"].size());
  ASSERT_EQ(evidence["unreadAttachments"].size(), 1U);
  EXPECT_EQ(evidence["unreadAttachments"][0]["file"], file);
  EXPECT_EQ(evidence["unreadAttachments"][0]["why"], "unreadable");
  EXPECT_EQ(good.code, 0) << good.err;
  EXPECT_NE(good.err.find("1 attachment could not be read"), std::string::npos) << good.err;
  fs::remove(device() / file);
  EXPECT_EQ(verify("txt").code, 1);
}

TEST_F(EvidenceTest, SaysWhatOlderManifestsDoNotState) {
  ASSERT_EQ(write("text").code, 0);
  nlohmann::json older = readManifest("txt");
  EXPECT_EQ(older["version"], 2);
  older["version"] = 1;
  older.erase("absent");
  older.erase("unreadAttachments");
  putBytes(manifest("txt"), older.dump());
  putBytes(storePath().string() + "-wal", "rows");
  const Outcome checked = verify("txt");
  EXPECT_EQ(checked.code, 0) << checked.err;
  EXPECT_NE(checked.err.find("added to the source since then goes unnoticed"), std::string::npos) << checked.err;
  flipByte(storePath(), 40);
  EXPECT_EQ(verify("txt").code, 1);
}

TEST_F(EvidenceTest, TheSameSourceAndOptionsGiveTheSameBytes) {
  for (const auto& [format, extension] :
       std::vector<std::pair<std::string, std::string>>{{"text", "txt"}, {"csv", "csv"}, {"pdf", "pdf"}}) {
    ASSERT_EQ(write(format).code, 0);
    const std::string report = bytesOf(reports() / ("Sunday Hikers." + extension));
    const std::string evidence = bytesOf(manifest(extension));
    ASSERT_EQ(write(format).code, 0);
    EXPECT_EQ(bytesOf(reports() / ("Sunday Hikers." + extension)), report) << format;
    EXPECT_EQ(bytesOf(manifest(extension)), evidence) << format;
  }
}

TEST_F(EvidenceTest, GoesWithADeliveredCopy) {
  const fs::path copy = root() / "for the court.txt";
  ASSERT_EQ(write("text", {"--output", copy.string()}).code, 0);
  EXPECT_TRUE(fs::exists(copy));
  const Outcome checked = runPlain({"verify", copy.string() + ".evidence.json"});
  EXPECT_EQ(checked.code, 0) << checked.err;
}

TEST_F(EvidenceTest, GoesWhenItsReportGoesAndIsNoReportItself) {
  ASSERT_EQ(write("text").code, 0);
  EXPECT_EQ(countOf(run({"reports"}).out, "evidence"), 0U);
  ASSERT_EQ(run({"reports", "delete", "Sunday Hikers.txt", "--yes"}).code, 0);
  EXPECT_FALSE(fs::exists(manifest("txt")));
}

TEST_F(EvidenceTest, GoesWithTheReportThatIsReplaced) {
  const fs::path copy = root() / "copy.txt", manifestOfCopy = root() / "copy.txt.evidence.json";
  ASSERT_EQ(write("text", {"--output", copy.string()}).code, 0);
  ASSERT_TRUE(fs::exists(manifest("txt")));
  ASSERT_TRUE(fs::exists(manifestOfCopy));
  const std::vector<std::string> anew = {"report", "Sunday Hikers", "--format", "text", "--output", copy.string()};
  ASSERT_EQ(run(anew).code, 1);  // both stand there already
  EXPECT_TRUE(fs::exists(manifest("txt")));
  EXPECT_TRUE(fs::exists(manifestOfCopy));
  std::vector<std::string> replacing = anew;
  replacing.emplace_back("--replace");
  ASSERT_EQ(run(replacing).code, 0);
  EXPECT_TRUE(fs::exists(reports() / "Sunday Hikers.txt"));
  EXPECT_FALSE(fs::exists(manifest("txt")));
  EXPECT_FALSE(fs::exists(manifestOfCopy));
}

TEST_F(EvidenceTest, RefusesATimeThatIsNone) {
  environment["SOURCE_DATE_EPOCH"] = "yesterday";
  expectFailure({"report", "Sunday Hikers"}, "SOURCE_DATE_EPOCH");
}

TEST_F(EvidenceTest, NamesTheZoneThatTimesAreWrittenIn) {
  ASSERT_EQ(write("text", {"--timezone", "Asia/Tokyo"}).code, 0);
  EXPECT_EQ(readManifest("txt")["timeZone"], "Asia/Tokyo");
  const std::string tokyo = bytesOf(reports() / "Sunday Hikers.txt");
  ASSERT_EQ(write("text").code, 0);
  EXPECT_NE(bytesOf(reports() / "Sunday Hikers.txt"), tokyo);
  const Outcome wrong = write("text", {"--timezone", "Mars/Olympus"});
  EXPECT_EQ(wrong.code, 2);
  EXPECT_NE(wrong.err.find("no time zone"), std::string::npos) << wrong.err;
}

}  // namespace
}  // namespace chatsum::cli::testing
