// Serves a Messages store to the library with every message in words: the view of MessageView with texts that tell
// reactions, replies, edits and the like, and, where they are wanted, messages that were deleted or stand in no chat.
// Belongs to one connection and its thread.
#pragma once

#include <sqlite3.h>

#include <memory>

#include "hosts/device/stores/MessageView.h"
#include "hosts/device/words/MessageWords.h"

namespace chatsum::device {

class WordsView {
 public:
  /// Prepares a connection that a snapshot opened, as `MessageView::install` does. Of one reading only: the words are
  /// those of its conversation. An ordinary message costs a few tests of its columns. `flag` is that of
  /// `MessageView::Options`.
  /// Answers false when SQLite refuses; its error message stands on the connection.
  [[nodiscard]] static bool install(sqlite3* connection, const std::shared_ptr<MessageWords>& words,
                                    const std::shared_ptr<BodyCounters>& counters, const std::string& flag = {});
};

}  // namespace chatsum::device
