// The place of a row in a table.
#pragma once

#include <compare>
#include <cstdint>

namespace chatsum::platform {

struct IndexPath {
  std::int64_t section = 0;
  std::int64_t row = 0;
  friend auto operator<=>(const IndexPath&, const IndexPath&) = default;
};

}  // namespace chatsum::platform
