#include "hosts/device/sample/ContactWriter.h"

#include <fmt/format.h>

#include "hosts/device/sample/StoreSchema.h"

namespace chatsum::device {

namespace {

constexpr int kPhoneProperty = 3;
constexpr int kEmailProperty = 4;
constexpr int kAddressProperty = 5;

// Keys of the parts of a postal address, in the order of their rows.
constexpr std::string_view kAddressKeys[] = {"Street", "City"};

std::string lastFourDigits(std::string_view number) {
  std::string digits;
  for (char character : number) {
    if (character >= '0' && character <= '9') digits += character;
  }
  return digits.size() > 4 ? digits.substr(digits.size() - 4) : digits;
}

void bindOptional(const sqlite::Statement& statement, int parameter, std::string_view text) {
  if (text.empty()) {
    statement.bindNull(parameter);
  } else {
    statement.bind(parameter, text);
  }
}

}  // namespace

ContactWriter::ContactWriter(const std::filesystem::path& path, Placement placement)
    : file_(path, placement, addressBookTables()) {
  file_.execute(
      "INSERT INTO _SqliteDatabaseProperties (key, value) VALUES ('_ClientVersion', '84');"
      "INSERT INTO ABStore (ROWID, Name, Type, Enabled) VALUES (0, 'Local', 0, 0)");
  for (std::string_view key : kAddressKeys) {
    file_.execute(fmt::format("INSERT INTO ABMultiValueEntryKey (value) VALUES ('{}')", key));
  }
  prepare(people_,
          "INSERT INTO ABPerson (First, Last, Middle, Organization, Nickname, Kind, StoreID, PersonLink, "
          "IsPreferredName, guid) VALUES (?, ?, ?, ?, ?, ?, 0, ?, ?, ?)");
  prepare(values_,
          "INSERT INTO ABMultiValue (UID, record_id, property, identifier, label, value, guid) "
          "VALUES (?, ?, ?, ?, ?, ?, ?)");
  prepare(labels_, "INSERT INTO ABMultiValueLabel (value) VALUES (?)");
  prepare(lastFours_, "INSERT INTO ABPhoneLastFour (multivalue_id, value) VALUES (?, ?)");
  prepare(entries_, "INSERT INTO ABMultiValueEntry (parent_id, key, value) VALUES (?, ?, ?)");
  prepare(links_, "INSERT INTO ABPersonLink (guid) VALUES (?)");
}

ContactWriter::~ContactWriter() = default;

void ContactWriter::prepare(sqlite::Statement& statement, std::string_view sql) {
  if (file_.failed()) return;
  statement = sqlite::Statement(file_.connection(), sql);
  if (!statement) file_.noteFailure();
}

bool ContactWriter::run(const sqlite::Statement& statement) {
  const bool done = statement.step() == SQLITE_DONE;
  statement.reset();
  if (!done) file_.noteFailure();
  return done;
}

std::int64_t ContactWriter::addLink() {
  if (file_.failed()) return 0;
  const std::string guid = fmt::format("link-{}", sqlite3_total_changes(file_.connection()));
  links_.bind(1, guid);
  return run(links_) ? sqlite3_last_insert_rowid(file_.connection()) : 0;
}

std::int64_t ContactWriter::addContact(const ContactCard& card) {
  if (file_.failed()) return 0;
  const std::string guid = fmt::format("person-{}", sqlite3_total_changes(file_.connection()));
  bindOptional(people_, 1, card.first);
  bindOptional(people_, 2, card.last);
  bindOptional(people_, 3, card.middle);
  bindOptional(people_, 4, card.organization);
  bindOptional(people_, 5, card.nickname);
  people_.bind(6, std::int64_t{card.isOrganization});
  people_.bind(7, card.link);
  people_.bind(8, std::int64_t{card.preferredName});
  people_.bind(9, guid);
  if (!run(people_)) return 0;
  const std::int64_t person = sqlite3_last_insert_rowid(file_.connection());

  int identifier = 0;
  for (const LabelledValue& phone : card.phones) {
    const std::int64_t row = addValue(person, kPhoneProperty, identifier++, phone);
    const std::string digits = lastFourDigits(phone.value);
    lastFours_.bind(1, row);
    lastFours_.bind(2, digits);
    run(lastFours_);
  }
  identifier = 0;
  for (const LabelledValue& email : card.emails) addValue(person, kEmailProperty, identifier++, email);
  if (card.link > 0 && card.preferredName) {
    file_.execute(
        fmt::format("UPDATE ABPersonLink SET PreferredNamePersonID = {} WHERE ROWID = {}", person, card.link));
  }
  if (!card.street.empty() || !card.city.empty()) addPostalAddress(person, card);
  return file_.failed() ? 0 : person;
}

std::int64_t ContactWriter::labelRow(std::string_view label) {
  const auto known = labelRows_.find(label);
  if (known != labelRows_.end()) return known->second;
  labels_.bind(1, label);
  if (!run(labels_)) return 0;
  const std::int64_t row = sqlite3_last_insert_rowid(file_.connection());
  labelRows_.emplace(label, row);
  return row;
}

std::int64_t ContactWriter::addValue(std::int64_t person, int property, int identifier, const LabelledValue& value) {
  const std::int64_t row = ++valueCount_;
  const std::string guid = fmt::format("value-{}", row);
  values_.bind(1, row);
  values_.bind(2, person);
  values_.bind(3, std::int64_t{property});
  values_.bind(4, std::int64_t{identifier});
  if (value.label.empty()) {
    values_.bindNull(5);
  } else {
    values_.bind(5, labelRow(value.label));
  }
  bindOptional(values_, 6, value.value);
  values_.bind(7, guid);
  run(values_);
  return row;
}

void ContactWriter::addPostalAddress(std::int64_t person, const ContactCard& card) {
  // The value itself is NULL, the parts stand in entries of their own.
  const std::int64_t row = addValue(person, kAddressProperty, 0, {"_$!<Home>!$_", ""});
  const std::string_view parts[] = {card.street, card.city};
  for (std::size_t part = 0; part < std::size(parts); ++part) {
    if (parts[part].empty()) continue;
    entries_.bind(1, row);
    entries_.bind(2, static_cast<std::int64_t>(part + 1));
    entries_.bind(3, parts[part]);
    run(entries_);
  }
}

std::optional<std::string> ContactWriter::finish() {
  for (sqlite::Statement* statement : {&people_, &values_, &labels_, &lastFours_, &entries_, &links_}) {
    *statement = sqlite::Statement();
  }
  return file_.finish(addressBookIndexes());
}

}  // namespace chatsum::device
