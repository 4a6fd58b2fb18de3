#include "platform/system/contacts/ContactStore.h"

#include <algorithm>
#include <array>
#include <exception>
#include <limits>

#include "platform/foundation/Utf8.h"
#include "platform/system/contacts/ContactNames.h"

namespace chatsum::platform::system {
namespace {

constexpr std::int64_t kEmailProperty = 4;
constexpr std::int64_t kOrganizationKind = 1;
constexpr const char* kReadingFunction = "chatsum_read_contact_value";

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && sqlite3_strnicmp(a.data(), b.data(), static_cast<int>(a.size())) == 0;
}

/// A table's column for a statement; NULL in the place of one that this store lacks.
std::string column(const std::vector<std::string>& existing, std::string_view name) {
  const bool exists = std::any_of(existing.begin(), existing.end(),
                                  [&](const std::string& other) { return equalIgnoringCase(other, name); });
  return exists ? std::string(name) : "NULL";
}

bool isRecord(std::int64_t number) { return number > 0 && number <= std::numeric_limits<ABRecordID>::max(); }

std::string textAt(const sqlite::Statement& statement, int place) {
  const std::string_view text = statement.text(place);
  return utf8::isValid(text) ? std::string(text) : utf8::repaired(text);
}

}  // namespace

/// Takes the rows of the values' table. An aggregate function sees them without a step of the statement for each: a
/// quarter of the time of a large book.
struct ContactStore::Collector {
  struct Row {
    ABRecordID record;
    ABProperty property;
    std::int64_t label;
    std::size_t start, length;
  };
  std::string& texts;
  std::vector<Row> rows;
  bool isOutOfMemory = false;

  void take(sqlite3_value** arguments) {
    const std::int64_t record = sqlite3_value_int64(arguments[0]);
    const std::int64_t property = sqlite3_value_int64(arguments[1]);
    if (!isRecord(record)) return;
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(arguments[3]));
    const auto length = static_cast<std::size_t>(sqlite3_value_bytes(arguments[3]));
    if (!bytes || length == 0) return;
    const bool hasLabel = sqlite3_value_type(arguments[2]) == SQLITE_INTEGER;
    const bool isEmail = sqlite3_value_type(arguments[1]) == SQLITE_NULL
                             ? std::string_view(bytes, length).find('@') != std::string_view::npos
                             : property == kEmailProperty;
    rows.push_back({static_cast<ABRecordID>(record), isEmail ? ABProperty::kEmail : ABProperty::kPhone,
                    hasLabel ? sqlite3_value_int64(arguments[2]) : -1, texts.size(), length});
    texts.append(bytes, length);
  }

  static void step(sqlite3_context* context, int, sqlite3_value** arguments) {
    auto& self = *static_cast<Collector*>(sqlite3_user_data(context));
    try {
      self.take(arguments);
    } catch (const std::exception&) {
      self.isOutOfMemory = true;
      sqlite3_result_error_nomem(context);
    }
  }

  static void finish(sqlite3_context* context) { sqlite3_result_null(context); }
};

ContactStore::ContactStore(sqlite::Connection connection) : connection_(std::move(connection)) {}

ContactStore::~ContactStore() = default;

ContactStore::Reading::Reading(const ContactStore& store) : store_(store) {
  const std::lock_guard lock(store_.mutex_);
  // Without the transaction everything works too, only more slowly.
  if (store_.readings_++ == 0 && store_.connection_) (void)store_.connection_.execute("BEGIN");
}

ContactStore::Reading::~Reading() {
  const std::lock_guard lock(store_.mutex_);
  if (--store_.readings_ == 0 && store_.connection_) (void)store_.connection_.execute("COMMIT");
}

std::vector<std::string> ContactStore::columnsOf(const std::string& table) const {
  std::vector<std::string> names;
  if (!connection_) return names;
  const sqlite::Statement statement(connection_.get(), "PRAGMA main.table_info(" + table + ")");
  if (!statement) {
    noteProblem(connection_.lastError());
    return names;
  }
  constexpr int kNameColumn = 1;
  int code = SQLITE_OK;
  while ((code = statement.step()) == SQLITE_ROW) names.emplace_back(statement.text(kNameColumn));
  if (code != SQLITE_DONE) noteProblem(connection_.lastError());
  return names;
}

template <class Take>
void ContactStore::forEachRow(const std::string& sql, Take take) const {
  const sqlite::Statement statement(connection_.get(), sql);
  int code = statement ? SQLITE_OK : SQLITE_ERROR;
  while (statement && (code = statement.step()) == SQLITE_ROW) take(statement);
  if (code != SQLITE_DONE) noteProblem(connection_.lastError());
}

