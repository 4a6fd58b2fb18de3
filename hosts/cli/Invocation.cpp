#include "hosts/cli/Invocation.h"

#include <pwd.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "hosts/cli/PasswordInput.h"
#include "hosts/cli/Progress.h"
#include "hosts/device/session/SourceGuard.h"
#include "hosts/device/session/SourceOpening.h"

namespace chatsum::cli {
namespace {

constexpr const char* kContainers = "/chatsum/";  // in the user's data folder

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

/// The time that reproducible builds set instead of the clock's (reproducible-builds.org, SOURCE_DATE_EPOCH).
device::StoreResult<std::optional<Date>> fixedTime() {
  const char* text = std::getenv("SOURCE_DATE_EPOCH");
  if (!text || !*text) return std::optional<Date>();
  std::int64_t seconds = 0;
  const std::string_view view(text);
  const auto [end, error] = std::from_chars(view.data(), view.data() + view.size(), seconds);
  constexpr std::int64_t kYear10000 = 253'402'300'800;
  if (error != std::errc() || end != view.data() + view.size() || seconds < 0 || seconds >= kYear10000) {
    return device::StoreProblem{
        say("SOURCE_DATE_EPOCH in the environment is '{0}', which is no number of seconds since 1970; set another or "
            "none.",
            view)};
  }
  return std::optional<Date>(Date{static_cast<double>(seconds)});
}

}  // namespace

device::StoreResult<std::string> Invocation::homeDirectory(std::string_view application) const {
  std::string wanted = home;
  if (wanted.empty()) {
    wanted = dataFolder();
    if (wanted.empty())
      return device::StoreProblem{say("It is not known where your home is; say where reports go with --home.")};
    wanted.append(kContainers).append(application);
  }
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(wanted, error).lexically_normal();
  if (error) return device::StoreProblem{say("The folder '{0}' cannot be found ({1}).", wanted, error.message())};
  std::string text = path.string();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}

device::StoreResult<std::string> Invocation::writableHome() const {
  auto folder = homeDirectory();
  const auto facts = folder && !source.empty() ? device::sourceFactsAt(source) : std::nullopt;
  if (!facts) return folder;
  for (const auto& [application, container] : containers(folder.value())) {
    if (auto problem = device::refuseHomeInSource(*facts, container)) return *problem;
  }
  return folder;
}

std::optional<device::StoreProblem> Invocation::refusePlace(const std::string& place) const {
  const auto facts = source.empty() ? std::nullopt : device::sourceFactsAt(source);
  return facts ? device::refuseInSource(*facts, place) : std::nullopt;
}

device::Containers Invocation::containers(const std::string& homeFolder) const {
  if (home.empty()) return device::containersIn(homeFolder.substr(0, homeFolder.rfind('/')));
  return {{std::string(device::kMessagesApplication), homeFolder}};
}

device::StoreResult<std::unique_ptr<device::HomeSession>> Invocation::openHome() const {
  auto folder = writableHome();
  if (!folder) return folder.problem();
  return std::make_unique<device::HomeSession>(device::HomeSession::Options{
      .home = folder.value(), .containers = containers(folder.value()), .log = logLines()});
}

std::function<void(std::string_view)> Invocation::logLines() const {
  if (!isVerbose) return {};
  std::ostream& err = console.err;
  return [&err](std::string_view line) { err << line << "\n"; };
}

device::StoreResult<std::unique_ptr<device::DeviceSession>> Invocation::openSession(
    const std::function<void(device::DeviceSession::Options&)>& change) const {
  auto folder = homeDirectory();
  if (!folder) return folder.problem();
  const auto time = fixedTime();
  if (!time) return time.problem();
  device::DeviceSession::Options options;
  Progress progress(console);
  // Read before anything else happens: a file that cannot be read is told at once.
  std::optional<std::string> password;
  if (passwordFile || passwordDescriptor) {
    auto read = passwordFile ? passwordOfFile(*passwordFile) : passwordOfDescriptor(*passwordDescriptor);
    if (!read) return read.problem();
    password = std::move(read.value());
  }
  options.access.password = [&] {
    if (password || console.terminal < 0) return std::exchange(password, std::nullopt);
    return passwordOfTerminal(console.terminal, say("Password of the backup: "));
  };
  options.access.progress = [&](double done) {
    constexpr double kWhole = 100;
    progress.show(say("Unlocking, percent"), static_cast<std::uint64_t>(done * kWhole),
                  static_cast<std::uint64_t>(kWhole));
    return true;
  };
  options.fixedTime = time.value();
  options.source = source;
  options.home = folder.value();
  options.ownerName = owner;
  options.region = region;
  options.log = logLines();
  if (change) change(options);
  auto session = device::DeviceSession::open(options);
  progress.clear();
  if (session) {
    for (const std::string& warning : session.value()->source().facts().warnings) console.remark(warning);
  }
  return session;
}

bool Invocation::requireSource(const char* commandName) const {
  if (!source.empty()) return true;
  console.refuse(say("Say where the device's files are: --source PATH, or CHATSUM_SOURCE in the environment."),
                 commandName);
  return false;
}

}  // namespace chatsum::cli
