#include "hosts/device/backup/KeyBag.h"

#include <gtest/gtest.h>

#include "tests/hosts/backup/BackupVectors.h"

namespace chatsum::device {
namespace {

using test::keyBagItem;
using test::keyBagNumber;
using testing::bytesOfHex;

const std::string kPath = "/backups/one";

std::string header(std::uint32_t iterations = 10) {
  return keyBagItem("UUID", std::string(16, 'u')) + keyBagItem("SALT", "salt") + keyBagNumber("ITER", iterations);
}

std::string classItems(std::uint32_t wrap = 2, std::size_t keyLength = 40) {
  return keyBagItem("UUID", std::string(16, 'c')) + keyBagNumber("CLAS", 3) + keyBagNumber("WRAP", wrap) +
         keyBagItem("WPKY", std::string(keyLength, 'k'));
}

TEST(KeyBagTest, ReadsAWholeBag) {
  const std::string bytes = bytesOfHex(testing::kKeyBag);
  ASSERT_EQ(test::hexOf(test::sha1Of(bytes)), testing::kKeyBagSha1);
  const auto bag = KeyBag::parse(bytes, kPath);
  ASSERT_TRUE(bag) << bag.problem().sentence;
  EXPECT_EQ(bag.value().salt, test::countingKey(0x40).substr(0, 20));
  EXPECT_EQ(bag.value().iterations, 1000U);
  EXPECT_EQ(bag.value().firstSalt, test::countingKey(0x10).substr(0, 20));
  EXPECT_EQ(bag.value().firstIterations, 1000U);
  ASSERT_EQ(bag.value().classKeys.size(), 2U);
  EXPECT_EQ(bag.value().classKeys[0].protectionClass, 3U);
  EXPECT_EQ(test::hexOf(bag.value().classKeys[0].bytes), testing::kWrappedClassKey3);
  EXPECT_EQ(bag.value().classKeys[1].protectionClass, 4U);
  EXPECT_EQ(test::hexOf(bag.value().classKeys[1].bytes), testing::kWrappedClassKey4);
}

TEST(KeyBagTest, IsWrittenByTheTestsAsDevicesDo) {
  EXPECT_EQ(test::hexOf(test::keyBag({.password = testing::kPassword})), testing::kKeyBag);
  EXPECT_EQ(test::hexOf(test::keyWithClass(4, test::manifestFileKey())), testing::kManifestKey);
  EXPECT_EQ(test::hexOf(test::keyWithClass(3, test::countingKey(0xE0))), testing::kFileKey);
}

TEST(KeyBagTest, ReadsAnOlderBagWithoutTheFirstRound) {
  const auto bag = KeyBag::parse(header() + classItems(), kPath);
  ASSERT_TRUE(bag);
  EXPECT_TRUE(bag.value().firstSalt.empty());
  EXPECT_EQ(bag.value().iterations, 10U);
}

TEST(KeyBagTest, PassesOverUnknownTagsAndClassesThatNeedTheDevice) {
  const auto bag = KeyBag::parse(
      header() + keyBagItem("WHAT", "ever") + classItems(1) + classItems(3) + classItems() + keyBagItem("XXXX", ""),
      kPath);
  ASSERT_TRUE(bag);
  EXPECT_EQ(bag.value().classKeys.size(), 1U);
}

TEST(KeyBagTest, RefusesDamagedBags) {
  const std::vector<std::string> bags = {
      "",
      "VERS",
      header(),                      // no class
      header() + classItems(1),      // none that a password opens
      header() + classItems(2, 39),  // a key of another length
      header(0) + classItems(),      // no work at all
      keyBagNumber("ITER", 10) + classItems(),
      header() + std::string("UUID\xFF\xFF\xFF\xFF", 8) + "short",
      std::string(std::size_t{2} << 20, 'x'),
  };
  for (const std::string& bytes : bags) {
    const auto bag = KeyBag::parse(bytes, kPath);
    ASSERT_FALSE(bag) << test::hexOf(bytes.substr(0, 100));
    EXPECT_NE(bag.problem().sentence.find("are damaged"), std::string::npos);
    EXPECT_NE(bag.problem().sentence.find(kPath), std::string::npos);
  }
}

TEST(KeyBagTest, PassesOverClassesWithoutAKeyThatCanBeUsed) {
  const std::string withoutKey =
      keyBagItem("UUID", std::string(16, 'c')) + keyBagNumber("CLAS", 5) + keyBagNumber("WRAP", 2);
  for (const std::string& useless : {withoutKey, classItems(2, 39), classItems(2, 72), classItems(2, 0)}) {
    for (const std::string& classes : {useless + classItems(), classItems() + useless}) {
      const auto bag = KeyBag::parse(header() + classes, kPath);
      ASSERT_TRUE(bag) << bag.problem().sentence;
      ASSERT_EQ(bag.value().classKeys.size(), 1U);
      EXPECT_EQ(bag.value().classKeys[0].protectionClass, 3U);
    }
  }
}

TEST(KeyBagTest, PassesOverWhatFollowsTheLastItem) {
  for (const std::string& tail :
       {std::string("\0", 1), std::string(7, '\0'), std::string(64, '\0'), std::string("WPKY\xFF\xFF\xFF\xFF", 8),
        std::string("WPKY\x7F\xFF\xFF\xFF", 8) + "short"}) {
    const auto bag = KeyBag::parse(header() + classItems() + tail, kPath);
    ASSERT_TRUE(bag) << bag.problem().sentence;
    EXPECT_EQ(bag.value().classKeys.size(), 1U);
  }
}

TEST(KeyBagTest, ReadsTheClassesOfABagThatIsCut) {
  const std::string whole = bytesOfHex(testing::kKeyBag);
  std::size_t last = 0;
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const auto bag = KeyBag::parse(std::string_view(whole).substr(0, length), kPath);
    const std::size_t now = bag ? bag.value().classKeys.size() : 0;
    EXPECT_TRUE(now == last || now == last + 1) << length;
    last = now;
  }
  EXPECT_EQ(last, 2U);
}

TEST(KeyBagTest, RefusesEndlessWork) {
  for (const std::uint32_t iterations : {KeyBag::kMostIterations + 1, 4'000'000'000U}) {
    const auto bag = KeyBag::parse(header(iterations) + classItems(), kPath);
    ASSERT_FALSE(bag);
    EXPECT_NE(bag.problem().sentence.find("more work on the password"), std::string::npos);
    const auto first =
        KeyBag::parse(header() + keyBagItem("DPSL", "salt") + keyBagNumber("DPIC", iterations) + classItems(), kPath);
    ASSERT_FALSE(first);
    EXPECT_NE(first.problem().sentence.find("more work on the password"), std::string::npos);
  }
  EXPECT_FALSE(KeyBag::parse(header() + keyBagItem("DPSL", "salt") + keyBagNumber("DPIC", 0) + classItems(), kPath));
  EXPECT_TRUE(KeyBag::parse(header(KeyBag::kMostIterations) + classItems(), kPath));
}

TEST(KeyBagTest, ReadsOnlySoManyClassesAndNoTooLongSalts) {
  std::string many = header();
  for (int i = 0; i < 300; ++i) many += classItems();
  const auto bag = KeyBag::parse(many, kPath);
  ASSERT_TRUE(bag);
  EXPECT_EQ(bag.value().classKeys.size(), 256U);
  EXPECT_FALSE(KeyBag::parse(
      keyBagItem("UUID", "u") + keyBagItem("SALT", std::string(2000, 's')) + keyBagNumber("ITER", 10) + classItems(),
      kPath));
}

}  // namespace
}  // namespace chatsum::device
