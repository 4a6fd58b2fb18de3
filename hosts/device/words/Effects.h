// The effects that a message can be sent with. No state, any thread.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::device {

/// "[sent with slam]" for the identifier of an effect; one that is not known is named by the last part of its
/// identifier. Empty for none.
[[nodiscard]] std::string effectInWords(std::string_view identifier);

}  // namespace chatsum::device
