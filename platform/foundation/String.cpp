#include "platform/foundation/String.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace chatsum {

StringBody* StringBody::make(std::string_view text) {
  const std::size_t size = std::min<std::size_t>(text.size(), std::numeric_limits<std::uint32_t>::max());
  void* memory = ::operator new(sizeof(StringBody) + size);
  auto* body = new (memory) StringBody(static_cast<std::uint32_t>(size));
  std::memcpy(reinterpret_cast<char*>(body + 1), text.data(), size);
  return body;
}

void StringBody::destroy(StringBody* body) {
  body->~StringBody();
  ::operator delete(body);
}

}  // namespace chatsum
