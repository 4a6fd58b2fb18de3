#include "platform/foundation/TextBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace chatsum {

TextBuffer::~TextBuffer() { std::free(bytes_); }

void TextBuffer::grow(std::size_t more) {
  const std::size_t wanted = std::max({size_ + more, capacity_ + capacity_ / 2, std::size_t{256}});
  auto* bytes = static_cast<char*>(std::realloc(bytes_, wanted));
  if (!bytes) throw std::bad_alloc();
  bytes_ = bytes;
  capacity_ = wanted;
}

}  // namespace chatsum
