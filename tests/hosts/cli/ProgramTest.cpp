#include "tests/hosts/cli/ProgramTest.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "hosts/device/sample/DevicePaths.h"
#include "hosts/device/sample/SampleDevice.h"

namespace chatsum::cli::testing {
namespace {

namespace fs = std::filesystem;

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

int openNew(const fs::path& file) { return ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600); }

}  // namespace

ProgramTest::ProgramTest() {
  fs::create_directory(root() / "run");
  fs::create_directory(temporary());
  environment = {{"TZ", "America/New_York"},
                 {"LC_ALL", "en_US.UTF-8"},
                 {"HOME", (root() / "user").string()},
                 {"TMPDIR", temporary().string()},
                 {"PATH", "/usr/bin:/bin"}};
  for (const char* variable : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS"}) {
    if (const char* value = std::getenv(variable)) environment[variable] = value;
  }
}

int ProgramTest::startPlain(const std::vector<std::string>& arguments, int out) const {
  std::vector<std::string> all = {"chatsum"}, variables;
  all.insert(all.end(), arguments.begin(), arguments.end());
  for (const auto& [name, value] : environment) variables.push_back(name + "=" + value);
  std::vector<char*> argumentPointers = pointersTo(all), environmentPointers = pointersTo(variables);
  const fs::path folder = root() / "run";
  const int err = openNew(root() / "stderr"), nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(err, STDERR_FILENO);
    if (::chdir(folder.c_str()) != 0) ::_exit(126);
    if (largestFile) {
      const rlimit limit{*largestFile, *largestFile};
      ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    if (addressSpace) {
      const rlimit limit{*addressSpace, *addressSpace};
      ::setrlimit(RLIMIT_AS, &limit);
    }
    if (hasNoThreads) {
      // As large as this the stacks of threads are, too; no machine has room for one.
      rlimit limit{};
      ::getrlimit(RLIMIT_STACK, &limit);
      limit.rlim_cur = rlim_t{1} << 47;
      if (::setrlimit(RLIMIT_STACK, &limit) != 0) ::_exit(125);
    }
    ::execve(CHATSUM_PROGRAM, argumentPointers.data(), environmentPointers.data());
    ::_exit(127);
  }
  ::close(err);
  ::close(nothing);
  return child;
}

Outcome ProgramTest::finish(int child) const {
  int status = 0;
  rusage usage{};
  ::wait4(child, &status, 0, &usage);
  return {.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          .out = "",
          .err = bytesOf(root() / "stderr"),
          .peakBytes = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024};
}

std::vector<std::string> ProgramTest::withPlaces(const std::vector<std::string>& arguments) const {
  std::vector<std::string> all = {"--source", device().string(), "--home", home().string()};
  all.insert(all.end(), arguments.begin(), arguments.end());
  const auto command = std::find(all.begin(), all.end(), "report");
  if (command != all.end() && std::find(command, all.end(), "--format") == all.end()) {
    all.insert(command + 1, {"--format", "text"});
  }
  return all;
}

int ProgramTest::start(const std::vector<std::string>& arguments, int out) const {
  return startPlain(withPlaces(arguments), out);
}

Outcome ProgramTest::runPlain(const std::vector<std::string>& arguments) const {
  const int out = openNew(root() / "stdout");
  Outcome outcome = finish(startPlain(arguments, out));
  ::close(out);
  outcome.out = bytesOf(root() / "stdout");
  return outcome;
}

Outcome ProgramTest::run(const std::vector<std::string>& arguments) const { return runPlain(withPlaces(arguments)); }

std::string ProgramTest::report(const std::string& conversation, const std::vector<std::string>& more) const {
  std::vector<std::string> arguments = {"report", conversation};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  const std::vector<std::string> lines = linesOf(outcome.out);
  if (lines.size() != 1) {
    ADD_FAILURE() << "not one path: " << outcome.out;
    return "";
  }
  EXPECT_TRUE(fs::is_regular_file(lines[0])) << lines[0];
  return bytesOf(lines[0]);
}

void ProgramTest::writeSample() const {
  const auto problem = device::writeSampleDevice(device());
  ASSERT_FALSE(problem.has_value()) << *problem;
}

void ProgramTest::writeSeeded(const device::SeededDeviceOptions& options) const {
  const auto problem = device::writeSeededDevice(device(), options);
  ASSERT_FALSE(problem.has_value()) << *problem;
}

fs::path ProgramTest::storePath() const {
  const fs::path path = device::messageStorePath(device());
  fs::create_directories(path.parent_path());
  return path;
}

fs::path ProgramTest::addressBookPath() const {
  const fs::path path = device::addressBookPath(device());
  fs::create_directories(path.parent_path());
  return path;
}

void ProgramTest::expectFailure(const std::vector<std::string>& arguments, const std::string& part) const {
  const auto sourceBefore = everythingBelow(device()), homeBefore = everythingBelow(home());
  const Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.code, 1) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  const std::vector<std::string> lines = linesOf(outcome.err);
  ASSERT_EQ(lines.size(), 1U) << outcome.err;
  EXPECT_TRUE(lines[0].starts_with("chatsum: ")) << lines[0];
  EXPECT_NE(lines[0].find(part), std::string::npos) << lines[0];
  EXPECT_EQ(everythingBelow(device()), sourceBefore);
  EXPECT_EQ(everythingBelow(home()), homeBefore);
  EXPECT_TRUE(everythingBelow(temporary()).empty());
}

std::string bytesOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void putBytes(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

std::map<std::string, std::string> everythingBelow(const fs::path& folder) {
  std::map<std::string, std::string> found;
  if (!fs::exists(folder)) return found;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const std::string name = fs::relative(entry.path(), folder).string();
    if (entry.is_symlink()) {
      found[name] = "-> " + fs::read_symlink(entry.path()).string();
    } else if (entry.is_directory()) {
      found[name] = "folder";
    } else {
      found[name] = std::to_string(entry.last_write_time().time_since_epoch().count()) + " " + bytesOf(entry.path());
    }
  }
  return found;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

std::int64_t SmallStore::chat(const std::string& handle, const std::string& service) {
  lastHandle = store.addHandle({.id = handle, .service = service});
  const std::string guid = service + ";-;" + handle;
  return store.addChat({.guid = guid, .identifier = handle, .service = service, .handles = std::span(&lastHandle, 1)});
}

void SmallStore::message(std::int64_t chat, const std::string& text, bool fromMe) {
  device::MessageRow row;
  row.text = text;
  row.handle = lastHandle;
  row.fromMe = fromMe;
  row.chats = std::span(&chat, 1);
  message(row);
}

void SmallStore::message(device::MessageRow row) {
  const std::string guid = "M" + std::to_string(++messages_);
  row.guid = guid;
  if (row.date == 0 && !row.dateAsIs) {
    row.date = nextDate;
    nextDate += 60'000'000'000;
  }
  store.addMessage(row);
}

void SmallStore::finish() {
  const auto problem = store.finish();
  ASSERT_FALSE(problem.has_value()) << *problem;
}

}  // namespace chatsum::cli::testing
