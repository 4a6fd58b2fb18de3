// A conversation as the library asks for it. Immutable, any thread.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "hosts/device/conversations/Conversation.h"
#include "platform/interfaces/Messages.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

/// Everybody whose name the reports of a conversation need: its members, and those with a contact card who wrote in its
/// chats and left, or whose handles (ROWIDs) are among `others`. In a store so large that finding out takes long,
/// people who wrote only elsewhere may come along; they do no harm, since names are matched by record.
[[nodiscard]] std::vector<ConversationMember> peopleOf(const sqlite::Connection& store,
                                                       const Conversation& conversation, const FindPerson& findPerson,
                                                       const std::unordered_set<std::int64_t>& others = {});

class HostConversation final : public platform::CKConversation {
 public:
  /// `people` become the recipients, in this order.
  HostConversation(std::vector<std::string> guids, const std::vector<ConversationMember>& people);

  [[nodiscard]] std::vector<std::string> chatGuids() const override { return guids_; }
  [[nodiscard]] std::vector<platform::CKEntityRef> recipients() const override { return recipients_; }

 private:
  std::vector<std::string> guids_;
  std::vector<platform::CKEntityRef> recipients_;
};

}  // namespace chatsum::device
