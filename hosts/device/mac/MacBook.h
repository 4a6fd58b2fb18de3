// The cards in one address book of a Mac, a file AddressBook-v22.abcddb. Plain values: any thread, one at a time.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hosts/device/stores/ReadDigests.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::device {

struct MacValue {
  std::string label;  ///< as stored: "_$!<Mobile>!$_", a word of the person's own, empty for none
  std::string text;   ///< a number or address as typed
};

/// What is missing is empty. Texts are as they are stored, maybe not UTF-8.
struct MacCard {
  std::string prefix, first, middle, last, suffix, nickname, maidenName;
  std::string organization, department, jobTitle;
  std::string identifier;       ///< its own, of all books
  std::string link;             ///< equal on the cards of one person, also in different books
  bool isOrganization = false;  ///< shown by its organization
  bool isOwn = false;           ///< marked as the card of the Mac's user
  bool givesName = false;       ///< marked as the one of linked cards that gives the name
  std::vector<MacValue> phones, emails;
};

/// Reads the book at `path` (with its -wal) without touching it: its cards in the order of their rows, groups left out.
/// Columns and numbers of entities, which differ from one Mac to the next, are found by name. What is read
/// is noted in `digests`, unless it is null.
[[nodiscard]] StoreResult<std::vector<MacCard>> readMacBook(const std::string& path,
                                                            const std::shared_ptr<ReadDigests>& digests = {});

}  // namespace chatsum::device
