#include "libchatsum/ChatsumUtils/DateOrder.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace chatsum {

void DateOrder::append(Row row) {
  if (isInOrder_ && !rows_.empty()) {
    const auto before = rows_.back().date();
    isInOrder_ = newestFirst_ ? row.date() <= before : row.date() >= before;
  }
  rows_.push_back(std::move(row));
}

std::vector<std::size_t> DateOrder::sortedPlaces() const {
  std::vector<std::size_t> places(rows_.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  // Places are distinct, so an ordinary sort by date and place is a stable one by date.
  std::sort(places.begin(), places.end(), [this](std::size_t a, std::size_t b) {
    const auto dateOfA = rows_[a].date(), dateOfB = rows_[b].date();
    if (dateOfA == dateOfB) return a < b;
    return newestFirst_ ? dateOfA > dateOfB : dateOfA < dateOfB;
  });
  return places;
}

}  // namespace chatsum
