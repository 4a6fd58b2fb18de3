// Where a person's history comes from: a device's file system, a backup, a Mac's home, a single file. Each kind says
// where its stores lie; nothing in a source is ever changed. `store` is asked on one thread, the questions about files
// of messages on any thread at any time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/device/language/Say.h"
#include "hosts/device/source/SourceFacts.h"
#include "hosts/device/stores/StoreFiles.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// The paths under which the library asks for the stores.
inline constexpr const char* kMessagesStorePath = "/var/mobile/Library/SMS/sms.db";
inline constexpr const char* kAddressBookPath = "/var/mobile/Library/AddressBook/AddressBook.sqlitedb";

enum class SourceStore {
  kMessages,        ///< sms.db, chat.db
  kAddressBook,     ///< in the shape of AddressBook.sqlitedb, whatever the source has
  kCalls,           ///< CallHistory.storedata
  kTemporaryCalls,  ///< CallHistoryTemp.storedata
  kOldCalls,        ///< call_history.db
};

/// "There is no Messages store", for sentences that go on with where.
[[nodiscard]] inline std::string nothingThere(SourceStore store) {
  if (store == SourceStore::kMessages) return say("There is no Messages store");
  return store == SourceStore::kAddressBook ? say("There is no address book") : say("There is no call list");
}

/// A file as it stands in the source, maybe encrypted there.
struct SourceFile {
  std::string name;  ///< what it is to the device, as "HomeDomain-Library/SMS/sms.db" or a path below the source
  std::string path;  ///< where it stands on this machine
};

class DeviceSource {
 public:
  explicit DeviceSource(SourceFacts facts) : facts_(std::move(facts)) {}
  virtual ~DeviceSource() = default;
  DeviceSource(const DeviceSource&) = delete;
  DeviceSource& operator=(const DeviceSource&) = delete;

  [[nodiscard]] const SourceFacts& facts() const { return facts_; }

  /// Where a store can be read; none when the source has none. An encrypted source decrypts it into a private folder
  /// at the first question, which may take long; what it makes lives as long as the source. The problem when there is
  /// a store that cannot be brought out.
  [[nodiscard]] virtual StoreResult<std::optional<StoreLocation>> store(SourceStore store) = 0;

  /// Why there is no such store, and what to do, one sentence.
  [[nodiscard]] virtual std::string whyMissing(SourceStore store) const = 0;

  /// The files in the source that a store was read from, those beside it too, after `store` was asked; empty when
  /// there is none.
  [[nodiscard]] virtual std::vector<SourceFile> originals(SourceStore store) const = 0;

  /// The places in which such a store, or what stands beside it, would be read if a file were there, and none is; after
  /// `store` was asked.
  [[nodiscard]] virtual std::vector<SourceFile> absentees(SourceStore) const { return {}; }

  /// The files in which a source lists what it holds, also those that it might have and has not.
  [[nodiscard]] virtual std::vector<SourceFile> lists() const { return {}; }

  /// Notes digests of what is read of the stores from now on, which are copied for that.
  void keepDigests(std::shared_ptr<ReadDigests> digests) { digests_ = std::move(digests); }
  /// Null when none are kept.
  [[nodiscard]] const std::shared_ptr<ReadDigests>& digests() const { return digests_; }

  /// The real path of a file that a message names: "User/Library/…" (where "User" may be a link, a folder, or missing),
  /// "~/Library/…", "/var/mobile/Library/…", "/private/var/mobile/Library/…", of a Mac also "/Users/maya/Library/…".
  /// None when there is no such file in the source, and for every other path. Nothing outside the source is ever
  /// answered, but for private copies of what stands encrypted in it; such a copy is there at least until some dozens
  /// of other files were asked for.
  [[nodiscard]] virtual std::optional<std::string> fileOfMessage(std::string_view devicePath) const = 0;

  /// Whether it is in doubt that a file which `fileOfMessage` answered is whole: an encrypted source that does not mark
  /// where the file ends, or lacks some of it.
  [[nodiscard]] virtual bool isDoubtful(const std::string& /*file*/) const { return false; }

  /// The same file as it stands in the source.
  [[nodiscard]] virtual std::optional<SourceFile> originalOfMessage(std::string_view devicePath) const = 0;

 protected:
  /// Adds a sentence to the facts' warnings, for what turns up when a store is brought out.
  void warn(std::string sentence) { facts_.warnings.push_back(std::move(sentence)); }
  /// A store that is read where it stands in the source.
  [[nodiscard]] StoreResult<std::optional<StoreLocation>> noted(
      StoreResult<std::optional<StoreLocation>> location) const {
    if (location && location.value()) location.value()->digests = digests_;
    return location;
  }

 private:
  SourceFacts facts_;
  std::shared_ptr<ReadDigests> digests_;
};

}  // namespace chatsum::device
