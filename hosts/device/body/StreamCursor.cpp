#include "hosts/device/body/StreamCursor.h"

namespace chatsum::device {
namespace {

// The width in bytes of the number that follows a head byte, 0 when the head is the number itself.
unsigned followingWidth(std::uint8_t head) {
  switch (head) {
    case kHeadInteger16:
      return 2;
    case kHeadInteger32:
      return 4;
    case kHeadInteger64:
      return 8;
    default:
      return 0;
  }
}

bool standsForItself(std::uint8_t head) { return head < kFirstReserved || head > kLastReserved; }

}  // namespace

bool StreamCursor::readRaw(unsigned width, std::uint64_t& value) {
  std::string_view raw;
  if (!take(width, raw)) return false;
  value = 0;
  for (unsigned i = 0; i < width; ++i) {
    const unsigned from = bigEndian_ ? i : width - 1 - i;
    value = (value << 8U) | static_cast<std::uint8_t>(raw[from]);
  }
  return true;
}

bool StreamCursor::readSigned(std::int64_t& value) {
  std::uint8_t head = 0;
  if (!take(head)) return false;
  if (standsForItself(head)) {
    value = static_cast<std::int8_t>(head);
    return true;
  }
  const unsigned width = followingWidth(head);
  std::uint64_t raw = 0;
  if (width == 0 || !readRaw(width, raw)) return false;
  if (width == 2) {
    value = static_cast<std::int16_t>(raw);
  } else if (width == 4) {
    value = static_cast<std::int32_t>(raw);
  } else {
    value = static_cast<std::int64_t>(raw);
  }
  return true;
}

bool StreamCursor::readUnsigned(std::uint64_t& value) {
  std::uint8_t head = 0;
  if (!take(head)) return false;
  if (standsForItself(head)) {
    value = head;
    return true;
  }
  const unsigned width = followingWidth(head);
  return width != 0 && readRaw(width, value);
}

bool StreamCursor::readReference(std::uint64_t& index) {
  std::int64_t value = 0;
  if (!readSigned(value) || value < -kReferenceBase || value > INT32_MAX) return false;
  index = static_cast<std::uint64_t>(value + kReferenceBase);
  return true;
}

}  // namespace chatsum::device
