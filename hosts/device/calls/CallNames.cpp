#include "hosts/device/calls/CallNames.h"

#include <algorithm>

#include "hosts/device/conversations/FoldedText.h"
#include "hosts/device/language/Say.h"
#include "platform/system/phone/PhoneNumbers.h"

namespace chatsum::device {

const std::optional<KnownPerson>& CallNames::find(const std::string& address) {
  const auto [known, isNew] = known_.try_emplace(address);
  if (isNew && findPerson_) known->second = findPerson_(address);
  return known->second;
}

void CallNames::name(Call& call) {
  if (call.people.empty() && call.unknownPeople == 0) call.people.emplace_back();
  const bool isOne = call.people.size() == 1 && call.unknownPeople == 0;
  for (CallPerson& person : call.people) {
    if (!person.address.empty()) {
      // A card without a name leaves the address.
      const ConversationMember member = memberFor(person.address, find(person.address));
      person.isNamed = member.name != person.address;
      person.name = member.name;
    }
    if (!person.isNamed && isOne && !call.cachedName.empty()) {
      person.isNamed = true;
      person.name = call.cachedName;
    }
    if (person.isNamed) continue;
    if (person.address.empty()) {
      person.name = person.isEncrypted ? say("(encrypted)") : say("No caller ID");
    } else {
      const bool hasCountry = call.country.size() == 2;
      person.name = platform::system::formattedLikeAPhone(person.address, hasCountry ? call.country : region_);
    }
  }
}

WantedPerson::WantedPerson(std::string_view words, std::string_view region)
    : address_(words, region), foldedName_(foldedCase(words)) {}

bool WantedPerson::isIn(const Call& call) const {
  return std::any_of(call.people.begin(), call.people.end(), [&](const CallPerson& person) {
    return foldedCase(person.name) == foldedName_ || address_.isSameAs(person.address);
  });
}

}  // namespace chatsum::device
