#include "hosts/desktop/report/ReportOutcome.h"

#include <gtest/gtest.h>

#include "platform/fake/FakePlatform.h"

namespace chatsum::desktop {
namespace {

using platform::fake::FileOperation;

class ReportOutcomeTest : public ::testing::Test {
 protected:
  ReportOutcomeTest() { EXPECT_FALSE(files.createDirectory(folder)); }

  [[nodiscard]] WantedReport wanted(const std::string& name, const std::string& extension = "txt") const {
    return {folder, name, extension};
  }
  /// What the CSV and PDF writers do.
  void writeInPieces(const std::string& path) {
    if (!files.exists(path)) (void)files.createFile(path);
    const auto handle = files.openForWriting(path);
    if (!handle) return;
    handle->truncateAt(handle->seekToEnd());
    for (const char* piece : {"Name,Text\n", "Anna,first\n"}) (void)handle->write(piece);
  }

  const std::string folder = "/var/mobile/Reports";
  platform::fake::FakePlatform fake;
  device::WatchedFiles files{fake.files};
};

TEST_F(ReportOutcomeTest, FindsAWholeReport) {
  files.startWatching();
  ASSERT_FALSE(files.writeAtomically(folder + "/Anna.txt", "all of it"));
  const ReportOutcome text = settleReport(wanted("Anna"), files);
  EXPECT_EQ(text.failure, "");
  EXPECT_EQ(text.path.toStdString(), folder + "/Anna.txt");
  files.startWatching();
  writeInPieces(folder + "/Anna.csv");
  const ReportOutcome table = settleReport(wanted("Anna", "csv"), files);
  EXPECT_EQ(table.failure, "");
  EXPECT_EQ(table.path.toStdString(), folder + "/Anna.csv");
}

TEST_F(ReportOutcomeTest, GivesAReportItsExtensionWhenTheNameHasADot) {
  for (const char* name : {"Dr. Smith", "ann@example.com"}) {
    files.startWatching();
    ASSERT_FALSE(files.writeAtomically(folder + "/" + name, "all of it"));
    const ReportOutcome outcome = settleReport(wanted(name), files);
    EXPECT_EQ(outcome.failure, "");
    EXPECT_EQ(outcome.path.toStdString(), folder + "/" + name + ".txt");
    EXPECT_TRUE(files.exists(folder + "/" + name + ".txt"));
    EXPECT_FALSE(files.exists(folder + "/" + name));
  }
}

TEST_F(ReportOutcomeTest, SaysWhereAReportIsThatCannotGetItsName) {
  files.startWatching();
  ASSERT_FALSE(files.writeAtomically(folder + "/Dr. Smith", "all of it"));
  fake.put(folder + "/Dr. Smith.txt", "made by somebody else meanwhile");
  const ReportOutcome outcome = settleReport(wanted("Dr. Smith"), files);
  EXPECT_TRUE(outcome.failure.contains("/Dr. Smith”")) << outcome.failure.toStdString();
  EXPECT_EQ(fake.read(folder + "/Dr. Smith.txt"), "made by somebody else meanwhile");
}

TEST_F(ReportOutcomeTest, TellsWhyATextCouldNotBeWrittenAndKeepsTheOlderOne) {
  fake.put(folder + "/Anna.txt", "older");
  files.startWatching();
  fake.files.fail(FileOperation::kWriteAtomically, ENOSPC);
  ASSERT_TRUE(files.writeAtomically(folder + "/Anna.txt", "newer"));
  const ReportOutcome outcome = settleReport(wanted("Anna"), files);
  EXPECT_TRUE(outcome.failure.contains("“Anna.txt”")) << outcome.failure.toStdString();
  EXPECT_TRUE(outcome.failure.contains("No space left")) << outcome.failure.toStdString();
  EXPECT_EQ(fake.read(folder + "/Anna.txt"), "older");
}

TEST_F(ReportOutcomeTest, RemovesWhatIsNotWhole) {
  files.startWatching();
  fake.files.fail(FileOperation::kHandleWrite, ENOSPC);
  writeInPieces(folder + "/Anna.csv");
  ASSERT_TRUE(files.exists(folder + "/Anna.csv"));
  const ReportOutcome outcome = settleReport(wanted("Anna", "csv"), files);
  EXPECT_TRUE(outcome.failure.contains("No space left")) << outcome.failure.toStdString();
  EXPECT_TRUE(outcome.path.isEmpty());
  EXPECT_FALSE(files.exists(folder + "/Anna.csv"));
}

TEST_F(ReportOutcomeTest, LeavesRowsAloneThatWereThereBefore) {
  fake.put(folder + "/Anna.csv", "older\n");
  files.startWatching();
  writeInPieces(folder + "/Anna.csv");
  const ReportOutcome outcome = settleReport(wanted("Anna", "csv"), files);
  EXPECT_TRUE(outcome.failure.contains("stand behind its own")) << outcome.failure.toStdString();
  files.startWatching();
  fake.files.fail(FileOperation::kHandleWrite, ENOSPC);
  writeInPieces(folder + "/Anna.csv");
  EXPECT_FALSE(settleReport(wanted("Anna", "csv"), files).failure.isEmpty());
  EXPECT_TRUE(fake.read(folder + "/Anna.csv").starts_with("older\n"));
}

TEST_F(ReportOutcomeTest, TellsOfAFolderThatCannotBeMade) {
  files.startWatching();
  fake.files.fail(FileOperation::kCreateDirectory, EROFS);
  ASSERT_TRUE(files.createDirectory("/var/mobile/Elsewhere"));
  const ReportOutcome outcome = settleReport({"/var/mobile/Elsewhere", "Anna", "txt"}, files);
  EXPECT_TRUE(outcome.failure.contains("Elsewhere")) << outcome.failure.toStdString();
  EXPECT_TRUE(outcome.failure.contains("Read-only")) << outcome.failure.toStdString();
}

TEST_F(ReportOutcomeTest, TellsWhenNothingCameOfIt) {
  files.startWatching();
  const ReportOutcome outcome = settleReport(wanted("Anna"), files);
  EXPECT_TRUE(outcome.failure.contains(QString::fromStdString(folder + "/Anna.txt"))) << outcome.failure.toStdString();
  fake.put(folder + "/Anna.txt", "older");  // and was not written anew
  EXPECT_FALSE(settleReport(wanted("Anna"), files).failure.isEmpty());
  EXPECT_EQ(fake.read(folder + "/Anna.txt"), "older");
}

TEST_F(ReportOutcomeTest, RefusesNamesThatCannotBe) {
  for (const std::string& name : {std::string(), std::string("   "), std::string("a/b"), std::string(".."),
                                  std::string(".hidden"), std::string("a\0b", 3), std::string(252, 'x')}) {
    EXPECT_FALSE(nameProblem(wanted(name), files).isEmpty()) << "'" << name << "'";
  }
  for (const std::string& name :
       {std::string("Anna"), std::string("Dr. Smith"), std::string("Ünï – 1"), std::string(251, 'x')}) {
    EXPECT_EQ(nameProblem(wanted(name), files), "") << name;
  }
}

TEST_F(ReportOutcomeTest, RefusesTheNameOfAFolder) {
  fake.put(folder + "/Anna.txt/kept.txt", "kept");
  EXPECT_TRUE(nameProblem(wanted("Anna"), files).contains("“Anna.txt”"));
}

TEST_F(ReportOutcomeTest, RefusesANameUnderWhichAnotherFileWouldBeLost) {
  fake.put(folder + "/Anna.pdf", "pages");
  EXPECT_TRUE(nameProblem(wanted("Anna.pdf"), files).contains("“Anna.pdf”"));
  EXPECT_EQ(nameProblem(wanted("Anna"), files), "");
}

}  // namespace
}  // namespace chatsum::desktop
