// Phone numbers the way the system prints and reads them, over libphonenumber. Its metadata (some milliseconds, some
// megabytes) is loaded by the first call that needs it, never at start-up. Free functions, any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace chatsum::platform::system {

/// A number as a phone prints it: "+15550100123" → "+1 (555) 010-0123", "0612345678" in FR → "06 12 34 56 78". `region`
/// (ISO 3166 alpha-2, any case) says how numbers without a country code are written. What follows a pause ("," or ";")
/// stays as it is. Text with letters or "@", no digits, or of no known country comes back unchanged. UTF-8.
[[nodiscard]] std::string formattedLikeAPhone(std::string_view number, std::string_view region);

/// The digits behind the calling code (leading zeros that belong to the number kept) when the text, written as in
/// `region`, is a number; none otherwise.
[[nodiscard]] std::optional<std::string> nationalDigits(std::string_view number, std::string_view region);

/// Whether a number without a country code has the length of a whole number of the region.
[[nodiscard]] bool isPossibleInRegion(std::string_view number, std::string_view region);

}  // namespace chatsum::platform::system
