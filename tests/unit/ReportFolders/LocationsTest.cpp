#include <cerrno>

#include "tests/unit/ReportFolders/ReportFoldersTest.h"

namespace chatsum::test {
namespace {

using platform::fake::FileOperation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kCreate = "+[ChatsumUtils createFolderAt:]";

class DefaultLocation : public ReportFoldersTest {};

TEST_F(DefaultLocation, IsTheSameFolderForEveryAppType) {
  for (const std::int64_t appType : {0, 1, 2, 7, -1}) EXPECT_EQ(ChatsumUtils::defaultLocation(appType), reports);
  EXPECT_THAT(fake.log.lines(), IsEmpty());
  EXPECT_FALSE(fake.files.exists(reports));
}

TEST(DefaultLocationOfARootHome, HoldsNoDoubledSlash) {
  platform::fake::FakePlatform fake("/");
  const platform::fake::ScopedPlatform scope(fake);
  EXPECT_EQ(ChatsumUtils::defaultLocation(0), "/Library/Preferences/Chatsum");
}

class AppSpecificLocation : public ReportFoldersTest {};

TEST_F(AppSpecificLocation, IsNamedAfterTheApplication) {
  EXPECT_EQ(ChatsumUtils::appSpecificDefaultLocation(0), reports + "/Messages");
  EXPECT_EQ(ChatsumUtils::appSpecificDefaultLocation(1), reports + "/Phone");
  EXPECT_EQ(ChatsumUtils::appSpecificDefaultLocation(2), reports + "/FaceTime");
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(AppSpecificLocation, IsTheDefaultFolderForOtherCodesWhichIsLoggedButNotMade) {
  EXPECT_EQ(ChatsumUtils::appSpecificDefaultLocation(3), reports + "/Default");
  EXPECT_EQ(ChatsumUtils::appSpecificDefaultLocation(-1), reports + "/Default");
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils appSpecificDefaultLocation:], [Line 155], "
                          "Invalid apptype supplied: 3",
                          "com.orbelle.Chatsum: Error => +[ChatsumUtils appSpecificDefaultLocation:], [Line 155], "
                          "Invalid apptype supplied: -1"));
  EXPECT_FALSE(fake.files.exists(reports));
}

class CreateFolder : public ReportFoldersTest {};

TEST_F(CreateFolder, MakesTheFolderAndItsParents) {
  EXPECT_TRUE(ChatsumUtils::createFolderAt("/var/mobile/a b/ü/c"));
  EXPECT_TRUE(fake.files.isDirectory("/var/mobile/a b/ü/c"));
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Information => +[ChatsumUtils createFolderAt:], [Line 123], Folder "
                          "successfully created at '/var/mobile/a b/ü/c'."));
}

TEST_F(CreateFolder, AnswersNoForAFolderThatIsThere) {
  EXPECT_FALSE(ChatsumUtils::createFolderAt("/var/mobile"));
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Information => +[ChatsumUtils createFolderAt:], [Line 128], Folder "
                          "already exists at '/var/mobile'."));
  EXPECT_THAT(fake.files.calls(), IsEmpty());
}

TEST_F(CreateFolder, TakesAPlainFileForAFolderThatIsThere) {
  fake.put("/var/mobile/file", "x");
  EXPECT_FALSE(ChatsumUtils::createFolderAt("/var/mobile/file"));
  EXPECT_THAT(fake.log.lines(), ElementsAre(information(kCreate, 128, "Folder already exists at '/var/mobile/file'.")));
  EXPECT_EQ(fake.read("/var/mobile/file"), "x");
}

TEST_F(CreateFolder, AnswersNoAndLogsTheReasonWhenItCannotBeMade) {
  fake.files.fail(FileOperation::kCreateDirectory, EROFS);
  EXPECT_FALSE(ChatsumUtils::createFolderAt("/var/mobile/new"));
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils createFolderAt:], [Line 125], Unable to create "
                          "directory /var/mobile/new, error : “/var/mobile/new” was made to fail: Read-only file "
                          "system"));
  EXPECT_FALSE(fake.files.exists("/var/mobile/new"));
}

TEST_F(CreateFolder, CannotMakeAFolderBelowAFile) {
  fake.put("/var/mobile/file", "x");
  EXPECT_FALSE(ChatsumUtils::createFolderAt("/var/mobile/file/below"));
  EXPECT_TRUE(fake.log.contains("Unable to create directory /var/mobile/file/below, error : "));
  EXPECT_FALSE(ChatsumUtils::createFolderAt(""));
  EXPECT_TRUE(fake.log.contains("Unable to create directory , error : "));
}

class ExistenceTests : public ReportFoldersTest {};

TEST_F(ExistenceTests, FindAnythingAtAPath) {
  fake.put("/var/mobile/file", "");
  EXPECT_TRUE(ChatsumUtils::isFolderAlreadyExists("/var/mobile"));
  EXPECT_TRUE(ChatsumUtils::isFolderAlreadyExists("/var/mobile/file"));
  EXPECT_FALSE(ChatsumUtils::isFolderAlreadyExists("/var/mobile/other"));
  EXPECT_FALSE(ChatsumUtils::isFolderAlreadyExists(""));
}

TEST_F(ExistenceTests, FindAFileByItsNameInTheReportsFolderForEveryAppType) {
  fake.put(reports + "/report 1.txt", "");
  makeFolder(reports + "/Messages");
  for (const std::int64_t appType : {0, 2, -1, 9}) {
    EXPECT_TRUE(ChatsumUtils::isFileAlreadyExists("report 1.txt", appType));
    EXPECT_TRUE(ChatsumUtils::isFileAlreadyExists("Messages", appType));
    EXPECT_FALSE(ChatsumUtils::isFileAlreadyExists("report 2.txt", appType));
  }
}

TEST_F(ExistenceTests, FindNothingWithoutAReportsFolder) {
  EXPECT_FALSE(ChatsumUtils::isFileAlreadyExists("report.txt", 0));
}

class DefaultFolders : public ReportFoldersTest {};

TEST_F(DefaultFolders, AreMadeOnceAndFoundTwice) {
  ChatsumUtils::createDefaultFolders();
  const std::string creating =
      "com.orbelle.Chatsum: Information => +[ChatsumUtils createDefaultFolders], [Line 164], "
      "Creating default location at " +
      reports;
  const std::string exists = information(kCreate, 128, "Folder already exists at '" + reports + "'.");
  EXPECT_THAT(fake.log.lines(),
              ElementsAre(creating, information(kCreate, 123, "Folder successfully created at '" + reports + "'."),
                          creating, exists, creating, exists));
  EXPECT_TRUE(fake.files.isDirectory(reports));
  EXPECT_THAT(fake.realFiles.list(reports).value(), IsEmpty());
}

}  // namespace
}  // namespace chatsum::test
