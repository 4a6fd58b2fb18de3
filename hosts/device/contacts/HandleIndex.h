// What the library finds when it looks handles up in the address-book database. It searches the values of all cards for
// one that merely contains the handle, and takes the first: "ann@example.com" would be Joann's, and "+15550100123"
// would miss a card that says "(555) 010-0123". So the connection handed to it holds, instead of the cards' values, one
// row for each handle with the card that really has it. Immutable once made: any thread.
#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

#include "platform/interfaces/AddressBook.h"
#include "platform/interfaces/Strings.h"
#include "platform/system/contacts/ContactMatcher.h"

namespace chatsum::device {

class HandleIndex {
 public:
  struct Row {
    std::string value;                 ///< the handle as the Messages store has it, up to a NUL
    platform::ABRecordID record = -1;  ///< whose it is, -1 for nobody
  };

  /// `handles`: all of the Messages store, in any order, repetitions allowed.
  HandleIndex(const platform::system::ContactMatcher& matcher, const std::vector<std::string>& handles,
              const platform::Strings& strings);

  /// Every row before those whose handle contains its own.
  [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }

  /// Puts the rows before the database's own tables: temporary tables `ABMULTIVALUE` and `ABMULTIVALUEENTRY`, and a
  /// LIKE that finds nothing. The file behind the connection is untouched; it may be read-only, and there need be none
  /// (an in-memory connection serves a device without an address book). The connection must be its owner's alone, may
  /// hold no other temporary tables, and is not to be made query-only before. Answers false on failure; the reason
  /// stands on the connection.
  [[nodiscard]] bool install(sqlite3* addressBook) const;

 private:
  [[nodiscard]] bool fill(sqlite3* addressBook) const;

  std::vector<Row> rows_;
};

}  // namespace chatsum::device
