#include "hosts/device/report/Balance.h"

#include <fmt/format.h>

#include <array>

#include "hosts/device/report/Counted.h"

namespace chatsum::device {

std::string Balance::sentence(std::string_view done) const {
  struct Reason {
    std::uint64_t count;
    std::string_view one, many;
  };
  const std::array<Reason, 10> reasons = {
      {{reactionsShown, "reaction shown with its message", "reactions shown with their messages"},
       {reactionsTakenBack, "reaction taken back or changed", "reactions taken back or changed"},
       {previewFiles, "link-preview file", "link-preview files"},
       {stickers, "sticker told in words", "stickers told in words"},
       {missingFiles, "file not on the device, told in words", "files not on the device, told in words"},
       {withoutText, "without text", "without text"},
       {unreadableBody, "with an unreadable body", "with an unreadable body"},
       {excluded, "excluded", "excluded"},
       {outsideTimes, "outside the times", "outside the times"},
       {undatedOutside, "without a date", "without a date"}}};
  std::string listed;
  for (const Reason& reason : reasons) {
    if (reason.count == 0) continue;
    listed += listed.empty() ? " (" : ", ";
    listed += counted(reason.count, reason.one, reason.many);
  }
  if (!listed.empty()) listed += ")";
  const std::string added = wordsBesideFiles > 0 ? fmt::format(" + {} for words beside files", wordsBesideFiles) : "";
  const std::uint64_t all = inStore + wordsBesideFiles;
  return fmt::format("Rows: {} in the store{} {} {} {} + {} left out{}.", inStore, added,
                     all == written + leftOut() ? "=" : "is not", written, done, leftOut(), listed);
}

}  // namespace chatsum::device
