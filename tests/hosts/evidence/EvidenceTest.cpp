#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "hosts/device/evidence/EvidenceCheck.h"
#include "hosts/device/evidence/EvidenceManifest.h"
#include "hosts/device/evidence/EvidenceWriting.h"
#include "platform/fake/TemporaryFolder.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void put(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

/// A source of a few files in a folder.
class FolderOfFiles final : public DeviceSource {
 public:
  explicit FolderOfFiles(const std::string& path)
      : DeviceSource({.kind = SourceKind::kBackup, .path = path, .deviceName = "Maya's phone", .date = Date{1.7e9}}) {}

  StoreResult<std::optional<StoreLocation>> store(SourceStore) override { return std::optional<StoreLocation>(); }
  std::string whyMissing(SourceStore) const override { return "none"; }
  std::vector<SourceFile> originals(SourceStore store) const override {
    if (store != SourceStore::kMessages) return {};
    return {{"HomeDomain-Library/SMS/sms.db", facts().path + "/3d/3d0d"}};
  }
  std::vector<SourceFile> absentees(SourceStore store) const override {
    if (store != SourceStore::kMessages) return {};
    return {{"HomeDomain-Library/SMS/sms.db-wal", facts().path + "/cd/cd47"}};
  }
  /// Where somebody looked for something else.
  std::vector<SourceFile> lists() const override { return absentees(SourceStore::kMessages); }
  std::optional<std::string> fileOfMessage(std::string_view) const override { return std::nullopt; }
  std::optional<SourceFile> originalOfMessage(std::string_view name) const override {
    if (!name.ends_with("photo.jpg")) return std::nullopt;
    return SourceFile{"MediaDomain-" + std::string(name), facts().path + "/ab/abcd"};
  }
};

