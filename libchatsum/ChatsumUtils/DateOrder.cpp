#include "libchatsum/ChatsumUtils/DateOrder.h"

#include <algorithm>
#include <utility>

namespace chatsum {

void DateOrder::append(Record record, std::int64_t storedDate) {
  if (!dates_.empty()) {
    ascends_ = ascends_ && storedDate >= dates_.back();
    descends_ = descends_ && storedDate <= dates_.back();
  }
  records_.emplace_back(std::move(record));
  dates_.push_back(storedDate);
}

Array DateOrder::takeRecords() {
  if (newestFirst_ ? descends_ : ascends_) return Array(std::move(records_));

  struct Place {
    std::int64_t date;
    std::uint64_t row;
  };
  std::vector<Place> places;
  places.reserve(dates_.size());
  for (std::size_t row = 0; row < dates_.size(); ++row) places.push_back({dates_[row], row});
  dates_ = {};
  // Rows are distinct, so an ordinary sort by (date, row) is a stable one by date.
  const auto older = [](const Place& a, const Place& b) { return a.date != b.date ? a.date < b.date : a.row < b.row; };
  const auto newer = [](const Place& a, const Place& b) { return a.date != b.date ? a.date > b.date : a.row < b.row; };
  if (newestFirst_) {
    std::sort(places.begin(), places.end(), newer);
  } else {
    std::sort(places.begin(), places.end(), older);
  }
  std::vector<Value> sorted;
  sorted.reserve(records_.size());
  for (const Place& place : places) sorted.push_back(std::move(records_[place.row]));
  records_ = {};
  return Array(std::move(sorted));
}

}  // namespace chatsum
