// What the running process offers: classes by name, and functions of dynamic libraries.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/interfaces/AddressBook.h"

namespace chatsum::platform {

/// Finds a person for a number in an address book; the two integers are options that callers leave 0.
using FindPersonFunction = std::function<ABRecordRef(const ABAddressBookRef&, std::string_view number, int, int)>;

/// A loaded dynamic library.
class DynamicLibrary {
 public:
  virtual ~DynamicLibrary() = default;
  /// The function behind a symbol; empty when the library has no such symbol.
  [[nodiscard]] virtual FindPersonFunction findPersonFunction(std::string_view symbol) const = 0;
};

class Runtime {
 public:
  virtual ~Runtime() = default;
  [[nodiscard]] virtual bool hasClass(std::string_view name) const = 0;
  /// Loads a library (mode as dlopen has it); nullptr when it cannot be loaded.
  [[nodiscard]] virtual std::shared_ptr<DynamicLibrary> openLibrary(const std::string& path, int mode) = 0;
};

}  // namespace chatsum::platform
