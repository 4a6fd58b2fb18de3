// One POSIX file descriptor, closed when its owner goes. One thread at a time.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string_view>
#include <utility>

namespace chatsum::platform::system {

/// Owns a descriptor; an empty one (-1) stands for an open that failed.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { (void)close(); }

  [[nodiscard]] int get() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }

  /// Closes now. Answers 0 or errno: some file systems report a failed write only here.
  [[nodiscard]] int close() {
    const int number = std::exchange(number_, -1);
    // After EINTR the descriptor is gone on Linux, and its data is on the way: no error.
    return number < 0 || ::close(number) == 0 || errno == EINTR ? 0 : errno;
  }

  /// Writes all bytes, however many calls that takes. Answers 0 or errno.
  [[nodiscard]] int writeAll(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t written = ::write(number_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return errno;
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
  }

 private:
  int number_;
};

}  // namespace chatsum::platform::system
