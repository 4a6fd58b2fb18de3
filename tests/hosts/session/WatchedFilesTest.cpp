#include "hosts/device/session/WatchedFiles.h"

#include <gtest/gtest.h>

#include "platform/fake/FakePlatform.h"

namespace chatsum::device {
namespace {

TEST(WatchedFiles, RemoveFilesAndNeverAFolder) {
  platform::fake::FakePlatform fake;
  WatchedFiles files(fake.files);
  fake.put("/var/mobile/reports/one.txt", "1");
  fake.put("/var/mobile/reports/two.txt", "2");
  EXPECT_TRUE(files.remove("/var/mobile/reports").has_value());
  EXPECT_EQ(fake.read("/var/mobile/reports/one.txt"), "1");
  EXPECT_FALSE(files.remove("/var/mobile/reports/one.txt").has_value());
  EXPECT_FALSE(files.exists("/var/mobile/reports/one.txt"));
  EXPECT_TRUE(files.exists("/var/mobile/reports/two.txt"));
}

TEST(WatchedFiles, RemoveTheManifestOfAReportWithIt) {
  platform::fake::FakePlatform fake;
  WatchedFiles files(fake.files);
  for (const char* name : {"one.csv", "two.csv"}) {
    fake.put(std::string("/var/mobile/reports/") + name, "rows");
    fake.put(std::string("/var/mobile/reports/") + name + ".evidence.json", "{}");
  }
  fake.put("/var/mobile/reports/moved.csv.evidence.json", "{}");
  EXPECT_TRUE(files.remove("/var/mobile/reports/moved.csv").has_value());  // there is none
  EXPECT_TRUE(files.exists("/var/mobile/reports/moved.csv.evidence.json"));
  EXPECT_FALSE(files.remove("/var/mobile/reports/one.csv").has_value());
  EXPECT_FALSE(files.exists("/var/mobile/reports/one.csv.evidence.json"));
  EXPECT_TRUE(files.exists("/var/mobile/reports/two.csv.evidence.json"));
}

TEST(WatchedFiles, HaveTheHomeOfTheWrappedOnesUntilTheyGetAnother) {
  platform::fake::FakePlatform fake;
  WatchedFiles files(fake.files);
  EXPECT_EQ(files.homeDirectory(), "/var/mobile");
  files.setHomeDirectory("/var/phone");
  EXPECT_EQ(files.homeDirectory(), "/var/phone");
  files.setHomeDirectory("");
  EXPECT_EQ(files.homeDirectory(), "/var/mobile");
}

}  // namespace
}  // namespace chatsum::device
