// Numbers and addresses that several people have, so that nobody can say who is meant. No state, any thread.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "hosts/device/contacts/DeviceContacts.h"

namespace chatsum::device {

/// A sentence for each of the addresses that stands on the cards of several people: who they are, and what is shown
/// instead of a name. `shown` is address → what stands for it. Of very many only the first ones are told one by one.
[[nodiscard]] std::vector<std::string> notesOnSharedAddresses(const DeviceContacts& contacts,
                                                              const std::map<std::string, std::string>& shown);

}  // namespace chatsum::device
