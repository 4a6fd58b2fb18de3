// Counted references for the value types: one word per reference, the count inside the object. Counts are atomic, so
// references may be copied on any thread; the objects themselves follow the rules of their own classes.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace chatsum {

/// Base of everything that a `Ref` may hold. A new object starts with a count of one, owned by the `Ref` that adopts it.
class RefCounted {
 public:
  RefCounted() = default;
  RefCounted(const RefCounted&) = delete;
  RefCounted& operator=(const RefCounted&) = delete;

  void retain() const { count_.fetch_add(1, std::memory_order_relaxed); }
  /// Answers true when the last reference went and the object must be destroyed.
  [[nodiscard]] bool release() const { return count_.fetch_sub(1, std::memory_order_acq_rel) == 1; }
  [[nodiscard]] bool isShared() const { return count_.load(std::memory_order_acquire) > 1; }

 protected:
  ~RefCounted() = default;

 private:
  mutable std::atomic<std::uint32_t> count_{1};
};

/// A counted reference, possibly empty. `T` derives from RefCounted and has a static `destroy(T*)`.
template <class T>
class Ref {
 public:
  Ref() = default;
  static Ref adopt(T* object) {
    Ref ref;
    ref.object_ = object;
    return ref;
  }
  Ref(const Ref& other) : object_(other.object_) {
    if (object_) object_->retain();
  }
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() {
    if (object_ && object_->release()) T::destroy(object_);
  }

  [[nodiscard]] T* get() const { return object_; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }
  bool operator==(const Ref& other) const { return object_ == other.object_; }

 private:
  T* object_ = nullptr;
};

}  // namespace chatsum
