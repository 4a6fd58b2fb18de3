#include "hosts/device/report/ConversationReading.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <unordered_set>
#include <utility>

#include "hosts/device/contacts/SharedAddresses.h"
#include "hosts/device/conversations/HostConversation.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/report/RowCount.h"
#include "hosts/device/report/SenderNames.h"
#include "hosts/device/words/MessageWords.h"
#include "hosts/device/words/Orphans.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/SideThread.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

constexpr std::int64_t kOldestFirst = 0, kNewestFirst = 1;

std::string damaged(const DeviceSession& session, const std::string& reason) {
  return say("'{0}' is damaged: not all messages can be read ({1}); copy it again from the device or backup.",
             session.messages().shownPath(), reason);
}

std::uint64_t expectedRows(const sqlite::Connection& store, const Conversation& conversation) {
  std::uint64_t rows = 0;
  const sqlite::Statement count(store.get(), "SELECT count(*) FROM chat_message_join WHERE chat_id = ?1");
  for (const std::int64_t chat : conversation.chats) {
    if (!count) break;
    count.reset();
    count.bind(1, chat);
    if (count.step() == SQLITE_ROW) rows += static_cast<std::uint64_t>(count.integer(0));
  }
  return rows;
}

/// Puts the true date into the records whose date the library cannot tell. A message without a date loses the one that
/// the library made up. Answers how many rows have none.
std::uint64_t repairDates(Array& records, const RowCount& count) {
  if (count.oddDates.empty()) return 0;
  std::uint64_t undated = 0;
  RecordField guidField("guid");
  for (Value& item : records.mutableItems()) {
    const Value* guid = guidField.find(*item.asRecord());
    const String* text = guid ? guid->asString() : nullptr;
    const auto odd = text ? count.oddDates.find(text->str()) : count.oddDates.end();
    if (odd == count.oddDates.end()) continue;
    Record record = *item.asRecord();
    item = Value();
    if (odd->second) {
      record.set("Date", Date{std::floor(odd->second->secondsSince1970)});
    } else {
      record.remove("Date");
      ++undated;
    }
    item = Value(std::move(record));
  }
  return undated;
}

/// Drops what was not asked for and counts it.
class Selection {
 public:
  Selection(const ReadingOptions& options, Balance& balance) : range_(options.range), balance_(balance) {
    for (const std::string& guid : options.excluded) excluded_.insert(guid);
  }

  void apply(Array& records) {
    if (excluded_.empty() && range_.isOpen()) return;
    std::erase_if(records.mutableItems(), [this](const Value& item) { return isDropped(*item.asRecord()); });
  }
  [[nodiscard]] bool wasSeen(const std::string& guid) const { return seen_.contains(guid); }

 private:
  bool isDropped(const Record& record) {
    const Value* guid = excluded_.empty() ? nullptr : guidField_.find(record);
    if (guid && guid->asString() && excluded_.contains(guid->asString()->str())) {
      seen_.insert(guid->asString()->str());
      ++balance_.excluded;
      return true;
    }
    if (range_.isOpen()) return false;
    const Value* value = dateField_.find(record);
    const Date* date = value ? value->asDate() : nullptr;
    if (!date) {
      ++balance_.undatedOutside;
      return true;
    }
    if (range_.contains(*date)) return false;
    ++balance_.outsideTimes;
    return true;
  }

  const TimeRange& range_;
  Balance& balance_;
  std::unordered_set<std::string> excluded_, seen_;
  RecordField guidField_{"guid"}, dateField_{"Date"};
};

/// What is prepared for putting the messages of a reading into words.
struct Wording {
  std::shared_ptr<const ReadingFacts> facts;  ///< null when messages are read as they stand
  std::shared_ptr<MessageWords> reader;       ///< of the library's connection
  std::shared_ptr<MessageWords> counter;      ///< of the independent count
};

StoreResult<std::shared_ptr<MessageWords>> makeWords(const DeviceSession& session,
                                                     const std::shared_ptr<const ReadingFacts>& facts,
                                                     const std::shared_ptr<BodyCounters>& counters) {
  auto connection = session.connect();
  if (!connection) return connection.problem();
  return std::make_shared<MessageWords>(std::move(connection.value()), facts, counters);
}

/// Reads what the words need to know. With a session that serves the library's own records there is nothing to know.
StoreResult<Wording> prepareWords(DeviceSession& session, const sqlite::Connection& store,
                                  const Conversation& conversation, const ReadingOptions& options) {
  Wording wording;
  if (session.isPlain()) return wording;
  auto facts = ReadingFacts::read(store, conversation, session.findPerson(), session.ownerName(),
                                  {options.deleted, options.orphaned});
  if (!facts) return StoreProblem{damaged(session, facts.problem().sentence)};
  wording.facts = facts.value();
  auto reader = makeWords(session, wording.facts, session.bodyCounters());
  if (!reader) return reader.problem();
  auto counter = makeWords(session, wording.facts, nullptr);
  if (!counter) return counter.problem();
  wording.reader = reader.value();
  wording.counter = counter.value();
  return wording;
}

