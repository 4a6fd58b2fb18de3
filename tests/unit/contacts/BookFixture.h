// A small address-book database that a test fills with invented people.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"
#include "platform/system/contacts/ContactBook.h"

namespace chatsum::tests {

inline constexpr const char* kBookTables =
    "CREATE TABLE ABPerson (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, First TEXT, Last TEXT, Middle TEXT,"
    " Organization TEXT, Kind INTEGER, Nickname TEXT, Prefix TEXT, Suffix TEXT, CompositeNameFallback TEXT,"
    " DisplayName TEXT, PersonLink INTEGER DEFAULT -1, IsPreferredName INTEGER DEFAULT 1, guid TEXT);"
    "CREATE TABLE ABPersonLink (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, PreferredImagePersonID INTEGER DEFAULT -1,"
    " PreferredNamePersonID INTEGER DEFAULT -1, guid TEXT);"
    "CREATE TABLE ABMultiValue (UID INTEGER PRIMARY KEY, record_id INTEGER, property INTEGER, identifier INTEGER,"
    " label INTEGER, value TEXT, guid TEXT);"
    "CREATE TABLE ABMultiValueEntry (parent_id INTEGER, key INTEGER, value TEXT, UNIQUE (parent_id, key));"
    "CREATE TABLE ABMultiValueLabel (value TEXT, UNIQUE (value));"
    "CREATE TABLE ABStore (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT, Enabled INTEGER DEFAULT 1,"
    " MeIdentifier INTEGER DEFAULT -1);"
    "CREATE INDEX ABMultiValuePropertyValueIndex ON ABMultiValue (property, value COLLATE NOCASE);"
    "CREATE INDEX ABMultiValueRecordIDIndex ON ABMultiValue (record_id);"
    "CREATE INDEX ABPersonPersonLinkIndex ON ABPerson (PersonLink);";

class BookFixture {
 public:
  using Columns = std::map<std::string, std::string>;

  /// `path`: where the database stands; by default in memory.
  explicit BookFixture(const std::string& path = ":memory:", const char* tables = kBookTables)
      : connection_(opened(path)) {
    // What a crash would lose does not matter to a test.
    run("PRAGMA synchronous = OFF");
    run(tables);
  }

  /// Adds a card from columns of ABPerson; answers its record.
  int person(const Columns& columns) {
    std::string names = "guid", places = "'CARD-' || (SELECT coalesce(max(ROWID), 0) + 1 FROM ABPerson)";
    for (const auto& [name, value] : columns) {
      names += ", " + name;
      places += ", ?";
    }
    const sqlite::Statement insert(connection_.get(), "INSERT INTO ABPerson (" + names + ") VALUES (" + places + ")");
    int place = 0;
    for (const auto& [name, value] : columns) insert.bind(++place, std::string_view(value));
    require(insert && insert.step() == SQLITE_DONE);
    return static_cast<int>(sqlite3_last_insert_rowid(connection_.get()));
  }
  int person(const std::string& first, const std::string& last) { return person({{"First", first}, {"Last", last}}); }

  void phone(int record, const std::string& value, const std::string& label = "_$!<Mobile>!$_") {
    add(record, 3, value, label);
  }
  void email(int record, const std::string& value, const std::string& label = "_$!<Home>!$_") {
    add(record, 4, value, label);
  }

  void run(const std::string& sql) { require(connection_.execute(sql)); }

  /// The finished book; the fixture is empty afterwards.
  std::shared_ptr<platform::system::ContactBook> book(const std::string& region = "US") {
    auto shared = std::make_shared<sqlite::Connection>(std::move(connection_));
    return std::make_shared<platform::system::ContactBook>([shared] { return std::move(*shared); }, region);
  }

 private:
  static sqlite3* opened(const std::string& path) {
    sqlite3* handle = nullptr;
    if (sqlite3_open(path.c_str(), &handle) != SQLITE_OK) throw std::runtime_error("cannot open " + path);
    return handle;
  }

  void require(bool isDone) const {
    if (!isDone) throw std::runtime_error(connection_.lastError());
  }

  void add(int record, int property, const std::string& value, const std::string& label) {
    if (!label.empty()) {
      const sqlite::Statement insert(connection_.get(), "INSERT OR IGNORE INTO ABMultiValueLabel (value) VALUES (?)");
      insert.bind(1, std::string_view(label));
      require(insert && insert.step() == SQLITE_DONE);
    }
    const sqlite::Statement insert(connection_.get(),
                                   "INSERT INTO ABMultiValue (record_id, property, label, value) VALUES "
                                   "(?, ?, (SELECT ROWID FROM ABMultiValueLabel WHERE value = ?), ?)");
    insert.bind(1, static_cast<std::int64_t>(record));
    insert.bind(2, static_cast<std::int64_t>(property));
    insert.bind(3, std::string_view(label));
    insert.bind(4, std::string_view(value));
    require(insert && insert.step() == SQLITE_DONE);
  }

  sqlite::Connection connection_;
};

}  // namespace chatsum::tests
