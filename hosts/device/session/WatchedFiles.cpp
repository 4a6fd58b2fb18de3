#include "hosts/device/session/WatchedFiles.h"

#include <cerrno>
#include <utility>

#include "hosts/device/evidence/EvidenceManifest.h"

namespace chatsum::device {

class WatchedFiles::WatchedHandle final : public platform::FileHandle {
 public:
  WatchedHandle(std::unique_ptr<platform::FileHandle> handle, WatchedFiles& owner)
      : handle_(std::move(handle)), owner_(owner) {}

  std::uint64_t seekToEnd() override {
    const std::uint64_t end = handle_->seekToEnd();
    if (!hasWritten_) owner_.bytesFound_ += end;
    return end;
  }
  void truncateAt(std::uint64_t offset) override { handle_->truncateAt(offset); }
  std::optional<Error> write(std::string_view bytes) override {
    hasWritten_ = true;
    std::optional<Error> error = owner_.noted(handle_->write(bytes));
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
  bool hasWritten_ = false;
};

void WatchedFiles::startWatching() {
  const std::lock_guard lock(mutex_);
  writeFailure_.reset();
  firstFailure_.reset();
  bytesWritten_ = 0;
  bytesFound_ = 0;
  filesBegun_ = 0;
}

std::optional<std::string> WatchedFiles::firstFailure() const {
  const std::lock_guard lock(mutex_);
  return firstFailure_;
}

std::optional<Error> WatchedFiles::noted(std::optional<Error> error) {
  if (!error) return error;
  const std::lock_guard lock(mutex_);
  if (!firstFailure_) firstFailure_ = error->localizedDescription();
  return error;
}

std::optional<std::string> WatchedFiles::writeFailure() const {
  const std::lock_guard lock(mutex_);
  return writeFailure_;
}

void WatchedFiles::setHomeDirectory(std::string home) {
  const std::lock_guard lock(mutex_);
  home_ = std::move(home);
}

std::string WatchedFiles::homeDirectory() const {
  {
    const std::lock_guard lock(mutex_);
    if (!home_.empty()) return home_;
  }
  return files_.homeDirectory();
}

std::optional<Error> WatchedFiles::remove(const std::string& path) {
  if (files_.isDirectory(path)) return Error::posix(EISDIR, "“" + path + "” couldn’t be removed");
  auto error = files_.remove(path);
  const std::string manifest = evidenceNameFor(path);
  if (!error && files_.exists(manifest) && !files_.isDirectory(manifest)) (void)files_.remove(manifest);
  return error;
}

std::unique_ptr<platform::FileHandle> WatchedFiles::openForWriting(const std::string& path) {
  auto handle = files_.openForWriting(path);
  if (!handle) return nullptr;
  ++filesBegun_;
  return std::make_unique<WatchedHandle>(std::move(handle), *this);
}

}  // namespace chatsum::device
