// From a handle (phone number, e-mail address, sender name) to the card that has it. The numbers are indexed at the
// first question, by their last seven digits; hits and misses are remembered. Any thread.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/interfaces/AddressBook.h"
#include "platform/system/contacts/ContactAddress.h"
#include "platform/system/contacts/ContactStore.h"

namespace chatsum::platform::system {

struct ContactMatch {
  ABRecordID record = -1;              ///< the card, -1 for nobody or when it is not clear who
  std::size_t value = 0;               ///< with a record: the place in the store's values of what matched
  std::vector<ABRecordID> candidates;  ///< when several different people have the handle: their cards, ascending

  [[nodiscard]] bool isAmbiguous() const { return !candidates.empty(); }
};

class ContactMatcher {
 public:
  /// The store must outlive the matcher. `region` (ISO 3166 alpha-2, any case; unknown or empty is allowed) is where
  /// numbers without a country code are at home.
  ContactMatcher(const ContactStore& store, std::string_view region);

  /// The card that has the handle. Only the surest matches count; of several cards the one is taken when they are
  /// linked or bear the same name, else nobody.
  [[nodiscard]] ContactMatch match(std::string_view handle) const;

  [[nodiscard]] const ContactStore& store() const { return store_; }

 private:
  struct Entry {
    std::uint64_t key = 0;
    Digits digits;  // of a number
    std::uint32_t value = 0;
    std::uint32_t next = 0;  // of the same bucket
    ContactAddress::Kind kind = ContactAddress::Kind::kNothing;
    bool isInternational = false;
  };

  void buildIndex() const;
  [[nodiscard]] ContactMatch find(std::string_view handle) const;
  [[nodiscard]] std::vector<std::size_t> surestValues(const ContactAddress& wanted) const;
  [[nodiscard]] ContactMatch choose(const std::vector<std::size_t>& places) const;

  const ContactStore& store_;
  const PhoneRegion* region_;

  mutable std::once_flag indexOnce_;
  mutable std::vector<Entry> entries_;
  mutable std::vector<std::uint32_t> buckets_;  // the first entry of each, kNone at an empty one

  mutable std::mutex memoMutex_;
  mutable std::unordered_map<std::string, ContactMatch> memo_;
};

}  // namespace chatsum::platform::system
