#include "hosts/device/backup/KeyDerivation.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/hosts/backup/BackupVectors.h"

namespace chatsum::device {
namespace {

using testing::hexOf;

KeyBag bagOf(bool isOld, std::uint32_t iterations = 1000) {
  const auto bag = KeyBag::parse(
      test::keyBag({.password = testing::kPassword, .iterations = iterations, .firstIterations = 1000, .isOld = isOld}),
      "/backups/one");
  EXPECT_TRUE(bag);
  return bag.value();
}

TEST(KeyDerivationTest, FindsTheKnownAnswers) {
  const std::string first = test::countingKey(0x10).substr(0, 20), second = test::countingKey(0x40).substr(0, 20);
  EXPECT_EQ(hexOf(*pbkdf2(PasswordHash::kSha256, testing::kPassword, first, 1000)),
            "c4832f37c6d3d3413ae37e1e1a9165dc16bf76f70c8d6bc21814e8de2fef0fc6");
  EXPECT_EQ(hexOf(*pbkdf2(PasswordHash::kSha1, testing::kPassword, second, 1000)), testing::kOldPasswordKey);
  EXPECT_EQ(hexOf(*derivePasswordKey(bagOf(false), testing::kPassword, {})), testing::kPasswordKey);
  EXPECT_EQ(hexOf(*derivePasswordKey(bagOf(true), testing::kPassword, {})), testing::kOldPasswordKey);
}

TEST(KeyDerivationTest, EqualsTheLibrarysOwn) {
  const std::vector<std::string> passwords = {"",
                                              "a",
                                              "pässwörd ✓",
                                              std::string("nul\0in it", 9),
                                              std::string(64, 'x'),
                                              std::string(65, 'y'),
                                              std::string(1000, 'z')};
  for (const std::string& password : passwords) {
    for (const std::size_t saltLength : {1U, 20U, 64U, 200U}) {
      const std::string salt(saltLength, 's');
      for (const std::uint32_t iterations : {1U, 2U, 777U}) {
        EXPECT_EQ(hexOf(*pbkdf2(PasswordHash::kSha256, password, salt, iterations)),
                  test::hexOf(test::openSslPbkdf2("SHA256", password, salt, iterations)));
        EXPECT_EQ(hexOf(*pbkdf2(PasswordHash::kSha1, password, salt, iterations)),
                  test::hexOf(test::openSslPbkdf2("SHA1", password, salt, iterations)));
      }
    }
  }
  // Longer than one step between two reports.
  EXPECT_EQ(hexOf(*pbkdf2(PasswordHash::kSha256, "p", "s", 40'000)),
            test::hexOf(test::openSslPbkdf2("SHA256", "p", "s", 40'000)));
}

TEST(KeyDerivationTest, HasNoKeyWithoutRounds) {
  EXPECT_EQ(pbkdf2(PasswordHash::kSha256, "p", "s", 0), std::nullopt);
  EXPECT_EQ(pbkdf2(PasswordHash::kSha1, "p", "s", 0), std::nullopt);
}

TEST(KeyDerivationTest, CountsItsRoundsAndStops) {
  std::uint64_t rounds = 0;
  ASSERT_TRUE(pbkdf2(PasswordHash::kSha256, "p", "s", 100'000, [&](std::uint64_t more) {
    rounds += more;
    return true;
  }));
  EXPECT_EQ(rounds, 99'999U);  // the first one is made before
  int calls = 0;
  EXPECT_FALSE(pbkdf2(PasswordHash::kSha1, "p", "s", 100'000'000, [&](std::uint64_t) { return ++calls < 3; }));
  EXPECT_EQ(calls, 3);
}

TEST(KeyDerivationTest, TellsItsProgressOnTheCallersThread) {
  const auto caller = std::this_thread::get_id();
  double last = 0;
  int calls = 0;
  const auto key = derivePasswordKey(bagOf(false, 1'000'000), testing::kPassword, [&](double done) {
    EXPECT_EQ(std::this_thread::get_id(), caller);
    EXPECT_GE(done, last);
    EXPECT_LE(done, 1);
    last = done;
    ++calls;
    return true;
  });
  EXPECT_TRUE(key);
  EXPECT_EQ(last, 1);
  EXPECT_GE(calls, 2);
}

TEST(KeyDerivationTest, StopsWhenItIsTold) {
  KeyBag endless = bagOf(false);
  endless.iterations = endless.firstIterations = KeyBag::kMostIterations;
  EXPECT_FALSE(derivePasswordKey(endless, testing::kPassword, [](double) { return false; }));
  int calls = 0;
  EXPECT_FALSE(derivePasswordKey(endless, testing::kPassword, [&](double) { return ++calls < 3; }));
  EXPECT_EQ(calls, 3);
}

}  // namespace
}  // namespace chatsum::device
