#include "hosts/device/conversations/ConversationList.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

#include "hosts/device/conversations/ChatMerge.h"
#include "hosts/device/conversations/ComparableAddress.h"
#include "hosts/device/conversations/FoldedText.h"
#include "hosts/device/conversations/MessageTally.h"
#include "hosts/device/conversations/StoredChats.h"

namespace chatsum::device {
namespace {

/// Asks for each handle once.
class People {
 public:
  explicit People(const FindPerson& findPerson) : findPerson_(findPerson) {}

  const std::optional<KnownPerson>& find(const std::string& handle) {
    const auto [known, isNew] = people_.try_emplace(handle);
    if (isNew && findPerson_) known->second = findPerson_(handle);
    return known->second;
  }

 private:
  const FindPerson& findPerson_;
  std::unordered_map<std::string, std::optional<KnownPerson>> people_;
};

template <class T>
void appendOnce(std::vector<T>& list, const T& item) {
  if (std::find(list.begin(), list.end(), item) == list.end()) list.push_back(item);
}

std::string keyOf(const StoredMember& member, const std::optional<KnownPerson>& person) {
  if (person && person->recordID > 0) return "card " + std::to_string(person->recordID);
  if (!member.personCentricId.empty()) return "person " + member.personCentricId;
  return "handle " + member.handle;
}

bool isBlank(const std::string& text) { return text.find_first_not_of(" \t\r\n") == std::string::npos; }

std::string nameOf(const Conversation& conversation, const std::string& title) {
  if (!isBlank(title)) return title;
  std::vector<std::string> names;
  if (conversation.isGroup) {
    for (const ConversationMember& member : conversation.members) appendOnce(names, member.name);
  } else {
    // The addresses of one person: a contact's name says more than any of them.
    const auto known = std::find_if(conversation.members.begin(), conversation.members.end(),
                                    [](const ConversationMember& member) { return member.recordID > 0; });
    if (known != conversation.members.end()) {
      names.push_back(known->name);
    } else if (!conversation.members.empty()) {
      names.push_back(conversation.members.front().name);
    }
  }
  if (names.empty()) {
    names.push_back(conversation.identifiers.empty() ? conversation.guids.front() : conversation.identifiers.front());
  }
  std::string joined;
  for (const std::string& name : names) joined.append(joined.empty() ? "" : ", ").append(name);
  return joined;
}

Conversation makeConversation(const StoredChats& rows, const std::vector<std::size_t>& places, People& people) {
  Conversation conversation;
  std::string title;
  for (const std::size_t place : places) {
    const StoredChat& chat = rows.chats[place];
    conversation.chats.push_back(chat.id);
    conversation.guids.push_back(chat.guid);
    if (!chat.identifier.empty()) appendOnce(conversation.identifiers, chat.identifier);
    conversation.isGroup = conversation.isGroup || chat.isGroup || chat.members.size() > 1;
    if (!isBlank(chat.displayName)) title = chat.displayName;  // the latest chat's title counts
    for (const StoredMember& member : chat.members) {
      const auto& members = conversation.members;
      const bool isKnown = std::any_of(members.begin(), members.end(),
                                       [&](const ConversationMember& known) { return known.handle == member.handle; });
      if (isKnown) continue;
      conversation.members.push_back(memberFor(member.handle, people.find(member.handle)));
    }
  }
  conversation.name = nameOf(conversation, title);
  return conversation;
}

bool isNewer(const Conversation& one, const Conversation& other) {
  if (one.last && other.last) return *one.last > *other.last;
  return one.last.has_value() && !other.last.has_value();
}

}  // namespace

StoreResult<ConversationList> ConversationList::read(const sqlite::Connection& store, const FindPerson& findPerson) {
  const StoreResult<StoredChats> read = readChats(store);
  if (!read) return read.problem();
  const StoredChats& rows = read.value();
  People people(findPerson);
  std::vector<platform::ABRecordID> cards;
  std::vector<std::vector<std::string>> memberKeys;
  for (const StoredChat& chat : rows.chats) {
    const std::optional<KnownPerson> first =
        chat.members.empty() ? std::nullopt : people.find(chat.members.front().handle);
    cards.push_back(first ? first->recordID : -1);
    memberKeys.emplace_back();
    for (const StoredMember& member : chat.members)
      memberKeys.back().push_back(keyOf(member, people.find(member.handle)));
  }
  ConversationList list;
  for (const std::vector<std::size_t>& places : mergeChats(rows, cards, memberKeys)) {
    list.conversations_.push_back(makeConversation(rows, places, people));
  }
  return list;
}

std::optional<StoreProblem> ConversationList::countMessages(const sqlite::Connection& one,
                                                            const sqlite::Connection& two) {
  if (auto problem = tallyMessages(one, two, conversations_)) return problem;
  std::stable_sort(conversations_.begin(), conversations_.end(), isNewer);
  return std::nullopt;
}

std::vector<std::size_t> ConversationList::find(std::string_view wanted, std::string_view region) const {
  const auto placesWhere = [this](auto&& matches) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < conversations_.size(); ++i) {
      if (matches(conversations_[i])) places.push_back(i);
    }
    return places;
  };
  const auto holds = [&](const std::vector<std::string>& texts) {
    return std::find(texts.begin(), texts.end(), wanted) != texts.end();
  };
  auto places = placesWhere([&](const Conversation& conversation) { return holds(conversation.guids); });
  if (!places.empty()) return places;
  places = placesWhere([&](const Conversation& conversation) { return holds(conversation.identifiers); });
  if (!places.empty()) return places;
  const ComparableAddress address(wanted, region);
  if (address.isNumberOrEmail()) {
    places = placesWhere([&](const Conversation& conversation) {
      const auto& members = conversation.members;
      return !conversation.isGroup &&
             std::any_of(members.begin(), members.end(),
                         [&](const ConversationMember& member) { return address.isSameAs(member.handle); });
    });
    if (!places.empty()) return places;
  }
  const std::string folded = foldedCase(wanted);
  return placesWhere([&](const Conversation& conversation) { return foldedCase(conversation.name) == folded; });
}

}  // namespace chatsum::device
