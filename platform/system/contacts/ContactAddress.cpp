#include "platform/system/contacts/ContactAddress.h"

#include <unicode/uchar.h>

#include <algorithm>

#include "platform/foundation/Utf8.h"
#include "platform/system/phone/PhoneNumbers.h"

namespace chatsum::platform::system {
namespace {

constexpr int kMostDigits = 18;
constexpr int kLongestShortCode = 6;
// A country code with the shortest numbers behind it.
constexpr int kShortestInternational = 8;
// "1-800-EXAMPLE" is a number, "4EXAMPLE" the name of a sender.
constexpr int kDigitsBeforeLetters = 3;

constexpr std::uint64_t kPowersOfTen[] = {1ULL,
                                          10ULL,
                                          100ULL,
                                          1'000ULL,
                                          10'000ULL,
                                          100'000ULL,
                                          1'000'000ULL,
                                          10'000'000ULL,
                                          100'000'000ULL,
                                          1'000'000'000ULL,
                                          10'000'000'000ULL,
                                          100'000'000'000ULL,
                                          1'000'000'000'000ULL,
                                          10'000'000'000'000ULL,
                                          100'000'000'000'000ULL,
                                          1'000'000'000'000'000ULL,
                                          10'000'000'000'000'000ULL,
                                          100'000'000'000'000'000ULL,
                                          1'000'000'000'000'000'000ULL};

bool isAsciiSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isAsciiDigit(char c) { return c >= '0' && c <= '9'; }
bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(), [](char a, char b) { return a == lower(b); });
}

/// Without spaces of any width and the invisible direction marks that copying adds, at both ends.
std::string_view trimmed(std::string_view text) {
  const auto isBlank = [](char32_t c) {
    if (c < 0x80) return isAsciiSpace(static_cast<char>(c));
    const auto category = u_charType(static_cast<UChar32>(c));
    return category == U_SPACE_SEPARATOR || category == U_FORMAT_CHAR;
  };
  for (std::size_t at = 0; !text.empty(); at = 0) {
    if (!isBlank(utf8::next(text, at))) break;
    text.remove_prefix(at);
  }
  while (!text.empty()) {
    std::size_t start = text.size() - 1;
    while (start > 0 && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
    std::size_t at = start;
    if (!isBlank(utf8::next(text, at)) || at != text.size()) break;
    text = text.substr(0, start);
  }
  return text;
}

void readEmail(std::string_view text, ContactAddress& address) {
  const auto opening = text.find('<');
  const auto closing = text.rfind('>');
  if (opening != std::string_view::npos && closing != std::string_view::npos && opening < closing) {
    text = trimmed(text.substr(opening + 1, closing - opening - 1));
  }
  if (startsWithIgnoringCase(text, "mailto:")) text = trimmed(text.substr(7));
  address.kind = ContactAddress::Kind::kEmail;
  for (std::size_t at = 0; at < text.size();) {
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      address.text += lower(text[at++]);
    } else {
      utf8::append(address.text, static_cast<char32_t>(u_tolower(static_cast<UChar32>(utf8::next(text, at)))));
    }
  }
}

/// Without a service code such as "#31#" in front; empty when the text is nothing but service codes.
std::string_view withoutServiceCode(std::string_view text) {
  const auto end = text.find_first_not_of("0123456789", text.find_first_not_of("*#"));
  if (end == std::string_view::npos || (text[end] != '#' && text[end] != '*')) return {};
  const auto number = text.substr(end + 1);
  const auto digits = std::count_if(number.begin(), number.end(), isAsciiDigit);
  return digits > kLongestShortCode && number.find_first_of("*#") == std::string_view::npos ? number
                                                                                            : std::string_view();
}

int keypadDigit(char letter) {
  constexpr std::string_view kDigits = "22233344455566677778889999";
  return kDigits[static_cast<std::size_t>(lower(letter) - 'a')] - '0';
}

/// Whether an extension begins at the letter: "x12", "ext. 12", and nothing but digits and punctuation behind.
bool startsExtension(std::string_view text) {
  std::size_t at = 0;
  if (startsWithIgnoringCase(text, "extension")) {
    at = 9;
  } else if (startsWithIgnoringCase(text, "ext")) {
    at = 3;
  } else if (lower(text[0]) == 'x') {
    at = 1;
  } else {
    return false;
  }
  const auto rest = text.substr(at);
  return std::any_of(rest.begin(), rest.end(), isAsciiDigit) && std::none_of(rest.begin(), rest.end(), isAsciiLetter);
}

enum class Read { kNumber, kName };

