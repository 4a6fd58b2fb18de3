// The address book of older systems: books, persons, their numbers and labels.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum::platform {

/// Signed 32-bit record identifier; -1 means not found.
using ABRecordID = std::int32_t;

/// A value with the label the person stored it under ("_$!<Mobile>!$_" or free words); the label may be absent.
struct ABLabelledValue {
  std::optional<std::string> label;
  std::string value;
};

enum class ABProperty { kPhone, kEmail };

/// One card. Immutable, any thread.
class ABRecord {
 public:
  virtual ~ABRecord() = default;
  [[nodiscard]] virtual ABRecordID recordID() const = 0;
  /// The values of a property in their order; none when the person has no such property.
  [[nodiscard]] virtual std::optional<std::vector<ABLabelledValue>> values(ABProperty property) const = 0;
};
using ABRecordRef = std::shared_ptr<const ABRecord>;

/// An opened address book. Any thread.
class ABAddressBook {
 public:
  virtual ~ABAddressBook() = default;
  /// The person with an identifier, nullptr when there is none.
  [[nodiscard]] virtual ABRecordRef personWithRecordID(ABRecordID identifier) const = 0;
};
using ABAddressBookRef = std::shared_ptr<ABAddressBook>;

class AddressBook {
 public:
  virtual ~AddressBook() = default;
  /// A new address book; nullptr when there is none.
  [[nodiscard]] virtual ABAddressBookRef create() = 0;
  /// Asks the user for access. The completion runs exactly once, on any thread, maybe before this returns.
  virtual void requestAccess(const ABAddressBookRef& book, std::function<void(bool granted)> completion) = 0;
  /// A label in the user's words: built-in ones translated, others as they are.
  [[nodiscard]] virtual std::string localizedLabel(std::string_view label) const = 0;
  /// A phone number as the system prints it ("+15550100123" → "+1 (555) 010-0123"); what is no number is unchanged.
  [[nodiscard]] virtual std::string formattedPhoneNumber(std::string_view number) const = 0;
};

}  // namespace chatsum::platform
