// Keeps the rows of a read in the order of their dates. Newer versions of SQLite drop the ordering of a sub-query, so
// rows may arrive in the order of the store; a store whose dates never step back costs nothing here. One thread.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "libchatsum/ChatsumUtils/MessageRecord.h"

namespace chatsum {

class DateOrder {
 public:
  using Row = MessageRecordAssembler::KeptRow;

  explicit DateOrder(bool newestFirst) : newestFirst_(newestFirst) {}

  void append(Row row);
  [[nodiscard]] std::size_t size() const { return rows_.size(); }

  /// Hands all rows to `take` and lets them go: by stored date, one that is missing before all others as SQLite has it,
  /// those of equal dates in the order they came.
  template <class Take>
  void takeRows(Take take) {
    if (isInOrder_) {
      for (Row& row : rows_) take(std::move(row));
    } else {
      for (const std::size_t place : sortedPlaces()) take(std::move(rows_[place]));
    }
    rows_ = {};
  }

 private:
  [[nodiscard]] std::vector<std::size_t> sortedPlaces() const;

  bool newestFirst_;
  bool isInOrder_ = true;
  std::vector<Row> rows_;
};

}  // namespace chatsum
