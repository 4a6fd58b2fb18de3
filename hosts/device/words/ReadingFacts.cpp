#include "hosts/device/words/ReadingFacts.h"

#include <algorithm>
#include <utility>

#include "hosts/device/body/TypedStream.h"
#include "hosts/device/stores/StoreColumns.h"
#include "hosts/device/words/Orphans.h"
#include "hosts/device/words/StoreLookUps.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

using Failure = std::optional<std::string>;

std::string listOf(const std::vector<std::int64_t>& chats) {
  std::string list;
  for (const std::int64_t chat : chats) list.append(list.empty() ? "" : ",").append(std::to_string(chat));
  return list;
}

/// The messages of the conversation's chats, read when somebody first asks.
class ChatMembers {
 public:
  ChatMembers(const sqlite::Connection& store, const Conversation& conversation)
      : store_(store), chats_(listOf(conversation.chats)) {}

  [[nodiscard]] bool contains(std::int64_t message) {
    if (!isRead_) read();
    return messages_.contains(message);
  }
  [[nodiscard]] const Failure& failure() const { return failure_; }

 private:
  void read() {
    isRead_ = true;
    const sqlite::Statement rows(store_.get(),
                                 "SELECT message_id FROM main.chat_message_join WHERE chat_id IN (" + chats_ + ")");
    int code = rows ? rows.step() : SQLITE_ERROR;
    for (; code == SQLITE_ROW; code = rows.step()) messages_.insert(rows.integer(0));
    if (code != SQLITE_DONE) failure_ = store_.lastError();
  }

  const sqlite::Connection& store_;
  std::string chats_;
  bool isRead_ = false;
  RowSet messages_;
  Failure failure_;
};

class Reader {
 public:
  Reader(const sqlite::Connection& store, const Conversation& conversation, const WordsOptions& options,
         ReadingFacts& facts)
      : store_(store),
        conversation_(conversation),
        options_(options),
        facts_(facts),
        columns_(store.get()),
        members_(store, conversation) {}

  Failure read() {
    facts_.servesDeleted = options_.deleted && hasDeleted();
    if (auto failure = readFiles()) return failure;
    if (auto failure = readIndexed()) return failure;
    if (auto failure = readDeleted()) return failure;
    if (auto failure = readDeletedParts()) return failure;
    const bool isOrphanage = conversation_.chats == std::vector<std::int64_t>{kOrphanChat};
    if (options_.orphaned || isOrphanage) {
      if (auto failure = findOrphans(store_, conversation_, facts_.orphans)) return failure;
    }
    for (const std::int64_t orphan : facts_.orphans) facts_.marked.insert(orphan);
    const auto isInReading = [this](std::int64_t message) {
      return members_.contains(message) || facts_.deleted.contains(message) ||
             std::binary_search(facts_.orphans.begin(), facts_.orphans.end(), message);
    };
    if (auto failure = facts_.reactions.read(store_, facts_.people, isInReading)) return failure;
    if (members_.failure()) return members_.failure();
    for (const auto& [row, fate] : facts_.reactions.fates()) facts_.marked.insert(row);
    for (const auto& [row, range] : facts_.reactions.targets()) facts_.marked.insert(row);
    return std::nullopt;
  }

 private:
  [[nodiscard]] bool hasDeleted() {
    return columns_.has("chat_recoverable_message_join", "chat_id") &&
           columns_.has("chat_recoverable_message_join", "message_id") &&
           columns_.has("chat_recoverable_message_join", "delete_date");
  }

  Failure readFiles() {
    if (!columns_.has("message_attachment_join", "message_id") ||
        !columns_.has("message_attachment_join", "attachment_id")) {
      return std::nullopt;
    }
    const sqlite::Statement rows(store_.get(), "SELECT message_id FROM main.message_attachment_join");
    if (!rows) return store_.lastError();
    int code = rows.step();
    for (; code == SQLITE_ROW; code = rows.step()) {
      facts_.withFiles.insert(rows.integer(0));
      facts_.marked.insert(rows.integer(0));
    }
    return code == SQLITE_DONE ? std::nullopt : Failure(store_.lastError());
  }

  // Going through an index once is far less than looking at a column of each row.
  Failure readIndexed() {
    for (const auto& [column, condition] : {std::pair("thread_originator_guid", " > ''"),
                                            {"cache_has_attachments", " > 0"},
                                            {"schedule_state", " > 0"}}) {
      if (!hasIndexOn(store_, "message", column)) continue;
      const sqlite::Statement rows(store_.get(),
                                   std::string("SELECT ROWID FROM main.message WHERE ") + column + condition);
      if (!rows) return store_.lastError();
      int code = rows.step();
      for (; code == SQLITE_ROW; code = rows.step()) facts_.marked.insert(rows.integer(0));
      if (code != SQLITE_DONE) return store_.lastError();
      facts_.markedColumns.insert(column);
    }
    return std::nullopt;
  }

  Failure readDeleted() {
    if (!hasDeleted()) return std::nullopt;
    const sqlite::Statement rows(
        store_.get(),
        "SELECT r.message_id, max(r.delete_date) FROM main.chat_recoverable_message_join r JOIN main.message m ON "
        "m.ROWID = r.message_id WHERE r.chat_id IN (" +
            listOf(conversation_.chats) + ") GROUP BY r.message_id");
    if (!rows) return store_.lastError();
    int code = rows.step();
    for (; code == SQLITE_ROW; code = rows.step()) {
      if (members_.contains(rows.integer(0))) continue;  // it stands in another chat of the conversation all the same
      if (options_.deleted) {
        facts_.deleted.emplace(rows.integer(0), rows.integer(1));
        facts_.marked.insert(rows.integer(0));
      } else {
        ++facts_.deletedLeftOut;
      }
    }
    return code == SQLITE_DONE ? std::nullopt : Failure(store_.lastError());
  }

  Failure readDeletedParts() {
    if (!options_.deleted || !columns_.has("recoverable_message_part", "part_text") ||
        !columns_.has("recoverable_message_part", "delete_date")) {
      return std::nullopt;
    }
    const sqlite::Statement rows(store_.get(),
                                 "SELECT message_id, delete_date, part_text FROM main.recoverable_message_part WHERE "
                                 "chat_id IN (" +
                                     listOf(conversation_.chats) + ") ORDER BY message_id, part_index");
    if (!rows) return store_.lastError();
    int code = rows.step();
    for (; code == SQLITE_ROW; code = rows.step()) {
      const std::int64_t message = rows.integer(0);
      facts_.marked.insert(message);
      facts_.deletedParts[message].push_back({rows.integer(1), decodeBody(rows.blob(2)).text});
    }
    return code == SQLITE_DONE ? std::nullopt : Failure(store_.lastError());
  }

  const sqlite::Connection& store_;
  const Conversation& conversation_;
  const WordsOptions& options_;
  ReadingFacts& facts_;
  StoreColumns columns_;
  ChatMembers members_;
};

}  // namespace

StoreResult<std::shared_ptr<const ReadingFacts>> ReadingFacts::read(const sqlite::Connection& store,
                                                                    const Conversation& conversation,
                                                                    const FindPerson& findPerson,
                                                                    const std::string& owner,
                                                                    const WordsOptions& options) {
  auto facts = std::make_shared<ReadingFacts>(store, findPerson, owner);
  if (auto failure = Reader(store, conversation, options, *facts).read()) return StoreProblem{std::move(*failure)};
  return std::shared_ptr<const ReadingFacts>(std::move(facts));
}

}  // namespace chatsum::device
