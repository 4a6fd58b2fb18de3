// From a message handle to a contact: the look-ups in the address-book database, the contacts service and the index.

#include <mutex>
#include <semaphore>
#include <string>
#include <utility>
#include <vector>

#include "libchatsum/ChatsumUtils/AddressBookIndex.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/ChatsumUtils/RowLoop.h"
#include "libchatsum/ChatsumUtils/SqlText.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/foundation/Utf8.h"
#include "platform/interfaces/Platform.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum {
namespace {

constexpr const char* kAddressBookPath = "/var/mobile/Library/AddressBook/AddressBook.sqlitedb";
constexpr const char* kChangeNotification = "__ABDataBaseChangedByOtherProcessNotification";
constexpr const char* kFrameworkPath = "/System/Library/Frameworks/AddressBook.framework/AddressBook";
constexpr int kLoadNow = 2;                      // RTLD_NOW
constexpr std::size_t kShortestIndexed = 6;      // shorter plain forms (short codes) are asked of the contacts service
constexpr std::size_t kComparedCharacters = 10;  // a country prefix before these does not matter

void logPrepareError(const char* operation, int line, const sqlite::Connection& connection) {
  logging::error(operation, line, "Error while preparing statement. Error: '" + connection.lastError() + "'");
}

/// Runs a look-up whose first row's first column is a record; -1 when there is no row.
std::int64_t firstRecord(const std::string& sql, const char* operation, int prepareLine, int openLine) {
  sqlite3* handle = nullptr;
  const int opened = platform::current().files.openDatabase(kAddressBookPath, &handle);
  const sqlite::Connection connection(handle);
  if (opened != SQLITE_OK) {
    logging::error(operation, openLine, "2. Error while opening connection.");
    return -1;
  }
  const sqlite::Statement statement(connection.get(), sql);
  if (!statement) {
    logPrepareError(operation, prepareLine, connection);
    return -1;
  }
  return statement.step() == SQLITE_DONE ? -1 : sqlite3_column_int(statement.get(), 0);
}

/// Asks the contacts service who a number belongs to, and the address book for that contact's record.
platform::ABRecordID recordFromContacts(std::string_view number) {
  constexpr const char* kOperation = "+[ChatsumUtils addressBookRecordForPhoneNumber:addressBook:]_block_invoke";
  constexpr int kErrorLine = 392;
  const platform::CNContactStoreRef store = ChatsumUtils::contactStore();
  const auto answer = store->contactsForPhoneNumber(number);
  if (!answer) return -1;
  if (answer->error) {
    logging::error(kOperation, kErrorLine,
                   "Error while getting contacts for phone number " + std::string(number) +
                       ". Error : " + answer->error->localizedDescription() + ".");
    return -1;
  }
  if (answer->contacts.empty()) return -1;
  const platform::CNContact& contact = answer->contacts.front();
  for (const auto& phone : contact.phoneNumbers) {
    const std::int64_t record = ChatsumUtils::getMultiValueRecordID(phone.value);
    if (record > 0) return static_cast<platform::ABRecordID>(record);
  }
  const platform::ABRecordRef person = store->publicABPersonFromContact(contact);
  return person ? person->recordID() : -1;
}

/// Keeps something open for the life of the process, the newest of its kind, within sight of leak checkers.
template <class Kept>
void keepOpen(Kept newest) {
  static std::mutex mutex;
  static auto& kept = *new Kept;
  {
    const std::lock_guard lock(mutex);
    std::swap(kept, newest);
  }
}

/// The way of systems before 11: a function of the AddressBook framework, looked up by name.
platform::ABRecordID recordFromFramework(std::string_view handle) {
  auto& runtime = platform::current().runtime;
  const auto library = runtime.openLibrary(kFrameworkPath, kLoadNow);
  if (!library) return -1;
  keepOpen(library);
  logging::trace("************ Loading AddressBook.framework is success.");
  const platform::FindPersonFunction find = library->findPersonFunction("ABCFindPersonMatchingPhoneNumber");
  if (!find) {
    logging::trace("************ Unable to get function pointer for 'ABCFindPersonMatchingPhoneNumber'***");
    return -1;
  }
  logging::trace("************ Loading ABCFindPersonMatchingPhoneNumber is success.");
  const platform::ABRecordRef person = find(ChatsumUtils::addressBook(), handle, 0, 0);
  return person ? person->recordID() : -1;
}

/// The index of the first value that is `wanted`, its label if it has one.
template <class IsEqual>
bool findLabel(const platform::ABRecordRef& person, platform::ABProperty property, std::string& label,
               IsEqual isEqual) {
  const auto values = person ? person->values(property) : std::nullopt;
  if (!values) return false;
  for (const auto& entry : *values) {
    if (!isEqual(entry.value)) continue;
    if (entry.label) label = *entry.label;
    return entry.label.has_value();
  }
  return false;
}

}  // namespace

void ChatsumUtils::load() {
  platform::current().darwinNotifications.addObserver(nullptr, &ChatsumUtils::addressBookChanged, kChangeNotification,
                                                      platform::SuspensionBehaviour::kHold);
}

void ChatsumUtils::addressBookChanged(void*, std::string_view name) {
  if (name == kChangeNotification) platform::current().dispatch.asyncOnGlobal([] { loadAddressBook(); });
}

