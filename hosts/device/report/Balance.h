// Accounts for every row of a conversation: what the store holds is what was written and what was left out, by reason.
// Plain values: any thread, one at a time.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace chatsum::device {

/// Rows as reports have them: a message without attachments is one, with attachments one for each.
struct Balance {
  std::uint64_t inStore = 0;  ///< counted apart from the reading
  std::uint64_t read = 0;     ///< that the library handed over

  // Left out by the library.
  std::uint64_t withoutText = 0;     ///< neither text nor body: system rows, app cards
  std::uint64_t unreadableBody = 0;  ///< a body in which no text was found

  // Left out by request.
  std::uint64_t excluded = 0;
  std::uint64_t outsideTimes = 0;
  std::uint64_t undatedOutside = 0;  ///< without a date, when times were asked for

  std::uint64_t written = 0;

  [[nodiscard]] std::uint64_t leftOut() const {
    return withoutText + unreadableBody + excluded + outsideTimes + undatedOutside;
  }
  /// Whether every row is accounted for.
  [[nodiscard]] bool holds() const {
    return inStore == read + withoutText + unreadableBody && inStore == written + leftOut();
  }
  /// "Rows: 12 in the store = 10 written + 2 left out (1 without text, 1 excluded)."
  [[nodiscard]] std::string sentence(std::string_view written = "written") const;
};

}  // namespace chatsum::device
