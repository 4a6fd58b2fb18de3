// What the rows say that Messages writes by itself: people coming and going, names, photos. No state, any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace chatsum::device {

/// The columns of such a row.
struct SystemEvent {
  std::int64_t itemType = 0, action = 0;
  std::string_view other = {};  ///< the name of the person it is about; empty: nobody
  bool isOtherTheActor = false;
  std::string_view title = {};  ///< the group's new name
  std::int64_t shareStatus = 0;
};

/// In words, in brackets: "[added Maya Lindqvist]". Who did it is told by the row itself.
[[nodiscard]] std::string eventInWords(const SystemEvent& event);

}  // namespace chatsum::device
