// Puts a copy of a report where the user wants it, whole or not at all. Any thread.
#pragma once

#include <optional>
#include <string>

#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// Why no copy can go to `target`; none when it looks possible.
[[nodiscard]] std::optional<StoreProblem> checkDelivery(const std::string& target, bool replace);

/// Copies the file `from` to `target`, beside it first and then into place. An older file goes only with `replace`, and
/// its manifest of evidence with it.
[[nodiscard]] std::optional<StoreProblem> deliver(const std::string& from, const std::string& target, bool replace);

}  // namespace chatsum::device
