#include "hosts/device/calls/CallBalance.h"

#include <fmt/format.h>

#include <initializer_list>
#include <utility>

namespace chatsum::device {
namespace {

using Parts = std::initializer_list<std::pair<std::uint64_t, std::string_view>>;

/// " (1 found twice, 2 of other apps)" of the parts that are not 0; "" without any.
std::string listed(const Parts& parts) {
  std::string list;
  for (const auto& [count, what] : parts) {
    if (count > 0) list += fmt::format("{}{} {}", list.empty() ? " (" : ", ", count, what);
  }
  return list.empty() ? list : list + ")";
}

}  // namespace

std::string CallBalance::sentence(std::string_view done) const {
  const std::uint64_t elsewhere = inTemporary + inOld;
  std::string lists = "list";
  if (elsewhere > 0) {
    lists = "lists" + listed({{inLists - elsewhere, "in the main one"},
                              {inTemporary, "in the temporary one"},
                              {inOld, "in the old one"}});
  }
  return fmt::format("Calls: {} in the {} {} {} {} + {} left out{}.", inLists, lists,
                     inLists == written + leftOut() ? "=" : "is not", written, done, leftOut(),
                     listed({{duplicates, "found twice"},
                             {otherApps, "of other apps"},
                             {otherPeople, "with other people"},
                             {outsideTimes, "outside the times"},
                             {undatedOutside, "without a date"}}));
}

}  // namespace chatsum::device
