#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli::testing {
namespace {

namespace fs = std::filesystem;

class EvidenceTest : public ProgramTest {
 protected:
  EvidenceTest() {
    environment["SOURCE_DATE_EPOCH"] = "1700000000";
    writeSample();
  }
  /// Writes a report with evidence and answers the program's outcome.
  Outcome write(const std::string& format, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"report", "Sunday Hikers", "--format", format, "--replace", "--evidence"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments);
  }
  [[nodiscard]] fs::path manifest(const std::string& extension) const {
    return reports() / ("Sunday Hikers." + extension + ".evidence.json");
  }
  [[nodiscard]] nlohmann::json readManifest(const std::string& extension) const {
    return nlohmann::json::parse(bytesOf(manifest(extension)), nullptr, false);
  }
  [[nodiscard]] Outcome verify(const std::string& extension, const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"verify", manifest(extension).string()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runPlain(arguments);
  }
  static void flipByte(const fs::path& path, std::size_t at) {
    std::string bytes = bytesOf(path);
    ASSERT_LT(at, bytes.size());
    bytes[at] = static_cast<char>(bytes[at] ^ 1);
    putBytes(path, bytes);
  }
};

TEST_F(EvidenceTest, SaysWhatAReportWasMadeOf) {
  const Outcome made = write("text");
  ASSERT_EQ(made.code, 0) << made.err;
  EXPECT_NE(made.err.find(manifest("txt").string()), std::string::npos) << made.err;
  const nlohmann::json evidence = readManifest("txt");
  ASSERT_TRUE(evidence.is_object());
  EXPECT_EQ(evidence["created"], "2023-11-14T22:13:20Z");
  EXPECT_EQ(evidence["timeZone"], "America/New_York");
  EXPECT_EQ(evidence["report"]["file"], "Sunday Hikers.txt");
  EXPECT_EQ(evidence["report"]["size"], fs::file_size(reports() / "Sunday Hikers.txt"));
  EXPECT_EQ(evidence["source"]["kind"], "device");
  EXPECT_EQ(evidence["options"]["format"], "text");
  EXPECT_EQ(evidence["options"]["sort"], "asc");
  EXPECT_GT(evidence["counts"]["written"].get<int>(), 0);
  std::vector<std::string> stores;
  for (const auto& store : evidence["stores"]) stores.push_back(store["file"]);
  EXPECT_NE(std::find(stores.begin(), stores.end(), "var/mobile/Library/SMS/sms.db"), stores.end());
  EXPECT_NE(std::find(stores.begin(), stores.end(), "var/mobile/Library/AddressBook/AddressBook.sqlitedb"),
            stores.end());
  EXPECT_FALSE(evidence["attachments"].empty());
}

TEST_F(EvidenceTest, HoldsUntilOneByteChanges) {
  ASSERT_EQ(write("pdf").code, 0);
  const Outcome good = verify("pdf");
  EXPECT_EQ(good.code, 0) << good.err;
  EXPECT_NE(good.out.find("are as they were"), std::string::npos) << good.out;
  const std::string attachment = readManifest("pdf")["attachments"][0]["file"];
  const std::vector<fs::path> files = {reports() / "Sunday Hikers.pdf", storePath(), addressBookPath(),
                                       device() / attachment};
  for (const fs::path& file : files) {
    flipByte(file, 40);
    const Outcome bad = verify("pdf");
    EXPECT_EQ(bad.code, 1) << file;
    EXPECT_NE(bad.err.find("'" + file.string() + "' was changed"), std::string::npos) << bad.err;
    EXPECT_NE(bad.err.find("does not hold"), std::string::npos) << bad.err;
    flipByte(file, 40);
    EXPECT_EQ(verify("pdf").code, 0) << file;
  }
}

TEST_F(EvidenceTest, FollowsTheSourceAndDoesWithoutIt) {
  ASSERT_EQ(write("csv").code, 0);
  fs::rename(device(), root() / "moved");
  const Outcome missing = verify("csv");
  EXPECT_EQ(missing.code, 1);
  EXPECT_NE(missing.err.find("--source"), std::string::npos) << missing.err;
  EXPECT_EQ(verify("csv", {"--source", (root() / "moved").string()}).code, 0);
  EXPECT_EQ(verify("csv", {"--report-only"}).code, 0);
  EXPECT_EQ(runPlain({"verify", (root() / "none.json").string()}).code, 1);
  EXPECT_EQ(runPlain({"verify"}).code, 2);
}

TEST_F(EvidenceTest, TheSameSourceAndOptionsGiveTheSameBytes) {
  for (const auto& [format, extension] :
       std::vector<std::pair<std::string, std::string>>{{"text", "txt"}, {"csv", "csv"}, {"pdf", "pdf"}}) {
    ASSERT_EQ(write(format).code, 0);
    const std::string report = bytesOf(reports() / ("Sunday Hikers." + extension));
    const std::string evidence = bytesOf(manifest(extension));
    ASSERT_EQ(write(format).code, 0);
    EXPECT_EQ(bytesOf(reports() / ("Sunday Hikers." + extension)), report) << format;
    EXPECT_EQ(bytesOf(manifest(extension)), evidence) << format;
  }
}

TEST_F(EvidenceTest, GoesWithADeliveredCopy) {
  const fs::path copy = root() / "for the court.txt";
  ASSERT_EQ(write("text", {"--output", copy.string()}).code, 0);
  EXPECT_TRUE(fs::exists(copy));
  const Outcome checked = runPlain({"verify", copy.string() + ".evidence.json"});
  EXPECT_EQ(checked.code, 0) << checked.err;
}

TEST_F(EvidenceTest, GoesWhenItsReportGoesAndIsNoReportItself) {
  ASSERT_EQ(write("text").code, 0);
  EXPECT_EQ(countOf(run({"reports"}).out, "evidence"), 0U);
  ASSERT_EQ(run({"reports", "delete", "Sunday Hikers.txt", "--yes"}).code, 0);
  EXPECT_FALSE(fs::exists(manifest("txt")));
}

TEST_F(EvidenceTest, RefusesATimeThatIsNone) {
  environment["SOURCE_DATE_EPOCH"] = "yesterday";
  expectFailure({"report", "Sunday Hikers"}, "SOURCE_DATE_EPOCH");
}

TEST_F(EvidenceTest, NamesTheZoneThatTimesAreWrittenIn) {
  ASSERT_EQ(write("text", {"--timezone", "Asia/Tokyo"}).code, 0);
  EXPECT_EQ(readManifest("txt")["timeZone"], "Asia/Tokyo");
  const std::string tokyo = bytesOf(reports() / "Sunday Hikers.txt");
  ASSERT_EQ(write("text").code, 0);
  EXPECT_NE(bytesOf(reports() / "Sunday Hikers.txt"), tokyo);
  const Outcome wrong = write("text", {"--timezone", "Mars/Olympus"});
  EXPECT_EQ(wrong.code, 2);
  EXPECT_NE(wrong.err.find("no time zone"), std::string::npos) << wrong.err;
}

}  // namespace
}  // namespace chatsum::cli::testing
