// What has to be known of a conversation as a whole before its messages can be put into words one by one: people,
// reactions, who has attachments, what was deleted. Read once from the store's indexes; unchanged and free for any
// thread afterwards.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "hosts/device/conversations/Conversation.h"
#include "hosts/device/stores/StoreProblem.h"
#include "hosts/device/words/People.h"
#include "hosts/device/words/Reactions.h"
#include "hosts/device/words/RowSet.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

struct WordsOptions {
  bool deleted = false;   ///< with messages, and parts of messages, that were deleted lately
  bool orphaned = false;  ///< with messages that stand in no chat but belong to the conversation
};

struct ReadingFacts {
  ReadingFacts(const sqlite::Connection& store, const FindPerson& findPerson, const std::string& owner)
      : people(store, findPerson, owner) {}

  /// `findPerson` must outlive the facts. The problem's sentence is only the reason.
  [[nodiscard]] static StoreResult<std::shared_ptr<const ReadingFacts>> read(const sqlite::Connection& store,
                                                                             const Conversation& conversation,
                                                                             const FindPerson& findPerson,
                                                                             const std::string& owner,
                                                                             const WordsOptions& options);

  struct DeletedPart {
    std::int64_t date = 0;  ///< as stored
    std::string text;
  };

  People people;
  Reactions reactions;
  RowSet marked;     ///< messages with more to say than a look at their own columns would show
  RowSet withFiles;  ///< messages of the whole store that have attachments
  /// Columns that need not be looked at: the store's index told which messages have something there, and these are
  /// marked.
  std::set<std::string, std::less<>> markedColumns;
  bool servesDeleted = false;
  std::unordered_map<std::int64_t, std::int64_t> deleted;  ///< recently deleted ones that are read: the stored date
  std::unordered_map<std::int64_t, std::vector<DeletedPart>> deletedParts;
  std::vector<std::int64_t> orphans;  ///< those that are read, ascending
  std::uint64_t deletedLeftOut = 0;   ///< recently deleted messages that were not asked for
};

}  // namespace chatsum::device
