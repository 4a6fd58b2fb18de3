#include "hosts/device/mac/MacBook.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/stores/StoreCheck.h"
#include "hosts/device/stores/StoreColumns.h"
#include "hosts/device/stores/StoreSnapshot.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

constexpr const char* kRecords = "ZABCDRECORD";
constexpr const char* kPhones = "ZABCDPHONENUMBER";
constexpr const char* kEmails = "ZABCDEMAILADDRESS";
constexpr std::size_t kLongestText = 10'000;  // bytes; what is longer is no name or number
constexpr std::int64_t kShownAsOrganization = 1;

const StoreKind& macBook() {
  static const StoreKind kind = {toSay("a Mac's address book"), {{kRecords, {"Z_PK"}}}};
  return kind;
}

struct TextColumn {
  const char* name;
  std::string MacCard::*member;
};

constexpr TextColumn kTexts[] = {{"ZTITLE", &MacCard::prefix},          {"ZFIRSTNAME", &MacCard::first},
                                 {"ZMIDDLENAME", &MacCard::middle},     {"ZLASTNAME", &MacCard::last},
                                 {"ZSUFFIX", &MacCard::suffix},         {"ZNICKNAME", &MacCard::nickname},
                                 {"ZMAIDENNAME", &MacCard::maidenName}, {"ZORGANIZATION", &MacCard::organization},
                                 {"ZDEPARTMENT", &MacCard::department}, {"ZJOBTITLE", &MacCard::jobTitle},
                                 {"ZUNIQUEID", &MacCard::identifier},   {"ZLINKID", &MacCard::link}};
constexpr int kTextCount = static_cast<int>(std::size(kTexts));

bool isOnlyOrganization(const MacCard& card) {
  return !card.organization.empty() && card.first.empty() && card.middle.empty() && card.last.empty() &&
         card.nickname.empty();
}

class Reader {
 public:
  explicit Reader(sqlite3* connection) : connection_(connection), columns_(connection) {}

  /// Answers false when SQLite fails; its words stand on the connection.
  bool read() {
    if (!readCards()) return false;
    return readValues(kPhones, "ZFULLNUMBER", "ZFULLNUMBER", &MacCard::phones) &&
           readValues(kEmails, "ZADDRESS", "ZADDRESSNORMALIZED", &MacCard::emails);
  }
  std::vector<MacCard> takeCards() { return std::move(cards_); }

 private:
  /// The column for a statement, NULL in the place of one that this book lacks.
  std::string column(const char* table, const char* name) {
    return columns_.has(table, name) ? std::string(name) : "NULL";
  }

  /// The numbers of the entities of persons, as a list for IN; empty when the book does not say.
  std::string contactEntities() {
    if (!columns_.has("Z_PRIMARYKEY", "Z_ENT") || !columns_.has("Z_PRIMARYKEY", "Z_NAME")) return "";
    const sqlite::Statement rows(connection_, "SELECT Z_ENT FROM Z_PRIMARYKEY WHERE Z_NAME = 'ABCDContact'");
    std::string list;
    while (rows && rows.step() == SQLITE_ROW) list += (list.empty() ? "" : ", ") + std::to_string(rows.integer(0));
    return list;
  }

  std::string whichRecords() {
    // Whoever has a number or address is no group, whatever the entities say.
    std::string condition;
    for (const char* table : {kPhones, kEmails}) {
      if (columns_.has(table, "ZOWNER")) condition += std::string("Z_PK IN (SELECT ZOWNER FROM ") + table + ") OR ";
    }
    if (const std::string entities = contactEntities(); !entities.empty() && columns_.has(kRecords, "Z_ENT")) {
      return condition + "Z_ENT IN (" + entities + ")";
    }
    return condition + column(kRecords, "ZFIRSTNAME") + " IS NOT NULL OR " + column(kRecords, "ZLASTNAME") +
           " IS NOT NULL OR " + column(kRecords, "ZORGANIZATION") + " IS NOT NULL";
  }

