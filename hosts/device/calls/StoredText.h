// Texts of a call list, which stand there as text, as bytes of text, or encrypted. No state, any thread.
#pragma once

#include <string>

#include "platform/sqlite/Statement.h"

namespace chatsum::device {

struct StoredText {
  std::string text;          ///< UTF-8 without control characters and blanks around it
  bool isEncrypted = false;  ///< bytes that are no text, so that `text` is empty
};

/// Reads a column of the current row. Bytes that are UTF-8 without control characters are text as well (older systems
/// keep addresses so); a NUL may end them. A text that is longer than any address or name is cut.
[[nodiscard]] StoredText storedText(const sqlite::Statement& row, int column);

}  // namespace chatsum::device
