// Puts the call lists of one device together. A device keeps a call in more than one of them for a while; in one list
// no call stands twice. One thread at a time.
#pragma once

#include <cstdint>
#include <vector>

#include "hosts/device/calls/Call.h"

namespace chatsum::device {

class CallMerge {
 public:
  /// Adds the calls of one more list. One that an earlier list has is dropped: the same unique identifier, or, where
  /// one of the two has none, the same second, direction and address.
  void add(std::vector<Call> list);

  /// In the order of the lists and their rows.
  [[nodiscard]] std::vector<Call>& calls() { return calls_; }
  [[nodiscard]] std::uint64_t duplicates() const { return duplicates_; }

 private:
  std::vector<Call> calls_;
  std::uint64_t duplicates_ = 0;
};

}  // namespace chatsum::device
