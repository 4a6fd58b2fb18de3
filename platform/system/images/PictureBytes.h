// The bytes of a picture file, read piece by piece with read(): a file that shrinks meanwhile gives fewer bytes, never
// a fault. One thread at a time.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/system/files/Descriptor.h"

namespace chatsum::platform::system {

/// Tells whether a path still names the file it named before, unchanged.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;
  std::int64_t size = 0;
  std::int64_t changedSeconds = 0, changedNanoseconds = 0;
  friend auto operator<=>(const FileIdentity&, const FileIdentity&) = default;
};

class PictureBytes {
 public:
  /// Opens a regular file that is not empty and not beyond the limit; nullptr for anything else (a pipe or device is
  /// not opened, so that it cannot hold us up).
  [[nodiscard]] static std::unique_ptr<PictureBytes> open(const std::string& path);
  /// Bytes in memory, which must outlive it.
  explicit PictureBytes(std::string_view bytes) : memory_(bytes), size_(bytes.size()) {}

  [[nodiscard]] std::uint64_t size() const { return size_; }
  [[nodiscard]] const FileIdentity& identity() const { return identity_; }
  /// Copies bytes from that place and answers how many: fewer at the end, or when the file cannot be read any more.
  std::size_t read(std::uint64_t offset, void* bytes, std::size_t count) noexcept;
  /// At most that many bytes from that place.
  [[nodiscard]] std::string part(std::uint64_t offset, std::size_t count);
  /// The whole file; empty when it cannot be read to its end.
  [[nodiscard]] std::string all();

 private:
  PictureBytes(Descriptor file, FileIdentity identity);

  Descriptor file_;
  FileIdentity identity_;
  std::string_view memory_;
  std::uint64_t size_ = 0;
};

/// Reads a part of the bytes from its beginning to its end.
class PictureStream {
 public:
  explicit PictureStream(PictureBytes& bytes) : PictureStream(bytes, 0, bytes.size()) {}
  PictureStream(PictureBytes& bytes, std::uint64_t begin, std::uint64_t end);

  /// Copies the next bytes and answers how many: fewer at the end.
  std::size_t read(void* bytes, std::size_t count) noexcept;
  /// The next bytes, as many as are at hand; empty at the end. Good until the next call.
  [[nodiscard]] std::string_view next() noexcept;
  /// False at the end.
  [[nodiscard]] bool readByte(std::uint8_t& byte) noexcept { return read(&byte, 1) == 1; }
  [[nodiscard]] bool readBig16(unsigned& number) noexcept;
  void skip(std::uint64_t count) noexcept;
  [[nodiscard]] std::uint64_t place() const { return bufferPlace_ + used_; }

 private:
  [[nodiscard]] bool fill() noexcept;

  PictureBytes& bytes_;
  std::uint64_t end_;
  std::uint64_t bufferPlace_;
  std::vector<char> buffer_;
  std::size_t used_ = 0, filled_ = 0;
};

}  // namespace chatsum::platform::system