ABRecordID ContactStore::recordOf(const sqlite::Statement& statement) const {
  const int code = statement ? statement.step() : SQLITE_ERROR;
  if (code == SQLITE_ROW && isRecord(statement.integer(0))) return static_cast<ABRecordID>(statement.integer(0));
  if (code != SQLITE_ROW && code != SQLITE_DONE) noteProblem(connection_.lastError());
  return -1;
}

void ContactStore::noteProblem(const std::string& what) const {
  if (problem_.empty())
    problem_ = "The address book could not be read completely (" + what + "), so names may be missing.";
}

std::string ContactStore::problem() const {
  const std::lock_guard lock(mutex_);
  return problem_;
}

void ContactStore::readValues() const {
  const std::lock_guard lock(mutex_);
  const auto columns = columnsOf("ABMultiValue");
  if (columns.empty()) return;
  readLabels();
  Collector collector{texts_, {}, false};
  sqlite3_create_function_v2(connection_.get(), kReadingFunction, 4, SQLITE_UTF8, &collector, nullptr, &Collector::step,
                             &Collector::finish, nullptr);
  // The index over properties would only make the rows come out of order and three times as slowly.
  std::string sql = std::string("SELECT ") + kReadingFunction + "(" + column(columns, "record_id") + ", " +
                    column(columns, "property") + ", " + column(columns, "label") + ", " + column(columns, "value") +
                    ") FROM main.ABMultiValue NOT INDEXED";
  if (column(columns, "property") != "NULL") sql += " WHERE property IN (3, 4)";
  {
    const sqlite::Statement statement(connection_.get(), sql);
    if (!statement || statement.step() != SQLITE_ROW) {
      noteProblem(collector.isOutOfMemory ? "out of memory" : connection_.lastError());
    }
  }
  sqlite3_create_function_v2(connection_.get(), kReadingFunction, 4, SQLITE_UTF8, nullptr, nullptr, nullptr, nullptr,
                             nullptr);
  values_.reserve(collector.rows.size());
  for (const auto& row : collector.rows) {
    values_.push_back({row.record, row.property, row.label, std::string_view(texts_).substr(row.start, row.length)});
  }
}

void ContactStore::readLabels() const {
  if (column(columnsOf("ABMultiValueLabel"), "value") == "NULL") return;
  forEachRow("SELECT ROWID, value FROM main.ABMultiValueLabel", [&](const sqlite::Statement& label) {
    if (!label.isNull(1)) labels_.emplace(label.integer(0), textAt(label, 1));
  });
}

const std::vector<ContactValue>& ContactStore::values() const {
  std::call_once(valuesOnce_, [this] { readValues(); });
  return values_;
}

std::vector<std::size_t> ContactStore::valuesOf(ABRecordID record) const {
  const auto& all = values();
  std::call_once(orderOnce_, [&] {
    order_.reserve(all.size());
    for (std::size_t place = 0; place < all.size(); ++place) {
      order_.push_back(static_cast<std::uint64_t>(all[place].record) << 32 | place);
    }
    // Mostly they stand in this order already.
    if (!std::is_sorted(order_.begin(), order_.end())) std::sort(order_.begin(), order_.end());
  });
  std::vector<std::size_t> places;
  if (record < 1) return places;
  const std::uint64_t first = static_cast<std::uint64_t>(record) << 32;
  for (auto at = std::lower_bound(order_.begin(), order_.end(), first); at != order_.end() && *at >> 32 == first >> 32;
       ++at) {
    places.push_back(static_cast<std::size_t>(*at & 0xFFFFFFFFu));
  }
  return places;
}

std::optional<std::string> ContactStore::label(std::int64_t label) const {
  (void)values();
  const std::lock_guard lock(mutex_);
  const auto found = labels_.find(label);
  return found != labels_.end() ? std::optional(found->second) : std::nullopt;
}

