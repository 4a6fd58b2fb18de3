#include "hosts/desktop/engine/ConversationItem.h"

#include <QString>
#include <algorithm>
#include <utility>

#include "hosts/desktop/engine/TextSearch.h"
#include "hosts/desktop/engine/Texts.h"

namespace chatsum::desktop {
namespace {

constexpr std::size_t kFewestDigits = 2;  // fewer are found in nearly every number

/// The digits of a number in any script, whatever stands between them; empty for a text with letters.
std::string digitsOf(std::string_view text) {
  std::string digits;
  for (const QChar c : shownText(text)) {
    if (c.isLetter()) return {};
    if (const int digit = c.digitValue(); digit >= 0) digits += static_cast<char>('0' + digit);
  }
  return digits;
}

/// Without the zeros in front, by which countries mark numbers of their own and of others.
std::string withoutLeadingZeros(const std::string& digits) {
  return digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
}

bool isSpace(char c) { return c == ' ' || c == '\t'; }

std::string trimmed(std::string text) {
  while (!text.empty() && isSpace(text.back())) text.pop_back();
  const auto start = std::find_if_not(text.begin(), text.end(), isSpace);
  text.erase(text.begin(), start);
  return text;
}

}  // namespace

ConversationItems itemsOf(std::vector<device::Conversation> conversations) {
  ConversationItems items;
  items.reserve(conversations.size());
  for (device::Conversation& conversation : conversations) {
    ConversationItem item;
    std::string names = conversation.name;
    for (const device::ConversationMember& member : conversation.members) {
      names.append("\n").append(member.name).append("\n").append(member.handle);
      if (std::string digits = digitsOf(member.handle); !digits.empty()) item.numbers.push_back(std::move(digits));
    }
    item.names = foldedForSearch(names);
    item.conversation = std::move(conversation);
    items.push_back(std::move(item));
  }
  return items;
}

ConversationWords::ConversationWords(std::string_view words)
    : folded_(trimmed(foldedForSearch(words))), digits_(withoutLeadingZeros(digitsOf(words))) {
  if (digits_.size() < kFewestDigits) digits_.clear();
  meansAll_ = folded_.empty() && trimmed(std::string(words)).empty();
}

bool ConversationWords::mean(const ConversationItem& item) const {
  if (folded_.empty()) return meansAll_;
  if (item.names.find(folded_) != std::string::npos) return true;
  if (digits_.empty()) return false;
  return std::any_of(item.numbers.begin(), item.numbers.end(),
                     [this](const std::string& number) { return number.find(digits_) != std::string::npos; });
}

}  // namespace chatsum::desktop
