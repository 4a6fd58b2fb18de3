// One property list with a dictionary at its top, read from bytes, changed key by key, and turned into bytes of the
// same kind again. What is not changed stays, also kinds that values cannot hold. One thread at a time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Value.h"

namespace chatsum::platform::system {

class PropertyListFile {
 public:
  /// An empty dictionary, kept as XML.
  PropertyListFile();
  /// From XML (UTF-8, or UTF-16 with a byte-order mark) or binary bytes, told apart by how they begin. None when they
  /// are no property list, have something else than a dictionary at the top, or go beyond the limits of the guard.
  [[nodiscard]] static std::optional<PropertyListFile> parse(std::string_view bytes);

  [[nodiscard]] bool isBinary() const { return isBinary_; }

  /// All of it, keys in their order. Data and identifiers become none values.
  [[nodiscard]] Record dictionary() const;
  /// Replaces the value of a key, or appends key and value. Takes booleans, integers, reals and strings; false, and
  /// nothing changed, for other kinds.
  bool set(const std::string& key, const Value& value);
  /// None when what would be written could not be read again.
  [[nodiscard]] std::optional<std::string> bytes() const;

 private:
  struct FreeNode {
    void operator()(void* node) const;
  };
  using Node = std::unique_ptr<void, FreeNode>;

  PropertyListFile(Node root, bool isBinary) : root_(std::move(root)), isBinary_(isBinary) {}

  Node root_;
  bool isBinary_ = false;
};

}  // namespace chatsum::platform::system
