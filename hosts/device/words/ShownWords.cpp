#include "hosts/device/words/ShownWords.h"

#include <unicode/uchar.h>

#include <cmath>
#include <cstdio>
#include <ctime>

#include "hosts/device/conversations/StoredDate.h"
#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kLongestName = 120;
constexpr std::size_t kLongestWord = 20;
constexpr char32_t kZeroWidthJoiner = 0x200D, kFileMark = 0xFFFC;

bool isGap(char32_t c) {
  return c <= 0x20 || c == kFileMark || (c >= 0x7F && c <= 0xA0) || c == 0x2028 || c == 0x2029 ||
         u_isUWhiteSpace(static_cast<UChar32>(c));
}

bool isHalfFlag(char32_t c) { return c >= 0x1F1E6 && c <= 0x1F1FF; }

/// Whether what is read as one character ends between the two. `halfFlags` stand in a row at the end of what is before.
bool isBetweenCharacters(char32_t before, char32_t behind, std::size_t halfFlags) {
  if (before == kZeroWidthJoiner || behind == kZeroWidthJoiner) return false;
  if (isHalfFlag(behind)) return halfFlags % 2 == 0;
  switch (u_getIntPropertyValue(static_cast<UChar32>(behind), UCHAR_GRAPHEME_CLUSTER_BREAK)) {
    case U_GCB_EXTEND:
    case U_GCB_SPACING_MARK:
    case U_GCB_V:
    case U_GCB_T:
      return false;
    default:
      return true;
  }
}

/// The part of a line that is shown of it; the whole when it is short enough.
std::string_view cutOff(std::string_view line, std::size_t most) {
  std::size_t count = 0, fits = 0, lastGap = 0, countAtGap = 0, halfFlags = 0;
  char32_t before = U' ';
  for (std::size_t at = 0; at < line.size(); ++count) {
    const std::size_t start = at;
    const char32_t c = utf8::next(line, at);
    if (count > 0 && count <= most && isBetweenCharacters(before, c, halfFlags)) fits = start;
    if (c == U' ' && count <= most) {
      lastGap = start;
      countAtGap = count;
    }
    if (count >= most + kLongestWord) break;  // what is just a little too long is cut as well, but seen to the end
    before = c;
    halfFlags = isHalfFlag(c) ? halfFlags + 1 : 0;
  }
  if (count <= most) return line;
  if (lastGap > 0 && countAtGap + kLongestWord > most) return line.substr(0, lastGap);
  return line.substr(0, fits);
}

std::string shortened(std::string line, std::size_t most) {
  const std::size_t length = cutOff(line, most).size();
  if (length == line.size()) return line;
  line.resize(length);
  return line + "…";
}

/// The last character of a text, U+FFFD when its last bytes are none.
char32_t lastOf(std::string_view text) {
  std::size_t at = text.size();
  while (at > 0 && (static_cast<unsigned char>(text[--at]) & 0xC0U) == 0x80U) continue;
  return utf8::next(text, at);
}

bool isLetterOrDigit(char32_t c) { return u_isalnum(static_cast<UChar32>(c)) != 0; }

/// A text of a megabyte need not be looked at as a whole: no character has more bytes than this.
std::string_view beginningOf(std::string_view text, std::size_t most) {
  constexpr std::size_t kMostBytesEach = 32;
  return text.substr(0, kMostBytesEach * (most + kLongestWord));
}

std::string quotation(std::string line, bool isCut, std::size_t most) {
  const std::size_t length = cutOff(line, most).size();
  if (length < line.size()) {
    line.resize(length);
    while (line.ends_with('[') || line.ends_with(']')) line.pop_back();  // none stands there without its double
    isCut = true;
  }
  return "“" + line + (isCut ? "…”" : "”");
}

}  // namespace

std::string onOneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  bool isPending = false;
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = utf8::next(text, at);
    if (isGap(c)) {
      isPending = !line.empty();
      continue;
    }
    if (isPending) line += ' ';
    isPending = false;
    utf8::append(line, c);
  }
  return line;
}

std::string nameInWords(std::string_view name) {
  std::string line = shortened(onOneLine(name.substr(0, 8 * kLongestName)), kLongestName);
  for (char& c : line) c = c == '[' ? '(' : c == ']' ? ')' : c;
  return line;
}

std::string typedText(std::string_view text) {
  std::string typed;
  typed.reserve(text.size() + 1);
  for (std::size_t at = text.find('['); at != std::string_view::npos; at = text.find('[')) {
    typed += text.substr(0, at);
    typed += at > 0 && isLetterOrDigit(lastOf(text.substr(0, at))) ? "[" : "[[";
    text.remove_prefix(at + 1);
  }
  return typed += text;
}

std::string typedInBrackets(std::string_view text) {
  std::string typed;
  typed.reserve(text.size() + 2);
  for (const char c : text) typed.append(c == '[' || c == ']' ? 2 : 1, c);
  return typed;
}

std::string quoted(std::string_view text, std::size_t most) {
  const std::string_view start = beginningOf(text, most);
  return quotation(typedInBrackets(onOneLine(start)), start.size() < text.size(), most);
}

std::string quotedDoubled(std::string_view text, std::size_t most) {
  const std::string_view start = beginningOf(text, most);
  return quotation(onOneLine(start), start.size() < text.size(), most);
}

std::string minuteOfStored(std::int64_t stored) {
  const auto date = dateFromStored(stored);
  if (!date) return "";
  const auto seconds = static_cast<std::time_t>(std::floor(date->secondsSince1970));
  std::tm fields{};
  if (!::localtime_r(&seconds, &fields)) return "";
  char text[64];
  std::snprintf(text, sizeof text, "%04lld-%02d-%02d %02d:%02d", static_cast<long long>(fields.tm_year) + 1900,
                fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min);
  return text;
}

void addPiece(std::string& line, std::string_view piece) {
  if (piece.empty()) return;
  if (!line.empty() && line.back() != ' ' && line.back() != '\n') line += ' ';
  line += piece;
}

}  // namespace chatsum::device
