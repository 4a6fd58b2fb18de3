// The reactions of a reading, each at the message it is about: hearts, thumbs, emoji, stickers, and what became of
// them. Read once; unchanged and free for any thread afterwards.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "hosts/device/words/People.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

struct Reaction {
  std::int64_t type = 0;   ///< `associated_message_type`: 2000 loved and so on, 1000 a sticker put on the message
  std::int64_t part = 0;   ///< which piece of the message it is about, from 0
  std::string emoji = {};  ///< of type 2006
  std::string who = {};    ///< fit to stand in a line
};

class Reactions {
 public:
  enum class Fate : std::uint8_t {
    kNone,       ///< no reaction, or one to a message that is not in the reading
    kShown,      ///< stands with its message
    kTakenBack,  ///< was taken back or changed by a later one of the same person, or is the taking back itself
  };

  /// Reads those rows for which `isInReading` holds. Answers the reason of a failure.
  [[nodiscard]] std::optional<std::string> read(const sqlite::Connection& store, const People& people,
                                                const std::function<bool(std::int64_t)>& isInReading);

  [[nodiscard]] Fate fateOf(std::int64_t message) const {
    const auto fate = fates_.find(message);
    return fate == fates_.end() ? Fate::kNone : fate->second;
  }
  [[nodiscard]] const std::unordered_map<std::int64_t, Fate>& fates() const { return fates_; }
  /// What is shown with a message: the last reaction of each person to each of its pieces, the oldest first.
  [[nodiscard]] std::span<const Reaction> on(std::int64_t message) const;
  [[nodiscard]] const std::unordered_map<std::int64_t, std::pair<std::size_t, std::size_t>>& targets() const {
    return targets_;
  }

 private:
  struct Row;
  void settle(std::vector<Row>& rows, const People& people);

  std::vector<Reaction> shown_;
  std::unordered_map<std::int64_t, std::pair<std::size_t, std::size_t>> targets_;  // places in `shown_`
  std::unordered_map<std::int64_t, Fate> fates_;
};

/// Where `associated_message_guid` points.
struct ReactionTarget {
  std::string_view guid;
  std::int64_t part = 0;
};
/// Takes "p:<part>/<GUID>", "bp:<GUID>" and the bare GUID.
[[nodiscard]] ReactionTarget reactionTarget(std::string_view stored);

/// "[loved by Maya Lindqvist and Me; 👍 by Daniel Okafor]", empty for none. `pieceName` answers the name of a piece that
/// is a file among other pieces, else nothing. What a hostile store piles up is counted, not listed.
[[nodiscard]] std::string reactionsInWords(std::span<const Reaction> reactions,
                                           const std::function<std::string(std::int64_t)>& pieceName);

/// "[loved a message that is not there]" for a reaction that stands alone and has no sentence of its own.
[[nodiscard]] std::string loneReactionInWords(std::int64_t type, std::string_view emoji);

/// Whether a row of that `associated_message_type` is a reaction, a sticker on a message, or the removal of either.
[[nodiscard]] constexpr bool isReactionType(std::int64_t type) { return type >= 1000 && type <= 3999; }

}  // namespace chatsum::device
