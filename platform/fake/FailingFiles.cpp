#include "platform/fake/FailingFiles.h"

#include <sqlite3.h>

namespace chatsum::platform::fake {

class FailingFiles::Handle final : public FileHandle {
 public:
  Handle(FailingFiles& files, std::unique_ptr<FileHandle> real, std::string path)
      : files_(files), real_(std::move(real)), path_(std::move(path)) {}
  std::uint64_t seekToEnd() override { return real_->seekToEnd(); }
  void truncateAt(std::uint64_t offset) override { real_->truncateAt(offset); }
  std::optional<Error> write(std::string_view bytes) override {
    files_.note("write " + path_);
    if (auto error = files_.takeError(FileOperation::kHandleWrite, path_)) return error;
    return real_->write(bytes);
  }

 private:
  FailingFiles& files_;
  std::unique_ptr<FileHandle> real_;
  std::string path_;
};

void FailingFiles::fail(FileOperation operation, int number, int times) {
  const std::lock_guard lock(mutex_);
  failures_[operation] = {number, times};
}

void FailingFiles::succeed(FileOperation operation) {
  const std::lock_guard lock(mutex_);
  failures_.erase(operation);
}

std::vector<std::string> FailingFiles::calls() const {
  const std::lock_guard lock(mutex_);
  return calls_;
}

void FailingFiles::forgetCalls() {
  const std::lock_guard lock(mutex_);
  calls_.clear();
}

void FailingFiles::note(const std::string& call) {
  const std::lock_guard lock(mutex_);
  calls_.push_back(call);
}

std::optional<int> FailingFiles::take(FileOperation operation) const {
  const std::lock_guard lock(mutex_);
  const auto found = failures_.find(operation);
  if (found == failures_.end() || found->second.times == 0) return std::nullopt;
  if (found->second.times > 0) --found->second.times;
  return found->second.number;
}

std::optional<Error> FailingFiles::takeError(FileOperation operation, const std::string& path) const {
  if (const auto number = take(operation)) return Error::posix(*number, "“" + path + "” was made to fail");
  return std::nullopt;
}

void FailingFiles::setCreationDate(const std::string& path, Date date) {
  const std::lock_guard lock(mutex_);
  creationDates_.insert_or_assign(path, date);
}

std::optional<std::vector<std::string>> FailingFiles::list(const std::string& path) const {
  if (take(FileOperation::kList)) return std::nullopt;
  return real_.list(path);
}

FileAttributes FailingFiles::attributes(const std::string& path) const {
  if (take(FileOperation::kAttributes)) return {};
  FileAttributes attributes = real_.attributes(path);
  if (take(FileOperation::kSize)) attributes.size.reset();
  const std::lock_guard lock(mutex_);
  const auto known = creationDates_.find(path);
  if (known != creationDates_.end()) attributes.creationDate = known->second;
  return attributes;
}

std::optional<Error> FailingFiles::createDirectory(const std::string& path) {
  note("createDirectory " + path);
  if (auto error = takeError(FileOperation::kCreateDirectory, path)) return error;
  return real_.createDirectory(path);
}

std::optional<Error> FailingFiles::move(const std::string& from, const std::string& to) {
  note("move " + from + " " + to);
  if (auto error = takeError(FileOperation::kMove, from)) return error;
  return real_.move(from, to);
}

std::optional<Error> FailingFiles::copy(const std::string& from, const std::string& to) {
  note("copy " + from + " " + to);
  if (auto error = takeError(FileOperation::kCopy, from)) return error;
  return real_.copy(from, to);
}

std::optional<Error> FailingFiles::remove(const std::string& path) {
  note("remove " + path);
  if (auto error = takeError(FileOperation::kRemove, path)) return error;
  return real_.remove(path);
}

std::optional<Error> FailingFiles::createFile(const std::string& path) {
  note("createFile " + path);
  if (auto error = takeError(FileOperation::kCreateFile, path)) return error;
  return real_.createFile(path);
}

std::optional<Error> FailingFiles::writeAtomically(const std::string& path, std::string_view bytes) {
  note("writeAtomically " + path);
  if (auto error = takeError(FileOperation::kWriteAtomically, path)) return error;
  return real_.writeAtomically(path, bytes);
}

std::unique_ptr<FileHandle> FailingFiles::openForWriting(const std::string& path) {
  note("openForWriting " + path);
  if (take(FileOperation::kOpenForWriting)) return nullptr;
  auto handle = real_.openForWriting(path);
  if (!handle) return nullptr;
  return std::make_unique<Handle>(*this, std::move(handle), path);
}

int FailingFiles::openDatabase(const std::string& path, sqlite3** database) {
  note("openDatabase " + path);
  *database = nullptr;
  if (take(FileOperation::kOpenDatabase)) return SQLITE_CANTOPEN;
  return real_.openDatabase(path, database);
}

}  // namespace chatsum::platform::fake
