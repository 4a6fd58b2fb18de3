// The rows of the report screen's first section.
#pragma once

#include <cstdint>

namespace chatsum::criteria {

inline constexpr std::int64_t kSection = 0;
inline constexpr std::int64_t kNameRow = 0;
inline constexpr std::int64_t kSortOrderRow = 1;
inline constexpr std::int64_t kFileFormatRow = 2;
inline constexpr std::int64_t kRows = 3;

}  // namespace chatsum::criteria
