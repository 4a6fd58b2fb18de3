// The name under which a card is shown. Pure functions, any thread.
#pragma once

#include <string>

namespace chatsum::platform::system {

/// What a card says about its name; every text is UTF-8 and may be empty.
struct ContactNameParts {
  std::string prefix, first, middle, last, suffix;
  std::string nickname, organization, displayName, compositeNameFallback;
  bool isOrganization = false;  ///< the card of a company: its own name comes first
};

/// The person's name in the order of its script (given name first; family name first when it is written in Han, Kana or
/// Hangul letters), else the nickname, the organisation, and what the address book itself kept as a name. Empty when
/// the card says nothing.
[[nodiscard]] std::string shownContactName(const ContactNameParts& parts);

}  // namespace chatsum::platform::system
