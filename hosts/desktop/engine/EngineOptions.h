// What the program tells its engine about the machine and the person. Plain values.
#pragma once

#include <optional>
#include <string>

#include "hosts/device/home/Containers.h"
#include "platform/foundation/Date.h"
#include "platform/system/screen/HostScreen.h"

namespace chatsum::desktop {

struct EngineOptions {
  std::string home;                           ///< absolute, no trailing "/"; reports land below it
  device::Containers containers = {};         ///< of the reports of each application; none: all in that home
  std::string sampleFolder;                   ///< absolute; where the sample device is written; empty: nowhere
  std::string region = "US";                  ///< of phone numbers without a country code, ISO 3166 alpha-2
  std::optional<std::string> ownerName = {};  ///< shown instead of "Me"
  std::optional<Date> fixedTime = {};         ///< what is taken for now; none: the machine's time
  platform::system::HostScreen screen = {};   ///< `mainQueueFilled` is the engine's own business
};

}  // namespace chatsum::desktop