/// Collects the digits of a number and whether a plus stands before them.
Read readDigits(std::string_view text, Digits& digits, bool& hasPlus) {
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    int digit = -1;
    if (isAsciiDigit(c)) {
      digit = c - '0';
      ++at;
    } else if (static_cast<unsigned char>(c) < 0x80) {
      if (isAsciiLetter(c)) {
        if (digits.count == 0) return Read::kName;
        if (startsExtension(text.substr(at))) break;
        if (digits.count < kDigitsBeforeLetters) return Read::kName;
        digit = keypadDigit(c);
      } else if (c == '+' && digits.count == 0) {
        hasPlus = true;
      } else if (digits.count > 0 && (c == ';' || c == ',' || c == '#')) {
        break;
      }
      ++at;
    } else {
      const char32_t codePoint = utf8::next(text, at);
      digit = u_charDigitValue(static_cast<UChar32>(codePoint));
      if (codePoint == U'＋' && digits.count == 0) hasPlus = true;
      if (digit < 0 && digits.count == 0 && u_isalpha(static_cast<UChar32>(codePoint))) return Read::kName;
    }
    if (digit >= 0 && !digits.append(digit)) return Read::kName;
  }
  return digits.count > 0 ? Read::kNumber : Read::kName;
}

/// Takes the prefix that is dialled for foreign numbers off; false when the digits do not begin with it.
bool removeInternationalPrefix(std::string_view prefix, Digits& digits) {
  const Digits begin = Digits::of(prefix);
  const int rest = digits.count - begin.count;
  if (rest < kShortestInternational) return false;
  if (digits.value / kPowersOfTen[rest] != begin.value) return false;
  const Digits remaining = digits.last(rest);
  if (remaining.value / kPowersOfTen[rest - 1] == 0) return false;  // no country code begins with 0
  digits = remaining;
  return true;
}

struct International {
  int callingCode = 0;
  Digits national;
};

International split(const Digits& digits) {
  const auto digitAt = [&](int place) {
    return static_cast<int>(digits.value / kPowersOfTen[digits.count - 1 - place] % 10);
  };
  const int length = callingCodeLength(digitAt(0), digitAt(1));
  International parts;
  parts.national = digits.last(digits.count - length);
  parts.callingCode = static_cast<int>(digits.value / kPowersOfTen[parts.national.count]);
  return parts;
}

/// Mexico and Argentina write mobile numbers with a digit behind the country code that the same number lacks elsewhere.
Digits withoutMobileMark(const Digits& digits) {
  constexpr int kMexico = 52, kArgentina = 54, kMarkedLength = 11;
  const International parts = split(digits);
  if (parts.national.count != kMarkedLength) return digits;
  const auto mark = static_cast<int>(parts.national.value / kPowersOfTen[kMarkedLength - 1]);
  if ((parts.callingCode != kMexico || mark != 1) && (parts.callingCode != kArgentina || mark != 9)) return digits;
  Digits unmarked = parts.national.last(kMarkedLength - 1);
  unmarked.value += static_cast<std::uint64_t>(parts.callingCode) * kPowersOfTen[unmarked.count];
  unmarked.count += 2;
  return unmarked;
}

bool isWithTrunk(const Digits& number, std::string_view trunk, const Digits& national) {
  const int length = static_cast<int>(trunk.size());
  return length > 0 && number.count == national.count + length && number.endsWith(national) &&
         number.value / kPowersOfTen[national.count] == Digits::of(trunk).value;
}

/// Whether a number without country code is written the way the home region writes its own, so that it belongs there.
bool isWrittenAsAtHome(const Digits& number, const PhoneRegion& home) {
  const bool beginsWithZero = number.value < kPowersOfTen[number.count - 1];
  if (home.trunkPrefix == "0" && !beginsWithZero) return false;
  if (home.callingCode == 1 && beginsWithZero) return false;
  return isPossibleInRegion(number.text(), home.name);
}

