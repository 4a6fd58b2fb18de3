#include "hosts/device/reports/PdfText.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <vector>

#include "hosts/device/stores/FileDescriptor.h"

extern char** environ;

namespace chatsum::device {
namespace {

/// How the child starts: its output goes to the pipe, it has no other streams, and signals end it as usual.
class ChildStart {
 public:
  explicit ChildStart(int output) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_init(&attributes_);
    sigset_t none, pipe;
    sigemptyset(&none);
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &pipe);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ChildStart(const ChildStart&) = delete;
  ChildStart& operator=(const ChildStart&) = delete;
  ~ChildStart() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }

  /// Answers 0 or errno.
  int run(pid_t& child, std::vector<std::string> words) const {
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return ::posix_spawnp(&child, pointers.front(), &actions_, &attributes_, pointers.data(), environ);
  }

 private:
  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
};

}  // namespace

PdfTextResult textOfPdf(const std::string& path, const std::function<bool(std::string_view)>& reader) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return PdfTextResult::kFailed;
  const FileDescriptor reading(ends[0]);
  pid_t child = 0;
  {
    const FileDescriptor writing(ends[1]);
    const int error = ChildStart(writing.get()).run(child, {"pdftotext", "-layout", "-enc", "UTF-8", path, "-"});
    if (error != 0) return error == ENOENT ? PdfTextResult::kNotInstalled : PdfTextResult::kFailed;
  }
  bool isWanted = true;
  std::array<char, 65536> block{};
  while (isWanted) {
    const ssize_t got = ::read(reading.get(), block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    isWanted = reader(std::string_view(block.data(), static_cast<std::size_t>(got)));
  }
  if (!isWanted) ::kill(child, SIGKILL);
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  const bool isGood = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return isGood || !isWanted ? PdfTextResult::kDone : PdfTextResult::kFailed;
}

}  // namespace chatsum::device
