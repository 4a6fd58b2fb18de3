// One command line: the options that every command has, and the command that was chosen. One thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/cli/Console.h"
#include "hosts/device/home/Containers.h"
#include "hosts/device/home/HomeSession.h"
#include "hosts/device/session/DeviceSession.h"
#include "hosts/device/stores/StoreProblem.h"

namespace CLI {
class App;
}

namespace chatsum::cli {

struct Invocation {
  explicit Invocation(Console& where) : console(where) {}

  Console& console;

  std::string source;
  std::string home;
  std::optional<std::string> owner;
  std::string region;
  bool isVerbose = false;
  std::optional<std::string> passwordFile;
  std::optional<int> passwordDescriptor;

  /// What the chosen command does; set when its arguments were read.
  std::function<int()> command;

  /// The home directory as an absolute path: the one given, else the container of the host application (its bundle
  /// identifier) in the user's data folder.
  [[nodiscard]] device::StoreResult<std::string> homeDirectory(
      std::string_view application = device::kMessagesApplication) const;
  /// The same for what changes it without opening the source: the problem when it is inside a source that was given.
  [[nodiscard]] device::StoreResult<std::string> writableHome() const;
  /// The problem when a source was given and `place` is inside it.
  [[nodiscard]] std::optional<device::StoreProblem> refusePlace(const std::string& place) const;
  /// The containers of the host applications. With --home, only it.
  [[nodiscard]] device::Containers containers(const std::string& homeFolder) const;
  /// Opens the home without any source.
  [[nodiscard]] device::StoreResult<std::unique_ptr<device::HomeSession>> openHome() const;
  /// Opens the source that was given, asking for the password of an encrypted one. `change` may set further options.
  [[nodiscard]] device::StoreResult<std::unique_ptr<device::DeviceSession>> openSession(
      const std::function<void(device::DeviceSession::Options&)>& change = {}) const;
  /// Whether a source was given; else says so and answers false.
  [[nodiscard]] bool requireSource(const char* commandName) const;

 private:
  /// Prints the library's log lines; empty when nobody asked for them.
  [[nodiscard]] std::function<void(std::string_view)> logLines() const;
};

// Each adds its command to the program.
void addSourcesCommand(CLI::App& program, Invocation& invocation);
void addConversationsCommand(CLI::App& program, Invocation& invocation);
void addMessagesCommand(CLI::App& program, Invocation& invocation);
void addCallsCommand(CLI::App& program, Invocation& invocation);
void addReportCommand(CLI::App& program, Invocation& invocation);
void addReportsCommand(CLI::App& program, Invocation& invocation);
void addSettingsCommand(CLI::App& program, Invocation& invocation);
void addVerifyCommand(CLI::App& program, Invocation& invocation);
void addDemoCommand(CLI::App& program, Invocation& invocation);

}  // namespace chatsum::cli
