#include "hosts/device/report/PageTexts.h"

#include <unicode/uchar.h>
#include <unicode/utext.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "hosts/device/language/Say.h"
#include "platform/foundation/Utf8.h"
#include "platform/interfaces/Platform.h"

namespace chatsum::device {
namespace {

// A cell as the writer measures it, points. It may reach from the top of a page's content to its end.
constexpr double kWidth = 250, kTallest = 692 - 50;
constexpr double kUnlimited = std::numeric_limits<float>::max();
/// No piece is longer, however little its characters show. Bytes.
constexpr std::size_t kLongestPiece = 16 * 1024;
/// Mostly as much as fits: the first guess.
constexpr std::size_t kUsualPiece = 1400;

constexpr std::string_view kLeftMark = "\u200E", kRightMark = "\u200F";

enum class Direction { kNone, kLeftToRight, kRightToLeft };

bool fits(const std::string& lead, std::string_view text) {
  static const platform::UIFont kFont{"Verdana", 14};
  const Size limit{kWidth, kUnlimited};
  platform::Graphics& graphics = platform::current().graphics;
  const std::string joined = lead.empty() ? std::string() : lead + std::string(text);
  const std::string_view all = lead.empty() ? text : joined;
  return graphics.sizeOfText(all, kFont, limit, platform::LineBreakMode::kWordWrap).height <= kTallest;
}

/// What a byte adds at most to the length of a text, in sevenths of a line. Two lines that follow each other without a
/// newline are wider than a line together, or the second's first word would stand on the first one.
constexpr std::uint8_t costOf(unsigned byte) {
  if (byte < 0x20 || byte == 0x7F) return 7;     // newlines and tabs
  if (byte < 0x80) return 1;                     // no wider than 16 points
  if (byte < 0xC0) return 0;                     // goes with the byte before
  if (byte < 0xE0) return byte == 0xC2 ? 7 : 1;  // among others a newline
  if (byte < 0xE2) return 2;                     // scripts with wide letters
  if (byte == 0xE2) return 7;                    // newlines, long dashes
  if (byte == 0xEF) return 7;                    // whole phrases in a letter
  return byte < 0xF0 ? 1 : 5;                    // Han and kana; emoji, old scripts
}

constexpr std::array<std::uint8_t, 256> kCosts = [] {
  std::array<std::uint8_t, 256> costs{};
  for (unsigned byte = 0; byte < costs.size(); ++byte) costs[byte] = costOf(byte);
  return costs;
}();

/// The direction of the first character that has one, in the text's first line.
Direction directionOf(std::string_view text) {
  for (std::size_t at = 0; at < text.size() && at < kLongestPiece;) {
    const char32_t c = utf8::next(text, at);
    if (c == '\n' || c == '\r') break;
    switch (u_charDirection(static_cast<UChar32>(c))) {
      case U_LEFT_TO_RIGHT:
        return Direction::kLeftToRight;
      case U_RIGHT_TO_LEFT:
      case U_RIGHT_TO_LEFT_ARABIC:
        return Direction::kRightToLeft;
      default:
        break;
    }
  }
  return Direction::kNone;
}

/// The direction of the line that goes on behind a piece; `before` is that of the one that goes on in it.
Direction directionBehind(std::string_view piece, Direction before) {
  const std::size_t newline = piece.rfind('\n');
  if (newline != std::string_view::npos) return directionOf(piece.substr(newline + 1));
  return before == Direction::kNone ? directionOf(piece) : before;
}

std::string leadTo(std::string_view rest, Direction direction) {
  std::string lead = say("(continued)") + "\n";
  if (direction == Direction::kNone || directionOf(rest) == direction) return lead;
  return lead += direction == Direction::kRightToLeft ? kRightMark : kLeftMark;
}

std::string_view withoutNewline(std::string_view piece) {
  if (!piece.ends_with('\n')) return piece;
  piece.remove_suffix(1);
  if (piece.ends_with('\r')) piece.remove_suffix(1);
  return piece;
}

}  // namespace

bool PageTexts::mayBeTall(std::string_view text) {
  // A page has 37 lines of plain letters and 14 of the highest ones that fonts have.
  constexpr std::size_t kPlain = 36 * 7, kAny = 14 * 7;
  if (text.size() <= kAny / 7) return false;
  std::size_t cost = 7;
  unsigned highest = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    cost += kCosts[byte];
    highest |= byte;
  }
  return cost > (highest < 0x80 ? kPlain : kAny);
}

