// Property lists of any origin as plain values, bytes and archived objects included: those of backups and those inside
// rows of stores. Everything is treated as hostile: time, memory and depth are bounded. Values: any thread, one at a
// time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/foundation/Date.h"

namespace chatsum::device {

namespace plist {
inline constexpr std::size_t kMostBytes = std::size_t{64}
                                          << 20;     ///< of a list, and of what its texts and data add up to
inline constexpr std::size_t kMostValues = 200'000;  ///< in one list, shared ones counted at each place
inline constexpr int kDeepest = 100;                 ///< arrays and dictionaries inside each other
}  // namespace plist

class PlistValue {
 public:
  struct Data {
    std::string bytes;
  };
  /// The number of an object in a keyed archive.
  struct Reference {
    std::uint64_t number = 0;
  };
  struct Entry;
  using Items = std::vector<PlistValue>;
  using Entries = std::vector<Entry>;

  PlistValue() = default;
  template <class T>
  explicit PlistValue(T value) : value_(std::move(value)) {}

  [[nodiscard]] bool isNone() const { return std::holds_alternative<std::monostate>(value_); }
  /// UTF-8.
  [[nodiscard]] const std::string* asString() const { return std::get_if<std::string>(&value_); }
  /// The bytes of data.
  [[nodiscard]] const std::string* asData() const;
  [[nodiscard]] const Items* asArray() const { return std::get_if<Items>(&value_); }
  /// In the order of the list.
  [[nodiscard]] const Entries* asDictionary() const { return std::get_if<Entries>(&value_); }
  /// Integers, booleans, and reals that are whole.
  [[nodiscard]] std::optional<std::int64_t> asInteger() const;
  /// Numbers of any kind.
  [[nodiscard]] std::optional<double> asReal() const;
  [[nodiscard]] std::optional<bool> asBool() const;
  [[nodiscard]] std::optional<Date> asDate() const;
  [[nodiscard]] const Reference* asReference() const { return std::get_if<Reference>(&value_); }

  /// What stands under a key of a dictionary; a none value when nothing does, and for every other kind.
  [[nodiscard]] const PlistValue& operator[](std::string_view key) const;
  /// The text under a key, empty when there is none.
  [[nodiscard]] std::string stringAt(std::string_view key) const;

 private:
  std::variant<std::monostate, bool, std::int64_t, double, std::string, Data, Date, Reference, Items, Entries> value_;
};

struct PlistValue::Entry {
  std::string key;
  PlistValue value;
};

/// Reads a property list, XML (UTF-8, or UTF-16 with a byte-order mark) or binary. None when the bytes are none, are
/// damaged, go in circles or go beyond the limits.
[[nodiscard]] std::optional<PlistValue> parsePlist(std::string_view bytes);

/// The root object of a keyed archive (NSKeyedArchiver, version 100000) with everything it refers to in place:
/// dictionaries, arrays and sets, strings, data, dates, URLs (as strings, relative ones behind their base), UUIDs (as
/// data); any other object is a dictionary of its members, with its class's name under "$class". What leads back to an
/// object that is being read is a none value. None when it is no archive or goes beyond the limits.
[[nodiscard]] std::optional<PlistValue> unarchived(const PlistValue& archive);

}  // namespace chatsum::device
