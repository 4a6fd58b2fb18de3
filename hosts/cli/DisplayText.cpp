#include "hosts/cli/DisplayText.h"

#include <algorithm>
#include <array>

#include "platform/foundation/Utf8.h"

namespace chatsum::cli {
namespace {

struct Range {
  char32_t first, last;
};

// Marks that stand on the letter before them, and characters without any width.
constexpr std::array<Range, 28> kNoCells = {{
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD},   {0x05BF, 0x05BF},   {0x05C1, 0x05C2}, {0x0610, 0x061A},
    {0x064B, 0x065F}, {0x0670, 0x0670}, {0x06D6, 0x06DC},   {0x0900, 0x0902},   {0x093C, 0x093C}, {0x0941, 0x0948},
    {0x094D, 0x094D}, {0x0E31, 0x0E31}, {0x0E34, 0x0E3A},   {0x0E47, 0x0E4E},   {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF},
    {0x200B, 0x200F}, {0x202A, 0x202E}, {0x2060, 0x2064},   {0x20D0, 0x20FF},   {0x302A, 0x302D}, {0xFE00, 0xFE0F},
    {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}, {0x1F3FB, 0x1F3FF}, {0xE0001, 0xE01EF},
}};

// East Asian wide and full-width letters, and emoji that terminals draw in two cells.
constexpr std::array<Range, 24> kTwoCells = {{
    {0x1100, 0x115F}, {0x231A, 0x231B}, {0x23E9, 0x23EC}, {0x25FD, 0x25FE}, {0x2614, 0x2615},   {0x2648, 0x2653},
    {0x26A1, 0x26A1}, {0x26BD, 0x26BE}, {0x26C4, 0x26C5}, {0x26F2, 0x26F5}, {0x2705, 0x2705},   {0x270A, 0x270B},
    {0x2728, 0x2728}, {0x2753, 0x2757}, {0x2795, 0x2797}, {0x2B50, 0x2B50}, {0x2E80, 0x303E},   {0x3041, 0xA4CF},
    {0xA960, 0xA97F}, {0xAC00, 0xD7A3}, {0xF900, 0xFAFF}, {0xFF00, 0xFF60}, {0x1F300, 0x1FAFF}, {0x20000, 0x3FFFD},
}};

template <std::size_t count>
bool isIn(const std::array<Range, count>& ranges, char32_t character) {
  const auto next = std::upper_bound(ranges.begin(), ranges.end(), character,
                                     [](char32_t wanted, const Range& range) { return wanted < range.first; });
  return next != ranges.begin() && character <= std::prev(next)->last;
}

std::size_t cellsOf(char32_t character) {
  if (character < 0x300) return 1;
  if (isIn(kNoCells, character)) return 0;
  return isIn(kTwoCells, character) ? 2 : 1;
}

/// Controls of terminals and lines, and what turns round or moves the characters beside it without being seen itself.
bool isHarmful(char32_t character) {
  constexpr std::array<Range, 8> kHarmful = {{{0x00, 0x1F},
                                              {0x7F, 0x9F},
                                              {0x061C, 0x061C},
                                              {0x200E, 0x200F},
                                              {0x2028, 0x202E},
                                              {0x2066, 0x206F},
                                              {0xFFF9, 0xFFFB},
                                              {0x1D173, 0x1D17A}}};
  return isIn(kHarmful, character);
}

std::string cleaned(std::string_view text, bool keepsLines) {
  std::string clean;
  clean.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = utf8::next(text, at);
    const bool isKept = !isHarmful(character) || (keepsLines && (character == U'\n' || character == U'\t'));
    utf8::append(clean, isKept ? character : U' ');
  }
  return clean;
}

}  // namespace

std::size_t displayWidth(std::string_view text) {
  std::size_t cells = 0;
  for (std::size_t at = 0; at < text.size();) cells += cellsOf(utf8::next(text, at));
  return cells;
}

std::string harmless(std::string_view text) { return cleaned(text, true); }
std::string oneLine(std::string_view text) { return cleaned(text, false); }

std::string shortened(std::string_view whole, std::size_t cells) {
  std::string text = oneLine(whole);
  if (displayWidth(text) <= cells) return text;
  std::size_t used = 1, end = 0;  // one cell for the dots
  for (std::size_t at = 0; at < text.size(); end = at) {
    used += cellsOf(utf8::next(text, at));
    if (used > cells) break;
  }
  return text.substr(0, end) + "…";
}

std::string table(const std::vector<std::string>& titles, std::vector<std::vector<std::string>> rows) {
  for (auto& row : rows) {
    for (std::string& cell : row) cell = oneLine(cell);
  }
  std::vector<std::size_t> widths;
  for (const std::string& title : titles) widths.push_back(displayWidth(title) - (title.starts_with(' ') ? 1 : 0));
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], displayWidth(row[i]));
  }
  std::string text;
  const auto appendRow = [&](const std::vector<std::string>& row) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const bool isRight = titles[i].starts_with(' ');
      const std::string_view cell = std::string_view(row[i]).substr(&row == &titles && isRight ? 1 : 0);
      const std::string padding(widths[i] - displayWidth(cell), ' ');
      if (i > 0) text += "  ";
      if (isRight) text += padding;
      text += cell;
      if (!isRight && i + 1 < row.size()) text += padding;
    }
    text += '\n';
  };
  appendRow(titles);
  for (const auto& row : rows) appendRow(row);
  return text;
}

}  // namespace chatsum::cli
