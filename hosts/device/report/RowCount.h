// Counts a conversation's rows in the store by itself, so that what the library reads can be checked against it.
// Each operation has its connection to itself and runs on one thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "hosts/device/stores/MessageView.h"
#include "hosts/device/words/MessageWords.h"
#include "platform/foundation/Date.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

/// What putting messages into words does to the rows.
struct WordRows {
  std::uint64_t besideFiles = 0;  ///< rows added for the words of messages that have attachments
  // Rows that go, because the words of another tell of them or nobody sent them.
  std::uint64_t reactionsShown = 0, reactionsTakenBack = 0, previewFiles = 0, stickers = 0, missingFiles = 0;
};

struct RowCount {
  std::uint64_t rows = 0;  ///< messages joined with their attachments, with text or without
  /// Messages whose words give way to the paths of their attachments; only without words.
  std::uint64_t wordsBesideFiles = 0;
  WordRows words;  ///< only with words
  /// Messages whose date the library cannot tell rightly, by GUID: the true date, none without one.
  std::unordered_map<std::string, std::optional<Date>> oddDates;
  std::optional<std::string> failure;  ///< why not all could be counted
};

/// Counts from the store's indexes where it has them, so a large conversation costs little. `chats` are ROWIDs. `words`
/// is null where messages are not put into words, else of this reading and used by nobody else.
[[nodiscard]] RowCount countRows(const sqlite::Connection& store, const std::vector<std::int64_t>& chats,
                                 MessageWords* words = nullptr);

struct TextlessRows {
  std::uint64_t withoutBody = 0;         ///< neither text nor body
  std::uint64_t withUnreadableBody = 0;  ///< a body in which no text was found
  std::optional<std::string> failure;    ///< why not all rows could be read
};

/// Looks at every row. `store` is a connection that MessageView prepared with `counters`, without words.
[[nodiscard]] TextlessRows countTextlessRows(const sqlite::Connection& store, const BodyCounters& counters,
                                             const std::vector<std::int64_t>& chats);

/// The same where messages are put into words: `store` is a connection that WordsView prepared with `words`.
[[nodiscard]] TextlessRows countSilentRows(const sqlite::Connection& store, const MessageWords& words,
                                           const std::vector<std::int64_t>& chats);

}  // namespace chatsum::device
