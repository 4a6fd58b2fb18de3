#include <gtest/gtest.h>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"

namespace chatsum::test {
namespace {

class VersionCheck : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};

  /// How many of the tests from 6 to 14 say yes; they must say yes from 6 upwards without a gap.
  int passed(const char* version) {
    fake.device.version = version;
    const bool answers[] = {ChatsumUtils::isIOS_6(), ChatsumUtils::isIOS_7(), ChatsumUtils::isIOS_8(),
                            ChatsumUtils::isIOS9(),  ChatsumUtils::isIOS10(), ChatsumUtils::isIOS11(),
                            ChatsumUtils::isIOS12(), ChatsumUtils::isIOS13(), ChatsumUtils::isIOS14()};
    int count = 0;
    while (count < 9 && answers[count]) ++count;
    for (int i = count; i < 9; ++i) EXPECT_FALSE(answers[i]) << version << ", test " << i;
    return count;
  }
};

TEST_F(VersionCheck, PassesEveryTestUpToTheSystemsVersion) {
  EXPECT_EQ(passed("5.1.1"), 0);
  EXPECT_EQ(passed("6.0"), 1);
  EXPECT_EQ(passed("7.1.2"), 2);
  EXPECT_EQ(passed("8.4.1"), 3);  // 8 yes, 9 no
  EXPECT_EQ(passed("9.3.5"), 4);
  EXPECT_EQ(passed("10.0"), 5);
  EXPECT_EQ(passed("10.3.4"), 5);
  EXPECT_EQ(passed("11"), 6);
  EXPECT_EQ(passed("12.5.7"), 7);
  EXPECT_EQ(passed("13.7"), 8);
  EXPECT_EQ(passed("13.99"), 8);
  EXPECT_EQ(passed("14.0"), 9);
  EXPECT_EQ(passed("17.0"), 9);
}

TEST_F(VersionCheck, ReadsOnlyTheLeadingNumber) {
  EXPECT_EQ(passed("8beta"), 3);
  EXPECT_EQ(passed(" 8.4"), 3);
  EXPECT_EQ(passed("8.4.1.2"), 3);
}

TEST_F(VersionCheck, TakesAVersionThatIsNoNumberAsZero) {
  for (const char* version : {"", "garbage", "iOS 14", "v14", ".", "-", "nan", "inf", "infinity"}) {
    EXPECT_EQ(passed(version), 0) << version;
    EXPECT_TRUE(ChatsumUtils::versionCheck(0)) << version;
  }
}

TEST_F(VersionCheck, ComparesInThirtyTwoBits) {
  fake.device.version = "9.3.5";
  EXPECT_TRUE(ChatsumUtils::versionCheck(9.3F));  // 9.3 in 64 bits is less than 9.3 in 32
  EXPECT_FALSE(ChatsumUtils::versionCheck(9.31F));
  EXPECT_TRUE(ChatsumUtils::versionCheck(-1));
}

TEST_F(VersionCheck, AsksTheDeviceEveryTime) {
  EXPECT_EQ(passed("6.1"), 1);
  EXPECT_EQ(passed("14.2"), 9);
}

TEST_F(VersionCheck, KnowsNoCustomApplication) { EXPECT_FALSE(ChatsumUtils::anyCustomAppInstalled()); }

}  // namespace
}  // namespace chatsum::test
