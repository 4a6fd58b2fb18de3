// A look at the bytes of a property list before a parser sees them: what would take it too much time, memory or stack,
// and what it would take for something else, is refused here. No state, any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace chatsum::platform::system {

namespace propertylist {
inline constexpr std::size_t kMostBytes = std::size_t{1} << 20;  ///< of a file
/// Arrays and dictionaries, each time that they are referred to; they may all stand inside each other.
inline constexpr std::size_t kMostContainers = 4096;
/// Of a binary list whose shared objects are written out.
inline constexpr std::size_t kMostObjects = 100'000;
inline constexpr std::size_t kMostExpandedBytes = std::size_t{4} << 20;
}  // namespace propertylist

/// Whether the bytes begin as a binary property list does.
[[nodiscard]] bool isBinaryPropertyList(std::string_view bytes);

/// Whether every object that can be reached from the top one lies inside the file, and all of them within the limits.
[[nodiscard]] bool isBinaryWithinLimits(std::string_view bytes);

/// The text of an XML file as UTF-8, without a byte-order mark: from UTF-8, or from UTF-16 with a mark. None for any
/// other encoding.
[[nodiscard]] std::optional<std::string> xmlAsUtf8(std::string_view bytes);

/// Whether the list is within the limits, and its numbers and dates are what they say they are.
[[nodiscard]] bool isXmlWithinLimits(std::string_view text);

}  // namespace chatsum::platform::system
