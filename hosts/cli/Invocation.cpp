#include "hosts/cli/Invocation.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace chatsum::cli {
namespace {

constexpr const char* kContainer = "/chatsum/com.apple.MobileSMS";

std::string dataFolder() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data && data[0] == '/') return data;
  const char* home = std::getenv("HOME");
  if (!home || home[0] != '/') {
    const passwd* user = ::getpwuid(::geteuid());
    home = user ? user->pw_dir : nullptr;
  }
  return home && home[0] == '/' ? std::string(home) + "/.local/share" : "";
}

}  // namespace

device::StoreResult<std::string> Invocation::homeDirectory() const {
  std::string wanted = home;
  if (wanted.empty()) {
    wanted = dataFolder();
    if (wanted.empty())
      return device::StoreProblem{"It is not known where your home is; say where reports go with --home."};
    wanted += kContainer;
  }
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(wanted, error).lexically_normal();
  if (error) return device::StoreProblem{"The folder '" + wanted + "' cannot be found (" + error.message() + ")."};
  std::string text = path.string();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}

device::StoreResult<std::unique_ptr<device::DeviceSession>> Invocation::openSession() const {
  auto folder = homeDirectory();
  if (!folder) return folder.problem();
  device::DeviceSession::Options options;
  options.source = source;
  options.home = folder.value();
  options.ownerName = owner;
  options.region = region;
  if (isVerbose) {
    std::ostream& err = console.err;
    options.log = [&err](std::string_view line) { err << line << "\n"; };
  }
  return device::DeviceSession::open(options);
}

bool Invocation::requireSource(const char* commandName) const {
  if (!source.empty()) return true;
  console.refuse("Say where the device's files are: --source PATH, or CHATSUM_SOURCE in the environment.", commandName);
  return false;
}

}  // namespace chatsum::cli
