// A conversation and the words by which people look for it. Values: any thread, one at a time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/conversations/Conversation.h"

namespace chatsum::desktop {

struct ConversationItem {
  device::Conversation conversation;
  std::string names;                 ///< its name, those of its members and their addresses, folded, a line each
  std::vector<std::string> numbers;  ///< the digits of its members' numbers
};

using ConversationItems = std::vector<ConversationItem>;  ///< the newest first

/// Asks ICU about every name; for lists of thousands not on the main thread.
[[nodiscard]] ConversationItems itemsOf(std::vector<device::Conversation> conversations);

/// What a person typed to find a conversation: a part of a name, or of a number however it is written. Blanks alone
/// mean all, characters that nobody sees none.
class ConversationWords {
 public:
  explicit ConversationWords(std::string_view words = {});

  [[nodiscard]] bool mean(const ConversationItem& item) const;

 private:
  std::string folded_;
  std::string digits_;  // empty when the words are no number
  bool meansAll_ = true;
};

}  // namespace chatsum::desktop