const ContactCard* ContactStore::cardLocked(ABRecordID record) const {
  if (!connection_ || record < 1) return nullptr;
  if (const auto known = cards_.find(record); known != cards_.end()) return known->second.get();
  if (!cardStatement_) {
    const auto columns = columnsOf("ABPerson");
    if (columns.empty()) return nullptr;
    std::string sql = "SELECT ";
    for (const char* name : {"Prefix", "First", "Middle", "Last", "Suffix", "Nickname", "Organization", "DisplayName",
                             "CompositeNameFallback", "Kind", "guid", "PersonLink"}) {
      sql += column(columns, name) + ", ";
    }
    cardStatement_ = sqlite::Statement(connection_.get(), sql + "1 FROM main.ABPerson WHERE ROWID = ?1");
    if (!cardStatement_) {
      noteProblem(connection_.lastError());
      return nullptr;
    }
  }
  const sqlite::Statement& row = cardStatement_;
  row.bind(1, static_cast<std::int64_t>(record));
  std::unique_ptr<ContactCard> card;
  const int code = row.step();
  if (code == SQLITE_ROW) {
    ContactNameParts parts;
    parts.prefix = textAt(row, 0);
    parts.first = textAt(row, 1);
    parts.middle = textAt(row, 2);
    parts.last = textAt(row, 3);
    parts.suffix = textAt(row, 4);
    parts.nickname = textAt(row, 5);
    parts.organization = textAt(row, 6);
    parts.displayName = textAt(row, 7);
    parts.compositeNameFallback = textAt(row, 8);
    parts.isOrganization = row.integer(9) == kOrganizationKind;
    card = std::make_unique<ContactCard>();
    card->record = record;
    card->name = shownContactName(parts);
    card->identifier = textAt(row, 10);
    card->link = row.isNull(11) ? -1 : row.integer(11);
  } else if (code != SQLITE_DONE) {
    noteProblem(connection_.lastError());
  }
  row.reset();
  return cards_.emplace(record, std::move(card)).first->second.get();
}

const ContactCard* ContactStore::card(ABRecordID record) const {
  const std::lock_guard lock(mutex_);
  return cardLocked(record);
}

void ContactStore::readLinks() const {
  if (areLinksRead_) return;
  areLinksRead_ = true;
  const auto columns = columnsOf("ABPerson");
  const std::string preferred = column(columns, "IsPreferredName");
  // The comparison lets the index over links serve, which passes the many single cards by.
  forEachRow(
      "SELECT ROWID, PersonLink FROM main.ABPerson WHERE PersonLink > -1 AND " + preferred + " = 1 ORDER BY ROWID",
      [&](const sqlite::Statement& card) {
        if (!isRecord(card.integer(0))) return;
        namingCards_.emplace(card.integer(1), static_cast<ABRecordID>(card.integer(0)));
      });
  // What the link itself says goes first.
  if (column(columnsOf("ABPersonLink"), "PreferredNamePersonID") == "NULL") return;
  forEachRow(
      "SELECT person.ROWID, person.PersonLink FROM main.ABPersonLink link JOIN main.ABPerson person "
      "ON person.ROWID = link.PreferredNamePersonID WHERE person.PersonLink = link.ROWID",
      [&](const sqlite::Statement& link) {
        const std::int64_t record = link.integer(0);
        if (isRecord(record)) namingCards_.insert_or_assign(link.integer(1), static_cast<ABRecordID>(record));
      });
}

ABRecordID ContactStore::namingCardLocked(ABRecordID record) const {
  const ContactCard* own = cardLocked(record);
  if (!own || own->link == -1) return -1;
  readLinks();
  const auto found = namingCards_.find(own->link);
  return found != namingCards_.end() ? found->second : -1;
}

ABRecordID ContactStore::namingCard(ABRecordID record) const {
  const std::lock_guard lock(mutex_);
  return namingCardLocked(record);
}

std::string ContactStore::personName(ABRecordID record) const {
  {
    const std::lock_guard lock(mutex_);
    const ContactCard* own = cardLocked(record);
    if (!own) return {};
    const ContactCard* naming = cardLocked(namingCardLocked(record));
    if (naming && !naming->name.empty()) return naming->name;
    if (!own->name.empty()) return own->name;
  }
  const auto places = valuesOf(record);
  for (const ABProperty property : {ABProperty::kEmail, ABProperty::kPhone}) {
    for (const std::size_t place : places) {
      if (values_[place].property == property) return utf8::repaired(values_[place].text);
    }
  }
  return {};
}

ABRecordID ContactStore::recordWithIdentifier(std::string_view identifier) const {
  const std::lock_guard lock(mutex_);
  if (!connection_ || identifier.empty()) return -1;
  if (column(columnsOf("ABPerson"), "guid") == "NULL") return -1;
  const sqlite::Statement statement(connection_.get(), "SELECT min(ROWID) FROM main.ABPerson WHERE guid = ?1");
  if (statement) statement.bind(1, identifier);
  return recordOf(statement);
}

ABRecordID ContactStore::ownCard() const {
  const std::lock_guard lock(mutex_);
  if (!connection_ || column(columnsOf("ABStore"), "MeIdentifier") == "NULL") return -1;
  const sqlite::Statement statement(
      connection_.get(), "SELECT MeIdentifier FROM main.ABStore WHERE MeIdentifier > 0 ORDER BY ROWID LIMIT 1");
  const ABRecordID record = recordOf(statement);
  return cardLocked(record) ? record : -1;
}

}  // namespace chatsum::platform::system
