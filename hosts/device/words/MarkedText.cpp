#include "hosts/device/words/MarkedText.h"

#include <algorithm>
#include <utility>

#include "hosts/device/language/Say.h"
#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kFileMark = "\xEF\xBF\xBC", kCardMark = "\xEF\xBF\xBD";
constexpr char32_t kFileCharacter = 0xFFFC, kCardCharacter = 0xFFFD;
constexpr std::string_view kWhite = " \t\r\n";
constexpr std::size_t kMostPieces = 1000;

bool isWhite(char32_t c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == 0xA0; }

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kWhite);
  if (first == std::string_view::npos) return "";
  return text.substr(first, text.find_last_not_of(kWhite) - first + 1);
}

/// Adds words behind what is there, with a space between unless one of them has white space there.
void join(std::string& line, std::string_view words) {
  if (words.empty()) return;
  const bool isSeparate = line.empty() || kWhite.find(line.back()) != std::string_view::npos ||
                          kWhite.find(words.front()) != std::string_view::npos;
  line.append(isSeparate ? "" : " ").append(words);
}

bool needsTelling(const MessageFile& file) {
  return file.kind == FileKind::kMissing || file.kind == FileKind::kSticker;
}

bool isNamed(const std::string& guid, const MessageFile& file) {
  return !file.guid.empty() && guid.ends_with(file.guid);
}

}  // namespace

bool holdsWords(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = utf8::next(text, at);
    if (c != kFileCharacter && c != kCardCharacter && !isWhite(c)) return true;
  }
  return false;
}

std::string withoutCardMarks(std::string_view text) {
  std::string rest;
  for (std::size_t at = text.find(kCardMark); at != std::string_view::npos; at = text.find(kCardMark)) {
    rest += text.substr(0, at);
    text.remove_prefix(at + kCardMark.size());
  }
  return rest += text;
}

std::vector<MessageFile> inOrderOfMarks(std::vector<MessageFile> files, const std::vector<std::string>& guids) {
  if (guids.size() < files.size()) return files;  // not all of them have a mark
  std::vector<MessageFile> ordered;
  for (const std::string& guid : guids) {
    const auto named =
        std::find_if(files.begin(), files.end(), [&](const MessageFile& file) { return isNamed(guid, file); });
    if (named == files.end()) continue;
    ordered.push_back(std::move(*named));
    files.erase(named);
  }
  std::move(files.begin(), files.end(), std::back_inserter(ordered));
  return ordered;
}

std::string withFileNames(std::string_view text, const std::vector<MessageFile>& files,
                          std::string (*typed)(std::string_view)) {
  std::string line;
  std::size_t next = 0;
  while (!text.empty()) {
    const std::size_t mark = std::min(text.find(kFileMark), text.size());
    join(line, typed(text.substr(0, mark)));
    text.remove_prefix(mark);
    if (text.empty()) break;
    text.remove_prefix(kFileMark.size());
    join(line, next < files.size() ? MessageFiles::inWords(files[next]) : say("[attachment]"));
    ++next;
  }
  for (; next < files.size(); ++next) {
    if (needsTelling(files[next])) join(line, MessageFiles::inWords(files[next]));
  }
  return std::string(trimmed(line));
}

MessagePieces piecesOf(std::string_view text, std::size_t files) {
  MessagePieces pieces;
  std::size_t next = 0;
  while (!text.empty() && pieces.files.size() < kMostPieces) {
    const std::size_t mark = std::min(text.find(kFileMark), text.size());
    if (mark > 0) pieces.files.emplace_back(std::nullopt);
    text.remove_prefix(mark);
    if (text.empty()) break;
    text.remove_prefix(kFileMark.size());
    pieces.files.push_back(next < files ? std::optional(next) : std::nullopt);
    ++next;
  }
  pieces.count = pieces.files.size();
  return pieces;
}

}  // namespace chatsum::device