  /// The own card is marked on itself, or on a record that stands for all of the book.
  void findOwnCard() {
    if (!columns_.has(kRecords, "ZME")) return;
    const sqlite::Statement rows(connection_, "SELECT ZME FROM ZABCDRECORD WHERE ZME > 0 ORDER BY Z_PK LIMIT 1");
    if (rows && rows.step() == SQLITE_ROW) ownCard_ = rows.integer(0);
  }

  bool readCards() {
    findOwnCard();
    std::string sql = "SELECT Z_PK, ";
    for (const TextColumn& text : kTexts) sql += column(kRecords, text.name) + ", ";
    sql += column(kRecords, "ZDISPLAYFLAGS") + ", " + column(kRecords, "ZCONTAINERWHERECONTACTISME") + ", " +
           column(kRecords, "ZPREFERREDFORLINKNAME") + " FROM ZABCDRECORD WHERE " + whichRecords() + " ORDER BY Z_PK";
    const sqlite::Statement rows(connection_, sql);
    int code = rows ? SQLITE_ROW : SQLITE_ERROR;
    while (rows && (code = rows.step()) == SQLITE_ROW) {
      const std::int64_t row = rows.integer(0);
      if (!places_.emplace(row, cards_.size()).second) continue;
      MacCard& card = cards_.emplace_back();
      for (int i = 0; i < kTextCount; ++i) card.*kTexts[i].member = textAt(rows, i + 1);
      // Without the flag, a card that has nothing but its organization is one.
      card.isOrganization = rows.isNull(kTextCount + 1) ? isOnlyOrganization(card)
                                                        : (rows.integer(kTextCount + 1) & kShownAsOrganization) != 0;
      card.isOwn = rows.integer(kTextCount + 2) > 0 || row == ownCard_;
      card.givesName = rows.integer(kTextCount + 3) > 0;
    }
    return code == SQLITE_DONE;
  }

  bool readValues(const char* table, const char* value, const char* otherwise, std::vector<MacValue> MacCard::*values) {
    if (!columns_.has(table, "ZOWNER")) return true;
    const sqlite::Statement rows(connection_, "SELECT ZOWNER, " + column(table, "ZLABEL") + ", " +
                                                  column(table, value) + ", " + column(table, otherwise) + " FROM " +
                                                  table + " ORDER BY ZOWNER, " + column(table, "ZORDERINGINDEX") +
                                                  ", " + column(table, "Z_PK"));
    int code = rows ? SQLITE_ROW : SQLITE_ERROR;
    while (rows && (code = rows.step()) == SQLITE_ROW) {
      const auto owner = places_.find(rows.integer(0));
      if (owner == places_.end()) continue;
      MacValue entry{textAt(rows, 1), textAt(rows, 2)};
      if (entry.text.empty()) entry.text = textAt(rows, 3);
      if (!entry.text.empty()) (cards_[owner->second].*values).push_back(std::move(entry));
    }
    return code == SQLITE_DONE;
  }

  static std::string textAt(const sqlite::Statement& row, int place) {
    const std::string_view text = row.text(place);
    return text.size() <= kLongestText ? std::string(text) : std::string();
  }

  sqlite3* connection_;
  StoreColumns columns_;
  std::vector<MacCard> cards_;
  std::unordered_map<std::int64_t, std::size_t> places_;  // of the cards, by row
  std::optional<std::int64_t> ownCard_;
};

}  // namespace

StoreResult<std::vector<MacCard>> readMacBook(const std::string& path, const std::shared_ptr<ReadDigests>& digests) {
  StoreLocation location = locationOf(path);
  location.digests = digests;
  const auto snapshot = StoreSnapshot::take(location);
  if (!snapshot) return snapshot.problem();
  sqlite3* handle = nullptr;
  const int code = snapshot.value().open(&handle);
  const sqlite::Connection connection(handle);
  if (code != SQLITE_OK) return StoreProblem{say("'{0}' cannot be opened ({1}).", path, sqlite3_errstr(code))};
  if (auto problem = checkStore(handle, snapshot.value(), macBook())) return *problem;
  Reader reader(handle);
  if (!reader.read()) {
    return StoreProblem{
        say("'{0}' cannot be read completely ({1}); copy it again from the Mac.", path, connection.lastError())};
  }
  return reader.takeCards();
}

}  // namespace chatsum::device
