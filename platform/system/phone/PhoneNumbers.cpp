#include "platform/system/phone/PhoneNumbers.h"

#include <phonenumbers/asyoutypeformatter.h>
#include <phonenumbers/logger.h>
#include <phonenumbers/phonenumberutil.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "platform/foundation/Utf8.h"
#include "platform/system/phone/PhoneRegions.h"

namespace chatsum::platform::system {
namespace {

using i18n::phonenumbers::AsYouTypeFormatter;
using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberUtil;

// A store rarely has more handles; beyond this the memo starts anew.
constexpr std::size_t kMostRemembered = 20'000;
// Nothing longer is a number, and hostile text must not cost time.
constexpr std::size_t kLongestNumber = 100;
constexpr int kNorthAmerica = 1;
// Stands for "no region": only numbers with a country code can be read.
constexpr const char* kUnknownRegion = "ZZ";

const PhoneNumberUtil& library() {
  static const PhoneNumberUtil& instance = []() -> const PhoneNumberUtil& {
    PhoneNumberUtil& util = *PhoneNumberUtil::GetInstance();
    // It would write its findings about malformed numbers to standard output.
    util.SetLogger(new i18n::phonenumbers::NullLogger());
    return util;
  }();
  return instance;
}

/// What a number is made of for formatting: digits of any script and a leading plus, without the marks and spaces that
/// people and copying put between.
struct Dialled {
  std::u32string characters;
  bool isInternational = false;
};

bool isSeparator(char32_t c) {
  if (c == '(' || c == ')' || c == '-' || c == '.' || c == '/') return true;
  const auto category = u_charType(static_cast<UChar32>(c));
  // Spaces of every width, direction marks, dashes.
  return c == '\t' || category == U_SPACE_SEPARATOR || category == U_FORMAT_CHAR || category == U_DASH_PUNCTUATION;
}

/// None when the text holds anything that is no part of a number.
std::optional<Dialled> dialled(std::string_view text) {
  Dialled result;
  bool hasDigit = false;
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = utf8::next(text, at);
    if (isSeparator(c)) continue;
    if ((c == '+' || c == U'＋') && result.characters.empty()) {
      result.isInternational = true;
      result.characters += U'+';
      continue;
    }
    const int digit = u_charDigitValue(static_cast<UChar32>(c));
    if (digit < 0) return std::nullopt;
    hasDigit = true;
    result.characters += U'0' + static_cast<char32_t>(digit);
  }
  if (!hasDigit) return std::nullopt;
  return result;
}

std::string asAscii(const std::u32string& characters) {
  std::string text;
  for (const char32_t c : characters) text += static_cast<char>(c);
  return text;
}

std::optional<std::string> formattedInternational(const std::string& number) {
  PhoneNumber parsed;
  if (library().Parse(number, kUnknownRegion, &parsed) != PhoneNumberUtil::NO_PARSING_ERROR) return std::nullopt;
  std::string text;
  if (parsed.country_code() == kNorthAmerica) {
    library().Format(parsed, PhoneNumberUtil::NATIONAL, &text);
    return "+1 " + text;
  }
  library().Format(parsed, PhoneNumberUtil::INTERNATIONAL, &text);
  return text;
}

std::optional<std::string> formattedAsTyped(const std::u32string& number, std::string_view region) {
  const PhoneRegion* known = phoneRegionNamed(region);
  if (!known) return std::nullopt;
  const std::unique_ptr<AsYouTypeFormatter> formatter(library().GetAsYouTypeFormatter(std::string(known->name)));
  std::string text;
  for (const char32_t c : number) formatter->InputDigit(c, &text);
  // Digits that make no number of the region stay as somebody wrote them.
  if (text == asAscii(number)) return std::nullopt;
  return text;
}

std::string formatted(std::string_view number, std::string_view region) {
  if (number.size() > kLongestNumber) return std::string(number);
  const std::size_t pause = std::min(number.find_first_of(",;"), number.size());
  const auto parts = dialled(number.substr(0, pause));
  if (!parts) return std::string(number);
  const auto text = parts->isInternational ? formattedInternational(asAscii(parts->characters))
                                           : formattedAsTyped(parts->characters, region);
  return text ? *text + std::string(number.substr(pause)) : std::string(number);
}

class Memo {
 public:
  std::string formattedNumber(std::string_view number, std::string_view region) {
    std::string key(region);
    key += '\n';
    key += number;
    {
      const std::lock_guard lock(mutex_);
      if (const auto known = texts_.find(key); known != texts_.end()) return known->second;
    }
    std::string text = formatted(number, region);
    const std::lock_guard lock(mutex_);
    if (texts_.size() >= kMostRemembered) texts_.clear();
    texts_.emplace(std::move(key), text);
    return text;
  }

 private:
  std::mutex mutex_;
  std::unordered_map<std::string, std::string> texts_;
};

}  // namespace

std::string formattedLikeAPhone(std::string_view number, std::string_view region) {
  static Memo memo;
  if (number.empty() || number.size() > kLongestNumber) return std::string(number);
  return memo.formattedNumber(number, region);
}

std::optional<std::string> nationalDigits(std::string_view number, std::string_view region) {
  PhoneNumber parsed;
  if (library().Parse(std::string(number), std::string(region), &parsed) != PhoneNumberUtil::NO_PARSING_ERROR) {
    return std::nullopt;
  }
  std::string digits;
  library().GetNationalSignificantNumber(parsed, &digits);
  return digits;
}

bool isPossibleInRegion(std::string_view number, std::string_view region) {
  PhoneNumber parsed;
  if (library().Parse(std::string(number), std::string(region), &parsed) != PhoneNumberUtil::NO_PARSING_ERROR) {
    return false;
  }
  return library().IsPossibleNumberWithReason(parsed) == PhoneNumberUtil::IS_POSSIBLE;
}

}  // namespace chatsum::platform::system
