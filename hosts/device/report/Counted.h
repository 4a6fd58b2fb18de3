// Numbers in sentences. No state, any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace chatsum::device {

/// "1 row has", "2 rows have".
[[nodiscard]] inline std::string counted(std::uint64_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

}  // namespace chatsum::device
