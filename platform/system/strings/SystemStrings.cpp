#include "platform/system/strings/SystemStrings.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <utility>

namespace chatsum::platform::system {
namespace {

bool isAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

std::string foldedAscii(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

icu::UnicodeString unicode(std::string_view text) {
  // ICU counts in 32 bits; no name or handle comes near that.
  const auto length = static_cast<std::int32_t>(std::min<std::size_t>(text.size(), 1 << 29));
  return icu::UnicodeString::fromUTF8({text.data(), length});
}

std::string foldedCase(icu::UnicodeString text) {
  text.foldCase(U_FOLD_CASE_DEFAULT);
  std::string result;
  text.toUTF8String(result);
  return result;
}

}  // namespace

std::string SystemStrings::caseFolded(std::string_view text) const {
  return isAscii(text) ? foldedAscii(text) : foldedCase(unicode(text));
}

std::string SystemStrings::folded(std::string_view text) const {
  if (isAscii(text)) return foldedAscii(text);

  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* decomposition = icu::Normalizer2::getNFDInstance(status);
  if (U_FAILURE(status)) return foldedAscii(text);
  const auto decomposed = decomposition->normalize(unicode(text), status);
  if (U_FAILURE(status)) return foldedAscii(text);

  icu::UnicodeString bare;
  for (std::int32_t at = 0; at < decomposed.length(); at = decomposed.moveIndex32(at, 1)) {
    const UChar32 c = decomposed.char32At(at);
    if (u_charType(c) != U_NON_SPACING_MARK) bare.append(c);
  }
  return foldedCase(std::move(bare));
}

}  // namespace chatsum::platform::system