/// The handles (ROWIDs) of messages that are read although they stand in none of the conversation's chats.
std::unordered_set<std::int64_t> writersBesideChats(const sqlite::Connection& store, const Wording& wording) {
  std::unordered_set<std::int64_t> handles;
  if (!wording.facts) return handles;
  const sqlite::Statement message(store.get(), "SELECT handle_id FROM message WHERE ROWID = ?1");
  const auto add = [&](std::int64_t row) {
    if (!message) return;  // a store without handles
    message.reset();
    message.bind(1, row);
    if (message.step() == SQLITE_ROW) handles.insert(message.integer(0));
  };
  for (const std::int64_t row : wording.facts->orphans) add(row);
  for (const auto& [row, date] : wording.facts->deleted) add(row);
  return handles;
}

/// Who is shown by a number or address in the records, and in the conversation's name.
std::vector<std::string> notesOnNames(const DeviceSession& session, const Conversation& conversation,
                                      const Array& records) {
  std::map<std::string, std::string> shown;
  for (const ConversationMember& member : conversation.members) {
    if (member.recordID < 1) shown.emplace(member.handle, member.handle);
  }
  RecordField nameField("Name");
  std::unordered_set<const void*> seen;  // records of one sender share the name
  for (const Value& item : records) {
    const Value* name = nameField.find(*item.asRecord());
    const String* text = name ? name->asString() : nullptr;
    if (text && seen.insert(text->identity()).second) shown.emplace(text->str(), text->str());
  }
  return notesOnSharedAddresses(session.contacts(), shown);
}

/// What is counted beside the reading, and which messages of the conversation nobody asked for.
struct Counted {
  RowCount rows;
  std::uint64_t orphansLeftOut = 0;
};

Counted countAll(const sqlite::Connection& store, const Conversation& conversation, const Wording& wording) {
  Counted counted;
  RowCount& count = counted.rows;
  count = countRows(store, conversation.chats, wording.counter.get());
  if (!count.failure && wording.facts && wording.facts->orphans.empty() && mayHaveOrphans(store)) {
    std::vector<std::int64_t> orphans;
    count.failure = findOrphans(store, conversation, orphans);
    counted.orphansLeftOut = orphans.size();
  }
  return counted;
}

/// What a session is told for one reading ends with it.
class OfReading {
 public:
  explicit OfReading(DeviceSession& session) : session_(session) {}
  OfReading(const OfReading&) = delete;
  OfReading& operator=(const OfReading&) = delete;
  ~OfReading() {
    session_.setWords(nullptr);
    session_.setOrigins(nullptr);
    session_.setRowObserver(nullptr);
  }

 private:
  DeviceSession& session_;
};

void takeOver(const RowCount& count, Balance& balance) {
  balance.inStore = count.rows;
  balance.wordsBesideFiles = count.words.besideFiles;
  balance.reactionsShown = count.words.reactionsShown;
  balance.reactionsTakenBack = count.words.reactionsTakenBack;
  balance.previewFiles = count.words.previewFiles;
  balance.stickers = count.words.stickers;
  balance.missingFiles = count.words.missingFiles;
}

/// Whether the rows that had no text, as they were counted while the library read, explain what is missing. They do
/// not when a damaged place made it read rows twice.
bool isExplained(const Wording& wording, Balance& balance) {
  if (!wording.reader) return false;
  balance.withoutText = wording.reader->silent().withoutContent;
  balance.unreadableBody = wording.reader->silent().unreadableBody;
  return balance.inStore + balance.wordsBesideFiles == balance.read + balance.unread();
}

/// Finds out why the library read fewer rows than there are.
std::optional<StoreProblem> explainMissing(const DeviceSession& session, const Conversation& conversation,
                                           const Wording& wording, Balance& balance) {
  if (isExplained(wording, balance)) return std::nullopt;
  if (wording.facts) {
    auto words = makeWords(session, wording.facts, nullptr);
    if (!words) return words.problem();
    const auto silent = session.connectWithWords(words.value());
    if (!silent) return silent.problem();
    std::vector<std::int64_t> chats = conversation.chats;
    if (!wording.facts->orphans.empty()) chats.push_back(kOrphanChat);
    const TextlessRows textless = countSilentRows(silent.value(), *words.value(), chats);
    if (textless.failure) return StoreProblem{damaged(session, *textless.failure)};
    balance.withoutText = textless.withoutBody;
    balance.unreadableBody = textless.withUnreadableBody;
    return std::nullopt;
  }
  const auto counters = std::make_shared<BodyCounters>();
  const auto connection = session.connectWithTexts(counters);
  if (!connection) return connection.problem();
  const TextlessRows textless = countTextlessRows(connection.value(), *counters, conversation.chats);
  if (textless.failure) return StoreProblem{damaged(session, *textless.failure)};
  balance.withoutText = textless.withoutBody;
  balance.unreadableBody = textless.withUnreadableBody;
  return std::nullopt;
}

