#include "bench/ChildProcess.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>

namespace chatsum::bench {
namespace {

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

[[noreturn]] void become(const std::vector<std::string>& command, int output) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  dup2(output, STDOUT_FILENO);
  dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

Run runChild(const std::vector<std::string>& command, const std::string& outputFile) {
  std::array<int, 2> ends{-1, -1};
  const bool keep = outputFile.empty();
  if (keep) {
    if (pipe(ends.data()) != 0) return {.exitCode = -1, .output = {}};
  } else {
    ends[1] = open(outputFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  }
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    if (keep) close(ends[0]);
    become(command, ends[1]);
  }
  close(ends[1]);
  Run run;
  if (keep) {
    std::array<char, 65536> bytes{};
    for (ssize_t count = 0; (count = read(ends[0], bytes.data(), bytes.size())) > 0;) {
      run.output.append(bytes.data(), static_cast<std::size_t>(count));
    }
    close(ends[0]);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  run.wallSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  run.cpuSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
  run.peakKilobytes = usage.ru_maxrss;
  run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return run;
}

}  // namespace chatsum::bench
