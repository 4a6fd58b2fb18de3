#include "hosts/device/contacts/DeviceContacts.h"

#include "hosts/device/language/Say.h"
#include "platform/system/contacts/ContactLabels.h"

namespace chatsum::device {

ResolvedHandle DeviceContacts::resolve(std::string_view handle) const {
  const auto match = book_->matcher().match(handle);
  const auto& store = book_->store();
  ResolvedHandle resolved;
  resolved.ambiguous = match.isAmbiguous();
  for (const platform::ABRecordID record : match.candidates) resolved.candidates.push_back(store.personName(record));
  if (match.record == -1) return resolved;
  resolved.record = match.record;
  resolved.name = store.personName(match.record);
  const auto label = store.label(store.values()[match.value].label);
  if (label) resolved.label = platform::system::contactLabelInWords(*label, &translations());
  return resolved;
}

std::string DeviceContacts::ownName() const { return book_->store().personName(book_->store().ownCard()); }

}  // namespace chatsum::device
