// Walks a typedstream from its start to the text of the attributed string that is its root, and on to the attributes of
// its stretches when they are wanted.
// One reader per body, one thread; it only points into the body, which must outlive it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
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

  /// One stretch of equal attributes.
  struct Run {
    std::int64_t attributes = 0;  ///< a number that runs of equal attributes share
    std::uint64_t utf16Length = 0;
  };
  struct Attribute {
    std::string_view key;
    std::string_view text;    ///< the bytes of a string
    std::int64_t number = 0;  ///< of a number
  };
  /// Reads on to the end instead of stopping behind the text; what stands before a damage counts, and the
  /// first thousand. Once per reader, in the place of `readText`.
  [[nodiscard]] std::vector<Run> readRuns();
  /// What stands under the number of a run, as much as real ones have.
  [[nodiscard]] std::vector<Attribute> attributesOf(std::int64_t attributes) const;

 private:
  enum class Step { kFailed, kDone, kTextFound };
  enum class Kind : std::uint8_t { kObject, kClass, kCString };
  // One numbered object. Name and superclass belong to classes; -1 is no class.
  struct Entry {
    Kind kind;
    std::int32_t superclass = -1;
    std::string_view name;
  };
  // What is kept of an object when attributes are wanted.
  struct Content {
    std::string_view text;
    std::int64_t number = 0;
    std::vector<std::size_t> items;  // the objects that stand in it
  };
  static constexpr std::size_t kNoObject = static_cast<std::size_t>(-1);
  // Where a value stands: how deep, whether raw bytes there are the text we look for, and in which object.
  struct Place {
    int depth = 0;
    bool holdsText = false;
    std::size_t object = kNoObject;
  };

  bool readSharedString(std::optional<std::string_view>& text);
  bool readClass(std::int32_t& classIndex);
  bool readCString();
  bool readReal(unsigned width);
  bool readNumber(bool isSigned, Place place);
  Step readObject(int depth);
  Step readGroup(Place place);
  Step readValue(std::string_view types, std::size_t& at, Place place);
  Step readArray(std::string_view types, std::size_t& at, Place place);
  Step readStruct(std::string_view types, std::size_t& at, Place place);
  Step readUnsharedBytes(Place place);
  bool skipType(std::string_view types, std::size_t& at);
  bool isKindOf(std::int32_t classIndex, std::string_view name, std::string_view mutableName) const;
  bool spend();
  void keepNumber(Place place, std::int64_t value);
  void keepItem(Place place);
  [[nodiscard]] static Step step(bool done) { return done ? Step::kDone : Step::kFailed; }

  StreamCursor cursor_;
  std::vector<std::string_view> sharedStrings_;
  std::vector<Entry> objects_;
  std::string_view text_;
  bool keepsContents_ = false;
  std::size_t lastObject_ = kNoObject;  // the one that was read or referred to last
  std::map<std::size_t, Content> contents_;
  std::vector<std::int64_t> rootNumbers_;  // of the group that is being read in the root
  std::vector<Run> runs_;
  std::map<std::int64_t, std::size_t> dictionaries_;  // of the runs' numbers
  std::size_t budget_;  // values that may still be read: keeps types that take no bytes from costing time without end
};

}  // namespace chatsum::device
