#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

using testing::everythingBelow;
using testing::Outcome;

class Interruption : public testing::ProgramTest {
 protected:
  void SetUp() override {
    // Rows in a -wal are read from a private copy, and the results do not fit into a pipe that nobody empties.
    writeSeeded({.messages = 3000, .conversations = 1, .placement = device::Placement::wal});
    ASSERT_EQ(::pipe2(pipe_.data(), O_CLOEXEC), 0);
  }
  void TearDown() override {
    closeEnd(0);
    closeEnd(1);
  }
  void closeEnd(std::size_t end) {
    if (pipe_[end] >= 0) ::close(pipe_[end]);
    pipe_[end] = -1;
  }
  void waitForResults() const {
    constexpr int kMilliseconds = 60'000;
    pollfd wanted{pipe_[0], POLLIN, 0};
    ASSERT_EQ(::poll(&wanted, 1, kMilliseconds), 1);
  }

  const std::vector<std::string> messages_ = {"messages", "+15550100001", "--json"};
  std::array<int, 2> pipe_{-1, -1};
};

TEST_F(Interruption, TakesThePrivateCopiesAway) {
  for (const auto& [signal, code] : {std::pair(SIGINT, 130), std::pair(SIGTERM, 143), std::pair(SIGHUP, 129)}) {
    const int child = start(messages_, pipe_[1]);
    waitForResults();
    EXPECT_FALSE(everythingBelow(temporary()).empty());
    ASSERT_EQ(::kill(child, signal), 0);
    EXPECT_EQ(finish(child).code, code);
    EXPECT_TRUE(everythingBelow(temporary()).empty());
    closeEnd(0);
    closeEnd(1);
    ASSERT_EQ(::pipe2(pipe_.data(), O_CLOEXEC), 0);
  }
}

TEST_F(Interruption, OfAPipeEndsQuietly) {
  const int child = start(messages_, pipe_[1]);
  closeEnd(1);
  waitForResults();
  closeEnd(0);
  const Outcome outcome = finish(child);
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err.find("could not be written"), std::string::npos) << outcome.err;
  EXPECT_TRUE(everythingBelow(temporary()).empty());
}

TEST_F(Interruption, ResultsThatCannotBeWrittenAreAFailure) {
  const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
  ASSERT_GE(full, 0);
  const Outcome outcome = finish(start({"conversations"}, full));
  ::close(full);
  EXPECT_EQ(outcome.code, 1);
  EXPECT_NE(outcome.err.find("could not be written"), std::string::npos) << outcome.err;
}

}  // namespace
}  // namespace chatsum::cli
