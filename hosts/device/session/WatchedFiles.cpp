#include "hosts/device/source/WatchedFiles.h"

#include <utility>

namespace chatsum::device {

class WatchedFiles::WatchedHandle final : public platform::FileHandle {
 public:
  WatchedHandle(std::unique_ptr<platform::FileHandle> handle, WatchedFiles& owner)
      : handle_(std::move(handle)), owner_(owner) {}

  std::uint64_t seekToEnd() override { return handle_->seekToEnd(); }
  void truncateAt(std::uint64_t offset) override { handle_->truncateAt(offset); }
  std::optional<Error> write(std::string_view bytes) override {
    std::optional<Error> error = handle_->write(bytes);
    if (!error) {
      owner_.bytesWritten_ += bytes.size();
      return error;
    }
    const std::lock_guard lock(owner_.mutex_);
    if (!owner_.writeFailure_) owner_.writeFailure_ = error->localizedDescription();
    return error;
  }

 private:
  std::unique_ptr<platform::FileHandle> handle_;
  WatchedFiles& owner_;
};

void WatchedFiles::startWatching() {
  const std::lock_guard lock(mutex_);
  writeFailure_.reset();
  bytesWritten_ = 0;
}

std::optional<std::string> WatchedFiles::writeFailure() const {
  const std::lock_guard lock(mutex_);
  return writeFailure_;
}

std::unique_ptr<platform::FileHandle> WatchedFiles::openForWriting(const std::string& path) {
  auto handle = files_.openForWriting(path);
  if (!handle) return nullptr;
  return std::make_unique<WatchedHandle>(std::move(handle), *this);
}

}  // namespace chatsum::device
