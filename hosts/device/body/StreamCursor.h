// A read position in a typedstream: bytes and the stream's variable-length numbers. Never reads beyond the end.
#pragma once

#include <cstdint>
#include <string_view>

namespace chatsum::device {

// Head bytes with a meaning of their own; which of them are allowed depends on what is expected.
inline constexpr std::uint8_t kHeadInteger16 = 0x81;
inline constexpr std::uint8_t kHeadInteger32 = 0x82;
inline constexpr std::uint8_t kHeadReal = 0x83;
inline constexpr std::uint8_t kHeadNew = 0x84;
inline constexpr std::uint8_t kHeadNil = 0x85;
inline constexpr std::uint8_t kHeadEnd = 0x86;
inline constexpr std::uint8_t kHeadInteger64 = 0x87;
inline constexpr std::uint8_t kFirstReserved = 0x80;
inline constexpr std::uint8_t kLastReserved = 0x91;

/// References count from this number upwards: the byte 0x92 (-110) is entry 0.
inline constexpr std::int64_t kReferenceBase = 110;

/// One cursor per decoding. Each operation answers false, and may have moved, when the bytes do not fit.
class StreamCursor {
 public:
  explicit StreamCursor(std::string_view bytes) : bytes_(bytes) {}

  void setBigEndian(bool bigEndian) { bigEndian_ = bigEndian; }
  [[nodiscard]] bool bigEndian() const { return bigEndian_; }
  [[nodiscard]] std::size_t position() const { return position_; }
  void setPosition(std::size_t position) { position_ = position < bytes_.size() ? position : bytes_.size(); }
  [[nodiscard]] std::size_t remaining() const { return bytes_.size() - position_; }

  [[nodiscard]] bool peek(std::uint8_t& byte) const {
    if (remaining() == 0) return false;
    byte = static_cast<std::uint8_t>(bytes_[position_]);
    return true;
  }
  [[nodiscard]] bool take(std::uint8_t& byte) {
    if (!peek(byte)) return false;
    ++position_;
    return true;
  }
  [[nodiscard]] bool take(std::uint64_t length, std::string_view& bytes) {
    if (length > remaining()) return false;
    bytes = bytes_.substr(position_, static_cast<std::size_t>(length));
    position_ += static_cast<std::size_t>(length);
    return true;
  }
  [[nodiscard]] bool skip(std::uint64_t length) {
    std::string_view ignored;
    return take(length, ignored);
  }

  /// One number; small negative ones stand in the head byte itself (0x92 is -110).
  [[nodiscard]] bool readSigned(std::int64_t& value);
  /// One number; the same head bytes mean 146 to 255.
  [[nodiscard]] bool readUnsigned(std::uint64_t& value);
  /// A reference to an entry of one of the two tables, numbered from 0. Negative ones fail.
  [[nodiscard]] bool readReference(std::uint64_t& index);

 private:
  [[nodiscard]] bool readRaw(unsigned width, std::uint64_t& value);

  std::string_view bytes_;
  std::size_t position_ = 0;
  bool bigEndian_ = false;
};

}  // namespace chatsum::device
