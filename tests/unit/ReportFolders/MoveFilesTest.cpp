#include <cerrno>
#include <filesystem>

#include "tests/unit/ReportFolders/ReportFoldersTest.h"

namespace chatsum::test {
namespace {

using platform::fake::FileOperation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

constexpr const char* kMove = "+[ChatsumUtils moveFiles:destination:]";

class MovingFiles : public ReportFoldersTest {
 protected:
  const std::string from = "/var/mobile/from";
  const std::string to = "/var/mobile/to";

  std::vector<std::string> names(const std::string& folder) {
    return fake.realFiles.list(folder).value_or(std::vector<std::string>());
  }
  static std::string trace(const std::string& source, const std::string& destination) {
    return "******* Moving file from " + source + " to " + destination;
  }
  static std::string failure(const std::string& source, const std::string& destination, int code,
                             const std::string& why) {
    return "Error while moving file from " + source + " to " + destination +
           ". Error: Error Domain=NSPOSIXErrorDomain Code=" + std::to_string(code) + " \"" + why + "\"";
  }
};

TEST_F(MovingFiles, MovesTheFilesAndLeavesTheFolders) {
  fake.put(from + "/a", "1");
  fake.put(from + "/b.txt", "2");
  fake.put(from + "/d/inside", "3");
  EXPECT_TRUE(ChatsumUtils::moveFiles(from, to));
  EXPECT_THAT(names(from), ElementsAre("d"));
  EXPECT_THAT(names(to), UnorderedElementsAre("a", "b.txt"));
  EXPECT_EQ(fake.read(to + "/a"), "1");
  EXPECT_EQ(fake.read(from + "/d/inside"), "3");
  EXPECT_THAT(fake.log.lines(),
              UnorderedElementsAre("com.orbelle.Chatsum: Information => +[ChatsumUtils createFolderAt:], [Line 123], "
                                   "Folder successfully created at '/var/mobile/to'.",
                                   "******* Moving file from /var/mobile/from/a to /var/mobile/to/a",
                                   "******* Moving file from /var/mobile/from/b.txt to /var/mobile/to/b.txt"));
}

TEST_F(MovingFiles, MakesTheDestinationBeforeTheFirstFile) {
  fake.put(from + "/a", "1");
  ChatsumUtils::moveFiles(from, to);
  EXPECT_THAT(fake.files.calls(), ElementsAre("createDirectory " + to, "move " + from + "/a " + to + "/a"));
}

TEST_F(MovingFiles, CopiesTheFilesAndLeavesTheFolders) {
  fake.put(from + "/a", "1");
  fake.put(from + "/d/inside", "3");
  EXPECT_TRUE(ChatsumUtils::copyFiles(from, to));
  EXPECT_THAT(names(from), UnorderedElementsAre("a", "d"));
  EXPECT_THAT(names(to), ElementsAre("a"));
  EXPECT_EQ(fake.read(to + "/a"), "1");
  EXPECT_EQ(fake.log.lines().back(), "******* Moving file from /var/mobile/from/a to /var/mobile/to/a");
}

TEST_F(MovingFiles, AnswersNoWhenThereIsNoFile) {
  makeFolder(from + "/only/folders");
  EXPECT_FALSE(ChatsumUtils::moveFiles(from, to));
  EXPECT_FALSE(ChatsumUtils::copyFiles(from, to));
  EXPECT_THAT(names(from), ElementsAre("only"));
  EXPECT_THAT(names(to), IsEmpty());
}

TEST_F(MovingFiles, TakesAMissingOrUnreadableSourceAsEmptyAndStillMakesTheDestination) {
  EXPECT_FALSE(ChatsumUtils::moveFiles(from, to));
  EXPECT_TRUE(fake.files.isDirectory(to));
  fake.put("/var/mobile/file", "x");
  EXPECT_FALSE(ChatsumUtils::copyFiles("/var/mobile/file", "/var/mobile/to2"));
  fake.put(from + "/a", "1");
  fake.files.fail(FileOperation::kList, EACCES);
  EXPECT_FALSE(ChatsumUtils::moveFiles(from, to));
  EXPECT_THAT(names(to), IsEmpty());
}

TEST_F(MovingFiles, KeepsAFileOfTheSameNameAtTheDestination) {
  fake.put(from + "/a", "new");
  fake.put(to + "/a", "old");
  EXPECT_FALSE(ChatsumUtils::moveFiles(from, to));
  EXPECT_EQ(fake.read(to + "/a"), "old");
  EXPECT_EQ(fake.read(from + "/a"), "new");
  ASSERT_EQ(fake.log.lines().size(), 3U);
  EXPECT_EQ(fake.log.lines()[0],
            information("+[ChatsumUtils createFolderAt:]", 128, "Folder already exists at '/var/mobile/to'."));
  EXPECT_EQ(fake.log.lines()[1], trace(from + "/a", to + "/a"));
  EXPECT_THAT(fake.log.lines()[2],
              ::testing::StartsWith(error(kMove, 182,
                                          "Error while moving file from " + from + "/a to " + to +
                                              "/a. Error: Error Domain=NSPOSIXErrorDomain Code=17 ")));
}

TEST_F(MovingFiles, CopiesOverNothing) {
  fake.put(from + "/a", "new");
  fake.put(to + "/a", "old");
  EXPECT_FALSE(ChatsumUtils::copyFiles(from, to));
  EXPECT_EQ(fake.read(to + "/a"), "old");
  EXPECT_EQ(fake.read(from + "/a"), "new");
}

TEST_F(MovingFiles, LogsAFailedMoveWithTheErrorObject) {
  fake.put(from + "/a", "1");
  fake.files.fail(FileOperation::kMove, EACCES);
  EXPECT_FALSE(ChatsumUtils::moveFiles(from, to));
  EXPECT_EQ(fake.log.lines().back(),
            "com.orbelle.Chatsum: Error => +[ChatsumUtils moveFiles:destination:], [Line 182], " +
                failure(from + "/a", to + "/a", EACCES, "“/var/mobile/from/a” was made to fail: Permission denied"));
}

TEST_F(MovingFiles, LogsAFailedCopyInTheSameWords) {
  fake.put(from + "/a", "1");
  fake.files.fail(FileOperation::kCopy, ENOSPC);
  EXPECT_FALSE(ChatsumUtils::copyFiles(from, to));
  EXPECT_EQ(
      fake.log.lines().back(),
      "com.orbelle.Chatsum: Error => +[ChatsumUtils copyFiles:destination:], [Line 202], " +
          failure(from + "/a", to + "/a", ENOSPC, "“/var/mobile/from/a” was made to fail: No space left on device"));
  EXPECT_THAT(names(to), IsEmpty());
}

TEST_F(MovingFiles, GoesOnAfterAFailureAndAnswersForTheLastFile) {
  fake.put(from + "/a", "1");
  fake.put(from + "/b", "2");
  fake.files.fail(FileOperation::kMove, EACCES, 1);
  EXPECT_TRUE(ChatsumUtils::moveFiles(from, to));  // the first failed, the last did not
  EXPECT_EQ(names(from).size(), 1U);
  EXPECT_EQ(names(to).size(), 1U);
}

TEST_F(MovingFiles, AnswersNoWhenOnlyTheLastFileFails) {
  fake.put(from + "/a", "1");
  fake.put(from + "/b", "2");
  const std::string last = names(from).back();
  fake.put(to + "/" + last, "in the way");
  EXPECT_FALSE(ChatsumUtils::moveFiles(from, to));
  EXPECT_THAT(names(from), ElementsAre(last));
  EXPECT_EQ(names(to).size(), 2U);
}

TEST_F(MovingFiles, FailsForEveryFileWhenTheDestinationCannotBeMade) {
  fake.put(from + "/a", "1");
  fake.put(from + "/b", "2");
  fake.put(to, "a file, no folder");
  EXPECT_FALSE(ChatsumUtils::moveFiles(from, to));
  EXPECT_THAT(names(from), UnorderedElementsAre("a", "b"));
  EXPECT_THAT(fake.files.calls(),
              UnorderedElementsAre("move " + from + "/a " + to + "/a", "move " + from + "/b " + to + "/b"));
  EXPECT_EQ(fake.read(to), "a file, no folder");

  fake.files.forgetCalls();
  fake.files.fail(FileOperation::kCreateDirectory, EROFS);
  const std::string other = "/var/mobile/other";
  EXPECT_FALSE(ChatsumUtils::copyFiles(from, other));
  EXPECT_THAT(names(from), UnorderedElementsAre("a", "b"));
  EXPECT_THAT(fake.files.calls(),
              UnorderedElementsAre("createDirectory " + other, "copy " + from + "/a " + other + "/a",
                                   "copy " + from + "/b " + other + "/b"));
  const auto lines = fake.log.lines();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string& line) { return line.find("Error while moving file") != line.npos; }),
            4);
}

