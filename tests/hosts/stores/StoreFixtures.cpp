#include "tests/hosts/stores/StoreFixtures.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "platform/sqlite/Statement.h"

namespace chatsum::device::testing {
namespace {

constexpr uid_t kNobody = 65534;

struct Columns {
  int since;
  const char* names;
};

const Columns kMessageColumns[] = {
    {6,
     "guid text replace service_center handle_id subject country attributedBody version type service account "
     "account_guid error date date_read date_delivered is_delivered is_finished is_emote is_from_me is_empty "
     "is_delayed "
     "is_auto_reply is_prepared is_read is_system_message is_sent has_dd_results is_service_message is_forward "
     "was_downgraded is_archive cache_has_attachments cache_roomnames was_data_detected was_deduplicated"},
    {9,
     "is_audio_message is_played date_played item_type other_handle group_title group_action_type share_status "
     "share_direction is_expirable expire_state message_action_type message_source"},
    {10,
     "associated_message_guid balloon_bundle_id payload_data associated_message_type expressive_send_style_id "
     "associated_message_range_location associated_message_range_length time_expressive_send_played "
     "message_summary_info"},
    {11, "ck_sync_state ck_record_id ck_record_change_tag destination_caller_id"},
    {14,
     "sr_ck_sync_state sr_ck_record_id sr_ck_record_change_tag is_corrupt reply_to_guid sort_id is_spam "
     "has_unseen_mention thread_originator_guid thread_originator_part"},
    {17,
     "syndication_ranges synced_syndication_ranges was_delivered_quietly did_notify_recipient date_retracted "
     "date_edited was_detonated part_count is_stewie is_kt_verified is_sos is_critical bia_reference_id "
     "fallback_hash"},
    {18,
     "associated_message_emoji is_pending_satellite_send needs_relay schedule_type schedule_state "
     "sent_or_received_off_grid date_recovered"},
};

std::string typeOf(const std::string& column) {
  if (column == "guid") return " TEXT UNIQUE NOT NULL";
  if (column == "attributedBody" || column == "payload_data" || column == "message_summary_info") return " BLOB";
  if (column == "text" || column == "service" || column == "subject" || column.find("_guid") != std::string::npos) {
    return " TEXT";
  }
  return column.find("date") == 0 ? " INTEGER" : " INTEGER DEFAULT 0";
}

}  // namespace

TestFolder::TestFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "stores-test-XXXXXX").string();
  EXPECT_NE(::mkdtemp(pattern.data()), nullptr);
  ::chmod(pattern.c_str(), 0755);
  path_ = std::filesystem::canonical(pattern);
}

TestFolder::~TestFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TestFolder::folder(const std::string& name) const {
  std::filesystem::create_directories(path_ / name);
  return (path_ / name).string();
}

AsOrdinaryUser::AsOrdinaryUser() {
  if (::getuid() == 0) {
    EXPECT_EQ(::seteuid(kNobody), 0);
  }
}
AsOrdinaryUser::~AsOrdinaryUser() {
  if (::getuid() == 0) {
    EXPECT_EQ(::seteuid(0), 0);
  }
}

void giveToOrdinaryUser(const std::string& path) {
  if (::getuid() == 0) {
    EXPECT_EQ(::chown(path.c_str(), kNobody, kNobody), 0);
  }
}

void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << bytes;
  EXPECT_TRUE(file.good()) << path;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::map<std::string, std::string> everyFile(const std::filesystem::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    files[entry.path().string()] = entry.is_regular_file() ? readFile(entry.path().string()) : "";
  }
  return files;
}

sqlite::Connection openForWriting(const std::string& path) {
  sqlite3* handle = nullptr;
  EXPECT_EQ(sqlite3_open(path.c_str(), &handle), SQLITE_OK) << path;
  sqlite3_exec(handle, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);  // tests need not survive a power cut
  return sqlite::Connection(handle);
}

void run(const sqlite::Connection& connection, const std::string& sql) {
  EXPECT_TRUE(connection.execute(sql)) << connection.lastError() << " in " << sql;
}

void makeStore(const std::string& path, const std::string& sql) { run(openForWriting(path), sql); }

