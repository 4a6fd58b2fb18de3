// The conversations of a Messages store, chats of one person put together, and how a person names one of them.
// An object is used by one thread at a time and keeps no connection.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "hosts/device/conversations/Conversation.h"
#include "hosts/device/stores/StoreProblem.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

class ConversationList {
 public:
  /// Reads chats and members; messages are not counted yet. In the order of the store.
  [[nodiscard]] static StoreResult<ConversationList> read(const sqlite::Connection& store,
                                                          const FindPerson& findPerson);

  [[nodiscard]] const std::vector<Conversation>& conversations() const { return conversations_; }

  /// Counts the messages (see `tallyMessages`) and puts the conversations in order, the newest first, those without any
  /// date last.
  [[nodiscard]] std::optional<StoreProblem> countMessages(const sqlite::Connection& one, const sqlite::Connection& two);

  /// The conversations that `wanted` names: the one with that chat GUID, else those with that chat identifier, else
  /// those of the person with that number or e-mail address, however it is written, else those with that name, whole
  /// and without regard to case. Numbers without a country code are at home in `region` (ISO 3166 alpha-2). Places in
  /// `conversations()`.
  [[nodiscard]] std::vector<std::size_t> find(std::string_view wanted, std::string_view region = "") const;

 private:
  std::vector<Conversation> conversations_;
};

}  // namespace chatsum::device
