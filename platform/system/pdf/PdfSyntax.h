// How numbers and strings are written in PDF files and page contents (ISO 32000-1, 7.3). No state, any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/foundation/Date.h"

namespace chatsum::platform::system::pdf {

/// A length as a whole number of its hundredths. What is no number is 0, what is beyond any page is cut.
[[nodiscard]] std::int64_t hundredths(double value);

void appendInteger(std::string& to, std::int64_t value);
/// As few characters as possible: 150 is "1.5", -5 is "-.05".
void appendHundredths(std::string& to, std::int64_t value);
/// A number from 0 to 1, three digits behind the point.
void appendShare(std::string& to, double value);
/// "12 0 R".
[[nodiscard]] std::string reference(int object);

/// The inside of a literal string of any bytes.
void appendLiteral(std::string& to, std::string_view bytes);
/// UTF-8 as UTF-16, the high byte first, without a byte order mark. What is no UTF-8 becomes U+FFFD.
[[nodiscard]] std::string utf16(std::string_view utf8);
void appendHex(std::string& to, std::string_view bytes);
/// UTF-8 as a string that a person reads, parentheses included (7.9.2.2).
[[nodiscard]] std::string textString(std::string_view utf8);
/// A time as "(D:20231114221320Z)" (7.9.4), the seconds cut; years 0 to 9999.
[[nodiscard]] std::string dateString(Date date);

}  // namespace chatsum::platform::system::pdf
