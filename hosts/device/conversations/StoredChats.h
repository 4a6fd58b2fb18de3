// The chats of a Messages store and who is in them, as the tables have it, of any generation of the store.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hosts/device/stores/StoreProblem.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

struct StoredMember {
  std::string handle;
  std::string personCentricId;  ///< empty when the store has none
};

struct StoredChat {
  std::int64_t id = 0;
  std::string guid, identifier, displayName, groupId;  ///< empty for NULL and for columns that the store lacks
  bool isGroup = false;
  std::vector<StoredMember> members;  ///< in the order of the store, each handle once
};

/// Newer stores tie one chat to several identifiers.
struct ChatLookup {
  std::string identifier;
  std::string chat;  ///< the ROWID or the GUID of a chat, as text
};

struct StoredChats {
  std::vector<StoredChat> chats;  ///< by ROWID
  std::vector<ChatLookup> lookups;
};

/// Reads them. A chat of one person that names no member has its identifier as the member's handle.
[[nodiscard]] StoreResult<StoredChats> readChats(const sqlite::Connection& store);

}  // namespace chatsum::device
