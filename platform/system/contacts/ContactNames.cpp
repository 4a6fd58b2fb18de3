#include "platform/system/contacts/ContactNames.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <initializer_list>
#include <string_view>

#include "platform/foundation/Utf8.h"

namespace chatsum::platform::system {
namespace {

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

struct Scripts {
  bool hasEastAsian = false;  // Han, Kana, Hangul
  bool hasSpaced = false;     // Kana: Japanese, which puts a space between the two names
  bool hasOther = false;
};

Scripts scriptsOf(std::string_view first, std::string_view last) {
  Scripts scripts;
  for (const std::string_view text : {first, last}) {
    for (std::size_t at = 0; at < text.size();) {
      const auto c = static_cast<UChar32>(utf8::next(text, at));
      if (!u_isalpha(c)) continue;
      UErrorCode status = U_ZERO_ERROR;
      const UScriptCode script = uscript_getScript(c, &status);
      const bool isKana = script == USCRIPT_HIRAGANA || script == USCRIPT_KATAKANA || c == 0x30FC;  // long vowel mark
      const bool isEastAsian =
          isKana || script == USCRIPT_HAN || script == USCRIPT_HANGUL || script == USCRIPT_BOPOMOFO;
      scripts.hasEastAsian |= isEastAsian;
      scripts.hasSpaced |= isKana;
      scripts.hasOther |= !isEastAsian;
    }
  }
  return scripts;
}

std::string joined(std::initializer_list<std::string_view> parts, std::string_view separator) {
  std::string text;
  for (const std::string_view part : parts) {
    if (part.empty()) continue;
    if (!text.empty()) text += separator;
    text += part;
  }
  return text;
}

std::string personName(const ContactNameParts& parts) {
  const auto prefix = trimmed(parts.prefix), first = trimmed(parts.first), middle = trimmed(parts.middle);
  const auto last = trimmed(parts.last), suffix = trimmed(parts.suffix);
  // A title alone names nobody.
  if (first.empty() && middle.empty() && last.empty()) return {};
  const Scripts scripts = scriptsOf(first, last);
  if (!scripts.hasEastAsian || scripts.hasOther) return joined({prefix, first, middle, last, suffix}, " ");
  return joined({prefix, last, first, middle, suffix}, scripts.hasSpaced ? " " : "");
}

}  // namespace

std::string shownContactName(const ContactNameParts& parts) {
  const std::string organization(trimmed(parts.organization));
  if (parts.isOrganization && !organization.empty()) return organization;
  if (std::string name = personName(parts); !name.empty()) return name;
  for (const std::string* text :
       {&parts.nickname, &parts.organization, &parts.displayName, &parts.compositeNameFallback}) {
    if (const auto name = trimmed(*text); !name.empty()) return std::string(name);
  }
  return {};
}

}  // namespace chatsum::platform::system
