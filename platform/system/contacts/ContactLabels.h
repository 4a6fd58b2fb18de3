// The labels of numbers and addresses in words. Any thread.
#pragma once

#include <string>
#include <string_view>

#include "platform/system/translations/Translations.h"

namespace chatsum::platform::system {

/// "_$!<HomeFAX>!$_" → "home fax", translated where there are translations; labels of a person's own (and "unknown") as
/// they are; an empty one is "other".
[[nodiscard]] std::string contactLabelInWords(std::string_view label, const Translations* translations = nullptr);

}  // namespace chatsum::platform::system
