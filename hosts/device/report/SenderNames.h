// Says who sent the messages whose sender the library leaves empty. No state; a connection of its own.
#pragma once

#include <string>

#include "platform/foundation/Value.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

/// Puts a "Name" into records that have none, or an empty one: of what happened in a group the owner's, of what
/// somebody wrote whose handle is gone the word "Unknown" in the language of the reports.
void nameSenders(Array& records, const sqlite::Connection& store, const std::string& owner);

}  // namespace chatsum::device
