#include "hosts/device/calls/CallMerge.h"

#include <cmath>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "hosts/device/conversations/ComparableAddress.h"

namespace chatsum::device {
namespace {

/// What two entries of one call share although only one has an identifier; none without a date, which says too little.
std::optional<std::string> traceOf(const Call& call) {
  if (!call.date) return std::nullopt;
  // Old lists count whole seconds.
  std::string trace = std::to_string(static_cast<std::int64_t>(std::floor(call.date->secondsSince1970)));
  trace.append(" ").append(wordOf(call.direction)).append(" ");
  if (!call.people.empty()) trace += roughAddress(call.people.front().address);
  return trace;
}

/// The calls of the earlier lists, each to be found once.
class Known {
 public:
  explicit Known(const std::vector<Call>& calls) : isFound_(calls.size()) {
    for (std::size_t place = 0; place < calls.size(); ++place) {
      const Call& call = calls[place];
      if (!call.uniqueId.empty()) byId_.emplace(call.uniqueId, place);
      if (auto trace = traceOf(call)) {
        (call.uniqueId.empty() ? byTrace_ : byTraceOfIdentified_).emplace(std::move(*trace), place);
      }
    }
  }

  /// Whether the call is one of them, which is then taken.
  bool take(const Call& call) {
    if (!call.uniqueId.empty() && take(byId_, call.uniqueId)) return true;
    const auto trace = traceOf(call);
    if (!trace) return false;
    return take(byTrace_, *trace) || (call.uniqueId.empty() && take(byTraceOfIdentified_, *trace));
  }

 private:
  using Places = std::multimap<std::string, std::size_t>;

  bool take(Places& places, const std::string& key) {
    for (auto found = places.find(key); found != places.end() && found->first == key;) {
      const std::size_t place = found->second;
      found = places.erase(found);
      if (isFound_[place]) continue;  // by another way
      isFound_[place] = true;
      return true;
    }
    return false;
  }

  std::vector<bool> isFound_;
  Places byId_, byTrace_, byTraceOfIdentified_;
};

}  // namespace

void CallMerge::add(std::vector<Call> list) {
  Known known(calls_);
  std::vector<Call> added;
  for (Call& call : list) {
    if (known.take(call)) {
      ++duplicates_;
    } else {
      added.push_back(std::move(call));
    }
  }
  calls_.insert(calls_.end(), std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
}

}  // namespace chatsum::device