class EvidenceTest : public ::testing::Test {
 protected:
  EvidenceTest() {
    put(source() / "3d/3d0d", "the store");
    put(source() / "ab/abcd", "the photo");
    put(report(), "the report");
  }
  [[nodiscard]] fs::path root() const { return folder_.path(); }
  [[nodiscard]] fs::path source() const { return root() / "source"; }
  [[nodiscard]] fs::path report() const { return root() / "reports/Maya.txt"; }
  [[nodiscard]] fs::path manifest() const { return root() / "reports/Maya.txt.evidence.json"; }
  void write() const {
    EvidenceRequest request;
    request.programVersion = "1.2.3";
    request.created = {1'700'000'000};
    request.timeZone = "Europe/Berlin";
    request.stores = {SourceStore::kMessages, SourceStore::kAddressBook};
    request.attachments = {"~/photo.jpg", "~/gone.jpg", "~/photo.jpg"};
    request.options = {{"format", "text"}};
    request.counts = {{"written", 12}};
    const FolderOfFiles files(source().string());
    const auto written = writeEvidence(files, {report().string()}, request);
    ASSERT_TRUE(written) << written.problem().sentence;
    EXPECT_EQ(written.value().at(0).path, manifest().string());
    EXPECT_EQ(written.value().at(0).sha256, digestOf(bytesOf(manifest())).sha256);
    EXPECT_EQ(written.value().at(0).missingAttachments, 1U);
  }
  [[nodiscard]] EvidenceFindings check(const EvidenceCheckOptions& options = {}) const {
    auto findings = checkEvidence(manifest().string(), options);
    EXPECT_TRUE(findings) << findings.problem().sentence;
    return findings ? findings.value() : EvidenceFindings{};
  }
  [[nodiscard]] std::string problem(const EvidenceCheckOptions& options = {}) const {
    const auto findings = checkEvidence(manifest().string(), options);
    return findings ? "" : findings.problem().sentence;
  }

  platform::fake::TemporaryFolder folder_;
};

TEST_F(EvidenceTest, HoldsWhileNothingChanged) {
  write();
  const EvidenceFindings findings = check();
  EXPECT_TRUE(findings.holds());
  EXPECT_EQ(findings.checkedStores, 1U);
  EXPECT_EQ(findings.checkedAttachments, 1U);
  EXPECT_EQ(findings.evidence.programVersion, "1.2.3");
  EXPECT_EQ(findings.evidence.created, Date{1'700'000'000});
  EXPECT_EQ(findings.evidence.missingAttachments, std::vector<std::string>{"~/gone.jpg"});
  EXPECT_EQ(findings.evidence.counts["written"], 12);
}

TEST_F(EvidenceTest, IsTheSameBytesForTheSameThings) {
  write();
  const std::string first = bytesOf(manifest());
  write();
  EXPECT_EQ(bytesOf(manifest()), first);
  EXPECT_NE(first.find("\"created\": \"2023-11-14T22:13:20Z\""), std::string::npos) << first;
  EXPECT_NE(first.find("\"file\": \"3d/3d0d\""), std::string::npos) << first;
  EXPECT_NE(first.find("\"device\": \"Maya's phone\""), std::string::npos) << first;
}

TEST_F(EvidenceTest, TellsEveryChangedMissingOrLongerFile) {
  write();
  put(report(), "the repord");
  put(source() / "3d/3d0d", "the store and more");
  fs::remove(source() / "ab/abcd");
  const EvidenceFindings findings = check();
  ASSERT_EQ(findings.differences.size(), 3U);
  EXPECT_NE(findings.differences[0].find("SHA-256"), std::string::npos) << findings.differences[0];
  EXPECT_NE(findings.differences[1].find("has 18 bytes and had 9"), std::string::npos) << findings.differences[1];
  EXPECT_NE(findings.differences[2].find("There is no file"), std::string::npos) << findings.differences[2];
}

TEST_F(EvidenceTest, FollowsASourceThatMoved) {
  write();
  fs::rename(source(), root() / "elsewhere");
  EXPECT_NE(problem().find("--source"), std::string::npos) << problem();
  EXPECT_TRUE(check({.source = (root() / "elsewhere").string()}).holds());
  EXPECT_TRUE(check({.reportOnly = true}).holds());
}

TEST_F(EvidenceTest, IsNotWrittenWhenTheSourceIsNotWhatWasRead) {
  EvidenceRequest request;
  request.stores = {SourceStore::kMessages};
  const std::string store = (source() / "3d/3d0d").string(), wal = (source() / "cd/cd47").string();
  struct Case {
    const char* what;
    std::function<void(ReadDigests&)> happen;
    bool isWritten;
  };
  const FileDigest good = digestOf("the store");
  const std::vector<Case> cases = {
      {"nothing", [&](ReadDigests& read) { read.note(store, good), read.note(wal, std::nullopt); }, true},
      {"changed", [&](ReadDigests& read) { read.note(store, digestOf("another store")); }, false},
      {"read twice, differently",
       [&](ReadDigests& read) { read.note(store, good), read.note(store, digestOf("meanwhile")); }, false},
      {"a file was added",
       [&](ReadDigests& read) {
         read.note(store, good), read.note(wal, std::nullopt);
         put(wal, "rows");
       },
       false},
      {"a file is gone",
       [&](ReadDigests& read) {
         read.note(store, good), read.note(wal, digestOf("rows"));
         fs::remove(wal);
       },
       false},
      {"the store is gone",
       [&](ReadDigests& read) {
         read.note(store, good);
         fs::remove(store);
       },
       false},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    put(manifest(), "an older one");
    FolderOfFiles files(source().string());
    files.keepDigests(std::make_shared<ReadDigests>());
    each.happen(*files.digests());
    const auto written = writeEvidence(files, {report().string()}, request);
    EXPECT_EQ(static_cast<bool>(written), each.isWritten);
    EXPECT_EQ(fs::exists(manifest()), each.isWritten);  // the older one would be wrong
    if (!written) {
      EXPECT_NE(written.problem().sentence.find("changed after it was read"), std::string::npos);
    }
  }
}

TEST_F(EvidenceTest, FindsWhatWasAddedWhereNothingWas) {
  write();
  EXPECT_EQ(check().evidence.absent.size(), 1U);
  put(source() / "cd/cd47", "rows");
  const EvidenceFindings findings = check();
  ASSERT_EQ(findings.differences.size(), 1U);
  EXPECT_NE(findings.differences[0].find("was added"), std::string::npos) << findings.differences[0];
}

TEST_F(EvidenceTest, RefusesWhatIsNoManifest) {
  EXPECT_NE(problem().find("cannot be read"), std::string::npos);
  write();
  const std::string good = bytesOf(manifest());
  const std::map<std::string, std::string> damages = {{"chatsum evidence", "chatsum reports"},
                                                      {"\"stores\"", "\"shops\""},
                                                      {"\"file\": \"3d/3d0d\"", "\"file\": \"../../3d0d\""},
                                                      {"\"file\": \"Maya.txt\"", "\"file\": \"../Maya.txt\""},
                                                      {"\"sha256\": \"", "\"sha256\": \"x"},
                                                      {"\"size\": ", "\"size\": -"},
                                                      {"2023-11-14T22:13:20Z", "soon"},
                                                      {"\"version\": 2", "\"version\": []"}};
  for (const auto& [from, to] : damages) {
    std::string bad = good;
    const auto at = bad.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    bad.replace(at, from.size(), to);
    put(manifest(), bad);
    EXPECT_NE(problem().find("no evidence manifest"), std::string::npos) << to << ": " << problem();
  }
  std::string newer = good;
  newer.replace(newer.find("\"version\": 2"), 12, "\"version\": 3");
  put(manifest(), newer);
  EXPECT_NE(problem().find("newer chatsum"), std::string::npos);
  for (std::size_t length = 0; length < good.size(); length += 7) {
    put(manifest(), good.substr(0, length));
    EXPECT_NE(problem(), "") << length;
  }
}

TEST(EvidenceName, StandsBesideTheReport) {
  EXPECT_EQ(evidenceNameFor("Maya.pdf"), "Maya.pdf.evidence.json");
  EXPECT_TRUE(isEvidenceName("Maya.pdf.evidence.json"));
  EXPECT_FALSE(isEvidenceName(".evidence.json"));
  EXPECT_FALSE(isEvidenceName("evidence.json"));
}

}  // namespace
}  // namespace chatsum::device
