// Accounts for every row of a conversation: what the store holds is what was written and what was left out, by reason.
// Plain values: any thread, one at a time.
#pragma once

#include <cstdint>
#include <string>

namespace chatsum::device {

/// What was done with the rows that are not left out.
enum class Done : std::uint8_t { kWritten, kShown };

/// Rows as reports have them: a message without attachments is one, with attachments one for each, and one more for
/// its words where messages are put into words.
struct Balance {
  std::uint64_t inStore = 0;           ///< counted apart from the reading
  std::uint64_t wordsBesideFiles = 0;  ///< rows added for the words of messages that have files
  std::uint64_t read = 0;              ///< that the library handed over

  // Left out by the library.
  std::uint64_t withoutText = 0;     ///< nothing to be said; without words also system rows and app cards
  std::uint64_t unreadableBody = 0;  ///< a body in which no text was found

  // Left out because the words of another row tell of them.
  std::uint64_t reactionsShown = 0;      ///< reactions that stand with their message
  std::uint64_t reactionsTakenBack = 0;  ///< reactions that were taken back or changed, and the taking back
  std::uint64_t previewFiles = 0;        ///< pictures of link previews and app cards
  std::uint64_t stickers = 0;
  std::uint64_t missingFiles = 0;  ///< files that are not on the device

  // Left out by request.
  std::uint64_t excluded = 0;
  std::uint64_t outsideTimes = 0;
  std::uint64_t undatedOutside = 0;  ///< without a date, when times were asked for

  std::uint64_t continued = 0;  ///< rows added for texts that are taller than a page
  std::uint64_t written = 0;

  /// What never reached the reading.
  [[nodiscard]] std::uint64_t unread() const {
    return withoutText + unreadableBody + reactionsShown + reactionsTakenBack + previewFiles + stickers + missingFiles;
  }
  [[nodiscard]] std::uint64_t leftOut() const { return unread() + excluded + outsideTimes + undatedOutside; }
  /// Whether every row is accounted for.
  [[nodiscard]] bool holds() const {
    return inStore + wordsBesideFiles == read + unread() &&
           inStore + wordsBesideFiles + continued == written + leftOut();
  }
  /// "Rows: 12 in the store = 10 written + 2 left out (1 without text, 1 excluded)."
  [[nodiscard]] std::string sentence(Done done = Done::kWritten) const;
};

}  // namespace chatsum::device