void makeWalStore(const std::string& path, const std::string& sql) {
  const TestFolder workshop;
  const std::string original = workshop / "original";
  const sqlite::Connection connection = openForWriting(original);
  run(connection, "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0");
  run(connection, sql);
  // Taken while it is open: closing would move the rows into the main file.
  for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::copy_file(original + suffix, path + suffix);
}

void makeInterruptedStore(const std::string& path, const std::string& sql, const std::string& change) {
  const TestFolder workshop;
  const std::string original = workshop / "original";
  const sqlite::Connection connection = openForWriting(original);
  run(connection, sql);
  run(connection, "PRAGMA cache_size=1; BEGIN");
  run(connection, change);
  EXPECT_EQ(sqlite3_db_cacheflush(connection.get()), SQLITE_OK);
  for (const char* suffix : {"", "-journal"}) std::filesystem::copy_file(original + suffix, path + suffix);
  run(connection, "ROLLBACK");
}

sqlite::Connection connect(const StoreSnapshot& snapshot) {
  sqlite3* handle = nullptr;
  EXPECT_EQ(snapshot.open(&handle), SQLITE_OK) << sqlite3_errmsg(handle);
  return sqlite::Connection(handle);
}

std::vector<std::string> rows(const sqlite::Connection& connection, const std::string& sql) {
  std::vector<std::string> found;
  const sqlite::Statement statement(connection.get(), sql);
  EXPECT_TRUE(statement) << connection.lastError() << " in " << sql;
  if (!statement) return found;
  int code = SQLITE_ROW;
  while ((code = statement.step()) == SQLITE_ROW) {
    std::string row;
    for (int column = 0; column < sqlite3_column_count(statement.get()); ++column) {
      if (column > 0) row += '|';
      row += statement.isNull(column) ? "NULL" : std::string(statement.text(column));
    }
    found.push_back(row);
  }
  EXPECT_EQ(code, SQLITE_DONE) << connection.lastError() << " in " << sql;
  return found;
}

std::string value(const sqlite::Connection& connection, const std::string& sql) {
  const auto found = rows(connection, sql);
  EXPECT_EQ(found.size(), 1U) << sql;
  return found.empty() ? "" : found.front();
}

std::vector<std::string> messageColumns(int system) {
  std::vector<std::string> columns;
  for (const Columns& generation : kMessageColumns) {
    if (generation.since > system) break;
    std::istringstream names(generation.names);
    columns.insert(columns.end(), std::istream_iterator<std::string>(names), std::istream_iterator<std::string>());
  }
  return columns;
}

std::string messagesSchema(int system) {
  std::string sql = "CREATE TABLE message (ROWID INTEGER PRIMARY KEY AUTOINCREMENT";
  for (const std::string& column : messageColumns(system)) sql += ", " + column + typeOf(column);
  sql +=
      ");"
      "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY AUTOINCREMENT UNIQUE, id TEXT NOT NULL, country TEXT, service "
      "TEXT NOT NULL, uncanonicalized_id TEXT, UNIQUE (id, service));"
      "CREATE TABLE chat (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT UNIQUE NOT NULL, style INTEGER, state "
      "INTEGER, chat_identifier TEXT, service_name TEXT);"
      "CREATE TABLE attachment (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, guid TEXT UNIQUE NOT NULL, filename TEXT);"
      "CREATE TABLE chat_handle_join (chat_id INTEGER, handle_id INTEGER, UNIQUE (chat_id, handle_id));"
      "CREATE TABLE message_attachment_join (message_id INTEGER, attachment_id INTEGER, UNIQUE (message_id, "
      "attachment_id));"
      "CREATE INDEX message_idx_handle ON message (handle_id, date);";
  sql += system >= 11 ? "CREATE TABLE chat_message_join (chat_id INTEGER, message_id INTEGER, message_date INTEGER "
                        "DEFAULT 0, PRIMARY KEY (chat_id, message_id));"
                      : "CREATE TABLE chat_message_join (chat_id INTEGER, message_id INTEGER, PRIMARY KEY (chat_id, "
                        "message_id));";
  if (system >= 11) sql += "CREATE INDEX message_idx_date ON message (date);";
  return sql;
}

}  // namespace chatsum::device::testing
