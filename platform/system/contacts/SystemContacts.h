// The contacts service over the address book of the source. Access is granted at once. Any thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/interfaces/Contacts.h"
#include "platform/interfaces/Files.h"
#include "platform/system/contacts/ContactBook.h"

namespace chatsum::platform::system {

class SystemContacts final : public Contacts {
 public:
  explicit SystemContacts(std::shared_ptr<const ContactBook> book) : book_(std::move(book)) {}
  /// With a book of its own; `files` must outlive it and its stores.
  SystemContacts(Files& files, std::string region)
      : SystemContacts(std::make_shared<ContactBook>(files, std::move(region))) {}

  [[nodiscard]] CNContactStoreRef create() override;
  void requestAccess(const CNContactStoreRef& store, int entityType,
                     std::function<void(bool granted)> completion) override;

 private:
  std::shared_ptr<const ContactBook> book_;
};

}  // namespace chatsum::platform::system
