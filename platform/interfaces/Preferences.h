// What the Settings pane's framework hands around.
#pragma once

#include <memory>

#include "platform/foundation/Value.h"

namespace chatsum::platform {

/// One row of a settings pane.
struct PSSpecifier {
  Record properties;  ///< among others the key "label"
};
using PSSpecifierRef = std::shared_ptr<PSSpecifier>;

}  // namespace chatsum::platform
