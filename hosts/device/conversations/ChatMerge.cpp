#include "hosts/device/conversations/ChatMerge.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace chatsum::device {
namespace {

/// Joins places that share a key.
class Unions {
 public:
  explicit Unions(std::size_t count) : parents_(count) { std::iota(parents_.begin(), parents_.end(), std::size_t{0}); }

  void join(std::size_t place, const std::string& key) {
    const auto [known, isNew] = firstWithKey_.try_emplace(key, place);
    if (!isNew) parents_[root(place)] = root(known->second);
  }
  std::size_t root(std::size_t place) {
    while (parents_[place] != place) place = parents_[place] = parents_[parents_[place]];
    return place;
  }

 private:
  std::vector<std::size_t> parents_;
  std::unordered_map<std::string, std::size_t> firstWithKey_;
};

bool isOnePerson(const StoredChat& chat) { return !chat.isGroup && chat.members.size() == 1; }

void joinPersons(const StoredChats& rows, const std::vector<int>& cards, Unions& unions) {
  std::unordered_map<std::string, std::vector<std::size_t>> chatsByName;  // how a look-up row may call a chat
  for (std::size_t i = 0; i < rows.chats.size(); ++i) {
    const StoredChat& chat = rows.chats[i];
    if (!isOnePerson(chat)) continue;
    const StoredMember& person = chat.members.front();
    unions.join(i, "handle " + person.handle);
    if (!person.personCentricId.empty()) unions.join(i, "person " + person.personCentricId);
    if (cards[i] > 0) unions.join(i, "card " + std::to_string(cards[i]));
    chatsByName["identifier " + person.handle].push_back(i);
    chatsByName["identifier " + chat.identifier].push_back(i);
    chatsByName["chat " + std::to_string(chat.id)].push_back(i);
    chatsByName["chat " + chat.guid].push_back(i);
  }
  for (const ChatLookup& lookup : rows.lookups) {
    for (const std::string& name : {"identifier " + lookup.identifier, "chat " + lookup.chat}) {
      const auto chats = chatsByName.find(name);
      if (chats == chatsByName.end()) continue;
      for (const std::size_t i : chats->second) unions.join(i, "lookup " + lookup.chat);
    }
  }
}

void joinGroups(const StoredChats& rows, const std::vector<std::vector<std::string>>& memberKeys, Unions& unions) {
  for (std::size_t i = 0; i < rows.chats.size(); ++i) {
    const StoredChat& chat = rows.chats[i];
    if (!chat.isGroup || chat.members.empty()) continue;
    std::vector<std::string> people = memberKeys[i];
    std::sort(people.begin(), people.end());
    people.erase(std::unique(people.begin(), people.end()), people.end());
    std::string members;
    for (const std::string& person : people) members.append(person).push_back('\0');
    if (!chat.groupId.empty()) unions.join(i, "group " + members + "id " + chat.groupId);
    if (!chat.displayName.empty()) unions.join(i, "group " + members + "title " + chat.displayName);
  }
}

}  // namespace

std::vector<std::vector<std::size_t>> mergeChats(const StoredChats& rows, const std::vector<int>& cards,
                                                 const std::vector<std::vector<std::string>>& memberKeys) {
  Unions unions(rows.chats.size());
  joinPersons(rows, cards, unions);
  joinGroups(rows, memberKeys, unions);
  std::vector<std::vector<std::size_t>> merged;
  std::unordered_map<std::size_t, std::size_t> placeOfRoot;
  for (std::size_t i = 0; i < rows.chats.size(); ++i) {
    const auto [place, isNew] = placeOfRoot.try_emplace(unions.root(i), merged.size());
    if (isNew) merged.emplace_back();
    merged[place->second].push_back(i);
  }
  return merged;
}

}  // namespace chatsum::device
