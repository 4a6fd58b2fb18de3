// The table `message_attachment_join` as the rows of a reading want it: without what nobody sent, and with one more row
// for the words of a message that has both words and files.
#pragma once

#include <sqlite3.h>

#include <memory>

#include "hosts/device/words/MessageWords.h"

namespace chatsum::device {

/// Puts a temporary table of that name before the store's own on this connection. It answers only questions for one
/// message. Answers false when SQLite refuses; its error message stands on the connection.
[[nodiscard]] bool installFilesTable(sqlite3* connection, const std::shared_ptr<MessageWords>& words);

}  // namespace chatsum::device
