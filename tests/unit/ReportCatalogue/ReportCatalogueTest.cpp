#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"
#include "tests/support/LogLine.h"

namespace chatsum::test {
namespace {

using platform::fake::FileOperation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class ReportCatalogue : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};
  const std::string reports = "/var/mobile/Library/Preferences/Chatsum";

  /// Puts a file that is younger than every one before it, however coarse the file system's clock is.
  void putLater(const std::string& path, const std::string& bytes = "x") {
    for (;;) {
      fake.put(path, bytes);
      const Date date = fake.realFiles.attributes(path).creationDate.value();
      if (date > last_) {
        last_ = date;
        return;
      }
      ASSERT_FALSE(fake.realFiles.remove(path).has_value());
      std::this_thread::yield();
    }
  }

  static std::vector<std::string> namesUnder(const Record& reportsByExtension, const char* extension) {
    std::vector<std::string> names;
    const Array* entries = reportsByExtension[extension].asArray();
    if (!entries) return names;
    for (const Value& entry : *entries) names.push_back((*entry.asRecord())["name"].description());
    return names;
  }

 private:
  Date last_{-1e300};
};

TEST_F(ReportCatalogue, GroupsByExtensionNewestFirst) {
  putLater(reports + "/a.pdf");
  putLater(reports + "/c.txt");
  putLater(reports + "/b.pdf");
  const Record found = ChatsumUtils::allGeneratedReports(0, reports);
  EXPECT_EQ(found.size(), 2U);
  EXPECT_THAT(namesUnder(found, "pdf"), ElementsAre("b.pdf", "a.pdf"));
  EXPECT_THAT(namesUnder(found, "txt"), ElementsAre("c.txt"));
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(ReportCatalogue, KeepsTheCaseOfExtensionsAndListsNamesWithoutOne) {
  for (const char* name : {"one.PDF", "two.pdf", "bare", ".hidden", "end.", "three.tar.gz"}) {
    fake.put(reports + "/" + name, "x");
  }
  const Record found = ChatsumUtils::allGeneratedReports(0, reports);
  EXPECT_THAT(namesUnder(found, "PDF"), ElementsAre("one.PDF"));
  EXPECT_THAT(namesUnder(found, "pdf"), ElementsAre("two.pdf"));
  EXPECT_THAT(namesUnder(found, "gz"), ElementsAre("three.tar.gz"));
  EXPECT_THAT(namesUnder(found, ""), UnorderedElementsAre("bare", ".hidden", "end."));
}

TEST_F(ReportCatalogue, SaysNamePathDateAndSizeOfEachFile) {
  fake.put(reports + "/Maya.txt", "12345");
  const Record found = ChatsumUtils::allGeneratedReports(2, reports + "/");
  const Record entry = *(*found["txt"].asArray())[0].asRecord();
  EXPECT_EQ(entry.size(), 4U);
  EXPECT_EQ(entry["name"], Value("Maya.txt"));
  EXPECT_EQ(entry["path"], Value(reports + "/Maya.txt"));
  EXPECT_EQ(entry["NSFileSize"].integerValue(), 5);
  ASSERT_NE(entry["NSFileCreationDate"].asDate(), nullptr);
  EXPECT_EQ(*entry["NSFileCreationDate"].asDate(), fake.realFiles.attributes(reports + "/Maya.txt").creationDate);
}

TEST_F(ReportCatalogue, ListsFoldersLikeFilesAndNothingBelowThem) {
  fake.put(reports + "/Messages/inner.txt", "x");
  const Record found = ChatsumUtils::allGeneratedReports(0, reports);
  EXPECT_EQ(found.size(), 1U);
  EXPECT_THAT(namesUnder(found, ""), ElementsAre("Messages"));
}

TEST_F(ReportCatalogue, OfAMissingFolderIsEmptyAndWarns) {
  EXPECT_TRUE(ChatsumUtils::allGeneratedReports(1, "/nowhere").empty());
  EXPECT_THAT(fake.log.lines(), ElementsAre(logLine("Warning", "+[ChatsumUtils allGeneratedReports:fromDirectory:]",
                                                    809, "Folder doesn't exists at: /nowhere")));
}

TEST_F(ReportCatalogue, OfAFolderThatCannotBeListedIsEmptyWithoutAWord) {
  fake.put(reports + "/a.pdf", "x");
  fake.files.fail(FileOperation::kList, EACCES);
  EXPECT_TRUE(ChatsumUtils::allGeneratedReports(0, reports).empty());
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(ReportCatalogue, LeavesOutTheFactsThatCannotBeReadAndListsSuchFilesLast) {
  putLater(reports + "/a.pdf");
  putLater(reports + "/b.pdf");
  fake.files.fail(FileOperation::kAttributes, EACCES, 1);
  const Record found = ChatsumUtils::allGeneratedReports(0, reports);
  const Array& entries = *found["pdf"].asArray();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].asRecord()->size(), 4U);
  EXPECT_EQ(entries[1].asRecord()->size(), 2U);
  EXPECT_TRUE((*entries[1].asRecord())["NSFileSize"].isNone());
}

TEST_F(ReportCatalogue, KeepsTheDateOfAFileWhoseSizeCannotBeRead) {
  fake.put(reports + "/a.pdf", "x");
  fake.files.fail(FileOperation::kSize, EACCES);
  const Record found = ChatsumUtils::allGeneratedReports(0, reports);
  const Record& entry = *(*found["pdf"].asArray())[0].asRecord();
  EXPECT_EQ(entry.size(), 3U);
  EXPECT_EQ(entry.find("NSFileSize"), nullptr);
  ASSERT_NE(entry["NSFileCreationDate"].asDate(), nullptr);
  EXPECT_EQ(*entry["NSFileCreationDate"].asDate(), fake.realFiles.attributes(reports + "/a.pdf").creationDate);
}

