#include "hosts/cli/PasswordInput.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <mutex>

#include "hosts/device/language/Say.h"
#include "hosts/device/stores/FileDescriptor.h"

namespace chatsum::cli {
namespace {

using device::say;

constexpr std::size_t kLongest = 1024;  // bytes

std::mutex terminalMutex;
std::optional<std::pair<int, termios>> changedTerminal;  // as it was

/// Reads up to the end of the first line. More bytes than a password has are an error of the caller's.
device::StoreResult<std::string> firstLine(int descriptor, const std::string& shownName) {
  std::array<char, kLongest + 2> buffer{};
  std::size_t have = 0;
  while (have < buffer.size() && !std::memchr(buffer.data(), '\n', have)) {
    const ssize_t got = ::read(descriptor, buffer.data() + have, buffer.size() - have);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      return device::StoreProblem{say("The password cannot be read from {0} ({1}).", shownName, std::strerror(errno))};
    }
    if (got == 0) break;
    have += static_cast<std::size_t>(got);
  }
  std::string line(buffer.data(), have);
  ::explicit_bzero(buffer.data(), buffer.size());
  line.resize(std::min(line.find('\n'), line.size()));
  if (line.ends_with('\r')) line.pop_back();
  if (line.empty())
    return device::StoreProblem{say("There is no password in {0}; write it in the first line.", shownName)};
  if (line.size() > kLongest) {
    ::explicit_bzero(line.data(), line.size());
    return device::StoreProblem{say("The first line of {0} is too long to be a password.", shownName)};
  }
  return line;
}

/// While it lives, the terminal does not show what is typed.
class Unseen {
 public:
  explicit Unseen(int terminal) {
    termios settings{};
    if (::tcgetattr(terminal, &settings) != 0) return;
    {
      const std::lock_guard lock(terminalMutex);
      changedTerminal = {terminal, settings};
    }
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    settings.c_lflag |= static_cast<tcflag_t>(ICANON | ISIG);
    ::tcsetattr(terminal, TCSAFLUSH, &settings);
  }
  ~Unseen() { restoreTerminal(); }
  Unseen(const Unseen&) = delete;
  Unseen& operator=(const Unseen&) = delete;
};

void show(int terminal, const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const ssize_t put = ::write(terminal, text.data() + at, text.size() - at);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return;
    at += static_cast<std::size_t>(put);
  }
}

}  // namespace

device::StoreResult<std::string> passwordOfFile(const std::string& path) {
  if (path == "-") return firstLine(STDIN_FILENO, say("standard input"));
  const device::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) {
    return device::StoreProblem{say("The password file '{0}' cannot be read ({1}).", path, std::strerror(errno))};
  }
  return firstLine(file.get(), "'" + path + "'");
}

device::StoreResult<std::string> passwordOfDescriptor(int descriptor) {
  return firstLine(descriptor, say("descriptor {0}", descriptor));
}

std::optional<std::string> passwordOfTerminal(int terminal, const std::string& question) {
  std::optional<std::string> password;
  {
    const Unseen unseen(terminal);
    show(terminal, question);
    auto line = firstLine(terminal, say("the terminal"));
    if (line) password = std::move(line.value());
  }
  show(terminal, "\n");
  return password;
}

void restoreTerminal() {
  const std::lock_guard lock(terminalMutex);
  if (!changedTerminal) return;
  ::tcsetattr(changedTerminal->first, TCSAFLUSH, &changedTerminal->second);
  changedTerminal.reset();
}

}  // namespace chatsum::cli
