#include "hosts/device/stores/StoreFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <bitset>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string_view>

#include "hosts/device/language/Say.h"
#include "hosts/device/stores/FileDescriptor.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kMagic("SQLite format 3\0", 16);
constexpr std::size_t kHeaderLength = 100;
constexpr std::int64_t kWalHeaderLength = 32, kFrameHeaderLength = 24;
constexpr std::uint32_t kWalMagic = 0x377F0682;  // the last bit says in which order it adds up
constexpr std::size_t kSampleLength = 4096;

// Places in a database's header.
constexpr std::size_t kPageSizeAt = 16;
constexpr std::size_t kReadVersionAt = 19;
constexpr std::size_t kChangeCounterAt = 24;
constexpr std::size_t kPageCountAt = 28;
constexpr std::size_t kVersionValidForAt = 92;
constexpr std::size_t kWalPageSizeAt = 8;

std::uint32_t bigEndian(std::string_view header, std::size_t at, std::size_t width) {
  std::uint32_t value = 0;
  for (const char byte : header.substr(at, width)) value = (value << 8U) | static_cast<std::uint8_t>(byte);
  return value;
}

// Never waits, even if somebody put a pipe there.
FileDescriptor openForReading(const std::string& path) {
  return FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

// Up to `length` bytes from the start; nothing when reading fails.
std::optional<std::string> readStart(const FileDescriptor& file, std::size_t length) {
  std::string start(length, '\0');
  std::size_t have = 0;
  while (have < length) {
    const ssize_t got = ::pread(file.get(), start.data() + have, length - have, static_cast<off_t>(have));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    have += static_cast<std::size_t>(got);
  }
  start.resize(have);
  return start;
}

std::string readStartOf(const std::string& path, std::size_t length) {
  const FileDescriptor file = openForReading(path);
  return file ? readStart(file, length).value_or("") : "";
}

// The page size, 0 when it is none that SQLite writes.
std::uint32_t pageSize(std::string_view header) {
  const std::uint32_t stated = bigEndian(header, kPageSizeAt, 2);
  const std::uint32_t size = stated == 1 ? 65536 : stated;
  return size >= 512 && (size & (size - 1)) == 0 ? size : 0;
}

bool looksLikeText(std::string_view sample) {
  if (sample.substr(0, 2) == "\xFF\xFE" || sample.substr(0, 2) == "\xFE\xFF") return true;
  return std::none_of(sample.begin(), sample.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 && c != '\n' && c != '\r' && c != '\t' && c != '\f';
  });
}

// Encrypted and compressed bytes use nearly all values evenly; formats do not.
bool looksRandom(std::string_view sample) {
  std::bitset<256> seen;
  for (const char c : sample) seen.set(static_cast<unsigned char>(c));
  return sample.size() >= 1024 && seen.count() > 230;
}

StoreProblem describeForeignFile(const std::string& path, std::string_view sample) {
  const auto startsWith = [sample](std::string_view start) { return sample.substr(0, start.size()) == start; };
  if (std::all_of(sample.begin(), sample.end(), [](char c) { return c == '\0'; })) {
    return {
        say("'{0}' holds only zeros where a database should start; copy it again from the device or backup.", path)};
  }
  if (startsWith("PK\x03\x04") || startsWith("\x1F\x8B") || startsWith("7z\xBC\xAF")) {
    return {say("'{0}' is a packed archive, not a database; unpack it and give the file inside.", path)};
  }
  if (startsWith("bplist00") || startsWith("<?xml")) {
    return {say("'{0}' is a property list, not a database; give the store itself, such as sms.db.", path)};
  }
  if (looksLikeText(sample)) {
    return {say("'{0}' is a text file, not a database; give the store itself, such as sms.db.", path)};
  }
  if (looksRandom(sample)) {
    return {looksEncrypted(path)};
  }
  return {
      say("'{0}' is not an SQLite database, or its start is damaged; copy it again from the device or backup.", path)};
}

// How many different pages with numbers above `first` and up to `last` a -wal holds.
std::int64_t countPagesInWal(const std::string& wal, std::int64_t page, std::int64_t first, std::int64_t last) {
  const FileDescriptor file = openForReading(wal);
  std::set<std::uint32_t> found;
  char number[4];
  for (std::int64_t at = kWalHeaderLength; file; at += kFrameHeaderLength + page) {
    if (::pread(file.get(), number, sizeof number, at) != static_cast<ssize_t>(sizeof number)) break;
    const std::uint32_t pageNumber = bigEndian({number, sizeof number}, 0, sizeof number);
    if (pageNumber > first && pageNumber <= last) found.insert(pageNumber);
  }
  return static_cast<std::int64_t>(found.size());
}

StoreProblem describeMissing(const std::string& file, const std::string& path, int error) {
  struct stat link {};
  if (error == ENOENT && ::lstat(file.c_str(), &link) == 0 && S_ISLNK(link.st_mode)) {
    return {say("'{0}' is a link to a file that is not there; copy the file itself.", path)};
  }
  if (error == ENOENT || error == ENOTDIR) return {say("There is no file '{0}'; check the path.", path)};
  if (error == EACCES || error == EPERM) {
    return {say("'{0}' may not be read ({1}); change its permissions or run as a user who may read it.", path,
                std::strerror(error))};
  }
  return {say("'{0}' cannot be read ({1}); check the disk or copy the file elsewhere.", path, std::strerror(error))};
}

