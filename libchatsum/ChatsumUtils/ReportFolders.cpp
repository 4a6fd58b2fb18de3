// Where reports live, and the bulk moves and copies offered to hosts.

#include <string>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/ChatsumUtils/ReportPlaces.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

std::string reportsFolder() { return path::appending(platform::current().files.homeDirectory(), kReportsPath); }

void logMoveError(const char* operation, int line, const std::string& from, const std::string& to, const Error& error) {
  logging::error(operation, line, "Error while moving file from " + from + " to " + to + ". Error: " + error.description());
}

/// Moves or copies the files of a folder, one level.
template <class Step>
bool eachFile(const std::string& source, const std::string& destination, const char* operation, int line, Step step) {
  auto& files = platform::current().files;
  const auto names = files.list(source).value_or(std::vector<std::string>());
  ChatsumUtils::createFolderAt(destination);
  bool result = false;
  for (const std::string& name : names) {
    const std::string from = path::appending(source, name);
    if (files.isDirectory(from)) continue;
    const std::string to = path::appending(destination, name);
    logging::trace("******* Moving file from " + from + " to " + to);
    const auto error = step(from, to);
    if (error) logMoveError(operation, line, from, to, *error);
    result = !error;
  }
  return result;
}

}  // namespace

std::string ChatsumUtils::defaultLocation(std::int64_t) { return reportsFolder(); }

std::string ChatsumUtils::appSpecificDefaultLocation(std::int64_t appType) {
  constexpr int kInvalidAppTypeLine = 155;
  if (static_cast<std::uint64_t>(appType) < kAppFolderNames.size()) {
    return path::appending(reportsFolder(), kAppFolderNames[static_cast<std::size_t>(appType)]);
  }
  logging::error("+[ChatsumUtils appSpecificDefaultLocation:]", kInvalidAppTypeLine,
                 "Invalid apptype supplied: " + std::to_string(appType));
  return path::appending(reportsFolder(), "Default");
}

bool ChatsumUtils::createFolderAt(const std::string& path) {
  constexpr const char* kOperation = "+[ChatsumUtils createFolderAt:]";
  constexpr int kCreatedLine = 123, kFailedLine = 125, kExistsLine = 128;
  if (isFolderAlreadyExists(path)) {
    logging::information(kOperation, kExistsLine, "Folder already exists at '" + path + "'.");
    return false;
  }
  if (const auto error = platform::current().files.createDirectory(path)) {
    logging::error(kOperation, kFailedLine,
                   "Unable to create directory " + path + ", error : " + error->localizedDescription());
    return false;
  }
  logging::information(kOperation, kCreatedLine, "Folder successfully created at '" + path + "'.");
  return true;
}

bool ChatsumUtils::isFolderAlreadyExists(const std::string& path) { return platform::current().files.exists(path); }

bool ChatsumUtils::isFileAlreadyExists(std::string_view name, std::int64_t appType) {
  return platform::current().files.exists(path::appending(defaultLocation(appType), name));
}

void ChatsumUtils::createDefaultFolders() {
  constexpr int kCreatingLine = 164;
  for (std::size_t appType = 0; appType < kAppFolderNames.size(); ++appType) {
    const std::string folder = defaultLocation(static_cast<std::int64_t>(appType));
    logging::information("+[ChatsumUtils createDefaultFolders]", kCreatingLine, "Creating default location at " + folder);
    createFolderAt(folder);
  }
}

bool ChatsumUtils::moveFiles(const std::string& source, const std::string& destination) {
  return eachFile(source, destination, "+[ChatsumUtils moveFiles:destination:]", 182,
                  [](const auto& from, const auto& to) { return platform::current().files.move(from, to); });
}

bool ChatsumUtils::copyFiles(const std::string& source, const std::string& destination) {
  return eachFile(source, destination, "+[ChatsumUtils copyFiles:destination:]", 202,
                  [](const auto& from, const auto& to) { return platform::current().files.copy(from, to); });
}

bool ChatsumUtils::moveDirectory(const std::string& source, const std::string& destination) {
  logging::trace("******* Moving directory from " + source + " to " + destination);
  const auto error = platform::current().files.move(source, destination);
  if (error) logMoveError("+[ChatsumUtils moveDirectory:destination:]", 214, source, destination, *error);
  return !error;
}

}  // namespace chatsum
