#include "tests/support/Tool.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace chatsum::test {
namespace {

/// A file in memory that a child writes to and this process reads then.
class Written {
 public:
  Written() : descriptor_(::memfd_create("output", MFD_CLOEXEC)) {}
  ~Written() { ::close(descriptor_); }
  Written(const Written&) = delete;
  Written& operator=(const Written&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_; }
  [[nodiscard]] std::string text() const {
    std::string text;
    std::array<char, 65536> bytes{};
    ::lseek(descriptor_, 0, SEEK_SET);
    for (ssize_t count = 0; (count = ::read(descriptor_, bytes.data(), bytes.size())) > 0;) {
      text.append(bytes.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  int descriptor_;
};

}  // namespace

ToolRun runTool(const std::vector<std::string>& command) {
  constexpr int kNotThere = 127;
  std::vector<std::string> words = command;
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  const Written out, err;
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_adddup2(&actions, out.descriptor(), STDOUT_FILENO);
  ::posix_spawn_file_actions_adddup2(&actions, err.descriptor(), STDERR_FILENO);
  pid_t child = 0;
  const int problem = ::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (problem != 0) return {.code = kNotThere, .out = "", .err = command[0] + " could not be started"};
  int status = 0;
  ::waitpid(child, &status, 0);
  return {
      .code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), .out = out.text(), .err = err.text()};
}

}  // namespace chatsum::test
