#include "libchatsum/CSReportGenerationViewController/ScreenWords.h"

#include <algorithm>
#include <array>

#include "platform/foundation/Utf8.h"
#include "platform/interfaces/Platform.h"

namespace chatsum::screen_words {
namespace {

struct Format {
  std::string_view name;
  std::string_view extension;
};
/// By File format code.
constexpr std::array<Format, kFormats> kFormatRows = {{{"CSV", "csv"}, {"PDF", "pdf"}, {"Text", "txt"}}};

Format formatRow(std::uint64_t fileFormat) {
  return fileFormat < kFormatRows.size() ? kFormatRows[static_cast<std::size_t>(fileFormat)] : Format{};
}

bool isWhiteSpace(char32_t c) {
  constexpr std::u32string_view kSeparators = U"\t \u00A0\u1680\u202F\u205F\u3000";
  return kSeparators.find(c) != std::u32string_view::npos || (c >= U'\u2000' && c <= U'\u200A');
}

}  // namespace

std::string localized(std::string_view key) { return platform::current().mainBundle.localizedString(key); }

std::string localizedWith(std::string_view format, std::string_view word) {
  std::string text = localized(format);
  if (const auto place = text.find("%@"); place != std::string::npos) text.replace(place, 2, word);
  return text;
}

std::string_view formatName(std::uint64_t fileFormat) { return formatRow(fileFormat).name; }
std::string_view formatExtension(std::uint64_t fileFormat) { return formatRow(fileFormat).extension; }

std::string lowerCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return result;
}

std::string upperCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return result;
}

std::string trimmed(std::string_view text) {
  std::size_t begin = text.size();
  std::size_t end = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    if (isWhiteSpace(utf8::next(text, at))) continue;
    begin = std::min(begin, start);
    end = at;
  }
  return begin < end ? std::string(text.substr(begin, end - begin)) : std::string();
}

}  // namespace chatsum::screen_words
