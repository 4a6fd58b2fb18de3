#include "hosts/device/report/Balance.h"

#include <fmt/format.h>

#include <array>
#include <utility>

namespace chatsum::device {

std::string Balance::sentence(std::string_view done) const {
  const std::array<std::pair<std::uint64_t, std::string_view>, 5> reasons = {
      {{withoutText, "without text"},
       {unreadableBody, "with an unreadable body"},
       {excluded, "excluded"},
       {outsideTimes, "outside the times"},
       {undatedOutside, "without a date"}}};
  std::string listed;
  for (const auto& [count, reason] : reasons) {
    if (count > 0) listed += fmt::format("{}{} {}", listed.empty() ? " (" : ", ", count, reason);
  }
  if (!listed.empty()) listed += ")";
  return fmt::format("Rows: {} in the store {} {} {} + {} left out{}.", inStore,
                     inStore == written + leftOut() ? "=" : "is not", written, done, leftOut(), listed);
}

}  // namespace chatsum::device
