#include "hosts/device/backup/FileDecryption.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tests/hosts/backup/BackupFixture.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::bytesOf;
using testing::keyOf;
using testing::putBytes;

class FileDecryptionTest : public ::testing::Test {
 protected:
  DecryptedFile decrypt(const std::string& stored, std::optional<std::uint64_t> size,
                        StoredContent content = StoredContent::kAnything) {
    putBytes(from(), stored);
    fs::remove(to());
    return decryptFile(from(), to(), keyOf(key()), size, content);
  }
  [[nodiscard]] static std::string key() { return test::countingKey(0xE0); }
  [[nodiscard]] std::string from() const { return folder_.path() + "/stored"; }
  [[nodiscard]] std::string to() const { return folder_.path() + "/plain"; }
  [[nodiscard]] std::string plain() const { return bytesOf(to()); }

  platform::fake::TemporaryFolder folder_;
};

TEST_F(FileDecryptionTest, FindsTheKnownAnswer) {
  const DecryptedFile result = decrypt(testing::bytesOfHex(testing::kEncryptedFile), 18);
  EXPECT_EQ(result.error, 0);
  EXPECT_EQ(result.length, 18U);
  EXPECT_FALSE(result.isShort || result.isBroken || result.isUnpadded || result.startsOtherwise);
  EXPECT_EQ(plain(), testing::kFileText);
  struct stat status {};
  ASSERT_EQ(::stat(to().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(FileDecryptionTest, DecryptsEveryLengthAroundBlocksAndChunks) {
  constexpr std::size_t kChunk = std::size_t{1} << 20;
  for (const std::size_t length : {std::size_t{0}, std::size_t{1}, std::size_t{15}, std::size_t{16}, std::size_t{17},
                                   std::size_t{32}, kChunk - 16, kChunk - 1, kChunk, kChunk + 1, 3 * kChunk + 5}) {
    std::string content;
    for (std::size_t i = 0; i < length; ++i) content += static_cast<char>(i * 7 + i / 251);
    for (const bool hasSize : {true, false}) {
      const DecryptedFile result =
          decrypt(test::encrypted(content, key()), hasSize ? std::optional<std::uint64_t>(length) : std::nullopt);
      EXPECT_EQ(result.error, 0);
      EXPECT_FALSE(result.isShort || result.isBroken || result.isUnpadded);
      EXPECT_EQ(result.length, length);
      EXPECT_TRUE(plain() == content) << length;
    }
  }
}

TEST_F(FileDecryptionTest, CutsToTheSizeWithoutPadding) {
  const std::string content = "0123456789abcdefghijklmnopqrstuv";
  const DecryptedFile cut = decrypt(test::encrypted(content, key(), false), 20);
  EXPECT_TRUE(cut.isUnpadded);
  EXPECT_TRUE(cut.isCutToSize);
  EXPECT_FALSE(cut.isShort);
  EXPECT_EQ(plain(), content.substr(0, 20));
  const DecryptedFile whole = decrypt(test::encrypted(content, key(), false), std::nullopt);
  EXPECT_TRUE(whole.isUnpadded);
  EXPECT_FALSE(whole.isCutToSize);
  EXPECT_EQ(plain(), content);
  EXPECT_FALSE(decrypt(test::encrypted(content, key(), false), content.size()).isCutToSize);
}

TEST_F(FileDecryptionTest, BelievesThePaddingWhateverTheSizeSays) {
  const std::string content(100, 'x');
  for (const std::uint64_t size : {0U, 1U, 40U, 99U, 101U, 112U, 5000U}) {
    for (const StoredContent kind : {StoredContent::kAnything, StoredContent::kWal, StoredContent::kJournal}) {
      const DecryptedFile result = decrypt(test::encrypted(content, key()), size, kind);
      EXPECT_FALSE(result.isShort || result.isUnpadded || result.isBelowSize || result.isCutToSize) << size;
      EXPECT_EQ(plain(), content) << size;
    }
  }
}

TEST_F(FileDecryptionTest, CutsNoPartOfAStoreToItsSize) {
  const std::string content = "0123456789abcdefghijklmnopqrstuv";
  for (const StoredContent kind : {StoredContent::kWal, StoredContent::kJournal}) {
    EXPECT_TRUE(decrypt(test::encrypted(content, key(), false), 20, kind).isUnpadded);
    EXPECT_EQ(plain(), content);
  }
  EXPECT_TRUE(decrypt(test::encrypted(content, key(), false), 0).isUnpadded);
  EXPECT_EQ(plain(), content) << "a size of 0 says nothing";
}

TEST_F(FileDecryptionTest, KeepsTheEndOfADatabaseThatLooksLikePadding) {
  std::string database = std::string(kDatabaseStart) + std::string(1007, 'x') + '\x01';
  database.replace(16, 2, std::string("\x02\x00", 2));          // pages of 512 bytes
  database.replace(24, 8, std::string("\0\0\0\7\0\0\0\2", 8));  // changed 7 times, 2 pages
  database.replace(92, 4, std::string("\0\0\0\7", 4));
  const DecryptedFile result = decrypt(test::encrypted(database, key(), false), 1024, StoredContent::kDatabase);
  EXPECT_TRUE(result.isUnpadded);
  EXPECT_TRUE(plain() == database) << plain().size();
  EXPECT_FALSE(decrypt(test::encrypted(database, key()), 7, StoredContent::kDatabase).isUnpadded);
  EXPECT_TRUE(plain() == database) << plain().size();
}

TEST_F(FileDecryptionTest, KnowsByItsPagesWhereAWalEnds) {
  std::string wal("\x37\x7F\x06\x82\x00\x2D\xE2\x18\x00\x00\x02\x00", 12);  // pages of 512 bytes
  wal.resize(32 + 2 * (24 + 512), 'x');
  wal.back() = '\x01';
  ASSERT_EQ(wal.size() % 16, 0U);
  EXPECT_TRUE(decrypt(test::encrypted(wal, key(), false), wal.size(), StoredContent::kWal).isUnpadded);
  EXPECT_TRUE(plain() == wal) << plain().size();
  const DecryptedFile doubtful = decrypt(test::encrypted(wal, key(), false), wal.size() + 536, StoredContent::kWal);
  EXPECT_TRUE(doubtful.isBelowSize);
  EXPECT_FALSE(doubtful.isShort) << "it ends with a whole page";
  const std::string cut = test::encrypted(wal, key()).substr(0, 800);
  EXPECT_TRUE(decrypt(cut, wal.size(), StoredContent::kWal).isShort);
}

TEST_F(FileDecryptionTest, MakesAnEmptyFileOfSizeZero) {
  const DecryptedFile result = decrypt(test::encrypted("", key()), 0);
  EXPECT_EQ(result.error, 0);
  EXPECT_EQ(plain(), "");
  EXPECT_TRUE(fs::exists(to()));
  EXPECT_EQ(decrypt("", 0).error, 0);  // nothing stored at all
  EXPECT_TRUE(fs::exists(to()));
}

TEST_F(FileDecryptionTest, SaysWhenAFileIsShorterThanListed) {
  const std::string stored = test::encrypted(std::string(100, 'x'), key());
  const DecryptedFile cut = decrypt(stored.substr(0, 64), 100);
  EXPECT_TRUE(cut.isShort);
  EXPECT_FALSE(cut.isBroken);
  EXPECT_EQ(plain(), std::string(64, 'x'));
  const DecryptedFile broken = decrypt(stored.substr(0, 70), 100);
  EXPECT_TRUE(broken.isShort);
  EXPECT_TRUE(broken.isBroken);
  EXPECT_EQ(plain(), std::string(64, 'x'));
  const DecryptedFile nothing = decrypt("", 100);
  EXPECT_TRUE(nothing.isShort);
  EXPECT_EQ(nothing.error, 0);
}

TEST_F(FileDecryptionTest, LeavesOutWhatFollowsTheLastBlock) {
  const DecryptedFile result = decrypt(test::encrypted(std::string(100, 'x'), key()) + "tail", 100);
  EXPECT_TRUE(result.isBroken);
  EXPECT_FALSE(result.isShort);
  EXPECT_EQ(plain(), std::string(100, 'x'));
}

TEST_F(FileDecryptionTest, WritesNothingThatStartsOtherwise) {
  const std::string stored = test::encrypted(std::string(kDatabaseStart) + " and more than a block", key());
  EXPECT_FALSE(decrypt(stored, std::nullopt, StoredContent::kDatabase).startsOtherwise);
  EXPECT_TRUE(fs::exists(to()));
  const DecryptedFile result = decrypt(test::encrypted("GIF89a", key()), std::nullopt, StoredContent::kDatabase);
  EXPECT_TRUE(result.startsOtherwise);
  EXPECT_EQ(result.error, 0);
  EXPECT_FALSE(fs::exists(to()));
  EXPECT_TRUE(decrypt("", std::nullopt, StoredContent::kDatabase).startsOtherwise);
}

TEST_F(FileDecryptionTest, ReadsOrdinaryFilesOnlyAndOverwritesNone) {
  putBytes(folder_.path() + "/other", test::encrypted("secret", key()));
  fs::create_symlink("other", from());
  EXPECT_NE(decryptFile(from(), to(), keyOf(key()), std::nullopt).error, 0);
  fs::remove(from());
  EXPECT_EQ(decryptFile(from(), to(), keyOf(key()), std::nullopt).error, ENOENT);
  fs::create_directory(from());
  EXPECT_EQ(decryptFile(from(), to(), keyOf(key()), std::nullopt).error, EINVAL);
  fs::remove(from());
  ASSERT_EQ(::mkfifo(from().c_str(), 0600), 0);
  EXPECT_EQ(decryptFile(from(), to(), keyOf(key()), std::nullopt).error, EINVAL);
  EXPECT_FALSE(fs::exists(to()));
  putBytes(to(), "mine");
  EXPECT_EQ(decryptFile(folder_.path() + "/other", to(), keyOf(key()), std::nullopt).error, EEXIST);
  EXPECT_EQ(plain(), "mine");
}

TEST_F(FileDecryptionTest, DigestsAllStoredBytes) {
  for (const std::string& stored : {test::encrypted(std::string(100, 'x'), key()) + "tail",
                                    test::encrypted(std::string((std::size_t{1} << 20) + 16, 'x'), key(), false)}) {
    putBytes(from(), stored);
    fs::remove(to());
    std::optional<FileDigest> digest;
    EXPECT_EQ(decryptFile(from(), to(), keyOf(key()), 20, StoredContent::kAnything, &digest).error, 0);
    EXPECT_EQ(digest, digestOf(stored));
    EXPECT_EQ(plain(), std::string(20, 'x'));
  }
}

TEST_F(FileDecryptionTest, TakesOnlyTheSizeOfAHugeFile) {
  putBytes(from(), test::encrypted(std::string(48, 'x'), key()));
  ASSERT_EQ(::truncate(from().c_str(), off_t{2} << 30), 0);
  const DecryptedFile result = decryptFile(from(), to(), keyOf(key()), 40);
  EXPECT_EQ(result.error, 0);
  EXPECT_EQ(plain(), std::string(40, 'x'));
  fs::remove(to());
  EXPECT_TRUE(decryptFile(from(), to(), keyOf(key()), std::nullopt, StoredContent::kDatabase).startsOtherwise);
  EXPECT_FALSE(fs::exists(to()));
}

}  // namespace
}  // namespace chatsum::device
