#include "hosts/device/contacts/HandleIndex.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <unordered_set>

#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

/// The form in which the library compares: e-mail addresses as they are, others without brackets, spaces and hyphens.
std::string plainForm(std::string_view handle) {
  if (handle.find('@') != std::string_view::npos) return std::string(handle);
  constexpr std::string_view kNoBreakSpace = "\xC2\xA0";
  std::string plain;
  for (std::size_t at = 0; at < handle.size(); ++at) {
    if (handle.substr(at, kNoBreakSpace.size()) == kNoBreakSpace) {
      ++at;
    } else if (std::string_view("() -").find(handle[at]) == std::string_view::npos) {
      plain += handle[at];
    }
  }
  return plain;
}

void neverLike(sqlite3_context* context, int, sqlite3_value**) { sqlite3_result_int(context, 0); }

bool run(sqlite3* connection, const char* sql) {
  return sqlite3_exec(connection, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

}  // namespace

HandleIndex::HandleIndex(const platform::system::ContactMatcher& matcher, const std::vector<std::string>& handles,
                         const platform::Strings& strings) {
  struct Entry {
    std::string compared;  // as the search sees it: plain, without case and diacritics
    Row row;
  };
  std::vector<Entry> entries;
  std::unordered_set<std::string> seen;
  const platform::system::ContactStore::Reading reading(matcher.store());
  for (const std::string& stored : handles) {
    std::string handle = stored.substr(0, stored.find('\0'));
    if (!seen.insert(handle).second) continue;
    std::string compared = strings.folded(plainForm(handle));
    const platform::ABRecordID record = matcher.match(handle).record;
    entries.push_back({std::move(compared), {std::move(handle), record}});
  }
  // A text that contains another is at least as long, so the first row found is the handle itself.
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    if (a.compared.size() != b.compared.size()) return a.compared.size() < b.compared.size();
    return a.compared != b.compared ? a.compared < b.compared : a.row.value < b.row.value;
  });
  // Handles that the search cannot tell apart have one answer: a card that all of them have, else nobody.
  for (auto first = entries.begin(); first != entries.end();) {
    const auto end =
        std::find_if(first, entries.end(), [&](const Entry& entry) { return entry.compared != first->compared; });
    const bool isOfOne =
        std::all_of(first, end, [&](const Entry& entry) { return entry.row.record == first->row.record; });
    for (auto entry = first; entry != end; ++entry) {
      if (!isOfOne) entry->row.record = -1;
      rows_.push_back(std::move(entry->row));
    }
    first = end;
  }
}

bool HandleIndex::install(sqlite3* addressBook) const {
  // For a short code the library asks the contacts service, then compares every number of the contact with the rows by
  // LIKE, where "%" and "_" of a card would match anybody. When it finds no row it takes the contact's own card.
  if (sqlite3_create_function_v2(addressBook, "like", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, &neverLike,
                                 nullptr, nullptr, nullptr) != SQLITE_OK) {
    return false;
  }
  // In memory: nothing about the people of a source is written to this machine's temporary files.
  if (!run(addressBook, "PRAGMA temp_store = MEMORY; BEGIN")) return false;
  return fill(addressBook) && run(addressBook, "COMMIT");
}

bool HandleIndex::fill(sqlite3* addressBook) const {
  if (!run(addressBook,
           "DROP TABLE IF EXISTS temp.ABMULTIVALUE;"
           "DROP TABLE IF EXISTS temp.ABMULTIVALUEENTRY;"
           "CREATE TEMP TABLE ABMULTIVALUE (UID INTEGER PRIMARY KEY, record_id INTEGER, value TEXT);"
           "CREATE TEMP TABLE ABMULTIVALUEENTRY (parent_id INTEGER, key INTEGER, value TEXT)")) {
    return false;
  }
  const sqlite::Statement insert(addressBook, "INSERT INTO temp.ABMULTIVALUE (record_id, value) VALUES (?1, ?2)");
  for (const Row& row : rows_) {
    if (!insert) return false;
    insert.bind(1, static_cast<std::int64_t>(row.record));
    insert.bind(2, std::string_view(row.value));
    if (insert.step() != SQLITE_DONE) return false;
    insert.reset();
  }
  return true;
}

}  // namespace chatsum::device
