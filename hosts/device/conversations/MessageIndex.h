// What a Messages store knows of its messages without looking at them: their dates and their chats, from indexes.
// One thread at a time.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/sqlite/Connection.h"

namespace chatsum::device {

/// The stored date of every message by its ROWID. The usual store numbers its messages with few gaps, so a plain list
/// serves; a strange one gets a hash table.
class MessageDates {
 public:
  /// The date of what is no message.
  static constexpr std::int64_t kAbsent = std::numeric_limits<std::int64_t>::min();

  /// Reads all messages. Answers the reason of a failure.
  [[nodiscard]] std::optional<std::string> read(const sqlite::Connection& store);

  /// The number as it is stored, 0 for NULL; kAbsent when there is no such message.
  [[nodiscard]] std::int64_t find(std::int64_t message) const {
    if (isDense_) {
      const auto place = static_cast<std::uint64_t>(message);
      return place < dates_.size() ? dates_[place] : kAbsent;
    }
    const auto found = sparseDates_.find(message);
    return found == sparseDates_.end() ? kAbsent : found->second;
  }

 private:
  void set(std::int64_t message, std::int64_t date);

  bool isDense_ = true;
  std::vector<std::int64_t> dates_;
  std::unordered_map<std::int64_t, std::int64_t> sparseDates_;
};

/// Sorts the messages and takes out repetitions and those that do not exist.
void keepExisting(std::vector<std::int64_t>& messages, const MessageDates& dates);

/// The messages of some chats (ROWIDs), ascending, each once, only those that exist. Answers the reason of a failure.
[[nodiscard]] std::optional<std::string> readMessagesOf(const sqlite::Connection& store,
                                                        const std::vector<std::int64_t>& chats,
                                                        const MessageDates& dates, std::vector<std::int64_t>& messages);

}  // namespace chatsum::device
