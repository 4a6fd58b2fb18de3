#include "hosts/device/backup/KeyWrap.h"

#include <gtest/gtest.h>

#include "hosts/device/backup/BackupManifest.h"
#include "hosts/device/backup/KeyRing.h"
#include "tests/hosts/backup/BackupVectors.h"

namespace chatsum::device {
namespace {

using testing::bytesOfHex;
using testing::hexOf;
using testing::keyOf;

KeyBag bag() { return KeyBag::parse(bytesOfHex(testing::kKeyBag), "/backups/one").value(); }

TEST(KeyWrapTest, FindsTheKnownAnswers) {
  const SecretKey passwordKey = keyOf(bytesOfHex(testing::kPasswordKey));
  EXPECT_EQ(hexOf(*unwrapKey(passwordKey, bytesOfHex(testing::kWrappedClassKey3))),
            test::hexOf(test::countingKey(0x80)));
  EXPECT_EQ(hexOf(*unwrapKey(passwordKey, bytesOfHex(testing::kWrappedClassKey4))),
            test::hexOf(test::countingKey(0xA0)));
}

TEST(KeyWrapTest, RefusesAnotherKeyAndDamagedBytes) {
  const SecretKey passwordKey = keyOf(bytesOfHex(testing::kPasswordKey));
  std::string wrapped = bytesOfHex(testing::kWrappedClassKey3);
  EXPECT_FALSE(unwrapKey(keyOf(bytesOfHex(testing::kOldPasswordKey)), wrapped));
  for (const std::size_t length : {0U, 8U, 24U, 39U, 41U, 48U}) {
    EXPECT_FALSE(unwrapKey(passwordKey, std::string(length, 'x'))) << length;
  }
  wrapped[20] = static_cast<char>(wrapped[20] ^ 1);
  EXPECT_FALSE(unwrapKey(passwordKey, wrapped));
}

TEST(KeyRingTest, OpensTheKeysOfFilesWithThoseOfTheirClasses) {
  const auto ring = KeyRing::open(bag(), keyOf(bytesOfHex(testing::kPasswordKey)));
  ASSERT_TRUE(ring);
  std::uint32_t protectionClass = 0;
  const std::string fileKey = wrappedKeyOf(bytesOfHex(testing::kFileKey), protectionClass);
  EXPECT_EQ(protectionClass, 3U);
  EXPECT_EQ(hexOf(*ring->unwrap(3, fileKey)), test::hexOf(test::countingKey(0xE0)));
  const std::string manifestKey = wrappedKeyOf(bytesOfHex(testing::kManifestKey), protectionClass);
  EXPECT_EQ(protectionClass, 4U);
  EXPECT_EQ(hexOf(*ring->unwrap(4, manifestKey)), test::hexOf(test::countingKey(0xC0)));
  EXPECT_FALSE(ring->unwrap(4, fileKey));  // of another class
  EXPECT_FALSE(ring->unwrap(7, fileKey));  // that there is not
}

TEST(KeyRingTest, OpensNothingWithAnotherPassword) {
  EXPECT_FALSE(KeyRing::open(bag(), keyOf(bytesOfHex(testing::kOldPasswordKey))));
}

TEST(KeyRingTest, DoesWithoutOneDamagedClass) {
  KeyBag damaged = bag();
  damaged.classKeys[0].bytes[5] = static_cast<char>(damaged.classKeys[0].bytes[5] ^ 1);
  const auto ring = KeyRing::open(damaged, keyOf(bytesOfHex(testing::kPasswordKey)));
  ASSERT_TRUE(ring);
  std::uint32_t protectionClass = 0;
  EXPECT_TRUE(ring->unwrap(4, wrappedKeyOf(bytesOfHex(testing::kManifestKey), protectionClass)));
  EXPECT_FALSE(ring->unwrap(3, wrappedKeyOf(bytesOfHex(testing::kFileKey), protectionClass)));
}

TEST(KeyRingTest, KnowsHowLongAKeyInAListIs) {
  std::uint32_t protectionClass = 9;
  for (const std::size_t length : {0U, 3U, 40U, 43U, 45U, 1000U}) {
    EXPECT_EQ(wrappedKeyOf(std::string(length, '\x01'), protectionClass), "") << length;
  }
  EXPECT_EQ(protectionClass, 9U);
}

}  // namespace
}  // namespace chatsum::device
