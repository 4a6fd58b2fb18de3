// One row of the message statement, away from SQLite, and batches of them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/foundation/TextBuffer.h"
#include "platform/sqlite/Statement.h"

namespace chatsum {

/// The columns in the statement's order. Texts are as the store has them, up to their first NUL. None is NULL.
struct MessageRow {
  std::optional<std::string_view> guid;
  std::optional<std::string_view> text;
  std::optional<std::int64_t> date;
  int isFromMe = 0;
  std::optional<std::string_view> handle;
  int hasAttachments = 0;
  std::optional<std::string_view> fileName;
};

/// Copies of rows, their texts in one run of bytes. One thread at a time.
class MessageRowBatch {
 public:
  /// Appends the statement's current row.
  void append(const sqlite::Statement& statement);
  void clear();

  [[nodiscard]] std::size_t size() const { return rows_.size(); }
  /// Of all texts together.
  [[nodiscard]] std::size_t bytes() const { return bytes_.size(); }
  /// Valid until the batch is changed.
  [[nodiscard]] MessageRow operator[](std::size_t index) const;

 private:
  static constexpr std::size_t kTexts = 4;
  struct Row {
    std::array<std::uint32_t, kTexts> ends;  // of guid, text, handle and file name, from the row's first byte
    std::uint8_t present;                    // a bit for each text that is not NULL
    std::size_t start;
    std::optional<std::int64_t> date;
    int isFromMe, hasAttachments;
  };

  std::vector<Row> rows_;
  TextBuffer bytes_;
};

}  // namespace chatsum
