// The bytes of a page's content as they grow. Made for many short pieces: appending is a copy and little more. One
// thread at a time.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace chatsum::platform::system {

class ContentBytes {
 public:
  explicit ContentBytes(std::size_t usualSize) : bytes_(new char[usualSize]), capacity_(usualSize) {}

  void append(std::string_view more) {
    if (capacity_ - size_ < more.size()) grow(more.size());
    std::memcpy(bytes_.get() + size_, more.data(), more.size());
    size_ += more.size();
  }
  /// The first `size` of the bytes.
  void append(const std::array<char, 16>& more, std::size_t size) {
    if (capacity_ - size_ < more.size()) grow(more.size());
    std::memcpy(bytes_.get() + size_, more.data(), more.size());  // of a known size, so it is one instruction
    size_ += size;
  }
  void append(char c) {
    if (size_ == capacity_) grow(1);
    bytes_[size_++] = c;
  }
  void put(std::size_t at, char c) { bytes_[at] = c; }
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] std::string string() const { return {bytes_.get(), size_}; }

 private:
  void grow(std::size_t more) {
    const std::size_t capacity = std::max(2 * capacity_, size_ + more);
    std::unique_ptr<char[]> bytes(new char[capacity]);
    std::memcpy(bytes.get(), bytes_.get(), size_);
    bytes_ = std::move(bytes);
    capacity_ = capacity;
  }

  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0, capacity_;
};

}  // namespace chatsum::platform::system
