#include "platform/system/images/PictureBytes.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>

#include "platform/system/images/PictureLimits.h"

namespace chatsum::platform::system {
namespace {

constexpr std::size_t kBuffer = std::size_t{64} << 10;

bool isPictureFile(const struct stat& status) {
  return S_ISREG(status.st_mode) && status.st_size > 0 &&
         static_cast<std::uint64_t>(status.st_size) <= limits::kPictureFileBytes;
}

}  // namespace

std::unique_ptr<PictureBytes> PictureBytes::open(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) return nullptr;
  struct stat status {};
  // Opening a device may do something to it already.
  if (stat(path.c_str(), &status) != 0 || !isPictureFile(status)) return nullptr;
  Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file || fstat(file.get(), &status) != 0 || !isPictureFile(status)) return nullptr;
  const FileIdentity identity{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
                              status.st_mtim.tv_nsec};
  return std::unique_ptr<PictureBytes>(new PictureBytes(std::move(file), identity));
}

PictureBytes::PictureBytes(Descriptor file, FileIdentity identity)
    : file_(std::move(file)), identity_(identity), size_(static_cast<std::uint64_t>(identity.size)) {}

std::size_t PictureBytes::read(std::uint64_t offset, void* bytes, std::size_t count) noexcept {
  if (count == 0 || offset >= size_) return 0;
  count = static_cast<std::size_t>(std::min<std::uint64_t>(count, size_ - offset));
  if (!file_) {
    std::memcpy(bytes, memory_.data() + offset, count);
    return count;
  }
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got =
        pread(file_.get(), static_cast<char*>(bytes) + done, count - done, static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

std::string PictureBytes::part(std::uint64_t offset, std::size_t count) {
  if (offset >= size_) return {};
  std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(count, size_ - offset)), '\0');
  bytes.resize(read(offset, bytes.data(), bytes.size()));
  return bytes;
}

std::string PictureBytes::all() {
  std::string bytes = part(0, static_cast<std::size_t>(size_));
  return bytes.size() == size_ ? bytes : std::string();
}

PictureStream::PictureStream(PictureBytes& bytes, std::uint64_t begin, std::uint64_t end)
    : bytes_(bytes),
      end_(std::min(end, bytes.size())),
      bufferPlace_(begin),
      buffer_(static_cast<std::size_t>(std::min<std::uint64_t>(kBuffer, end_ > begin ? end_ - begin : 0))) {}

bool PictureStream::fill() noexcept {
  bufferPlace_ += filled_;
  used_ = filled_ = 0;
  if (bufferPlace_ >= end_) return false;
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(buffer_.size(), end_ - bufferPlace_));
  filled_ = bytes_.read(bufferPlace_, buffer_.data(), wanted);
  return filled_ > 0;
}

std::size_t PictureStream::read(void* bytes, std::size_t count) noexcept {
  std::size_t done = 0;
  while (done < count) {
    if (used_ == filled_ && !fill()) break;
    const std::size_t part = std::min(count - done, filled_ - used_);
    std::memcpy(static_cast<char*>(bytes) + done, buffer_.data() + used_, part);
    used_ += part;
    done += part;
  }
  return done;
}

std::string_view PictureStream::next() noexcept {
  if (used_ == filled_ && !fill()) return {};
  const std::string_view bytes(buffer_.data() + used_, filled_ - used_);
  used_ = filled_;
  return bytes;
}

bool PictureStream::readBig16(unsigned& number) noexcept {
  std::uint8_t high = 0, low = 0;
  if (!readByte(high) || !readByte(low)) return false;
  number = static_cast<unsigned>(high) << 8 | low;
  return true;
}

void PictureStream::skip(std::uint64_t count) noexcept {
  if (count <= filled_ - used_) {
    used_ += static_cast<std::size_t>(count);
    return;
  }
  const std::uint64_t place = this->place();
  // Beyond the end is the end, however far.
  bufferPlace_ = count > end_ || place + count > end_ ? end_ : place + count;
  used_ = filled_ = 0;
}

}  // namespace chatsum::platform::system
