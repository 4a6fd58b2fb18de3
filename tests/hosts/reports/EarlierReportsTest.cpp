#include "hosts/device/reports/EarlierReports.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "hosts/device/home/HomeSession.h"
#include "platform/fake/TemporaryFolder.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using ::testing::UnorderedElementsAre;

class EarlierReportsTest : public ::testing::Test {
 protected:
  [[nodiscard]] std::string container(const char* name) const { return folder_.path() + "/" + name; }
  fs::path put(const char* application, const char* name, const std::string& bytes = "x") const {
    fs::path path = container(application) + "/Library/Preferences/Chatsum/" + name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  [[nodiscard]] HomeSession::Options options() const {
    return {
        .home = container("messages"),
        .containers = {{"com.apple.MobileSMS", container("messages")}, {"com.apple.mobilephone", container("phone")}}};
  }
  static std::vector<std::string> namesOf(const std::vector<EarlierReport>& reports) {
    std::vector<std::string> names;
    for (const EarlierReport& report : reports) names.push_back(report.name);
    return names;
  }

  platform::fake::TemporaryFolder folder_;
};

TEST_F(EarlierReportsTest, AreTheFilesOfAllApplications) {
  put("messages", "chat.pdf", "12345");
  put("phone", "calls.csv");
  put("messages", ".chatsum-0011223344556677.pdf");
  put("messages", "Messages/inner.txt");
  const HomeSession session(options());
  const auto reports = earlierReports(session.options().containers);
  ASSERT_TRUE(static_cast<bool>(reports));
  EXPECT_THAT(namesOf(reports.value()), UnorderedElementsAre("chat.pdf", "calls.csv"));
  for (const EarlierReport& report : reports.value()) {
    EXPECT_EQ(report.appType, report.name == "chat.pdf" ? 0 : 1);
    EXPECT_EQ(report.size, report.name == "chat.pdf" ? 5U : 1U);
    EXPECT_TRUE(report.created.has_value());
    EXPECT_TRUE(fs::is_regular_file(report.path));
  }
}

TEST_F(EarlierReportsTest, AreNoneWithoutAFolder) {
  const HomeSession session(options());
  const auto reports = earlierReports(session.options().containers);
  ASSERT_TRUE(static_cast<bool>(reports));
  EXPECT_TRUE(reports.value().empty());
}

TEST_F(EarlierReportsTest, InAFolderThatIsNoneAreAProblem) {
  fs::create_directories(container("messages") + "/Library/Preferences");
  std::ofstream(container("messages") + "/Library/Preferences/Chatsum") << "in the way";
  const HomeSession session(options());
  const auto reports = earlierReports(session.options().containers);
  ASSERT_FALSE(static_cast<bool>(reports));
  EXPECT_NE(reports.problem().sentence.find("cannot be read"), std::string::npos) << reports.problem().sentence;
}

TEST_F(EarlierReportsTest, AreFoundByTheirWholeName) {
  const std::vector<EarlierReport> reports = {
      {.name = "a.txt", .path = "/one/Library/Preferences/Chatsum/a.txt", .size = 1, .created = Date{}, .appType = 0},
      {.name = "b.txt", .path = "/one/Library/Preferences/Chatsum/b.txt", .size = 1, .created = Date{}, .appType = 0},
      {.name = "b.txt", .path = "/two/Library/Preferences/Chatsum/b.txt", .size = 1, .created = Date{}, .appType = 1}};
  EXPECT_EQ(findReport(reports, "a.txt").value().path, reports[0].path);
  EXPECT_NE(findReport(reports, "a").problem().sentence.find("no report 'a'"), std::string::npos);
  EXPECT_NE(findReport(reports, "b.txt").problem().sentence.find("--home '/one' or '/two'"), std::string::npos)
      << findReport(reports, "b.txt").problem().sentence;
}

TEST_F(EarlierReportsTest, AreRemovedOneFileAtATime) {
  const fs::path path = put("messages", "chat.pdf"), other = put("messages", "other.pdf");
  EXPECT_FALSE(removeReport({.name = "chat.pdf", .path = path, .size = {}, .created = {}, .appType = 0}).has_value());
  EXPECT_FALSE(fs::exists(path));
  EXPECT_TRUE(fs::exists(other));
  EXPECT_TRUE(
      removeReport({.name = "", .path = path.parent_path(), .size = {}, .created = {}, .appType = 0}).has_value());
  EXPECT_TRUE(fs::exists(other));
}

}  // namespace
}  // namespace chatsum::device