TEST_F(MovingFiles, LosesNothingWhenSourceAndDestinationAreOneFolder) {
  fake.put(from + "/a", "1");
  EXPECT_FALSE(ChatsumUtils::moveFiles(from, from));
  EXPECT_FALSE(ChatsumUtils::copyFiles(from, from + "/"));
  EXPECT_EQ(fake.read(from + "/a"), "1");
}

TEST_F(MovingFiles, MovesEmptyFilesAndNamesOfEveryKind) {
  fake.put(from + "/.hidden", "");
  fake.put(from + "/Zoë 📱.txt", "x");
  EXPECT_TRUE(ChatsumUtils::moveFiles(from + "/", to + "/"));
  EXPECT_THAT(names(to), UnorderedElementsAre(".hidden", "Zoë 📱.txt"));
  EXPECT_TRUE(fake.log.contains(trace("/var/mobile/from/.hidden", "/var/mobile/to/.hidden")));
}

TEST_F(MovingFiles, SkipsALinkToAFolder) {
  fake.put(from + "/a", "1");
  makeFolder("/var/mobile/elsewhere");
  std::filesystem::create_directory_symlink(fake.realPath("/var/mobile/elsewhere"), fake.realPath(from + "/link"));
  EXPECT_TRUE(ChatsumUtils::moveFiles(from, to));
  EXPECT_THAT(names(from), ElementsAre("link"));
}

