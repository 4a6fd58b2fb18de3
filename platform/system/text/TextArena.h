// Memory that is handed out in small parts and given back all at once. One thread at a time.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

namespace chatsum::platform::system {

class TextArena {
 public:
  /// Counts what it takes in `total`, which several may share.
  explicit TextArena(std::atomic<std::size_t>& total) : total_(&total) {}

  /// Makes a value that is never destroyed.
  template <class T>
  T* make(const T& value) {
    static_assert(std::is_trivially_destructible_v<T>);
    return new (take(sizeof(T), alignof(T))) T(value);
  }
  template <class T>
  std::span<const T> copy(std::span<const T> values) {
    static_assert(std::is_trivially_copyable_v<T>);
    if (values.empty()) return {};
    void* place = take(values.size_bytes(), alignof(T));
    std::memcpy(place, values.data(), values.size_bytes());
    return {static_cast<const T*>(place), values.size()};
  }
  std::string_view copy(std::string_view text) {
    const auto bytes = copy(std::span<const char>(text.data(), text.size()));
    return {bytes.data(), bytes.size()};
  }

 private:
  static constexpr std::size_t kBlock = 32 * 1024;

  void* take(std::size_t bytes, std::size_t alignment) {
    void* place = next_;
    if (!next_ || !std::align(alignment, bytes, place, left_)) {
      const std::size_t size = std::max(kBlock, bytes + alignment);
      blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(size));
      total_->fetch_add(size, std::memory_order_relaxed);
      place = blocks_.back().get();
      left_ = size;
      std::align(alignment, bytes, place, left_);
    }
    next_ = static_cast<std::byte*>(place) + bytes;
    left_ -= bytes;
    return place;
  }

  std::atomic<std::size_t>* total_;
  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  void* next_ = nullptr;
  std::size_t left_ = 0;
};

}  // namespace chatsum::platform::system
