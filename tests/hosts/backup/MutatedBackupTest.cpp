// Backups with bytes changed at random: whatever they say then, nothing crashes, nothing outside is reached, and
// nothing stays behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "hosts/device/backup/BackupSource.h"
#include "tests/hosts/backup/BackupFixture.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::bytesOf;
using testing::putBytes;

class MutatedBackupTest : public testing::BackupTest {
 protected:
  /// Changes, cuts or repeats something.
  std::string mutated(std::string bytes) {
    const auto below = [&](std::size_t end) {
      return static_cast<std::size_t>(random_() % std::max<std::size_t>(end, 1));
    };
    const std::size_t changes = 1 + below(8);
    for (std::size_t i = 0; i < changes && !bytes.empty(); ++i) {
      constexpr std::string_view kBytes("\x00\xFF\x7F\x80\x01 /.", 8);
      bytes[below(bytes.size())] = below(2) == 0 ? kBytes[below(kBytes.size())] : static_cast<char>(below(256));
    }
    if (below(10) == 0) bytes.resize(below(bytes.size()));
    if (below(10) == 0) bytes.insert(below(bytes.size()), bytes.substr(below(bytes.size()), 200));
    return bytes;
  }

  [[nodiscard]] bool isInside(const std::string& path) const {
    return path.starts_with(backup().string() + "/") || path.starts_with(temporary().string() + "/");
  }

  void ask() const {
    const auto source = tryToOpen();
    if (!source) {
      EXPECT_FALSE(source.problem().sentence.empty());
      return;
    }
    for (const SourceStore store : {SourceStore::kMessages, SourceStore::kAddressBook, SourceStore::kOldCalls}) {
      const auto location = source.value()->store(store);
      EXPECT_TRUE(!location || !location.value() || isInside(location.value()->main));
      static_cast<void>(wordIn(*source.value(), store));  // a damaged store may hold any word, or none
    }
    const auto file = source.value()->fileOfMessage(std::string("~/") + testing::kPicturePath);
    EXPECT_TRUE(!file || isInside(*file));
    const auto original = source.value()->originalOfMessage(std::string("~/") + testing::kPicturePath);
    EXPECT_TRUE(!original || original->path.starts_with(backup().string() + "/"));
  }

  void mutateEach(const test::BackupOptions& options, const std::vector<std::string>& names) {
    constexpr int kTries = 150;
    writeBackup(options);
    for (const std::string& name : names) {
      const std::string bytes = bytesOf(backup() / name);
      ASSERT_FALSE(bytes.empty()) << name;
      for (int i = 0; i < kTries; ++i) {
        putBytes(backup() / name, mutated(bytes));
        ask();
      }
      putBytes(backup() / name, bytes);
    }
    EXPECT_TRUE(fs::is_empty(temporary()));
    EXPECT_EQ(wordIn(*open(), SourceStore::kMessages), "hello");
  }

  std::mt19937 random_{20250101};  // the same changes every time
};

TEST_F(MutatedBackupTest, SurvivesWhenItIsPlain) {
  mutateEach({}, {"Manifest.db", "Manifest.plist", "Info.plist", "3d/3d0d7e5fb2ce288813306e4d4636395e047a3d28"});
}

TEST_F(MutatedBackupTest, SurvivesWhenItIsXml) { mutateEach({.isXml = true}, {"Manifest.plist", "Status.plist"}); }

TEST_F(MutatedBackupTest, SurvivesWhenItIsOld) { mutateEach({.isFlat = true}, {"Manifest.mbdb"}); }

TEST_F(MutatedBackupTest, SurvivesWhenItIsEncrypted) {
  auto options = encrypted();
  options.iterations = options.firstIterations = 10;
  mutateEach(options, {"Manifest.plist", "Manifest.db", "3d/3d0d7e5fb2ce288813306e4d4636395e047a3d28"});
}

TEST_F(MutatedBackupTest, SurvivesWhenOnlyItsFilesAreEncrypted) {
  mutateEach({.password = testing::kPassword, .hasOldKeyBag = true, .iterations = 10}, {"Manifest.db"});
}

}  // namespace
}  // namespace chatsum::device
