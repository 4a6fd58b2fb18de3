#include "platform/system/runtime/SystemRuntime.h"

namespace chatsum::platform::system {
namespace {

class AddressBookLibrary final : public DynamicLibrary {
 public:
  explicit AddressBookLibrary(FindPersonFunction findPerson) : findPerson_(std::move(findPerson)) {}
  [[nodiscard]] FindPersonFunction findPersonFunction(std::string_view symbol) const override {
    return symbol == "ABCFindPersonMatchingPhoneNumber" ? findPerson_ : FindPersonFunction();
  }

 private:
  FindPersonFunction findPerson_;
};

}  // namespace

std::shared_ptr<DynamicLibrary> SystemRuntime::openLibrary(const std::string& path, int /*mode*/) {
  if (path != kAddressBookFramework) return nullptr;
  return std::make_shared<AddressBookLibrary>(findPerson_);
}

}  // namespace chatsum::platform::system
