// Walks a typedstream from its start to the text of the attributed string that is its root.
// One reader per body, one thread; it only points into the body, which must outlive it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "hosts/device/body/StreamCursor.h"

namespace chatsum::device {

/// Reads the stream's header and answers a cursor behind it that knows the byte order; nothing for other bytes.
/// A header whose last number (the writing system's version) is damaged still counts.
[[nodiscard]] std::optional<StreamCursor> openStream(std::string_view blob);

class StreamReader {
 public:
  StreamReader(StreamCursor cursor, std::size_t blobSize);

  /// The raw bytes of the root's string. Nothing when the stream is malformed before the end of that string, or its
  /// root is neither an attributed string nor a string.
  [[nodiscard]] std::optional<std::string_view> readText();

 private:
  enum class Step { kFailed, kDone, kTextFound };
  enum class Kind : std::uint8_t { kObject, kClass, kCString };
  // One numbered object. Name and superclass belong to classes; -1 is no class.
  struct Entry {
    Kind kind;
    std::int32_t superclass = -1;
    std::string_view name;
  };
  // Where a value stands: how deep, and whether raw bytes there are the text we look for.
  struct Place {
    int depth = 0;
    bool holdsText = false;
  };

  bool readSharedString(std::optional<std::string_view>& text);
  bool readClass(std::int32_t& classIndex);
  bool readCString();
  bool readReal(unsigned width);
  bool readNumber(bool isSigned);
  Step readObject(int depth);
  Step readGroup(Place place);
  Step readValue(std::string_view types, std::size_t& at, Place place);
  Step readArray(std::string_view types, std::size_t& at, Place place);
  Step readStruct(std::string_view types, std::size_t& at, Place place);
  Step readUnsharedBytes(Place place);
  bool skipType(std::string_view types, std::size_t& at);
  bool isKindOf(std::int32_t classIndex, std::string_view name, std::string_view mutableName) const;
  bool spend();
  [[nodiscard]] static Step step(bool done) { return done ? Step::kDone : Step::kFailed; }

  StreamCursor cursor_;
  std::vector<std::string_view> sharedStrings_;
  std::vector<Entry> objects_;
  std::string_view text_;
  std::size_t budget_;  // values that may still be read: keeps types that take no bytes from costing time without end
};

}  // namespace chatsum::device
