#include "hosts/device/words/People.h"

#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/words/ShownWords.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

People::People(const sqlite::Connection& store, const FindPerson& findPerson, const std::string& owner)
    : findPerson_(findPerson), owner_{nameInWords(owner), kOwnerKey} {
  const sqlite::Statement rows(store.get(), "SELECT ROWID, id FROM handle WHERE id IS NOT NULL");
  while (rows && rows.step() == SQLITE_ROW) handles_.emplace(rows.integer(0), rows.text(1));
}

const Person& People::behind(std::int64_t handle) const {
  const std::lock_guard lock(mutex_);
  const auto known = people_.find(handle);
  return known != people_.end() ? known->second : people_.emplace(handle, find(handle)).first->second;
}

Person People::find(std::int64_t handle) const {
  const auto stored = handles_.find(handle);
  if (stored == handles_.end()) return {say("somebody"), -1 - static_cast<std::int64_t>(people_.size())};
  const auto card = findPerson_ ? findPerson_(stored->second) : std::nullopt;
  const ConversationMember member = memberFor(stored->second, card);
  const std::string who = member.recordID > 0 ? "card " + std::to_string(member.recordID) : "handle " + stored->second;
  const auto key = keys_.try_emplace(who, static_cast<std::int64_t>(keys_.size()) + 1).first->second;
  return {nameInWords(member.name), key};
}

}  // namespace chatsum::device
