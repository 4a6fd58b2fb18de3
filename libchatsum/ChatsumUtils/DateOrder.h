// Keeps the records of a read in the order of their dates. Newer versions of SQLite drop the ordering of a sub-query, so
// rows may arrive in the order of the store; a store whose dates never step back costs nothing here. One thread.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/foundation/Value.h"

namespace chatsum {

class DateOrder {
 public:
  explicit DateOrder(bool newestFirst) : newestFirst_(newestFirst) {}

  /// Takes the next row's record with its stored date.
  void append(Record record, std::int64_t storedDate);

  /// All records by stored date, those of equal dates in the order they came.
  [[nodiscard]] Array takeRecords();

 private:
  bool newestFirst_;
  bool ascends_ = true;   // no date was smaller than the one before it
  bool descends_ = true;  // none was greater
  std::vector<Value> records_;
  std::vector<std::int64_t> dates_;
};

}  // namespace chatsum