void noteLeftOut(const Wording& wording, std::uint64_t orphans, bool namesOptions, std::vector<std::string>& notes) {
  const std::uint64_t deleted = wording.facts ? wording.facts->deletedLeftOut : 0;
  if (deleted > 0) {
    notes.push_back(namesOptions
                        ? sayCounted(deleted, "{0} message was deleted lately and is not shown; --deleted shows it.",
                                     "{0} messages were deleted lately and are not shown; --deleted shows them.")
                        : sayCounted(deleted, "{0} message was deleted lately and is not shown.",
                                     "{0} messages were deleted lately and are not shown."));
  }
  if (orphans > 0) {
    notes.push_back(namesOptions
                        ? sayCounted(orphans,
                                     "{0} message of these people stands in no conversation; --orphaned shows it.",
                                     "{0} messages of these people stand in no conversation; --orphaned shows them.")
                        : sayCounted(orphans, "{0} message of these people stands in no conversation and is not shown.",
                                     "{0} messages of these people stand in no conversation and are not shown."));
  }
}

void addNotes(const BodyCounters& bodies, const RowCount& count, const Balance& balance, std::uint64_t undated,
              std::vector<std::string>& notes) {
  if (bodies.recovered > 0) {
    notes.push_back(sayCounted(bodies.recovered, "{0} text was saved from a damaged body.",
                               "{0} texts were saved from damaged bodies."));
  }
  if (bodies.replacedSequences > 0) {
    notes.push_back(sayCounted(bodies.replacedSequences, "{0} unreadable character is shown as {1}.",
                               "{0} unreadable characters are shown as {1}.", "\uFFFD"));
  }
  if (undated > balance.undatedOutside) {
    notes.push_back(sayCounted(undated - balance.undatedOutside,
                               "{0} row has no date in the store; where it would stand stays empty.",
                               "{0} rows have no date in the store; where it would stand stays empty."));
  }
  if (count.wordsBesideFiles > 0) {
    notes.push_back(
        sayCounted(count.wordsBesideFiles,
                   "{0} message has words beside its attachment; the attachment's path stands in their place.",
                   "{0} messages have words beside their attachments; the attachment's path stands in their place."));
  }
}

}  // namespace

StoreResult<Reading> readConversation(DeviceSession& session, const Conversation& conversation,
                                      const ReadingOptions& options) {
  auto plain = session.connect();
  if (!plain) return plain.problem();
  const BodyCounters& bodies = session.startLibrary();
  const auto prepared = prepareWords(session, plain.value(), conversation, options);
  if (!prepared) return prepared.problem();
  const Wording& wording = prepared.value();
  std::vector<std::string> guids = conversation.guids;
  const bool isOrphanage = guids == std::vector<std::string>{kOrphanChatGuid};
  if (wording.facts && !wording.facts->orphans.empty() && !isOrphanage) guids.emplace_back(kOrphanChatGuid);
  const HostConversation host(
      guids, peopleOf(plain.value(), conversation, session.findPerson(), writersBesideChats(plain.value(), wording)));
  const auto origins = options.origins ? std::make_shared<MessageOrigins>(plain.value()) : nullptr;
  Reading reading;
  Counted counting;
  {
    const OfReading ofReading(session);
    if (options.progress) {
      const std::uint64_t total = expectedRows(plain.value(), conversation);
      session.setRowObserver([&options, total](std::uint64_t rows) { options.progress(rows, total); });
    }
    session.setWords(wording.reader);
    session.setOrigins(origins);
    SideThread counter([&] { counting = countAll(plain.value(), conversation, wording); });
    ChatsumUtils::allMessagesForConversation(host, {}, options.newestFirst ? kNewestFirst : kOldestFirst,
                                             [&](Array records, bool, bool) { reading.records = std::move(records); });
    counter.join();
  }
  const RowCount& count = counting.rows;
  if (count.failure) return StoreProblem{damaged(session, *count.failure)};
  if (auto problem = session.checkUnchanged()) return *problem;

  Balance& balance = reading.balance;
  takeOver(count, balance);
  balance.read = reading.records.size();
  if (origins) origins->apply(reading.records);
  if (wording.facts) nameSenders(reading.records, plain.value(), session.ownerName());
  if (balance.inStore + balance.wordsBesideFiles != balance.read + balance.unread()) {
    if (auto problem = explainMissing(session, conversation, wording, balance)) return *problem;
  }
  const std::uint64_t undated = repairDates(reading.records, count);
  Selection selection(options, balance);
  selection.apply(reading.records);
  balance.written = reading.records.size();
  if (!balance.holds()) {
    return StoreProblem{damaged(session, say("{0} rows were counted, {1} read, {2} have no text", balance.inStore,
                                             balance.read, balance.withoutText + balance.unreadableBody))};
  }
  addNotes(bodies, count, balance, undated, reading.notes);
  noteLeftOut(wording, counting.orphansLeftOut, options.namesOptions, reading.notes);
  for (std::string& note : notesOnNames(session, conversation, reading.records)) {
    reading.notes.push_back(std::move(note));
  }
  for (const std::string& guid : options.excluded) {
    if (!selection.wasSeen(guid))
      reading.notes.push_back(say("No message with text has the GUID '{0}' to exclude.", guid));
  }
  return reading;
}

}  // namespace chatsum::device
