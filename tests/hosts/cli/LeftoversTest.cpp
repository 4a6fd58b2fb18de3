// Half-written reports of processes that were killed.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <set>
#include <thread>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using testing::Outcome;
using testing::putBytes;

class Leftovers : public testing::ProgramTest {
 protected:
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> names;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(reports(), none)) names.insert(entry.path().filename());
    return names;
  }
  [[nodiscard]] static bool isUnfinished(const std::string& name) { return name.starts_with(".chatsum-"); }
};

TEST_F(Leftovers, GoAtTheNextStartAndNothingElseDoes) {
  writeSample();
  const std::set<std::string> kept = {".chatsum-0123456789abcde",
                                      ".chatsum-0123456789abcdeg",
                                      ".chatsum-0123456789abcdef.bak",
                                      ".chatsum-0123456789abcdef.csv~",
                                      "chatsum-0123456789abcdef.csv",
                                      ".chatsum-settings",
                                      "Report.txt"};
  for (const std::vector<std::string>& command :
       std::vector<std::vector<std::string>>{{"reports"}, {"report", "55501", "--replace"}}) {
    fs::create_directories(reports() / ".chatsum-00000000000000aa.pdf");
    for (const std::string& name : kept) putBytes(reports() / name, "kept");
    for (const char* extension : {"", ".txt", ".csv", ".pdf"}) {
      putBytes(reports() / (".chatsum-0123456789abcdef" + std::string(extension)), "half");
    }
    const Outcome outcome = run(command);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    std::set<std::string> left = names();
    left.erase("55501.txt");
    std::set<std::string> expected = kept;
    expected.insert(".chatsum-00000000000000aa.pdf");
    EXPECT_EQ(left, expected);
  }
}

TEST_F(Leftovers, OfCallsGoToo) {
  writeSample();
  const fs::path phone =
      root() /
      "user/.local/share/chatsum/com.apple.mobilephone/Library/Preferences/Chatsum/.chatsum-0123456789abcdef.csv";
  putBytes(phone, "half");
  EXPECT_EQ(runPlain({"reports"}).code, 0);
  EXPECT_FALSE(fs::exists(phone));
}

TEST_F(Leftovers, StayWhileALivingProcessWritesThere) {
  writeSeeded({.messages = 6000, .conversations = 1});
  const int out = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  ASSERT_GE(out, 0);
  const int child = start({"report", "+15550100001", "--format", "pdf"}, out);
  ::close(out);
  std::string unfinished;
  siginfo_t ended{};
  while (unfinished.empty() && ended.si_pid == 0) {
    for (const std::string& name : names()) {
      if (isUnfinished(name)) unfinished = name;
    }
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOHANG | WNOWAIT), 0);
    std::this_thread::yield();
  }
  ASSERT_EQ(::kill(child, SIGSTOP), 0);
  ASSERT_FALSE(unfinished.empty()) << "the report was written before anybody could look";
  EXPECT_EQ(run({"reports"}).code, 0);
  EXPECT_TRUE(names().contains(unfinished));
  ASSERT_EQ(::kill(child, SIGKILL), 0);
  EXPECT_EQ(finish(child).code, 128 + SIGKILL);
  EXPECT_TRUE(names().contains(unfinished));
  EXPECT_EQ(run({"reports"}).code, 0);
  EXPECT_EQ(names(), std::set<std::string>());
}

}  // namespace
}  // namespace chatsum::cli