bool PageTexts::isTall(std::string_view text) { return mayBeTall(text) && !fits({}, text); }

std::vector<std::string> PageTexts::piecesOf(std::string_view text) {
  std::vector<std::string> pieces;
  std::string lead;
  Direction direction = Direction::kNone;
  while (pieces.empty() || !text.empty()) {
    const std::size_t length = fittingBytes(lead, text);
    const std::string_view piece = text.substr(0, length);
    text.remove_prefix(length);
    pieces.push_back(lead + std::string(text.empty() ? piece : withoutNewline(piece)));
    direction = directionBehind(piece, direction);
    lead = leadTo(text, direction);
  }
  return pieces;
}

std::size_t PageTexts::fittingBytes(const std::string& lead, std::string_view text) {
  if (text.size() <= kLongestPiece && fits(lead, text)) return text.size();
  const std::size_t most = std::min(text.size(), kLongestPiece);
  std::size_t fitting = 0, failing = most;
  // Grows from the usual length, then closes in; a line more or less is not worth another measuring.
  for (std::size_t guess = std::min(kUsualPiece, most / 2); failing - fitting > 32 + fitting / 32;) {
    const std::size_t place = endOfCharacter(text, guess);
    (fits(lead, text.substr(0, place)) ? fitting : failing) = guess;
    const std::size_t middle = fitting + (failing - fitting) / 2;
    guess = failing == most ? std::min(fitting + fitting / 2 + 1, middle) : middle;
  }
  std::size_t cut = placeToCut(text, fitting);
  while (cut > 0 && !fits(lead, text.substr(0, cut))) cut = placeToCut(text, cut * 3 / 4);
  if (cut > 0) return cut;
  std::size_t first = 0;  // higher than a page by itself: there is no better place
  (void)utf8::next(text, first);
  return first;
}

std::size_t PageTexts::placeToCut(std::string_view text, std::size_t most) {
  if (most == 0) return 0;
  if (most >= text.size()) return text.size();
  const std::string_view begin = text.substr(0, most);
  const std::size_t newline = begin.rfind('\n');
  if (newline != std::string_view::npos && newline + 1 > most - most / 4) return newline + 1;
  const std::size_t space = begin.rfind(' ');
  if (space != std::string_view::npos && space + 1 > most - most / 4) return space + 1;
  return endOfCharacter(text, most);
}

std::size_t PageTexts::endOfCharacter(std::string_view text, std::size_t most) {
  // What stands some way before decides where characters end; more than this belongs to none that people write.
  constexpr std::size_t kContext = 512;
  const auto isInside = [&](std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
  };
  if (most >= text.size()) return text.size();
  while (most > 0 && isInside(most)) --most;
  if (most == 0) return 0;
  if (static_cast<unsigned char>(text[most]) < 0x80 && static_cast<unsigned char>(text[most - 1]) < 0x80) {
    return text[most] == '\n' && text[most - 1] == '\r' ? most - 1 : most;
  }
  std::size_t from = most > kContext ? most - kContext : 0;
  while (from < most && isInside(from)) ++from;
  const std::string_view around = text.substr(from, most - from + kContext);
  UErrorCode error = U_ZERO_ERROR;
  if (!characters_) characters_.reset(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &error));
  UText* units = utext_openUTF8(nullptr, around.data(), static_cast<std::int64_t>(around.size()), &error);
  if (U_FAILURE(error) || !characters_) return most;
  ubrk_setUText(characters_.get(), units, &error);
  const auto place = static_cast<std::int32_t>(most - from);
  const bool isEnd = ubrk_isBoundary(characters_.get(), place) != 0;
  const std::int32_t before = isEnd ? place : ubrk_preceding(characters_.get(), place);
  utext_close(units);
  if (before > 0) return from + static_cast<std::size_t>(before);
  return from == 0 ? 0 : most;
}

}  // namespace chatsum::device
