#include "hosts/cli/Invocation.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace chatsum::cli {
namespace {

constexpr const char* kContainers = "/chatsum/";  // in the user's data folder
constexpr const char* kMessages = "com.apple.MobileSMS";
constexpr std::array<const char*, 3> kApplications = {kMessages, "com.apple.mobilephone", "com.apple.facetime"};

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
    wanted.append(kContainers).append(kMessages);
  }
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(wanted, error).lexically_normal();
  if (error) return device::StoreProblem{"The folder '" + wanted + "' cannot be found (" + error.message() + ")."};
  std::string text = path.string();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}

std::map<std::string, std::string, std::less<>> Invocation::containers(const std::string& homeFolder) const {
  std::map<std::string, std::string, std::less<>> found = {{kMessages, homeFolder}};
  if (!home.empty()) return found;
  const std::string folder = homeFolder.substr(0, homeFolder.rfind('/') + 1);
  for (const char* application : kApplications) {
    std::error_code error;
    if (std::filesystem::is_directory(folder + application, error)) found[application] = folder + application;
  }
  return found;
}

device::StoreResult<std::unique_ptr<device::HomeSession>> Invocation::openHome() const {
  auto folder = homeDirectory();
  if (!folder) return folder.problem();
  return std::make_unique<device::HomeSession>(device::HomeSession::Options{
      .home = folder.value(), .containers = containers(folder.value()), .log = logLines()});
}

std::function<void(std::string_view)> Invocation::logLines() const {
  if (!isVerbose) return {};
  std::ostream& err = console.err;
  return [&err](std::string_view line) { err << line << "\n"; };
}

device::StoreResult<std::unique_ptr<device::DeviceSession>> Invocation::openSession() const {
  auto folder = homeDirectory();
  if (!folder) return folder.problem();
  device::DeviceSession::Options options;
  options.source = source;
  options.home = folder.value();
  options.ownerName = owner;
  options.region = region;
  options.log = logLines();
  return device::DeviceSession::open(options);
}

bool Invocation::requireSource(const char* commandName) const {
  if (!source.empty()) return true;
  console.refuse("Say where the device's files are: --source PATH, or CHATSUM_SOURCE in the environment.", commandName);
  return false;
}

}  // namespace chatsum::cli
