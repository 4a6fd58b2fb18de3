// An address book in the shape of AddressBook.sqlitedb, made from files that have another. Lives as long as somebody
// reads it; one thread at a time.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/device/stores/SnapshotFolder.h"
#include "hosts/device/stores/StoreFiles.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

struct ConvertedBook {
  SnapshotFolder folder;  ///< holds the store, and goes with it
  StoreLocation location;
  std::vector<std::string> warnings;  ///< sentences: which files could not be read
};

/// Makes one from the books at these paths; the problem when none of them can be read. What is read of them is noted in
/// the digests, unless they are null.
using BookConverter = std::function<StoreResult<ConvertedBook>(const std::vector<std::string>& books,
                                                               const std::shared_ptr<ReadDigests>& digests)>;

}  // namespace chatsum::device
