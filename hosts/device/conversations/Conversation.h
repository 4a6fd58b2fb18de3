// A conversation as a person sees it: one or several chats of the Messages store, its people, how much was written.
// Plain values: any thread, one at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Date.h"
#include "platform/interfaces/AddressBook.h"

namespace chatsum::device {

/// Who the address book says is behind a handle.
struct KnownPerson {
  platform::ABRecordID recordID = -1;
  std::string name;  ///< UTF-8, as it is shown
};

/// The person behind a handle; none when no card has it. Called on one thread at a time.
using FindPerson = std::function<std::optional<KnownPerson>(const std::string& handle)>;

struct ConversationMember {
  std::string handle;                  ///< a phone number, an e-mail address, a short code, as the store has it
  std::string name;                    ///< the contact's name, else the handle
  platform::ABRecordID recordID = -1;  ///< the contact's record, -1 without a contact
};

/// The member with that handle and the person behind it; a card without a name leaves the handle as the name.
[[nodiscard]] inline ConversationMember memberFor(const std::string& handle, const std::optional<KnownPerson>& person) {
  if (!person) return {handle, handle, -1};
  const bool isNamed = person->name.find_first_not_of(" \t\r\n") != std::string::npos;
  return {handle, isNamed ? person->name : handle, person->recordID};
}

struct Conversation {
  std::vector<std::int64_t> chats;          ///< ROWIDs, ascending
  std::vector<std::string> guids;           ///< of the chats, in their order; the bytes of the store
  std::vector<std::string> identifiers;     ///< chat identifiers, each once
  std::string name;                         ///< the group's title, else the names of its members
  std::vector<ConversationMember> members;  ///< current members, each handle once
  bool isGroup = false;
  std::int64_t messages = 0;        ///< messages, each once however many of the chats hold it
  std::optional<Date> first, last;  ///< of its messages that have a date
};

}  // namespace chatsum::device
