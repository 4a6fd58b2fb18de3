// Numbers and e-mail addresses compared by what they mean, not by how they are written. Any thread.
#pragma once

#include <string>
#include <string_view>

#include "platform/system/contacts/ContactAddress.h"
#include "platform/system/phone/PhoneRegions.h"

namespace chatsum::device {

/// An address read once and compared with many. `region` (ISO 3166 alpha-2, may be empty) is where numbers without a
/// country code are at home.
class ComparableAddress {
 public:
  ComparableAddress(std::string_view text, std::string_view region);

  /// Whether it is a number (of any length) or an e-mail address, and no name.
  [[nodiscard]] bool isNumberOrEmail() const;
  [[nodiscard]] bool isSameAs(std::string_view other) const;

 private:
  const platform::system::PhoneRegion* region_;
  platform::system::ContactAddress address_;
  std::string folded_;  // of what is neither number nor e-mail address
};

/// Equal for all ways to write an address: the last seven digits of a number, the e-mail address in lower case, the
/// text itself for everything else. Different numbers may share theirs.
[[nodiscard]] std::string roughAddress(std::string_view text);

}  // namespace chatsum::device
