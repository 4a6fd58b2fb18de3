#include "hosts/device/conversations/HostConversation.h"

#include <sqlite3.h>

#include <memory>
#include <optional>
#include <unordered_set>
#include <utility>

#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

/// A member as the library's matching sees it: it compares the record of the handle's person.
class HostEntity final : public platform::CKEntity {
 public:
  explicit HostEntity(ConversationMember member) : member_(std::move(member)) {}

  [[nodiscard]] std::string name() const override { return member_.name; }
  [[nodiscard]] platform::IMHandle handle() const override {
    platform::IMHandle handle;
    handle.person = std::optional<platform::IMPerson>();
    if (member_.recordID > 0) handle.person->emplace(platform::IMPerson{member_.recordID});
    return handle;
  }
  [[nodiscard]] std::optional<platform::ABRecordRef> abRecord() const override { return std::nullopt; }

 private:
  ConversationMember member_;
};

/// Stops a search that takes long. While it lives, the connection gives up after so many steps in all.
class WorkLimit {
 public:
  explicit WorkLimit(const sqlite::Connection& store) : store_(store) {
    sqlite3_progress_handler(
        store_.get(), kStepsPerCall, [](void* calls) { return ++*static_cast<int*>(calls) > kMostCalls ? 1 : 0; },
        &calls_);
  }
  WorkLimit(const WorkLimit&) = delete;
  WorkLimit& operator=(const WorkLimit&) = delete;
  ~WorkLimit() { sqlite3_progress_handler(store_.get(), 0, nullptr, nullptr); }

  [[nodiscard]] bool isReached() const { return calls_ > kMostCalls; }

 private:
  static constexpr int kStepsPerCall = 1000;
  static constexpr int kMostCalls = 100;  // some thousandths of a second in all

  const sqlite::Connection& store_;
  int calls_ = 0;
};

std::string chatList(const Conversation& conversation) {
  std::string list;
  for (const std::int64_t chat : conversation.chats) list.append(list.empty() ? "" : ",").append(std::to_string(chat));
  return list;
}

}  // namespace

std::vector<ConversationMember> peopleOf(const sqlite::Connection& store, const Conversation& conversation,
                                         const FindPerson& findPerson, const std::unordered_set<std::int64_t>& others) {
  std::vector<ConversationMember> people = conversation.members;
  if (!findPerson) return people;
  std::unordered_set<std::string> known;
  for (const ConversationMember& member : people) known.insert(member.handle);

  // Without a card the handle itself is the name, so only people with one are looked for.
  std::vector<std::pair<std::int64_t, ConversationMember>> withCards;
  const sqlite::Statement handles(store.get(), "SELECT ROWID, id FROM handle WHERE id IS NOT NULL");
  while (handles && handles.step() == SQLITE_ROW) {
    const std::string handle(handles.text(1));
    if (known.contains(handle)) continue;
    const std::optional<KnownPerson> person = findPerson(handle);
    if (person && person->recordID > 0) withCards.emplace_back(handles.integer(0), memberFor(handle, person));
  }

  const sqlite::Statement wrote(store.get(),
                                "SELECT 1 FROM message m CROSS JOIN chat_message_join j ON j.message_id = m.ROWID "
                                "WHERE m.handle_id = ?1 AND j.chat_id IN (" +
                                    chatList(conversation) + ") LIMIT 1");
  const WorkLimit limit(store);
  for (auto& [row, member] : withCards) {
    if (wrote && !others.contains(row) && !limit.isReached()) {
      wrote.reset();
      wrote.bind(1, row);
      if (wrote.step() == SQLITE_DONE) continue;
    }
    if (known.insert(member.handle).second) people.push_back(std::move(member));
  }
  return people;
}

HostConversation::HostConversation(std::vector<std::string> guids, const std::vector<ConversationMember>& people)
    : guids_(std::move(guids)) {
  for (const ConversationMember& person : people) recipients_.push_back(std::make_shared<HostEntity>(person));
}

}  // namespace chatsum::device