class MovingAFolder : public ReportFoldersTest {};

TEST_F(MovingAFolder, GivesItTheNewPathWithAllItHolds) {
  fake.put("/var/mobile/old/a", "1");
  fake.put("/var/mobile/old/d/b", "2");
  EXPECT_TRUE(ChatsumUtils::moveDirectory("/var/mobile/old", "/var/mobile/new"));
  EXPECT_FALSE(fake.files.exists("/var/mobile/old"));
  EXPECT_EQ(fake.read("/var/mobile/new/d/b"), "2");
  EXPECT_THAT(fake.log.lines(), ElementsAre("******* Moving directory from /var/mobile/old to /var/mobile/new"));
}

TEST_F(MovingAFolder, FailsOntoAnythingThatIsThere) {
  fake.put("/var/mobile/old/a", "1");
  makeFolder("/var/mobile/new");
  EXPECT_FALSE(ChatsumUtils::moveDirectory("/var/mobile/old", "/var/mobile/new"));
  EXPECT_EQ(fake.read("/var/mobile/old/a"), "1");
  EXPECT_THAT(fake.realFiles.list("/var/mobile/new").value(), IsEmpty());
  ASSERT_EQ(fake.log.lines().size(), 2U);
  EXPECT_THAT(
      fake.log.lines()[1],
      ::testing::StartsWith(
          "com.orbelle.Chatsum: Error => +[ChatsumUtils moveDirectory:destination:], [Line 214], Error while "
          "moving file from /var/mobile/old to /var/mobile/new. Error: Error Domain=NSPOSIXErrorDomain Code=17 "));
}

TEST_F(MovingAFolder, LogsTheErrorObjectWhenItFails) {
  makeFolder("/var/mobile/old");
  fake.files.fail(FileOperation::kMove, EACCES);
  EXPECT_FALSE(ChatsumUtils::moveDirectory("/var/mobile/old", "/var/mobile/new"));
  EXPECT_THAT(fake.log.lines(),
              ElementsAre("******* Moving directory from /var/mobile/old to /var/mobile/new",
                          error("+[ChatsumUtils moveDirectory:destination:]", 214,
                                "Error while moving file from /var/mobile/old to /var/mobile/new. Error: Error "
                                "Domain=NSPOSIXErrorDomain Code=13 \"“/var/mobile/old” was made to fail: Permission "
                                "denied\"")));
}

TEST_F(MovingAFolder, FailsForAMissingSource) {
  EXPECT_FALSE(ChatsumUtils::moveDirectory("/var/mobile/old", "/var/mobile/new"));
  EXPECT_FALSE(fake.files.exists("/var/mobile/new"));
  EXPECT_EQ(fake.log.lines().size(), 2U);
}

TEST_F(MovingAFolder, NeverMovesAFolderIntoItself) {
  fake.put("/var/mobile/old/a", "1");
  EXPECT_FALSE(ChatsumUtils::moveDirectory("/var/mobile/old", "/var/mobile/old/below"));
  EXPECT_EQ(fake.read("/var/mobile/old/a"), "1");
}

}  // namespace
}  // namespace chatsum::test