void ChatsumUtils::loadAddressBook() {
  constexpr const char* kOperation = "+[ChatsumUtils loadAddressBook]";
  constexpr int kPrepareLine = 294, kStepLine = 303;
  auto& system = platform::current();
  const std::string host = system.mainBundle.identifier();
  if (host != "com.apple.MobileSMS" && host != "com.apple.mobilephone" && host != "com.apple.facetime") return;
  if (!isIOS11()) return;
  addressBookIndexSlot::publish(std::make_shared<AddressBookIndex>());

  sqlite3* handle = nullptr;
  const int opened = system.files.openDatabase(kAddressBookPath, &handle);
  sqlite::Connection connection(handle);
  if (opened != SQLITE_OK) return;
  if (const sqlite::Statement statement(connection.get(), "SELECT record_id, value FROM ABMULTIVALUE"); !statement) {
    logPrepareError(kOperation, kPrepareLine, connection);
  } else {
    std::vector<std::pair<std::string, platform::ABRecordID>> rows;
    const bool isComplete = forEachRow(statement, [&] {
      const auto* value = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 1));
      if (value) rows.emplace_back(plainPhoneNumber(value), sqlite3_column_int(statement.get(), 0));
    });
    if (!isComplete) {
      logging::error(kOperation, kStepLine, "Error while reading rows. Error: '" + connection.lastError() + "'");
    }
    addressBookIndexSlot::publish(std::make_shared<AddressBookIndex>(rows));
  }
  keepOpen(std::move(connection));  // on purpose; while the index stays empty every look-up comes here
}

std::string ChatsumUtils::plainPhoneNumber(std::string_view number) {
  if (number.empty()) return platform::current().mainBundle.localizedString("Unknown");
  if (isEmailAddress(number)) return std::string(number);
  std::string plain;
  plain.reserve(number.size());
  for (std::size_t i = 0; i < number.size(); ++i) {
    const char c = number[i];
    if (c == '(' || c == ')' || c == ' ' || c == '-') continue;
    if (c == '\xC2' && i + 1 < number.size() && number[i + 1] == '\xA0') {  // the no-break space
      ++i;
      continue;
    }
    plain += c;
  }
  return plain;
}

std::string ChatsumUtils::formattedPhoneNumber(std::string_view number) {
  const auto& addressBook = platform::current().addressBook;
  if (isEmailAddress(number)) return std::string(number);
  // A service code such as #31# stays as it is; only what follows the last "#" is a number.
  if (number.starts_with('#')) {
    const auto last = number.rfind('#');
    return std::string(number.substr(0, last + 1)) + addressBook.formattedPhoneNumber(number.substr(last + 1));
  }
  return addressBook.formattedPhoneNumber(number);
}

bool ChatsumUtils::isEmailAddress(std::string_view text) { return text.find('@') != std::string_view::npos; }

std::int64_t ChatsumUtils::getMultiValueRecordID(std::string_view phoneNumber) {
  constexpr int kPrepareLine = 340, kOpenLine = 346;
  return firstRecord("SELECT record_id FROM ABMULTIVALUE WHERE VALUE LIKE '" + sqlQuoted(phoneNumber) +
                         "' OR VALUE LIKE '" + sqlQuoted(formattedPhoneNumber(phoneNumber)) + "'",
                     "+[ChatsumUtils getMultiValueRecordID:]", kPrepareLine, kOpenLine);
}

std::int64_t ChatsumUtils::getMultiValueEntryID(std::string_view value) {
  constexpr int kPrepareLine = 364, kOpenLine = 370;
  return firstRecord(
      "SELECT record_id FROM ABMULTIVALUEENTRY LEFT JOIN ABMULTIVALUE ON ABMULTIVALUEENTRY.parent_id = "
      "ABMULTIVALUE.UID "
      "WHERE ABMULTIVALUEENTRY.value LIKE '" +
          sqlQuoted(value) + "'",
      "+[ChatsumUtils getMultiValueEntryID:]", kPrepareLine, kOpenLine);
}

platform::ABRecordID ChatsumUtils::addressBookRecordForPhoneNumber(std::string_view handle,
                                                                   const platform::ABAddressBookRef&) {
  if (!isIOS11()) return recordFromFramework(handle);
  const std::string plain = plainPhoneNumber(handle);
  if (utf8::utf16Length(plain) < kShortestIndexed) return recordFromContacts(handle);
  if (addressBookIndexSlot::current()->empty()) loadAddressBook();
  return addressBookIndexSlot::current()->recordForKeyContaining(plain);
}

std::string ChatsumUtils::label(const platform::ABRecordRef& person, std::string_view forPhoneNumber) {
  const std::string handle = plainPhoneNumber(forPhoneNumber);
  const std::string_view handleEnd = utf8::lastUtf16(handle, kComparedCharacters);
  std::string label = "unknown";
  const bool found = findLabel(person, platform::ABProperty::kPhone, label, [&](const std::string& value) {
    const std::string plain = plainPhoneNumber(value);
    return utf8::lastUtf16(plain, kComparedCharacters) == handleEnd;
  });
  if (!found) {
    findLabel(person, platform::ABProperty::kEmail, label, [&](const std::string& value) { return value == handle; });
  }
  return platform::current().addressBook.localizedLabel(label);
}

platform::CNContactStoreRef ChatsumUtils::contactStore() {
  constexpr int kContactsEntityType = 0;
  auto& contacts = platform::current().contacts;
  const platform::CNContactStoreRef store = contacts.create();
  const auto answered = std::make_shared<std::binary_semaphore>(0);
  contacts.requestAccess(store, kContactsEntityType, [answered](bool) { answered->release(); });
  answered->acquire();
  return store;
}

platform::ABAddressBookRef ChatsumUtils::addressBook() {
  auto& service = platform::current().addressBook;
  const platform::ABAddressBookRef book = service.create();
  const auto answered = std::make_shared<std::binary_semaphore>(0);
  service.requestAccess(book, [answered](bool) { answered->release(); });
  answered->acquire();
  return book;
}

}  // namespace chatsum
