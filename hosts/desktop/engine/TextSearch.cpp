#include "hosts/desktop/engine/TextSearch.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "hosts/device/conversations/FoldedText.h"

namespace chatsum::desktop {
namespace {

constexpr std::array<char, 256> lowerCase() {
  std::array<char, 256> lower{};
  for (std::size_t c = 0; c < lower.size(); ++c) {
    lower[c] = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  }
  return lower;
}
constexpr std::array<char, 256> kLower = lowerCase();

char lowered(char c) { return kLower[static_cast<unsigned char>(c)]; }

bool isAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0x80) != 0; });
}

/// For a text of ASCII letters, whose lower case is its folded form. Texts of messages are short, so looking for the
/// first letter and comparing from there is as quick as anything, and nothing is copied.
bool holdsAscii(std::string_view text, std::string_view folded) {
  if (folded.size() > text.size()) return false;
  const std::size_t last = text.size() - folded.size();
  for (std::size_t at = 0; at <= last; ++at) {
    if (lowered(text[at]) != folded[0]) continue;
    std::size_t same = 1;
    while (same < folded.size() && lowered(text[at + same]) == folded[same]) ++same;
    if (same == folded.size()) return true;
  }
  return false;
}

void replaceAll(std::string& text, std::string_view part, std::string_view other) {
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += other.size()) {
    text.replace(at, part.size(), other);
  }
}

}  // namespace

std::string foldedForSearch(std::string_view text) {
  std::string folded = device::foldedCase(text);
  // The folded form of U+0130 has its dot beside it; U+0131, whose capital letter is the usual I, stays what it is.
  replaceAll(folded, "i\u0307", "i");
  replaceAll(folded, "\u0131", "i");
  return folded;
}

TextSearch::TextSearch(std::string_view words) : folded_(foldedForSearch(words)) {}

bool TextSearch::isIn(std::string_view text) const {
  if (folded_.empty()) return true;
  if (isAscii(text)) return holdsAscii(text, folded_);
  return foldedForSearch(text).find(folded_) != std::string::npos;
}

std::vector<std::uint32_t> findRows(const Array& records, std::string_view words, const Cancellation& cancellation) {
  constexpr std::size_t kRowsBetweenLooks = 4096;
  std::vector<std::uint32_t> rows;
  const TextSearch search(words);
  if (search.isEmpty()) return rows;
  RecordField textField("Text"), placeField("attachment_location");
  for (std::size_t row = 0; row < records.size(); ++row) {
    if (row % kRowsBetweenLooks == 0 && cancellation.isCancelled()) break;
    const Record& record = *records[row].asRecord();
    const Value* value = textField.find(record);
    if (!value || !value->asString()) continue;
    std::string_view text = value->asString()->view();
    // Of a file only its name is shown.
    if (placeField.find(record)) text.remove_prefix(text.rfind('/') + 1);
    if (search.isIn(text)) rows.push_back(static_cast<std::uint32_t>(row));
  }
  return rows;
}

}  // namespace chatsum::desktop
