// Values of the library as JSON. No state, any thread.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "platform/foundation/Date.h"
#include "platform/foundation/Value.h"

namespace chatsum::cli {

using Json = nlohmann::ordered_json;

/// Texts as they are (bytes that are no UTF-8 replaced when written), dates as ISO 8601 in the local zone.
[[nodiscard]] Json jsonOf(const Value& value);
[[nodiscard]] Json jsonOf(const std::optional<Date>& date);

/// Writes one array, element by element, so that a long one is never held whole.
class JsonArrayWriter {
 public:
  explicit JsonArrayWriter(std::ostream& out) : out_(out) {}
  /// False when the stream takes no more.
  bool append(const Json& element);
  void finish();

 private:
  std::ostream& out_;
  bool isEmpty_ = true;
};

}  // namespace chatsum::cli
