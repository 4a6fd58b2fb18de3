// What a phone number, e-mail address or sender name comes down to when addresses are compared. Any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/system/phone/PhoneRegions.h"

namespace chatsum::platform::system {

/// The digits of a number as one integer; `count` keeps leading zeros. At most 18 digits.
struct Digits {
  std::uint64_t value = 0;
  int count = 0;

  friend bool operator==(const Digits&, const Digits&) = default;
  /// The last `length` digits, all of them when there are no more.
  [[nodiscard]] Digits last(int length) const;
  [[nodiscard]] bool endsWith(const Digits& other) const { return other.count <= count && last(other.count) == other; }
  /// Appends one digit; false when there is no room.
  [[nodiscard]] bool append(int digit);
  [[nodiscard]] std::string text() const;
  [[nodiscard]] static Digits of(std::string_view digits);
};

/// An address in the form in which it is compared.
struct ContactAddress {
  enum class Kind : std::uint8_t {
    kNothing,  ///< empty, or a business identifier ("urn:…"): no card has it
    kEmail,    ///< `text`: the address in lower case
    kName,     ///< `text`: an alphanumeric sender, or what is no number: compared as it is
    kShort,    ///< `text`: up to six digits
    kNumber,   ///< `digits`: seven digits or more
  };
  Kind kind = Kind::kNothing;
  bool isInternational = false;  ///< the digits begin with a country calling code
  Digits digits;
  std::string text;
};

/// Reads an address as people, stores and networks write it: e-mail addresses with "mailto:" or angle brackets, numbers
/// with any separators, digits of any script, keypad letters ("1-800-…"), pauses and extensions (cut off), "00" or the
/// region's own prefix for "+", service codes ("*31#") in front. `region` may be nullptr. The result is stored in
/// `address`, whose text buffer is used again.
void readContactAddress(std::string_view text, const PhoneRegion* region, ContactAddress& address);

/// How surely two numbers are the same, surest first.
enum class SameNumber { kExactly, kAtHome, kBySuffix, kNot };

/// Compares two addresses of kind kNumber: written with the same digits; the same once the region's trunk prefix is
/// taken off and its country code added; or one with a country code, the other being its national form, unless that is
/// written as a number of the home region.
[[nodiscard]] SameNumber compareNumbers(const ContactAddress& a, const ContactAddress& b, const PhoneRegion* region);

}  // namespace chatsum::platform::system