SameNumber compareWithNational(const Digits& full, const Digits& national, const PhoneRegion* home) {
  constexpr int kShortestNational = 7;
  constexpr int kLongestTrunk = 2;
  // Typed with the country code and without the plus.
  constexpr int kShortestWithCode = 10;
  const International parts = split(withoutMobileMark(full));
  if (parts.national.count < kShortestNational) return SameNumber::kNot;
  const bool isAtHome = home && home->callingCode == parts.callingCode;
  const PhoneRegion* region = isAtHome ? home : phoneRegionWithCallingCode(parts.callingCode);
  bool isSame = national == parts.national || (region && isWithTrunk(national, region->trunkPrefix, parts.national));
  if (!isSame && national == full && national.count >= kShortestWithCode) {
    return isAtHome ? SameNumber::kAtHome : SameNumber::kBySuffix;
  }
  if (!isSame && region) {
    // Prefixes that only the region's own rules know (area dialling of old, mobile marks inside the number).
    constexpr int kArgentina = 54;
    const int more = national.count - parts.national.count;
    const bool isLonger = more > 0 && more <= kLongestTrunk && national.endsWith(parts.national);
    if (isLonger || parts.callingCode == kArgentina) {
      const auto digits = nationalDigits(national.text(), region->name);
      if (!digits || digits->size() > kMostDigits) return SameNumber::kNot;
      Digits read = Digits::of(*digits);
      isSame = read == parts.national || (parts.callingCode == kArgentina && read.count == parts.national.count + 1 &&
                                          read.last(parts.national.count) == parts.national && digits->front() == '9');
    }
  }
  if (!isSame) return SameNumber::kNot;
  if (isAtHome) return SameNumber::kAtHome;
  return home && isWrittenAsAtHome(national, *home) ? SameNumber::kNot : SameNumber::kBySuffix;
}

}  // namespace

Digits Digits::last(int length) const { return length >= count ? *this : Digits{value % kPowersOfTen[length], length}; }

bool Digits::append(int digit) {
  if (count == kMostDigits) return false;
  value = value * 10 + static_cast<std::uint64_t>(digit);
  ++count;
  return true;
}

std::string Digits::text() const {
  std::string result(static_cast<std::size_t>(count), '0');
  std::uint64_t rest = value;
  for (auto place = result.rbegin(); place != result.rend(); ++place, rest /= 10) {
    *place = static_cast<char>('0' + rest % 10);
  }
  return result;
}

Digits Digits::of(std::string_view digits) {
  Digits result;
  for (const char c : digits) {
    if (!result.append(c - '0')) break;
  }
  return result;
}

void readContactAddress(std::string_view text, const PhoneRegion* region, ContactAddress& address) {
  using Kind = ContactAddress::Kind;
  address.kind = Kind::kNothing;
  address.isInternational = false;
  address.digits = {};
  address.text.clear();
  text = trimmed(text);
  if (text.empty() || startsWithIgnoringCase(text, "urn:")) return;
  if (text.find('@') != std::string_view::npos) {
    readEmail(text, address);
    return;
  }
  if (startsWithIgnoringCase(text, "tel:")) text = trimmed(text.substr(4));
  std::string_view number = text;
  if (text.starts_with('*') || text.starts_with('#')) number = withoutServiceCode(text);
  bool hasPlus = false;
  if (number.empty() || readDigits(number, address.digits, hasPlus) == Read::kName) {
    address.kind = text.empty() ? Kind::kNothing : Kind::kName;
    address.digits = {};
    address.text = text;
    return;
  }
  if (address.digits.count <= kLongestShortCode) {
    address.kind = Kind::kShort;
    address.text = (hasPlus ? "+" : "") + address.digits.text();
    return;
  }
  address.kind = Kind::kNumber;
  const std::string_view prefix = internationalPrefix(region);
  address.isInternational = hasPlus || removeInternationalPrefix(prefix, address.digits) ||
                            (prefix != "00" && removeInternationalPrefix("00", address.digits));
}

SameNumber compareNumbers(const ContactAddress& a, const ContactAddress& b, const PhoneRegion* region) {
  // Long numbers that are the same share their end, whatever prefixes they have; most others are told apart here.
  constexpr int kLong = 10, kSharedEnd = 8;
  if (a.digits.count >= kLong && b.digits.count >= kLong && a.digits.last(kSharedEnd) != b.digits.last(kSharedEnd)) {
    return SameNumber::kNot;
  }
  if (a.isInternational == b.isInternational) {
    if (a.digits == b.digits) return SameNumber::kExactly;
    if (a.isInternational) {
      return withoutMobileMark(a.digits) == withoutMobileMark(b.digits) ? SameNumber::kAtHome : SameNumber::kNot;
    }
    if (!region) return SameNumber::kNot;
    return isWithTrunk(a.digits, region->trunkPrefix, b.digits) || isWithTrunk(b.digits, region->trunkPrefix, a.digits)
               ? SameNumber::kAtHome
               : SameNumber::kNot;
  }
  return a.isInternational ? compareWithNational(a.digits, b.digits, region)
                           : compareWithNational(b.digits, a.digits, region);
}

}  // namespace chatsum::platform::system
