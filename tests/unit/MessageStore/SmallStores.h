// Small real databases for tests of reading: a Messages store and an address book with just the tables that are read.
// One thread. A statement that fails throws std::runtime_error, which fails the test.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::tests {

inline constexpr const char* kMessagesPath = "/var/mobile/Library/SMS/sms.db";
inline constexpr const char* kAddressBookPath = "/var/mobile/Library/AddressBook/AddressBook.sqlitedb";

/// NULL, a number, or a text of any bytes, as an expression of SQL.
class Cell {
 public:
  Cell(std::nullptr_t) : sql_("NULL") {}
  Cell(std::int64_t number) : sql_(std::to_string(number)) {}
  Cell(std::string_view text) : sql_("CAST(x'") {
    constexpr const char* kDigits = "0123456789abcdef";
    for (const char c : text) {
      const auto byte = static_cast<unsigned char>(c);
      sql_ += kDigits[byte >> 4];
      sql_ += kDigits[byte & 15];
    }
    sql_ += "' AS TEXT)";
  }
  Cell(const std::string& text) : Cell(std::string_view(text)) {}
  Cell(const std::optional<std::string>& text) : Cell(nullptr) {
    if (text) *this = Cell(*text);
  }
  [[nodiscard]] const std::string& sql() const { return sql_; }

 private:
  std::string sql_;
};

class SmallDatabase {
 public:
  /// Opens the file, made with its folders when missing.
  explicit SmallDatabase(const std::filesystem::path& path) : path_(path) {
    std::filesystem::create_directories(path.parent_path());
    sqlite3* handle = nullptr;
    if (sqlite3_open(path.c_str(), &handle) != SQLITE_OK) throw std::runtime_error("cannot open " + path.string());
    connection_ = sqlite::Connection(handle);
    run("PRAGMA synchronous=OFF");
  }

  void run(const std::string& sql) {
    if (!connection_.execute(sql)) throw std::runtime_error(connection_.lastError() + " in " + sql);
  }

  /// Inserts one row; answers its ROWID.
  std::int64_t insert(const std::string& table, const std::vector<std::pair<const char*, Cell>>& cells) {
    std::string columns, values;
    for (const auto& [column, value] : cells) {
      columns += (columns.empty() ? "" : ", ") + std::string(column);
      values += (values.empty() ? "" : ", ") + value.sql();
    }
    run("INSERT INTO " + table + " (" + columns + ") VALUES (" + values + ")");
    return sqlite3_last_insert_rowid(connection_.get());
  }

  [[nodiscard]] std::int64_t number(const std::string& sql) const {
    const sqlite::Statement statement(connection_.get(), sql);
    if (!statement || statement.step() != SQLITE_ROW) throw std::runtime_error(connection_.lastError() + " in " + sql);
    return statement.integer(0);
  }

  /// Closes the connection and fills the pages of the file, counted from 1, with bytes that mean nothing.
  void destroyPages(const std::vector<std::int64_t>& pages) {
    const std::int64_t size = number("PRAGMA page_size");
    close();
    std::fstream file(path_, std::ios::binary | std::ios::in | std::ios::out);
    for (const std::int64_t page : pages) {
      file.seekp((page - 1) * size);
      file << std::string(static_cast<std::size_t>(size), '\xFF');
    }
    if (!file.flush()) throw std::runtime_error("cannot write " + path_.string());
  }

  void close() { connection_ = sqlite::Connection(); }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
  sqlite::Connection connection_;
};

/// One message of a test, ordinary unless the test says otherwise.
struct SmallMessage {
  std::optional<std::string> guid = std::nullopt;
  std::optional<std::string> text = "Hello";
  std::int64_t date = 600'000'000'000'000'000;
  std::int64_t isFromMe = 0;
  std::int64_t handle = 0;  ///< ROWID; 0: none
  std::int64_t hasAttachments = 0;
  std::int64_t rowid = 0;  ///< 0: the next one
};

class SmallMessageStore : public SmallDatabase {
 public:
  explicit SmallMessageStore(const std::filesystem::path& path) : SmallDatabase(path) {
    run("CREATE TABLE message (ROWID INTEGER PRIMARY KEY, guid TEXT, text TEXT, handle_id INTEGER DEFAULT 0,"
        " date INTEGER, is_from_me INTEGER DEFAULT 0, cache_has_attachments INTEGER DEFAULT 0);"
        "CREATE TABLE chat (ROWID INTEGER PRIMARY KEY, guid TEXT);"
        "CREATE TABLE chat_message_join (chat_id INTEGER, message_id INTEGER, PRIMARY KEY (chat_id, message_id));"
        "CREATE TABLE handle (ROWID INTEGER PRIMARY KEY, id TEXT);"
        "CREATE TABLE attachment (ROWID INTEGER PRIMARY KEY, guid TEXT, filename TEXT);"
        "CREATE TABLE message_attachment_join (message_id INTEGER, attachment_id INTEGER);");
  }

  std::int64_t chat(const std::string& guid) { return insert("chat", {{"guid", guid}}); }
  std::int64_t handle(const std::optional<std::string>& id) { return insert("handle", {{"id", id}}); }

  std::int64_t message(std::int64_t chat, const SmallMessage& row) {
    const std::int64_t rowid = insert("message", {{"ROWID", row.rowid ? Cell(row.rowid) : Cell(nullptr)},
                                                  {"guid", row.guid},
                                                  {"text", row.text},
                                                  {"handle_id", row.handle},
                                                  {"date", row.date},
                                                  {"is_from_me", row.isFromMe},
                                                  {"cache_has_attachments", row.hasAttachments}});
    insert("chat_message_join", {{"chat_id", chat}, {"message_id", rowid}});
    return rowid;
  }

  void attachment(std::int64_t message, const std::optional<std::string>& fileName) {
    const std::int64_t rowid = insert("attachment", {{"filename", fileName}});
    insert("message_attachment_join", {{"message_id", message}, {"attachment_id", rowid}});
  }
};

class SmallAddressBook : public SmallDatabase {
 public:
  explicit SmallAddressBook(const std::filesystem::path& path) : SmallDatabase(path) {
    run("CREATE TABLE IF NOT EXISTS ABMultiValue (UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER,"
        " identifier INTEGER, label INTEGER, value TEXT, guid TEXT);"
        "CREATE TABLE IF NOT EXISTS ABMultiValueEntry (parent_id INTEGER, key INTEGER, value TEXT,"
        " UNIQUE (parent_id, key));");
  }

  std::int64_t value(std::int64_t record, const std::optional<std::string>& value) {
    return insert("ABMultiValue", {{"record_id", record}, {"value", value}});
  }
  void entry(std::int64_t parent, std::int64_t key, const std::string& value) {
    insert("ABMultiValueEntry", {{"parent_id", parent}, {"key", key}, {"value", value}});
  }
};

}  // namespace chatsum::tests
