// Classes and libraries that code written for a device looks up by name. Any thread.
#pragma once

#include <set>
#include <string>

#include "platform/interfaces/Runtime.h"

namespace chatsum::platform::system {

/// The framework that exports the search for a person by number.
inline constexpr const char* kAddressBookFramework = "/System/Library/Frameworks/AddressBook.framework/AddressBook";

class SystemRuntime final : public Runtime {
 public:
  /// `findPerson` stands behind the symbol of the address-book framework; while it is empty the library has no symbol.
  explicit SystemRuntime(FindPersonFunction findPerson,
                         std::set<std::string, std::less<>> classes = {"UIAlertController"})
      : findPerson_(std::move(findPerson)), classes_(std::move(classes)) {}

  [[nodiscard]] bool hasClass(std::string_view name) const override { return classes_.contains(name); }
  [[nodiscard]] std::shared_ptr<DynamicLibrary> openLibrary(const std::string& path, int mode) override;

 private:
  FindPersonFunction findPerson_;
  std::set<std::string, std::less<>> classes_;
};

}  // namespace chatsum::platform::system
