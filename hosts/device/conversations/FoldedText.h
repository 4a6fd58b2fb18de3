// Text compared without regard to case. No state, any thread.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::device {

/// The text in a form that is equal for texts that differ only in case (Unicode's full case folding) or in the way
/// their characters are composed; UTF-8. Accents count: "José" and "Jose" differ.
[[nodiscard]] std::string foldedCase(std::string_view text);

}  // namespace chatsum::device
