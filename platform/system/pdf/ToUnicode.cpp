#include "platform/system/pdf/ToUnicode.h"

#include <algorithm>
#include <vector>

#include "platform/foundation/Utf8.h"
#include "platform/system/pdf/PdfSyntax.h"

namespace chatsum::platform::system {
namespace {

/// Consecutive codes that stand for consecutive texts; `first` is UTF-16.
struct Range {
  std::uint16_t begin, end;
  std::string first;
};

bool continues(const Range& range, std::uint16_t code, const std::string& text) {
  // Only the last byte may change within a range, of the codes and of the texts.
  if (code != range.end + 1 || (code & 0xFF) == 0 || text.size() != range.first.size() || text.empty()) return false;
  const std::size_t last = text.size() - 1;
  const int step = static_cast<unsigned char>(text[last]) - static_cast<unsigned char>(range.first[last]);
  return step == code - range.begin && text.compare(0, last, range.first, 0, last) == 0;
}

std::string hex(std::string_view bytes) {
  std::string made = "<";
  pdf::appendHex(made, bytes);
  return made + ">";
}

std::string hexCode(std::uint16_t code, int bytes) {
  const char both[] = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
  return hex(bytes == 2 ? std::string_view(both, 2) : std::string_view(both + 1, 1));
}

/// Sections of a CMap hold at most a hundred entries.
void appendSections(std::string& map, const std::string& kind, const std::vector<std::string>& entries) {
  constexpr std::size_t kMost = 100;
  for (std::size_t at = 0; at < entries.size(); at += kMost) {
    const std::size_t end = std::min(at + kMost, entries.size());
    map += std::to_string(end - at) + " begin" + kind + "\n";
    for (std::size_t i = at; i < end; ++i) map += entries[i];
    map += "end" + kind + "\n";
  }
}

/// How much of a text a code can stand for: some readers take no more than eight UTF-16 units.
std::size_t lengthOfMeaning(std::string_view text) {
  constexpr std::size_t kMostUnits = 8;
  std::size_t end = 0, units = 0;
  for (std::size_t at = 0; at < text.size(); end = at) {
    units += utf8::next(text, at) < 0x10000 ? 1 : 2;
    if (units > kMostUnits) break;
  }
  return end;
}

}  // namespace

bool ToUnicode::means(std::uint16_t code, std::string_view text) {
  const std::string_view known = text.substr(0, lengthOfMeaning(text));
  return texts_.try_emplace(code, known).first->second == text;
}

bool ToUnicode::alreadyMeans(std::uint16_t code, std::string_view text) const {
  const auto found = texts_.find(code);
  return found != texts_.end() && found->second == text;
}

std::string ToUnicode::characterMap(int codeBytes) const {
  std::vector<Range> ranges;
  for (const auto& [code, text] : texts_) {
    const std::string units = pdf::utf16(text);
    if (units.empty()) continue;
    if (!ranges.empty() && continues(ranges.back(), code, units)) {
      ranges.back().end = code;
    } else {
      ranges.push_back({code, code, units});
    }
  }
  std::vector<std::string> singles, runs;
  for (const Range& range : ranges) {
    const std::string begin = hexCode(range.begin, codeBytes), text = hex(range.first) + "\n";
    if (range.begin == range.end) {
      singles.push_back(begin + text);
    } else {
      runs.push_back(begin + hexCode(range.end, codeBytes) + text);
    }
  }
  std::string map =
      "/CIDInit/ProcSet findresource begin\n12 dict begin\nbegincmap\n"
      "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n"
      "/CMapName/Adobe-Identity-UCS def\n/CMapType 2 def\n1 begincodespacerange\n";
  map += codeBytes == 2 ? "<0000><FFFF>\n" : "<00><FF>\n";
  map += "endcodespacerange\n";
  appendSections(map, "bfchar", singles);
  appendSections(map, "bfrange", runs);
  map += "endcmap\nCMapName currentdict/CMap defineresource pop\nend\nend\n";
  return map;
}

}  // namespace chatsum::platform::system
