#include "bench/RowsFile.h"

#include <fstream>
#include <iterator>
#include <string_view>

namespace chatsum::bench {
namespace {

namespace fs = std::filesystem;

std::string replaced(std::string text, char from, char to) {
  for (char& c : text) c = c == from ? to : c;
  return text;
}

/// Text between T{ and T} of tbl: no escapes, and no line that begins like a request.
std::string groffText(const std::string& text) {
  std::string result;
  bool lineBegins = true;
  for (const char c : text) {
    if (c == '\n') {
      result += "\n.br\n";
    } else {
      if (lineBegins && (c == '.' || c == '\'' || c == 'T')) result += "\\&";
      if (c == '\\') {
        result += "\\e";
      } else {
        result += c;
      }
    }
    lineBegins = c == '\n';
  }
  return result;
}

std::string latin1(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80) {
      result += text[i];
    } else if ((byte & 0xC0) == 0xC0) {
      const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
      const bool isLatin1 = byte == 0xC2 || byte == 0xC3;
      result += isLatin1 ? static_cast<char>(((byte & 0x03U) << 6U) | (next & 0x3FU)) : '?';
    }
  }
  return result;
}

}  // namespace

std::vector<Row> readCsv(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(stream), {});
  std::vector<Row> rows;
  Row row;
  std::string cell;
  bool quoted = false;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (c == '"') {
      const bool isPair = quoted && i + 1 < bytes.size() && bytes[i + 1] == '"';
      if (isPair)
        cell += bytes[++i];
      else
        quoted = !quoted;
    } else if (quoted || (c != ',' && c != '\n')) {
      cell += c;
    } else {
      row.push_back(std::move(cell));
      cell.clear();
      if (c == ',') continue;
      rows.push_back(std::move(row));
      row.clear();
    }
  }
  if (!rows.empty()) rows.erase(rows.begin());
  return rows;
}

void writeSeparated(const std::vector<Row>& rows, const fs::path& file) {
  constexpr char kCellEnd = '\x1f', kRowEnd = '\x1e';
  std::ofstream stream(file, std::ios::binary);
  for (const Row& row : rows) {
    for (const std::string& cell : row) stream << replaced(replaced(cell, kCellEnd, ' '), kRowEnd, ' ') << kCellEnd;
    stream << kRowEnd;
  }
}

void writeGroff(const std::vector<Row>& rows, const fs::path& file) {
  constexpr std::size_t kRowsOfTable = 50;
  std::ofstream stream(file, std::ios::binary);
  stream << ".pl 792p\n.ll 662p\n.po 50p\n.ps 14\n.vs 17p\n.ad l\n.nh\n";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i % kRowsOfTable == 0) stream << (i ? ".TE\n" : "") << ".TS\nlw(240p) lw(240p) lw(180p).\n";
    for (std::size_t k = 0; k < rows[i].size(); ++k) {
      stream << (k ? "\t" : "") << "T{\n" << groffText(rows[i][k]) << "\nT}";
    }
    stream << "\n.sp 10p\n";
  }
  if (!rows.empty()) stream << ".TE\n";
}

void writeLatin1Lines(const std::vector<Row>& rows, const fs::path& file) {
  std::ofstream stream(file, std::ios::binary);
  for (const Row& row : rows) {
    if (row.size() == 3) stream << latin1(row[0]) << ": " << latin1(row[1]) << " (" << latin1(row[2]) << ")\n";
  }
}

}  // namespace chatsum::bench
