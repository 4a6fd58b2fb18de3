// What the cards say that apps put into conversations, link previews among them. No state, any thread.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::device {

/// One bracket for a message's app card: its kind, title, and address or caption, as far as they are there, such as
/// "[link: “The harbour” https://example.com/harbour]". `bundle` is the app's identifier, `payload` the card's keyed
/// archive (may be damaged), `text` what the message says itself: an address that stands in it is not repeated.
[[nodiscard]] std::string cardInWords(std::string_view bundle, std::string_view payload, std::string_view text);

}  // namespace chatsum::device
