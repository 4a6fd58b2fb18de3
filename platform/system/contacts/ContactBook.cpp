#include "platform/system/contacts/ContactBook.h"

#include <charconv>
#include <utility>

#include "platform/foundation/Utf8.h"

namespace chatsum::platform::system {
namespace {

constexpr std::string_view kMadeUpIdentifier = "card-";

class BookRecord final : public ABRecord {
 public:
  BookRecord(std::shared_ptr<const ContactBook> book, ABRecordID record) : book_(std::move(book)), record_(record) {}

  [[nodiscard]] ABRecordID recordID() const override { return record_; }

  [[nodiscard]] std::optional<std::vector<ABLabelledValue>> values(ABProperty property) const override {
    const ContactStore& store = book_->store();
    std::vector<ABLabelledValue> found;
    for (const std::size_t place : store.valuesOf(record_)) {
      const ContactValue& value = store.values()[place];
      if (value.property == property) found.push_back({store.label(value.label), utf8::repaired(value.text)});
    }
    if (found.empty()) return std::nullopt;
    return found;
  }

 private:
  std::shared_ptr<const ContactBook> book_;
  ABRecordID record_;
};

}  // namespace

ContactBook::ContactBook(Files& files, std::string region)
    : ContactBook(
          [&files] {
            sqlite3* handle = nullptr;
            // Without the file there are no cards, and nothing must be created in its place.
            if (!files.exists(kAddressBookPath)) return sqlite::Connection();
            const int code = files.openDatabase(kAddressBookPath, &handle);
            sqlite::Connection connection(handle);
            return code == SQLITE_OK ? std::move(connection) : sqlite::Connection();
          },
          std::move(region)) {}

const ContactStore& ContactBook::store() const {
  std::call_once(once_, [this] {
    store_ = std::make_unique<ContactStore>(opener_());
    matcher_ = std::make_unique<ContactMatcher>(*store_, region_);
  });
  return *store_;
}

const ContactMatcher& ContactBook::matcher() const {
  (void)store();
  return *matcher_;
}

std::optional<std::string> ContactBook::identifierOf(ABRecordID record) const {
  const ContactCard* card = store().card(record);
  if (!card) return std::nullopt;
  return card->identifier.empty() ? std::string(kMadeUpIdentifier) + std::to_string(record) : card->identifier;
}

ABRecordID ContactBook::recordOf(const std::string& identifier) const {
  if (const ABRecordID record = store().recordWithIdentifier(identifier); record != -1) return record;
  if (!identifier.starts_with(kMadeUpIdentifier)) return -1;
  ABRecordID record = -1;
  const char* end = identifier.data() + identifier.size();
  const auto read = std::from_chars(identifier.data() + kMadeUpIdentifier.size(), end, record);
  return read.ec == std::errc() && read.ptr == end && identifierOf(record) == identifier ? record : -1;
}

ABRecordRef recordInBook(const std::shared_ptr<const ContactBook>& book, ABRecordID record) {
  return book->store().card(record) ? std::make_shared<BookRecord>(book, record) : nullptr;
}

}  // namespace chatsum::platform::system
