// The two implementations of every interface, for tests that hold for both.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "platform/fake/FakePlatform.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/system/SystemPlatform.h"

namespace chatsum::platform {

/// The real services; the device's "/" is a temporary folder.
class RealHost {
 public:
  RealHost()
      : system_({.homeDirectory = "/var/mobile",
                 .ownerFullName = "Ann Example",
                 .logSink = [this](std::string_view line) { lines_.emplace_back(line); },
                 .mapPath = [this](const std::string& path) { return path.empty() ? path : folder_.path() + path; },
                 .openDatabase = {}}) {
    std::filesystem::create_directories(folder_.path() + "/var/mobile");
  }
  Platform& platform() { return system_.platform(); }
  [[nodiscard]] std::string realPath(const std::string& devicePath) const { return folder_.path() + devicePath; }
  [[nodiscard]] std::vector<std::string> logLines() const { return lines_; }
  void runQueues() { system_.runMainUntilIdle(); }

 private:
  fake::TemporaryFolder folder_;
  std::vector<std::string> lines_;
  system::SystemPlatform system_;
};

/// The fake ones as they are before a test sets anything but the owner.
class FakeHost {
 public:
  FakeHost() { fake_.messages.owner = "Ann Example"; }
  Platform& platform() { return fake_.platform(); }
  [[nodiscard]] std::string realPath(const std::string& devicePath) const { return fake_.realPath(devicePath); }
  [[nodiscard]] std::vector<std::string> logLines() const { return fake_.log.lines(); }
  void runQueues() { fake_.dispatch.runAll(); }

 private:
  fake::FakePlatform fake_;
};

using Hosts = ::testing::Types<RealHost, FakeHost>;

}  // namespace chatsum::platform
