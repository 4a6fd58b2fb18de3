#include "hosts/device/report/Balance.h"

#include "hosts/device/language/Say.h"

namespace chatsum::device {

std::string Balance::sentence(Done done) const {
  std::string reasons;
  const auto add = [&](std::uint64_t count, const std::string& words) {
    if (count > 0) reasons.append(reasons.empty() ? " (" : ", ").append(words);
  };
  add(reactionsShown,
      sayCounted(reactionsShown, "{0} reaction shown with its message", "{0} reactions shown with their messages"));
  add(reactionsTakenBack,
      sayCounted(reactionsTakenBack, "{0} reaction taken back or changed", "{0} reactions taken back or changed"));
  add(previewFiles, sayCounted(previewFiles, "{0} link-preview file", "{0} link-preview files"));
  add(stickers, sayCounted(stickers, "{0} sticker told in words", "{0} stickers told in words"));
  add(missingFiles, sayCounted(missingFiles, "{0} file not on the device, told in words",
                               "{0} files not on the device, told in words"));
  add(withoutText, say("{0} without text", withoutText));
  add(unreadableBody, say("{0} with an unreadable body", unreadableBody));
  add(excluded, say("{0} excluded", excluded));
  add(outsideTimes, say("{0} outside the times", outsideTimes));
  add(undatedOutside, say("{0} without a date", undatedOutside));
  if (!reasons.empty()) reasons += ")";
  std::string added = wordsBesideFiles > 0 ? " " + say("+ {0} for words beside files", wordsBesideFiles) : "";
  if (continued > 0) added += " " + say("+ {0} for texts that go on", continued);
  const std::string sign = inStore + wordsBesideFiles + continued == written + leftOut() ? "=" : say("is not");
  return done == Done::kWritten ? say("Rows: {0} in the store{1} {2} {3} written + {4} left out{5}.", inStore, added,
                                      sign, written, leftOut(), reasons)
                                : say("Rows: {0} in the store{1} {2} {3} shown + {4} left out{5}.", inStore, added,
                                      sign, written, leftOut(), reasons);
}

}  // namespace chatsum::device
