#include "hosts/device/calls/StoredText.h"

#include <algorithm>
#include <string_view>

#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kMostBytes = 1024;

bool isControl(char32_t character) {
  return character < 0x20 || character == 0x7F || (character >= 0x80 && character < 0xA0);
}

bool holdsControls(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    if (isControl(utf8::next(text, at))) return true;
  }
  return false;
}

std::string cleaned(std::string_view stored) {
  std::string text;
  for (std::size_t at = 0; at < stored.size();) {
    const char32_t character = utf8::next(stored, at);
    utf8::append(text, isControl(character) ? U' ' : character);
  }
  const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

std::string_view cut(std::string_view text) {
  if (text.size() <= kMostBytes) return text;
  text = text.substr(0, kMostBytes);
  return text.substr(0, utf8::lengthWithoutPartialTail(text));
}

}  // namespace

StoredText storedText(const sqlite::Statement& row, int column) {
  if (sqlite3_column_type(row.get(), column) != SQLITE_BLOB) return {cleaned(cut(row.text(column))), false};
  std::string_view bytes = cut(row.blob(column));
  while (bytes.ends_with('\0')) bytes.remove_suffix(1);
  if (!utf8::isValid(bytes) || holdsControls(bytes)) return {"", true};
  return {cleaned(bytes), false};
}

}  // namespace chatsum::device
