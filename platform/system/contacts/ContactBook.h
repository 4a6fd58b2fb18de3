// The address book of the source, opened at the first need and shared by everything that asks about people. Any thread.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/interfaces/AddressBook.h"
#include "platform/interfaces/Files.h"
#include "platform/sqlite/Connection.h"
#include "platform/system/contacts/ContactMatcher.h"
#include "platform/system/contacts/ContactStore.h"

namespace chatsum::platform::system {

/// The device's path of the AddressBook store.
inline constexpr const char* kAddressBookPath = "/var/mobile/Library/AddressBook/AddressBook.sqlitedb";

class ContactBook {
 public:
  /// Opens the store; an empty connection stands for a book without cards. Called once, on the thread that asks first.
  /// It must not itself ask this book about people.
  using Opener = std::function<sqlite::Connection()>;

  /// `region` (ISO 3166 alpha-2, may be empty) is where numbers without a country code are at home.
  ContactBook(Opener opener, std::string region) : opener_(std::move(opener)), region_(std::move(region)) {}
  /// Opens the device's store through `files`, which must outlive the book.
  ContactBook(Files& files, std::string region);

  [[nodiscard]] const ContactStore& store() const;
  [[nodiscard]] const ContactMatcher& matcher() const;
  [[nodiscard]] const std::string& region() const { return region_; }

  /// A card's identifier: its own, else one made of its record, which stays the same as long as the store does. None
  /// when there is no such card.
  [[nodiscard]] std::optional<std::string> identifierOf(ABRecordID record) const;
  /// The card with an identifier, -1 when there is none.
  [[nodiscard]] ABRecordID recordOf(const std::string& identifier) const;

 private:
  Opener opener_;
  std::string region_;
  mutable std::once_flag once_;
  mutable std::unique_ptr<ContactStore> store_;
  mutable std::unique_ptr<ContactMatcher> matcher_;
};

/// A card of a book as the address book hands it out; nullptr when there is no such card.
[[nodiscard]] ABRecordRef recordInBook(const std::shared_ptr<const ContactBook>& book, ABRecordID record);

}  // namespace chatsum::platform::system
