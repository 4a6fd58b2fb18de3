#include "platform/fake/FakePlatform.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "platform/foundation/PathComponents.h"

namespace chatsum::platform::fake {

FakePlatform::FakePlatform(const std::string& homeDirectory)
    : realFiles({.homeDirectory = homeDirectory,
                 .mapPath = [this](const std::string& path) { return realPath(path); },
                 .openDatabase = {}}),
      files(realFiles),
      dateFormatting(clock),
      propertyLists(realFiles),
      platform_{.log = log,
                .clock = clock,
                .files = files,
                .mainBundle = mainBundle,
                .device = device,
                .runtime = runtime,
                .uniformTypes = uniformTypes,
                .dateFormatting = dateFormatting,
                .strings = strings,
                .propertyLists = propertyLists,
                .graphics = graphics,
                .artwork = artwork,
                .contacts = contacts,
                .addressBook = addressBook,
                .messages = messages,
                .dispatch = dispatch,
                .darwinNotifications = darwinNotifications,
                .companion = companion,
                .screen = screen} {
  std::filesystem::create_directories(realPath(homeDirectory));
}

std::string FakePlatform::realPath(const std::string& devicePath) const {
  if (devicePath.empty()) return "";
  if (devicePath == root() || devicePath.starts_with(root() + "/")) return devicePath;
  return devicePath.front() == '/' ? root() + devicePath : root() + "/" + devicePath;
}

void FakePlatform::put(const std::string& devicePath, std::string_view bytes) {
  const std::filesystem::path path = realPath(devicePath);
  std::filesystem::create_directories(path.parent_path());
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  if (!stream) throw std::runtime_error("cannot write " + path.string());
}

std::string FakePlatform::read(const std::string& devicePath) const {
  std::ifstream stream(realPath(devicePath), std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + realPath(devicePath));
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace chatsum::platform::fake
