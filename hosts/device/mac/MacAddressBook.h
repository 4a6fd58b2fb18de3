// The address books of a Mac, which has one for each account, made into one of a device: the library and everything
// else knows only that shape. No state, any thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hosts/device/source/ConvertedBook.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

/// Reads the books at `books` and writes their cards into one AddressBook.sqlitedb in a private folder. Cards that are
/// linked, or are the same one in two books, are linked there, too; the own card is marked. A book that cannot be read
/// is left out with a warning; the problem when that leaves none. What is read is noted in `digests`, unless it is
/// null.
[[nodiscard]] StoreResult<ConvertedBook> convertMacBooks(const std::vector<std::string>& books,
                                                         const std::shared_ptr<ReadDigests>& digests = {});

}  // namespace chatsum::device
