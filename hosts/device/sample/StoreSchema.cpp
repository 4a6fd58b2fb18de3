#include "hosts/device/sample/StoreSchema.h"

#include <array>

#include "hosts/device/sample/StoreColumn.h"

namespace chatsum::device {

namespace {

constexpr std::array<std::string_view, 7> kNames = {"ios6", "ios9", "ios10", "ios11", "ios14", "ios17", "ios18"};

// A whole table or index, with the systems that have it.
struct Fixed {
  std::string_view text;
  Generation since;
  Generation until = Generation::ios18;

  [[nodiscard]] bool existsIn(Generation generation) const { return generation >= since && generation <= until; }
};

constexpr Fixed kOtherTables[] = {
    {"_SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE (key))", Generation::ios6},
    {"chat_handle_join (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE, "
     "handle_id INTEGER REFERENCES handle (ROWID) ON DELETE CASCADE, UNIQUE (chat_id, handle_id))",
     Generation::ios6},
    {"message_attachment_join (message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE, "
     "attachment_id INTEGER REFERENCES attachment (ROWID) ON DELETE CASCADE, UNIQUE (message_id, attachment_id))",
     Generation::ios6},
    {"deleted_messages (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT NULL)", Generation::ios6},
    {"sync_deleted_messages (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT NULL, recordID TEXT)",
     Generation::ios11},
    {"sync_deleted_attachments (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT NULL, recordID TEXT)",
     Generation::ios11},
    {"sync_deleted_chats (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT NULL, recordID TEXT, "
     "timestamp INTEGER)",
     Generation::ios11},
    {"message_processing_task (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT NULL, "
     "task_flags INTEGER NOT NULL)",
     Generation::ios11},
    {"kvtable (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, key TEXT UNIQUE NOT NULL, value BLOB NOT NULL)",
     Generation::ios11},
    {"chat_recoverable_message_join (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE, "
     "message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE, delete_date INTEGER, "
     "ck_sync_state INTEGER DEFAULT 0, PRIMARY KEY (chat_id, message_id), CHECK (delete_date != 0))",
     Generation::ios17},
    {"recoverable_message_part (chat_id INTEGER REFERENCES chat (ROWID) ON DELETE CASCADE, "
     "message_id INTEGER REFERENCES message (ROWID) ON DELETE CASCADE, part_index INTEGER, delete_date INTEGER, "
     "part_text BLOB NOT NULL, ck_sync_state INTEGER DEFAULT 0, PRIMARY KEY (chat_id, message_id, part_index), "
     "CHECK (delete_date != 0))",
     Generation::ios17},
    {"unsynced_removed_recoverable_messages (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, chat_guid TEXT NOT NULL, "
     "message_guid TEXT NOT NULL, part_index INTEGER)",
     Generation::ios17},
    {"scheduled_messages_pending_cloudkit_delete (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, guid TEXT NOT NULL, "
     "recordID TEXT)",
     Generation::ios18},
};

constexpr Fixed kIndexes[] = {
    {"chat_message_join_idx_message_date_id_chat_id ON chat_message_join (chat_id, message_date, message_id)",
     Generation::ios11},
    {"chat_message_join_idx_message_id_only ON chat_message_join (message_id)", Generation::ios6},
    {"chat_message_join_idx_chat_id ON chat_message_join (chat_id)", Generation::ios6},
    {"chat_handle_join_idx_handle_id ON chat_handle_join (handle_id)", Generation::ios6},
    {"message_attachment_join_idx_message_id ON message_attachment_join (message_id)", Generation::ios6},
    {"message_attachment_join_idx_attachment_id ON message_attachment_join (attachment_id)", Generation::ios6},
    {"message_idx_date ON message (date)", Generation::ios6},
    {"message_idx_handle ON message (handle_id, date)", Generation::ios6},
    {"message_idx_handle_id ON message (handle_id)", Generation::ios6},
    {"message_idx_other_handle ON message (other_handle)", Generation::ios9},
    {"message_idx_associated_message ON message (associated_message_guid)", Generation::ios10, Generation::ios14},
    {"message_idx_cache_has_attachments ON message (cache_has_attachments)", Generation::ios6},
    {"message_idx_thread_originator_guid ON message (thread_originator_guid)", Generation::ios14},
    {"message_idx_is_read ON message (is_read, is_from_me, is_finished)", Generation::ios6},
    {"chat_idx_chat_identifier ON chat (chat_identifier)", Generation::ios6},
    {"chat_idx_chat_identifier_service_name ON chat (chat_identifier, service_name)", Generation::ios6},
    {"chat_idx_chat_room_name_service_name ON chat (room_name, service_name)", Generation::ios6},
    {"chat_idx_group_id ON chat (group_id)", Generation::ios9},
    {"chat_idx_is_archived ON chat (is_archived)", Generation::ios6},
    {"message_idx_associated_message2 ON message (associated_message_guid) WHERE associated_message_guid IS NOT NULL",
     Generation::ios17},
    {"message_idx_fallback_hash ON message (fallback_hash) WHERE fallback_hash IS NOT NULL", Generation::ios17},
    {"chat_recoverable_message_join_message_id_idx ON chat_recoverable_message_join (message_id)", Generation::ios17},
    {"message_idx_schedule_state ON message (schedule_state)", Generation::ios18},
};

std::string tableOfColumns(std::string_view table, std::string_view constraint, Generation generation) {
  std::string sql = "CREATE TABLE " + std::string(table) + " (";
  bool first = true;
  for (const StoreColumn& column : everyColumnOf(table)) {
    if (!column.existsIn(generation)) continue;
    if (!first) sql += ", ";
    sql += column.definition;
    first = false;
  }
  sql += constraint;
  return sql + ");\n";
}

}  // namespace

const std::vector<Generation>& allGenerations() {
  static const std::vector<Generation> all = {Generation::ios6,  Generation::ios9,  Generation::ios10,
                                              Generation::ios11, Generation::ios14, Generation::ios17,
                                              Generation::ios18};
  return all;
}

std::string_view generationName(Generation generation) { return kNames[static_cast<std::size_t>(generation)]; }

bool generationNamed(std::string_view name, Generation& generation) {
  for (Generation candidate : allGenerations()) {
    if (generationName(candidate) != name) continue;
    generation = candidate;
    return true;
  }
  return false;
}

bool hasNanosecondDates(Generation generation) { return generation >= Generation::ios11; }

std::vector<std::string_view> columnsOf(std::string_view table, Generation generation) {
  std::vector<std::string_view> names;
  for (const StoreColumn& column : everyColumnOf(table)) {
    if (column.existsIn(generation)) names.push_back(column.name());
  }
  return names;
}

std::string messageStoreTables(Generation generation) {
  std::string sql = tableOfColumns("handle", ", UNIQUE (id, service)", generation);
  sql += tableOfColumns("chat", "", generation);
  sql += tableOfColumns("message", "", generation);
  sql += tableOfColumns("attachment", "", generation);
  sql += tableOfColumns("chat_message_join", ", PRIMARY KEY (chat_id, message_id)", generation);
  for (const Fixed& table : kOtherTables) {
    if (table.existsIn(generation)) sql += "CREATE TABLE " + std::string(table.text) + ";\n";
  }
  return sql;
}

std::string messageStoreIndexes(Generation generation) {
  std::string sql;
  for (const Fixed& index : kIndexes) {
    if (index.existsIn(generation)) sql += "CREATE INDEX " + std::string(index.text) + ";\n";
  }
  return sql;
}

std::string addressBookTables() {
  return R"sql(
CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));
CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, First TEXT, Last TEXT, Middle TEXT,
  FirstPhonetic TEXT, MiddlePhonetic TEXT, LastPhonetic TEXT, Organization TEXT, Department TEXT, Note TEXT,
  Kind INTEGER, Birthday TEXT, JobTitle TEXT, Nickname TEXT, Prefix TEXT, Suffix TEXT, FirstSort TEXT,
  LastSort TEXT, CreationDate INTEGER, ModificationDate INTEGER, CompositeNameFallback TEXT,
  ExternalIdentifier TEXT, ExternalModificationTag TEXT, ExternalUUID TEXT, StoreID INTEGER, DisplayName TEXT,
  ExternalRepresentation BLOB, FirstSortSection TEXT, LastSortSection TEXT,
  FirstSortLanguageIndex INTEGER DEFAULT 2147483647, LastSortLanguageIndex INTEGER DEFAULT 2147483647,
  PersonLink INTEGER DEFAULT -1, ImageURI TEXT, IsPreferredName INTEGER DEFAULT 1, guid TEXT,
  PhonemeData TEXT, AlternateBirthday TEXT, MapsData TEXT, OrganizationPhonetic TEXT, PreviousFamilyName TEXT);
