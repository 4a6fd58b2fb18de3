#include "hosts/device/home/HomeSession.h"

#include <utility>

#include "hosts/device/home/HomePaths.h"
#include "hosts/device/home/Leftovers.h"

namespace chatsum::device {
namespace {

platform::system::SystemOptions systemOptions(const HomeSession::Options& options) {
  platform::system::SystemOptions system;
  system.homeDirectory = options.home;
  system.applicationContainers = options.containers;
  system.logSink = options.log;
  system.mapPath = [options](const std::string& path) -> std::string {
    return pathInHome(options.home, options.containers, path).value_or("");
  };
  return system;
}

}  // namespace

HomeSession::HomeSession(const Options& options)
    : options_(options), system_(systemOptions(options)), before_(platform::install(&system_.platform())) {
  removeLeftovers(options.home);
  for (const auto& [application, folder] : options.containers) removeLeftovers(folder);
}

HomeSession::~HomeSession() { platform::install(before_); }

}  // namespace chatsum::device
