// The columns of the Messages store's tables and the systems that brought them. Constant data: any thread.
#pragma once

#include <span>
#include <string_view>

#include "hosts/device/sample/StoreSchema.h"

namespace chatsum::device {

struct StoreColumn {
  std::string_view definition;  // as it stands in CREATE TABLE, the name first
  Generation since;
  Generation until = Generation::ios18;  // the last generation that still has it

  [[nodiscard]] constexpr bool existsIn(Generation generation) const {
    return generation >= since && generation <= until;
  }
  [[nodiscard]] constexpr std::string_view name() const { return definition.substr(0, definition.find(' ')); }
};

/// Every column that the table ever had, in the order of a store that grew through all generations; empty for a table
/// that is not described by columns.
std::span<const StoreColumn> everyColumnOf(std::string_view table);

}  // namespace chatsum::device
