// What becomes of the program where the machine has no memory or no threads for it.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr std::uint64_t kMegabyte = 1'000'000;

class Shortage : public testing::ProgramTest {
 protected:
  /// The least memory that the program starts with at all.
  std::uint64_t least() {
    for (std::uint64_t bytes = 40 * kMegabyte;; bytes += 4 * kMegabyte) {
      addressSpace = bytes;
      const testing::Outcome outcome = runPlain({"--version"});
      if (outcome.code == 0 || bytes > 1000 * kMegabyte) return bytes;
    }
  }

  /// A report is written whole, or there is one sentence and nothing else.
  void expectWholeOrNothing(const std::string& format) {
    const auto sourceBefore = testing::everythingBelow(device());
    const testing::Outcome outcome = run({"report", "Maya Lindqvist", "--format", format});
    const std::string when = format + " with " + std::to_string(*addressSpace) + " bytes: " + outcome.err;
    std::size_t files = 0;
    for (const auto& [name, content] : testing::everythingBelow(home())) files += content != "folder" ? 1 : 0;
    if (outcome.code == 0) {
      EXPECT_EQ(files, 1U) << when;
      ++whole_;
    } else {
      EXPECT_EQ(outcome.code, 1) << when;
      EXPECT_EQ(outcome.out, "") << when;
      ASSERT_EQ(testing::linesOf(outcome.err).size(), 1U) << when;
      EXPECT_THAT(outcome.err, StartsWith("chatsum: ")) << when;
      EXPECT_THAT(outcome.err, Not(HasSubstr("damaged"))) << when;
      EXPECT_EQ(files, 0U) << when;
      ++ended_;
    }
    EXPECT_TRUE(testing::everythingBelow(device()) == sourceBefore) << when;
    EXPECT_THAT(testing::everythingBelow(temporary()), IsEmpty()) << when;
    std::filesystem::remove_all(home());
  }

  int whole_ = 0, ended_ = 0;
};

TEST_F(Shortage, OfMemoryEndsAReportWithOneSentenceAndNothingElse) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizers need the memory that this test takes away";
#endif
  writeSample();
  const std::uint64_t least = this->least();
  for (const char* format : {"pdf", "csv", "text"}) {
    for (std::uint64_t more = 2; more <= 122; more += 8) {
      addressSpace = least + more * kMegabyte;
      expectWholeOrNothing(format);
    }
  }
  EXPECT_GT(ended_, 3);
  EXPECT_GT(whole_, 3);
}

TEST_F(Shortage, OfThreadsChangesNothingInAReport) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizers need threads of their own";
#endif
  writeSample();
  environment["SOURCE_DATE_EPOCH"] = "1700000000";
  for (const char* format : {"pdf", "csv", "text"}) {
    hasNoThreads = false;
    const std::string usual = report("Maya Lindqvist", {"--format", format});
    hasNoThreads = true;
    EXPECT_TRUE(report("Maya Lindqvist", {"--format", format, "--replace"}) == usual) << format;
  }
  hasNoThreads = true;
  EXPECT_EQ(run({"conversations"}).code, 0);
}

}  // namespace
}  // namespace chatsum::cli
