// Reports that cannot be made or are stopped leave nothing half-written behind.
#include <gmock/gmock.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "hosts/device/sample/SeededDevice.h"
#include "tests/hosts/pdf/PdfReportTest.h"

namespace chatsum::test {
namespace {

namespace fs = std::filesystem;
using cli::testing::bytesOf;
using cli::testing::everythingBelow;
using cli::testing::linesOf;
using cli::testing::Outcome;

class PdfFailure : public PdfReportTest {
 protected:
  const std::vector<std::string> command_ = {"report", person, "--format", "pdf"};
};

TEST_F(PdfFailure, OfAFolderThatCannotBeMadeIsTold) {
  writeTexts({"Hello"});
  const Outcome outcome =
      runPlain({"--source", device().string(), "--home", "/dev/null/home", "report", person, "--format", "pdf"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(linesOf(outcome.err).size(), 1U) << outcome.err;
  EXPECT_NE(outcome.err.find("/dev/null/home"), std::string::npos) << outcome.err;
}

TEST_F(PdfFailure, OfAReportsFolderThatIsAFileIsTold) {
  writeTexts({"Hello"});
  cli::testing::putBytes(reports(), "in the way");
  expectFailure(command_, ".pdf");
}

TEST_F(PdfFailure, OfACopyThatCannotBePutThereIsTold) {
  writeTexts({"Hello"});
  const Outcome outcome = run({"report", person, "--format", "pdf", "--output", "/dev/null/copy.pdf"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(linesOf(outcome.err).size(), 1U) << outcome.err;
  EXPECT_NE(outcome.err.find("'/dev/null'"), std::string::npos) << outcome.err;
}

TEST_F(PdfFailure, WithoutAnyFontIsTold) {
  writeTexts({"Hello"});
  const PinnedFonts none({(root() / "no fonts").string()});
  environment["FONTCONFIG_FILE"] = std::getenv("FONTCONFIG_FILE");
  EXPECT_NE(report(person, {"--format", "text"}).find("Hello"), std::string::npos);
  expectFailure(command_, "needs a font");
}

TEST_F(PdfFailure, OfAReportThatIsThereLeavesIt) {
  writeTexts({"Hello"});
  const fs::path file = pdf(person);
  cli::testing::putBytes(file, "mine");
  expectFailure(command_, "--replace");
  EXPECT_EQ(bytesOf(file), "mine");
  EXPECT_EQ(pdf(person, {"--replace"}), file);
  EXPECT_EQ(pdfProblems(file), "");
}

TEST_F(PdfFailure, OfAFullDiskLeavesNoHalfFile) {
  writeSeeded({.messages = 3000, .conversations = 1});
  const fs::path file = pdf("+15550100001");
  const auto before = everythingBelow(home());
  for (const std::uint64_t bytes : {1000U, 20'000U, 100'000U}) {
    ASSERT_LT(bytes, fs::file_size(file));
    largestFile = bytes;
    const Outcome outcome = run({"report", "+15550100001", "--format", "pdf", "--replace"});
    EXPECT_EQ(outcome.code, 1) << bytes;
    EXPECT_EQ(outcome.out, "") << bytes;
    EXPECT_EQ(linesOf(outcome.err).size(), 1U) << outcome.err;
    EXPECT_TRUE(everythingBelow(home()) == before) << bytes;
  }
}

class PdfInterruption : public PdfReportTest {
 protected:
  /// Starts a long report and waits until its file is under way.
  [[nodiscard]] int startLongReport() const {
    const int child = start({"report", "+15550100001", "--format", "pdf"}, STDERR_FILENO);
    constexpr int kMostMilliseconds = 60'000;
    for (int waited = 0; waited < kMostMilliseconds; ++waited) {
      if (fs::exists(reports()) && !fs::is_empty(reports())) return child;
      const timespec millisecond{0, 1'000'000};
      ::nanosleep(&millisecond, nullptr);
    }
    ADD_FAILURE() << "no file appeared";
    return child;
  }
};

TEST_F(PdfInterruption, LeavesNoFile) {
  writeSeeded({.messages = 60'000, .conversations = 1, .placement = device::Placement::wal});
  for (const auto& [signal, code] : {std::pair(SIGINT, 130), std::pair(SIGTERM, 143), std::pair(SIGHUP, 129)}) {
    const int child = startLongReport();
    ASSERT_EQ(::kill(child, signal), 0);
    const Outcome outcome = finish(child);
    EXPECT_EQ(outcome.code, code) << outcome.err;
    EXPECT_TRUE(fs::is_empty(reports()));
    EXPECT_TRUE(everythingBelow(temporary()).empty());
  }
}

TEST_F(PdfInterruption, LeavesTheReportThatWasThere) {
  writeSeeded({.messages = 60'000, .conversations = 1});
  const auto before = pdf("+15550100001", {"--until", "2014-02-01"});
  const std::string bytes = bytesOf(before);
  const int child = start({"report", "+15550100001", "--format", "pdf", "--replace"}, STDERR_FILENO);
  constexpr int kMostMilliseconds = 60'000;
  const auto files = [this] { return std::distance(fs::directory_iterator(reports()), fs::directory_iterator()); };
  for (int waited = 0; waited < kMostMilliseconds && files() < 2; ++waited) {
    const timespec millisecond{0, 1'000'000};
    ::nanosleep(&millisecond, nullptr);
  }
  ASSERT_EQ(::kill(child, SIGINT), 0);
  EXPECT_EQ(finish(child).code, 130);
  EXPECT_EQ(files(), 1);
  EXPECT_TRUE(bytesOf(before) == bytes);
}

}  // namespace
}  // namespace chatsum::test
