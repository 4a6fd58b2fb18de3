#include "hosts/device/contacts/HandleAddressBook.h"

#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>

#include "hosts/device/language/Say.h"

namespace chatsum::device {

using platform::ABLabelledValue;
using platform::ABProperty;
using platform::ABRecordID;
using platform::ABRecordRef;
using platform::system::ContactBook;

/// Which handles are whose, found out at the first question.
class HandleOwners {
 public:
  HandleOwners(std::shared_ptr<const ContactBook> book, std::vector<std::string> handles)
      : book_(std::move(book)), handles_(std::move(handles)) {}

  [[nodiscard]] const std::shared_ptr<const ContactBook>& book() const { return book_; }

  /// The handles of a card with their labels.
  [[nodiscard]] const std::vector<ABLabelledValue>& handlesOf(ABRecordID record) const {
    static const std::vector<ABLabelledValue> kNone;
    std::call_once(once_, [this] { findOwners(); });
    const auto found = owned_.find(record);
    return found != owned_.end() ? found->second : kNone;
  }

 private:
  void findOwners() const {
    const auto& store = book_->store();
    for (const std::string& handle : handles_) {
      const auto match = book_->matcher().match(handle);
      if (match.record == -1) continue;
      owned_[match.record].push_back({store.label(store.values()[match.value].label), handle});
    }
  }

  std::shared_ptr<const ContactBook> book_;
  std::vector<std::string> handles_;
  mutable std::once_flag once_;
  mutable std::unordered_map<ABRecordID, std::vector<ABLabelledValue>> owned_;
};

namespace {

bool isEmailAddress(const std::string& text) { return text.find('@') != std::string::npos; }

/// A card whose values begin with its handles. An e-mail address kept among the numbers stands with the addresses, for
/// the last ten characters of two addresses are often the same.
class HandleRecord final : public platform::ABRecord {
 public:
  HandleRecord(ABRecordRef card, std::vector<ABLabelledValue> handles)
      : card_(std::move(card)), handles_(std::move(handles)) {}

  [[nodiscard]] ABRecordID recordID() const override { return card_->recordID(); }

  [[nodiscard]] std::optional<std::vector<ABLabelledValue>> values(ABProperty property) const override {
    const bool wantsEmails = property == ABProperty::kEmail;
    std::vector<ABLabelledValue> found;
    const auto take = [&](const std::vector<ABLabelledValue>& values) {
      for (const ABLabelledValue& value : values) {
        if (isEmailAddress(value.value) == wantsEmails) found.push_back(value);
      }
    };
    take(handles_);
    take(card_->values(ABProperty::kPhone).value_or(std::vector<ABLabelledValue>()));
    if (wantsEmails) take(card_->values(ABProperty::kEmail).value_or(std::vector<ABLabelledValue>()));
    if (found.empty()) return std::nullopt;
    return found;
  }

 private:
  ABRecordRef card_;
  std::vector<ABLabelledValue> handles_;
};

class HandleBook final : public platform::ABAddressBook {
 public:
  explicit HandleBook(std::shared_ptr<const HandleOwners> owners) : owners_(std::move(owners)) {}

  [[nodiscard]] ABRecordRef personWithRecordID(ABRecordID identifier) const override {
    ABRecordRef card = platform::system::recordInBook(owners_->book(), identifier);
    if (!card) return nullptr;
    return std::make_shared<HandleRecord>(std::move(card), owners_->handlesOf(identifier));
  }

 private:
  std::shared_ptr<const HandleOwners> owners_;
};

}  // namespace

HandleAddressBook::HandleAddressBook(std::shared_ptr<const ContactBook> book, std::vector<std::string> handles)
    : system_(book, &translations()), owners_(std::make_shared<HandleOwners>(std::move(book), std::move(handles))) {}

platform::ABAddressBookRef HandleAddressBook::create() { return std::make_shared<HandleBook>(owners_); }

}  // namespace chatsum::device
