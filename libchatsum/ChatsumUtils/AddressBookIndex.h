// The index from plain phone numbers and addresses to record identifiers, built from the address-book database and
// searched by containment. An index never changes once it is published; the process holds one at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/interfaces/AddressBook.h"

namespace chatsum {

/// Keys in the order of their first row, folded for searching into one run of bytes. Any thread.
class AddressBookIndex {
 public:
  AddressBookIndex() = default;
  /// Rows as (plain value, record) in the order of the database; of rows with the same value the last one's record
  /// wins.
  explicit AddressBookIndex(const std::vector<std::pair<std::string, platform::ABRecordID>>& rows);

  [[nodiscard]] bool empty() const { return records_.empty(); }
  /// The record under the first key that contains the text, ignoring case and diacritics; -1 when none does. Answers
  /// are remembered, also the negative ones.
  [[nodiscard]] platform::ABRecordID recordForKeyContaining(const std::string& text) const;

 private:
  [[nodiscard]] platform::ABRecordID search(const std::string& text) const;

  std::string folded_;  // every key folded, each followed by a NUL
  std::vector<std::size_t> starts_;
  std::vector<platform::ABRecordID> records_;
  mutable std::mutex memoMutex_;
  mutable std::unordered_map<std::string, platform::ABRecordID> memo_;
};

/// Where the process keeps its index. Any thread.
namespace addressBookIndexSlot {

/// The current index; never null, empty until one was published.
[[nodiscard]] std::shared_ptr<const AddressBookIndex> current();
void publish(std::shared_ptr<const AddressBookIndex> index);

}  // namespace addressBookIndexSlot

}  // namespace chatsum
