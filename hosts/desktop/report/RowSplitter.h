// Tells where the rows of a text end, byte by byte: lines, or records of comma-separated values (RFC 4180), in which a
// quoted cell may hold line ends. Rows without an end are cut, so that none is larger than a window can hold. One thread.
#pragma once

#include <cstddef>
#include <cstdint>

namespace chatsum::desktop {

enum class RowKind { kLines, kCsv };

class RowSplitter {
 public:
  /// Bytes of the longest row; one of lines may be as many longer as a character has bytes.
  static constexpr std::size_t kLongestLine = 16 * 1024;
  static constexpr std::size_t kLongestRecord = 1024 * 1024;

  explicit RowSplitter(RowKind kind) : kind_(kind) {}

  /// Takes the next byte and answers whether a row ends behind it; the byte then belongs to that row.
  bool endsBehind(char byte) {
    ++length_;
    if (kind_ == RowKind::kLines ? lineEnds(byte) : recordEnds(byte)) {
      length_ = 0;
      cells_ = 1;
      state_ = State::kCellBegins;
      return true;
    }
    return false;
  }
  /// Whether a row has begun that has not ended.
  [[nodiscard]] bool isInside() const { return length_ > 0; }
  /// Cells of the row so far; lines have one.
  [[nodiscard]] std::size_t cells() const { return cells_; }

 private:
  enum class State { kCellBegins, kPlain, kQuoted, kQuoteInQuoted };

  bool lineEnds(char byte) {
    if (byte == '\n') return true;
    // Not inside a character of UTF-8, as long as it is one.
    const auto value = static_cast<std::uint8_t>(byte);
    if (value >= 0xF0) {
      following_ = 3;
    } else if (value >= 0xE0) {
      following_ = 2;
    } else if (value >= 0xC0) {
      following_ = 1;
    } else if (value >= 0x80 && following_ > 0) {
      --following_;
    } else {
      following_ = 0;
    }
    return length_ >= kLongestLine && following_ == 0;
  }

  bool recordEnds(char byte) {
    if (length_ >= kLongestRecord) return true;
    switch (state_) {
      case State::kQuoted:
        if (byte == '"') state_ = State::kQuoteInQuoted;
        return false;
      case State::kQuoteInQuoted:
        if (byte == '"') {
          state_ = State::kQuoted;
          return false;
        }
        break;
      case State::kCellBegins:
        if (byte == '"') {
          state_ = State::kQuoted;
          return false;
        }
        break;
      case State::kPlain:
        break;
    }
    if (byte == '\n') return true;
    if (byte == ',') ++cells_;
    state_ = byte == ',' ? State::kCellBegins : State::kPlain;
    return false;
  }

  RowKind kind_;
  State state_ = State::kCellBegins;
  std::size_t length_ = 0;
  std::size_t cells_ = 1;
  int following_ = 0;  // bytes of the character that are still to come
};

}  // namespace chatsum::desktop
