#include "hosts/desktop/report/CsvRow.h"

#include <algorithm>
#include <string>

namespace chatsum::desktop {
namespace {

QString shown(const std::string& cell, std::size_t most) {
  if (cell.size() <= most) return QString::fromUtf8(cell.data(), static_cast<qsizetype>(cell.size()));
  std::size_t end = most;
  while (end > 0 && (static_cast<unsigned char>(cell[end]) & 0xC0) == 0x80) --end;  // not inside a character
  return QString::fromUtf8(cell.data(), static_cast<qsizetype>(end)) + QChar(0x2026);
}

/// Takes the quoted part that begins at `at`, without its quotes, and answers where it ends.
std::size_t takeQuoted(std::string_view record, std::size_t at, std::string& cell) {
  for (++at; at < record.size(); ++at) {
    if (record[at] != '"') {
      cell += record[at];
    } else if (at + 1 < record.size() && record[at + 1] == '"') {
      cell += record[at++];
    } else {
      return at + 1;
    }
  }
  return at;
}

}  // namespace

QStringList csvCells(std::string_view record, std::size_t most) {
  QStringList cells;
  std::string cell;
  for (std::size_t at = 0;;) {
    cell.clear();
    if (at < record.size() && record[at] == '"') at = takeQuoted(record, at, cell);
    const std::size_t end = std::min(record.find(',', at), record.size());
    cell.append(record.substr(at, end - at));
    cells.append(shown(cell, most));
    if (end == record.size()) return cells;
    at = end + 1;
  }
}

}  // namespace chatsum::desktop
