#include "hosts/device/conversations/ComparableAddress.h"

#include "hosts/device/conversations/FoldedText.h"

namespace chatsum::device {

using Kind = platform::system::ContactAddress::Kind;
using platform::system::ContactAddress;

ComparableAddress::ComparableAddress(std::string_view text, std::string_view region)
    : region_(platform::system::phoneRegionNamed(region)) {
  platform::system::readContactAddress(text, region_, address_);
  if (address_.kind == Kind::kName || address_.kind == Kind::kNothing) folded_ = foldedCase(text);
}

bool ComparableAddress::isNumberOrEmail() const {
  return address_.kind == Kind::kNumber || address_.kind == Kind::kShort || address_.kind == Kind::kEmail;
}

bool ComparableAddress::isSameAs(std::string_view other) const {
  if (other.empty()) return false;
  ContactAddress read;
  platform::system::readContactAddress(other, region_, read);
  if (read.kind != address_.kind) return false;
  switch (read.kind) {
    case Kind::kNumber:
      return compareNumbers(address_, read, region_) != platform::system::SameNumber::kNot;
    case Kind::kEmail:
    case Kind::kShort:
      return address_.text == read.text;
    case Kind::kName:
    case Kind::kNothing:
      break;
  }
  return foldedCase(other) == folded_;
}

std::string roughAddress(std::string_view text) {
  constexpr int kSharedEnd = 7;
  ContactAddress address;
  platform::system::readContactAddress(text, nullptr, address);
  if (address.kind == Kind::kNumber) return address.digits.last(kSharedEnd).text();
  return address.text.empty() ? std::string(text) : address.text;
}

}  // namespace chatsum::device
