#include "hosts/device/calls/CallBalance.h"

#include <initializer_list>
#include <utility>

#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

using Parts = std::initializer_list<std::pair<std::uint64_t, std::string>>;

/// " (1 found twice, 2 of other apps)" of the parts that are not 0; "" without any.
std::string listed(const Parts& parts) {
  std::string list;
  for (const auto& [count, words] : parts) {
    if (count > 0) list.append(list.empty() ? " (" : ", ").append(words);
  }
  return list.empty() ? list : list + ")";
}

}  // namespace

std::string CallBalance::sentence(Done done) const {
  const std::uint64_t elsewhere = inTemporary + inOld;
  const std::uint64_t inMain = inLists - elsewhere;
  std::string all = elsewhere == 0 ? say("{0} in the list", inLists)
                                   : say("{0} in the lists", inLists) +
                                         listed({{inMain, say("{0} in the main one", inMain)},
                                                 {inTemporary, say("{0} in the temporary one", inTemporary)},
                                                 {inOld, say("{0} in the old one", inOld)}});
  if (continued > 0) all += " " + say("+ {0} for texts that go on", continued);
  const std::string sign = inLists + continued == written + leftOut() ? "=" : say("is not");
  const std::string reasons = listed({{duplicates, say("{0} found twice", duplicates)},
                                      {otherApps, say("{0} of other apps", otherApps)},
                                      {otherPeople, say("{0} with other people", otherPeople)},
                                      {outsideTimes, say("{0} outside the times", outsideTimes)},
                                      {undatedOutside, say("{0} without a date", undatedOutside)}});
  return done == Done::kWritten
             ? say("Calls: {0} {1} {2} written + {3} left out{4}.", all, sign, written, leftOut(), reasons)
             : say("Calls: {0} {1} {2} shown + {3} left out{4}.", all, sign, written, leftOut(), reasons);
}

}  // namespace chatsum::device