CREATE TABLE ABPersonLink (ROWID INTEGER PRIMARY KEY AUTOINCREMENT,
  PreferredImagePersonID INTEGER DEFAULT -1, PreferredNamePersonID INTEGER DEFAULT -1, guid TEXT);
CREATE TABLE ABMultiValue (UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER, identifier INTEGER,
  label INTEGER, value TEXT, guid TEXT);
CREATE TABLE ABMultiValueEntry (parent_id INTEGER, key INTEGER, value TEXT, UNIQUE (parent_id, key));
CREATE TABLE ABMultiValueEntryKey (value TEXT, UNIQUE (value));
CREATE TABLE ABMultiValueLabel (value TEXT, UNIQUE (value));
CREATE TABLE ABPhoneLastFour (multivalue_id INTEGER PRIMARY KEY, value TEXT);
CREATE TABLE ABStore (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT, Type INTEGER,
  AccountID INTEGER DEFAULT -1, Enabled INTEGER DEFAULT 1, MeIdentifier INTEGER DEFAULT -1, guid TEXT);
CREATE TABLE ABGroup (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, ExternalIdentifier TEXT, StoreID INTEGER, guid TEXT);
CREATE TABLE ABGroupMembers (UID INTEGER PRIMARY KEY, group_id INTEGER, member_type INTEGER, member_id INTEGER,
  UNIQUE (group_id, member_type, member_id));
)sql";
}

std::string addressBookIndexes() {
  return R"sql(
CREATE INDEX ABMultiValuePropertyValueIndex ON ABMultiValue (property, value COLLATE NOCASE);
CREATE INDEX ABMultiValueRecordIDIndex ON ABMultiValue (record_id);
CREATE INDEX ABPhoneLastFourIndex ON ABPhoneLastFour (value);
CREATE INDEX ABPersonPersonLinkIndex ON ABPerson (PersonLink);
)sql";
}

}  // namespace chatsum::device
