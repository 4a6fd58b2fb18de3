// A growing run of UTF-8 bytes for texts of any size. Large ones grow by remapping pages, so a report of a hundred
// megabytes is never held twice. One thread at a time.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace chatsum {

class TextBuffer {
 public:
  TextBuffer() = default;
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;
  ~TextBuffer();

  void append(std::string_view text) {
    if (capacity_ - size_ < text.size()) grow(text.size());
    if (!text.empty()) std::memcpy(bytes_ + size_, text.data(), text.size());
    size_ += text.size();
  }
  void append(char c) {
    if (size_ == capacity_) grow(1);
    bytes_[size_++] = c;
  }
  /// Room for `count` bytes behind the end; `advance` makes the written ones part of the text.
  [[nodiscard]] char* room(std::size_t count) {
    if (capacity_ - size_ < count) grow(count);
    return bytes_ + size_;
  }
  void advance(std::size_t count) { size_ += count; }

  void clear() { size_ = 0; }
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] std::string_view view() const { return {bytes_, size_}; }

 private:
  /// Throws std::bad_alloc when there is no memory.
  void grow(std::size_t more);

  char* bytes_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace chatsum
