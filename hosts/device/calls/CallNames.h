// Names the people of calls, and finds the calls of one person. One thread at a time.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "hosts/device/calls/Call.h"
#include "hosts/device/conversations/ComparableAddress.h"
#include "hosts/device/conversations/Conversation.h"

namespace chatsum::device {

class CallNames {
 public:
  /// `region` (ISO 3166 alpha-2) says how numbers without a country code are written, unless the call knows better.
  CallNames(const FindPerson& findPerson, std::string region) : findPerson_(findPerson), region_(std::move(region)) {}

  /// Fills in the names: from the address book, else the one that the call list remembers, else the address as a phone
  /// prints it. A caller without an address becomes one that is named "No caller ID" or "(encrypted)".
  void name(Call& call);

 private:
  const std::optional<KnownPerson>& find(const std::string& address);

  const FindPerson& findPerson_;
  std::string region_;
  std::unordered_map<std::string, std::optional<KnownPerson>> known_;  // each address is asked for once
};

/// Who is meant by a person's words: an address, however it is written, or a whole name in any case. Never a part.
class WantedPerson {
 public:
  WantedPerson(std::string_view words, std::string_view region);

  /// Whether that is one of the call's people, who have their names.
  [[nodiscard]] bool isIn(const Call& call) const;

 private:
  ComparableAddress address_;
  std::string foldedName_;
};

}  // namespace chatsum::device
