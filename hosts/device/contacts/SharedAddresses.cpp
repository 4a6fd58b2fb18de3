#include "hosts/device/contacts/SharedAddresses.h"

#include <cstddef>

#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kMostNotes = 10, kMostNames = 5;

/// "Ann Lee, Bob Ray, 3 others".
std::string listOf(const std::vector<std::string>& names) {
  std::string list;
  for (std::size_t i = 0; i < names.size(); ++i) {
    list += i == 0 ? "" : ", ";
    if (i + 1 == kMostNames && names.size() > kMostNames) {
      return list + sayCounted(names.size() - i, "{0} other", "{0} others");
    }
    list += names[i].empty() ? say("a card without a name") : names[i];
  }
  return list;
}

}  // namespace

std::vector<std::string> notesOnSharedAddresses(const DeviceContacts& contacts,
                                                const std::map<std::string, std::string>& shown) {
  std::vector<std::string> notes;
  std::size_t more = 0;
  for (const auto& [address, words] : shown) {
    const ResolvedHandle person = contacts.resolve(address);
    if (!person.ambiguous) continue;
    if (notes.size() == kMostNotes) {
      ++more;
      continue;
    }
    notes.push_back(
        say("Several people have {0} on their cards ({1}); {2} is shown.", address, listOf(person.candidates), words));
  }
  if (more > 0) {
    notes.push_back(sayCounted(more, "Several people have {0} more number or address on their cards.",
                               "Several people have {0} more numbers or addresses on their cards."));
  }
  return notes;
}

}  // namespace chatsum::device