TEST_F(ReportCatalogue, OfTheRunningApplicationIsTheReportsFolder) {
  fake.put(reports + "/a.pdf", "x");
  for (const std::int64_t appType : {0, 1, 2, 9}) {
    EXPECT_THAT(namesUnder(ChatsumUtils::allGeneratedReports(appType), "pdf"), ElementsAre("a.pdf"));
  }
}

TEST_F(ReportCatalogue, OfOneApplicationIsUnderItsAppTypeAndLogged) {
  fake.put(reports + "/a.pdf", "x");
  const auto found = ChatsumUtils::allAppSpecificGeneratedReports(2);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found.begin()->first, 2);
  EXPECT_THAT(namesUnder(found.at(2), "pdf"), ElementsAre("a.pdf"));
  EXPECT_THAT(fake.log.lines(), ElementsAre(information("+[ChatsumUtils allAppSpecificGeneratedReports:]", 759,
                                                        "Getting all reports for 2")));
}

TEST_F(ReportCatalogue, OfAllApplicationsComesFromTheirContainers) {
  fake.companion.containers = {{"com.apple.MobileSMS", "/containers/one"}, {"com.apple.facetime", "/containers/two"}};
  fake.put("/containers/one/Library/Preferences/Chatsum/chat.pdf", "x");
  fake.put("/containers/two/Library/Preferences/Chatsum/calls.txt", "x");
  fake.put(reports + "/mine.csv", "x");
  const auto found = ChatsumUtils::allGeneratedReports();
  ASSERT_EQ(found.size(), 2U);
  EXPECT_THAT(namesUnder(found.at(kAppTypeMessages), "pdf"), ElementsAre("chat.pdf"));
  EXPECT_THAT(namesUnder(found.at(kAppTypeFaceTime), "txt"), ElementsAre("calls.txt"));
  EXPECT_EQ((*(*found.at(kAppTypeMessages)["pdf"].asArray())[0].asRecord())["path"],
            Value("/containers/one/Library/Preferences/Chatsum/chat.pdf"));
}

TEST_F(ReportCatalogue, HoldsAContainerWithoutReportsAsAnEmptyOne) {
  fake.companion.containers = {{"com.apple.mobilephone", "/containers/phone"}};
  const auto found = ChatsumUtils::allGeneratedReports();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_TRUE(found.at(kAppTypePhone).empty());
  EXPECT_TRUE(fake.log.contains("Folder doesn't exists at: /containers/phone/Library/Preferences/Chatsum"));
}

TEST_F(ReportCatalogue, WithoutContainersIsEmpty) {
  fake.put(reports + "/a.pdf", "x");
  EXPECT_TRUE(ChatsumUtils::allGeneratedReports().empty());
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(ReportCatalogue, HoldsEachOfThousandsOfExtensionsWithItsOwnFile) {
  constexpr int kFiles = 3000;
  for (int i = 0; i < kFiles; ++i) fake.put(reports + "/a.e" + std::to_string(i), "");
  const Record found = ChatsumUtils::allGeneratedReports(0, reports);
  ASSERT_EQ(found.size(), static_cast<std::size_t>(kFiles));
  for (int i = 0; i < kFiles; ++i) {
    const std::string extension = "e" + std::to_string(i);
    ASSERT_THAT(namesUnder(found, extension.c_str()), ElementsAre("a." + extension));
  }
}

class ProposedName : public ReportCatalogue {};

TEST_F(ProposedName, IsTheNameWithTheFormatsExtension) {
  EXPECT_EQ(ChatsumUtils::defaultFileName("Report", 0, 0), "Report.csv");
  EXPECT_EQ(ChatsumUtils::defaultFileName("Report", 1, 1), "Report.pdf");
  EXPECT_EQ(ChatsumUtils::defaultFileName("Dr. Lee", 2, 2), "Dr. Lee.txt");
}

TEST_F(ProposedName, CountsUntilNothingHasIt) {
  fake.put(reports + "/Report.csv", "x");
  fake.put(reports + "/Report - 1.csv", "x");
  fake.put(reports + "/Report - 3.csv", "x");
  for (const std::int64_t appType : {0, 1, 2, 5}) {
    EXPECT_EQ(ChatsumUtils::defaultFileName("Report", appType, 0), "Report - 2.csv");
  }
}

TEST_F(ProposedName, DoesNotCollideWithOtherExtensions) {
  fake.put(reports + "/Report.pdf", "x");
  EXPECT_EQ(ChatsumUtils::defaultFileName("Report", 0, 0), "Report.csv");
  EXPECT_EQ(ChatsumUtils::defaultFileName("Report", 0, 1), "Report - 1.pdf");
}

TEST_F(ProposedName, AvoidsFoldersToo) {
  fake.put(reports + "/Report.csv/inner", "x");
  EXPECT_EQ(ChatsumUtils::defaultFileName("Report", 0, 0), "Report - 1.csv");
}

TEST_F(ProposedName, OfAnotherCodeHasNoExtension) {
  EXPECT_EQ(ChatsumUtils::defaultFileName("Report", 0, 3), "Report");
  EXPECT_EQ(ChatsumUtils::defaultFileName("Report", 0, -1), "Report");
}

}  // namespace
}  // namespace chatsum::test
