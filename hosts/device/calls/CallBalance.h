// Accounts for every row of a device's call lists: what they hold is what was written and what was left out, by reason.
// Plain values: any thread, one at a time.
#pragma once

#include <cstdint>
#include <string>

#include "hosts/device/report/Balance.h"

namespace chatsum::device {

struct CallBalance {
  std::uint64_t inLists = 0;      ///< rows of all lists, counted apart from the reading
  std::uint64_t inTemporary = 0;  ///< of them, in the temporary list
  std::uint64_t inOld = 0;        ///< of them, in the list of earlier systems
  std::uint64_t read = 0;

  std::uint64_t duplicates = 0;  ///< that stand in another list, too
  // Left out by request; a call counts once.
  std::uint64_t otherApps = 0;
  std::uint64_t otherPeople = 0;
  std::uint64_t outsideTimes = 0;
  std::uint64_t undatedOutside = 0;  ///< without a date, when times were asked for

  std::uint64_t continued = 0;  ///< rows added for texts that are taller than a page
  std::uint64_t written = 0;

  [[nodiscard]] std::uint64_t leftOut() const {
    return duplicates + otherApps + otherPeople + outsideTimes + undatedOutside;
  }
  /// Whether every row is accounted for.
  [[nodiscard]] bool holds() const { return inLists == read && inLists + continued == written + leftOut(); }
  /// "Calls: 12 in the lists (10 in the main one, 2 in the temporary one) = 9 written + 3 left out (1 found twice, 2 of
  /// other apps)."
  [[nodiscard]] std::string sentence(Done done = Done::kWritten) const;
};

}  // namespace chatsum::device
