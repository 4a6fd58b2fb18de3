// Country calling codes and trunk prefixes by region, so that comparing numbers need not load libphonenumber's
// metadata. Pure functions over a constant table: any thread, any time.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::platform::system {

/// A region of the numbering world. `trunkPrefix` is what its people dial before a national number, often "0".
struct PhoneRegion {
  std::string_view name;  ///< ISO 3166 alpha-2, upper case
  int callingCode;
  std::string_view trunkPrefix;
};

/// The region of that name in any case, nullptr when it is unknown.
[[nodiscard]] const PhoneRegion* phoneRegionNamed(std::string_view name);

/// A region with that calling code (all of one code share the trunk prefix), nullptr when there is none.
[[nodiscard]] const PhoneRegion* phoneRegionWithCallingCode(int callingCode);

/// The digits dialled for a foreign number: "011" in North America, "00" almost everywhere; "00" for nullptr.
[[nodiscard]] std::string_view internationalPrefix(const PhoneRegion* region);

/// How many of the leading digits of an international number are its calling code (1 to 3).
[[nodiscard]] int callingCodeLength(int firstDigit, int secondDigit);

}  // namespace chatsum::platform::system
