// The labels of numbers and addresses in words. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::platform::system {

/// "_$!<HomeFAX>!$_" → "home fax"; labels of a person's own (and "unknown") as they are; an empty one is "other".
[[nodiscard]] std::string contactLabelInWords(std::string_view label);

}  // namespace chatsum::platform::system
