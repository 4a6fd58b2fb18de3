// Who took part in the calls of a list, where that stands in tables beside the calls: groups, and in newer lists every
// call. Immutable once read: any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "hosts/device/calls/CallTables.h"
#include "hosts/device/calls/StoredText.h"

namespace chatsum::device {

class CallHandles {
 public:
  /// Reads them; a list without such tables has none. Answers the reason when they cannot be read.
  [[nodiscard]] std::optional<std::string> read(CallTables& tables);

  /// The handles of a call (its Z_PK), in the order of the store, each once; none of them may exist.
  [[nodiscard]] const std::vector<std::int64_t>& ofCall(std::int64_t call) const;
  /// The address behind a handle, nullptr when the store does not have it.
  [[nodiscard]] const StoredText* address(std::int64_t handle) const;

 private:
  std::unordered_map<std::int64_t, StoredText> addresses_;
  std::unordered_map<std::int64_t, std::vector<std::int64_t>> ofCalls_;
};

}  // namespace chatsum::device
