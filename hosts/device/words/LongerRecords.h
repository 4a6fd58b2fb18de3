// Adds keys to many records that share few shapes, so that they share few shapes afterwards. One thread at a time.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/foundation/Value.h"

namespace chatsum::device {

class LongerRecords {
 public:
  /// At most 32 keys, none of which the records have.
  explicit LongerRecords(std::vector<std::string> keys) : keys_(std::move(keys)) {}

  /// The record with a value for each key behind its own; a value that is none leaves its key away.
  [[nodiscard]] Record with(const Record& record, std::span<const Value> added) {
    values_.clear();
    for (std::size_t i = 0; i < record.size(); ++i) values_.push_back(record.valueAt(i));
    std::uint32_t present = 0;
    for (std::size_t i = 0; i < added.size(); ++i) {
      if (added[i].isNone()) continue;
      present |= 1U << i;
      values_.push_back(added[i]);
    }
    return Record(shapeFor(record.shape(), present), values_.data());
  }

 private:
  struct Known {
    Ref<Shape> before;
    std::uint32_t present;
    Ref<Shape> after;
  };

  const Ref<Shape>& shapeFor(const Ref<Shape>& before, std::uint32_t present) {
    for (const Known& known : known_) {
      if (known.before == before && known.present == present) return known.after;
    }
    std::vector<String> keys = before->keys();
    for (std::size_t i = 0; i < keys_.size(); ++i) {
      if (present & 1U << i) keys.emplace_back(keys_[i]);
    }
    // Shapes that only one record has would make the list long; the oldest give way.
    constexpr std::size_t kMost = 64;
    if (known_.size() == kMost) known_.erase(known_.begin());
    known_.push_back({before, present, Ref<Shape>::adopt(new Shape(std::move(keys)))});
    return known_.back().after;
  }

  std::vector<std::string> keys_;
  std::vector<Known> known_;
  std::vector<Value> values_;
};

}  // namespace chatsum::device