std::optional<StoreProblem> checkMainFile(const std::string& file, const std::string& path) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return describeMissing(file, path, errno);
  if (S_ISDIR(status.st_mode)) {
    return StoreProblem{say("'{0}' is a folder, not a store; give the file itself, such as sms.db.", path)};
  }
  if (!S_ISREG(status.st_mode)) {
    return StoreProblem{say("'{0}' is not an ordinary file; give the store itself, such as sms.db.", path)};
  }
  const FileDescriptor opened = openForReading(file);
  if (!opened) return describeMissing(file, path, errno);
  const auto sample = readStart(opened, kSampleLength);
  if (!sample) return describeMissing(file, path, errno);
  if (sample->empty())
    return StoreProblem{say("'{0}' is empty (0 bytes); copy it again from the device or backup.", path)};
  if (sample->substr(0, kMagic.size()) != kMagic.substr(0, sample->size())) return describeForeignFile(path, *sample);
  if (sample->size() < kHeaderLength) {
    return StoreProblem{
        say("'{0}' is cut off after {1} bytes; copy it again from the device or backup.", path, sample->size())};
  }
  if (pageSize(*sample) == 0)
    return StoreProblem{
        say("'{0}' is damaged: its header is not valid; copy it again from the device or backup.", path)};
  return std::nullopt;
}

}  // namespace

std::string looksEncrypted(const std::string& shownPath) {
  return say(
      "'{0}' looks encrypted or damaged; a file of an encrypted backup must be decrypted first, otherwise copy it "
      "again "
      "from the device.",
      shownPath);
}

std::optional<FileState> fileState(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return FileState{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                   static_cast<std::int64_t>(status.st_size), static_cast<std::int64_t>(status.st_mtim.tv_sec),
                   static_cast<std::int64_t>(status.st_mtim.tv_nsec)};
}

StoreLocation locationOf(const std::string& main) {
  return {main, main + "-wal", main + "-shm", main + "-journal", main};
}

StoreResult<StoreFiles> findStoreFiles(const StoreLocation& location) {
  if (auto problem = checkMainFile(location.main, location.shownPath)) return *problem;
  StoreFiles files;
  // SQLite resolves links before it looks for the files beside a database, so they lie where the link leads.
  char* const resolved = ::realpath(location.main.c_str(), nullptr);
  if (!resolved) return describeMissing(location.main, location.shownPath, errno);
  files.main = resolved;
  std::free(resolved);  // NOLINT(cppcoreguidelines-no-malloc): realpath allocates so
  const auto beside = [&](const std::string& path, const char* suffix) {
    return path == location.main + suffix ? files.main + suffix : path;
  };
  files.wal = beside(location.wal, "-wal");
  files.shm = beside(location.shm, "-shm");
  files.journal = beside(location.journal, "-journal");
  const auto wal = fileState(files.wal);
  files.hasWalRows = wal && wal->size > kWalHeaderLength;
  const std::string journalStart = readStartOf(files.journal, 1);
  files.hasHotJournal = !journalStart.empty() && journalStart[0] != '\0';  // a finished one starts with zeros
  return files;
}

std::uint64_t statedDatabaseLength(std::string_view header) {
  if (header.size() < kHeaderLength || !header.starts_with(kMagic)) return 0;
  // Versions before 3.7 leave the page count alone; then the two counters differ.
  if (bigEndian(header, kChangeCounterAt, 4) != bigEndian(header, kVersionValidForAt, 4)) return 0;
  return std::uint64_t{pageSize(header)} * bigEndian(header, kPageCountAt, 4);
}

bool walEndsWhole(std::string_view header, std::uint64_t length) {
  constexpr auto kHead = static_cast<std::uint64_t>(kWalHeaderLength);
  if (header.size() < kHead || (bigEndian(header, 0, 4) | 1U) != (kWalMagic | 1U)) return false;
  const std::uint64_t frame = std::uint64_t{kFrameHeaderLength} + bigEndian(header, kWalPageSizeAt, 4);
  return length >= kHead && (length - kHead) % frame == 0;
}

bool isWholeWal(const std::string& file) {
  const auto state = fileState(file);
  return state && walEndsWhole(readStartOf(file, kWalHeaderLength), static_cast<std::uint64_t>(state->size));
}

std::optional<StoreProblem> checkStoreLength(const std::string& file, const std::string& wal,
                                             const std::string& shownPath) {
  const std::string header = readStartOf(file, kHeaderLength);
  const auto state = fileState(file);
  if (header.size() < kHeaderLength || !state) return std::nullopt;  // whoever opens it says why
  const std::int64_t page = pageSize(header);
  if (page == 0) return std::nullopt;
  const auto pages = std::max<std::int64_t>(static_cast<std::int64_t>(statedDatabaseLength(header)) / page, 1);
  if (state->size >= page * pages) return std::nullopt;
  const std::int64_t missing = pages - state->size / page;
  if (countPagesInWal(wal, page, pages - missing, pages) == missing) return std::nullopt;
  return StoreProblem{say("'{0}' is cut off: it has {1} of {2} bytes; copy it again from the device or backup.",
                          shownPath, state->size, page * pages)};
}

bool usesWal(const std::string& file) {
  const std::string header = readStartOf(file, kHeaderLength);
  return header.size() == kHeaderLength && header[kReadVersionAt] == 2;
}

}  // namespace chatsum::device
