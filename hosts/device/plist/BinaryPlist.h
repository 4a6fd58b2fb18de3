// Reads binary property lists ("bplist00"). No state, any thread; safe on hostile input.
#pragma once

#include <optional>
#include <string_view>

#include "hosts/device/plist/PlistValue.h"

namespace chatsum::device {

/// None when the bytes are no binary list, or damaged, or beyond the limits of `plist`.
[[nodiscard]] std::optional<PlistValue> parseBinaryPlist(std::string_view bytes);

}  // namespace chatsum::device
