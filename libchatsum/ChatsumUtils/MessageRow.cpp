#include "libchatsum/ChatsumUtils/MessageRow.h"

#include <cstring>

namespace chatsum {
namespace {

enum Column { kGuid, kText, kDate, kIsFromMe, kHandle, kHasAttachments, kFileName };
constexpr std::array<int, 4> kTextColumns = {kGuid, kText, kHandle, kFileName};

}  // namespace

void MessageRowBatch::append(const sqlite::Statement& statement) {
  sqlite3_stmt* row = statement.get();
  Row copy{};
  copy.start = bytes_.size();
  for (std::size_t i = 0; i < kTexts; ++i) {
    if (const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, kTextColumns[i]))) {
      copy.present = static_cast<std::uint8_t>(copy.present | (1U << i));
      bytes_.append({text, ::strnlen(text, static_cast<std::size_t>(sqlite3_column_bytes(row, kTextColumns[i])))});
    }
    copy.ends[i] = static_cast<std::uint32_t>(bytes_.size() - copy.start);
  }
  if (!statement.isNull(kDate)) copy.date = statement.integer(kDate);
  copy.isFromMe = sqlite3_column_int(row, kIsFromMe);
  copy.hasAttachments = sqlite3_column_int(row, kHasAttachments);
  rows_.push_back(copy);
}

void MessageRowBatch::clear() {
  rows_.clear();
  bytes_.clear();
}

MessageRow MessageRowBatch::operator[](std::size_t index) const {
  const Row& row = rows_[index];
  const auto text = [&](std::size_t i) -> std::optional<std::string_view> {
    if (!(row.present & (1U << i))) return std::nullopt;
    const std::size_t start = i == 0 ? 0 : row.ends[i - 1];
    return bytes_.view().substr(row.start + start, row.ends[i] - start);
  };
  return {.guid = text(0),
          .text = text(1),
          .date = row.date,
          .isFromMe = row.isFromMe,
          .handle = text(2),
          .hasAttachments = row.hasAttachments,
          .fileName = text(3)};
}

}  // namespace chatsum
