#include "platform/system/images/ChildProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <thread>

#include "platform/system/files/Descriptor.h"
#include "platform/system/images/PictureLimits.h"

namespace chatsum::platform::system {
namespace {

using Clock = std::chrono::steady_clock;

std::string searchPath() {
  const char* path = std::getenv("PATH");
  return path && *path ? path : "/usr/local/bin:/usr/bin:/bin";
}

/// The absolute path of an installed program; empty when there is none.
std::string find(const std::string& program) {
  const std::string path = searchPath();
  for (std::size_t begin = 0; begin <= path.size();) {
    const std::size_t end = std::min(path.find(':', begin), path.size());
    const std::string file = path.substr(begin, end - begin) + "/" + program;
    if (file.front() == '/' && access(file.c_str(), X_OK) == 0) return file;
    begin = end + 1;
  }
  return {};
}

/// The same descriptor under a number that is not one of the standard three.
Descriptor above(Descriptor file) {
  if (file && file.get() <= STDERR_FILENO) return Descriptor(fcntl(file.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  return file;
}

void limit(__rlimit_resource resource, rlim_t most) {
  const rlimit limits{most, most};
  setrlimit(resource, &limits);
}

/// Becomes the program. Between fork and exec only what is safe in a signal handler may be called.
[[noreturn]] void become(const char* file, char* const* arguments, char* const* environment, int input, int output) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  signal(SIGPIPE, SIG_DFL);
  limit(RLIMIT_AS, limits::kChildMemory);
  limit(RLIMIT_CPU, limits::kChildCpuSeconds);
  limit(RLIMIT_FSIZE, 0);
  limit(RLIMIT_CORE, 0);
  if (dup2(input, STDIN_FILENO) >= 0 && dup2(output, STDOUT_FILENO) >= 0 && dup2(input, STDERR_FILENO) >= 0) {
    close_range(STDERR_FILENO + 1, ~0U, 0);
    execve(file, arguments, environment);
  }
  _exit(127);
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// A running program; killed when its owner goes before it has ended.
class Child {
 public:
  explicit Child(pid_t process) : process_(process) {}
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    if (hasEnded_) return;
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
  }

  /// Whether it ended by itself, without a complaint, before that time.
  bool endsWellBy(Clock::time_point deadline) {
    for (;;) {
      int status = 0;
      const pid_t ended = waitpid(process_, &status, WNOHANG);
      if (ended == process_) {
        hasEnded_ = true;
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
      }
      // Whoever does not want to know of ended processes is not told how they ended.
      if (ended < 0 && errno != EINTR) return hasEnded_ = true;
      if (Clock::now() >= deadline) return false;
      std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
  }

 private:
  pid_t process_;
  bool hasEnded_ = false;
};

/// Reads to the end of the output; none when it is too long or comes too late.
std::optional<std::string> readAll(int file, std::size_t mostBytes, Clock::time_point deadline) {
  std::string output;
  std::array<char, 65536> buffer{};
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return std::nullopt;
    pollfd ready{file, POLLIN, 0};
    const int count = poll(&ready, 1, static_cast<int>(left));
    if (count < 0 && errno != EINTR) return std::nullopt;
    if (count <= 0) continue;
    const ssize_t got = read(file, buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) return output;
    output.append(buffer.data(), static_cast<std::size_t>(got));
    if (output.size() > mostBytes) return std::nullopt;
  }
}

}  // namespace

std::optional<std::string> outputOf(const std::string& program, const std::vector<std::string>& arguments,
                                    std::size_t mostBytes) {
  const std::string file = find(program);
  std::array<int, 2> ends{};
  if (file.empty() || pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
  const Descriptor reading(ends[0]);
  Descriptor writing = above(Descriptor(ends[1]));
  const Descriptor nothing = above(Descriptor(open("/dev/null", O_RDWR | O_CLOEXEC)));
  if (!writing || !nothing) return std::nullopt;

  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> environment{"PATH=" + searchPath(), "LC_ALL=C"};
  const std::vector<char*> wordPointers = pointersTo(words), environmentPointers = pointersTo(environment);

  const auto deadline = Clock::now() + std::chrono::milliseconds(limits::kChildMilliseconds);
  const pid_t process = fork();
  if (process < 0) return std::nullopt;
  if (process == 0) {
    become(file.c_str(), wordPointers.data(), environmentPointers.data(), nothing.get(), writing.get());
  }
  Child child(process);
  (void)writing.close();
  auto output = readAll(reading.get(), mostBytes, deadline);
  if (!output || !child.endsWellBy(deadline)) return std::nullopt;
  return output;
}

}  // namespace chatsum::platform::system
