// SHA-256 (FIPS 180-4) of whole files. Any thread, an object one at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

struct FileDigest {
  std::uint64_t size = 0;  ///< bytes
  std::string sha256;      ///< 64 lower-case hexadecimal digits
  bool operator==(const FileDigest&) const = default;
};

/// The digest of bytes that come piece by piece.
class RunningDigest {
 public:
  RunningDigest();
  ~RunningDigest();
  RunningDigest(const RunningDigest&) = delete;
  RunningDigest& operator=(const RunningDigest&) = delete;
  void add(std::string_view bytes);
  /// Of all bytes so far; nothing can be added after it.
  [[nodiscard]] FileDigest finish();

 private:
  struct Context;
  std::unique_ptr<Context> context_;
  std::uint64_t size_ = 0;
};

/// Reads an ordinary file from its start to its end, piece by piece. `advanced`, when given, is told the bytes of each
/// piece. The problem when the file is missing, is no ordinary file, or cannot be read.
[[nodiscard]] StoreResult<FileDigest> digestOfFile(const std::string& path,
                                                   const std::function<void(std::uint64_t)>& advanced = {});

/// The digest of some bytes in memory.
[[nodiscard]] FileDigest digestOf(std::string_view bytes);

}  // namespace chatsum::device
