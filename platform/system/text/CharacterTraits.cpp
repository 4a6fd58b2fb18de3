#include "platform/system/text/CharacterTraits.h"

#include <unicode/uchar.h>
#include <unicode/uloc.h>
#include <unicode/utf16.h>

#include <array>
#include <cstdlib>
#include <optional>

#include "platform/foundation/Utf8.h"

namespace chatsum::platform::system {
namespace {

constexpr char32_t kTextSelector = 0xFE0E, kPictureSelector = 0xFE0F, kJoiner = 0x200D, kKeycap = 0x20E3;

bool has(char32_t c, UProperty property) { return u_hasBinaryProperty(static_cast<UChar32>(c), property) != 0; }

std::optional<HanLanguage> hanLanguageOfEnvironment() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nobody changes the environment
    if (!value || !*value) continue;
    const std::string_view locale = value;
    if (locale.starts_with("ja")) return HanLanguage::kJapanese;
    if (locale.starts_with("ko")) return HanLanguage::kKorean;
    if (!locale.starts_with("zh")) return std::nullopt;
    for (const char* region : {"TW", "HK", "MO", "Hant"}) {
      if (locale.find(region) != std::string_view::npos) return HanLanguage::kTraditionalChinese;
    }
    return HanLanguage::kSimplifiedChinese;
  }
  return std::nullopt;
}

/// The language in which a script is mostly written, by CLDR's likely subtags; empty when there is none.
std::string likelyLanguageOf(UScriptCode script) {
  const char* name = uscript_getShortName(script);
  if (!name) return {};
  std::array<char, ULOC_FULLNAME_CAPACITY> full{}, language{};
  UErrorCode error = U_ZERO_ERROR;
  uloc_addLikelySubtags((std::string("und_") + name).c_str(), full.data(), static_cast<int>(full.size()), &error);
  uloc_getLanguage(full.data(), language.data(), static_cast<int>(language.size()), &error);
  if (U_FAILURE(error) || std::string_view(language.data()) == "und") return {};
  return language.data();
}

const std::string& languageOf(HanLanguage han) {
  static const std::array<std::string, 4> kLanguages = {"ja", "ko", "zh-cn", "zh-tw"};
  return kLanguages[static_cast<std::size_t>(han)];
}

}  // namespace

bool isNewline(char32_t c) { return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029; }

bool isHiddenControl(char32_t c) { return (c < 0x20 || (c >= 0x7F && c < 0xA0)) && c != '\t' && !isNewline(c); }

bool mayRunRightToLeft(char32_t c) {
  // The areas that Unicode keeps for right-to-left scripts, unassigned characters included.
  if (c < 0x0590) return false;
  if (c < 0x2000) return c < 0x0900;
  if (c < 0xFB1D) return c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
  if (c < 0x10000) return c < 0xFE00 || (c >= 0xFE70 && c < 0xFF00);
  return (c >= 0x10800 && c < 0x11000) || (c >= 0x1E800 && c < 0x1F000);
}

bool joinsBefore(char32_t c) {
  switch (u_getIntPropertyValue(static_cast<UChar32>(c), UCHAR_GRAPHEME_CLUSTER_BREAK)) {
    case U_GCB_EXTEND:
    case U_GCB_SPACING_MARK:
    case U_GCB_ZWJ:
      return true;
    default:
      // A mark that stands alone by the rules of clusters may not by those of lines.
      return (U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_M_MASK) != 0;
  }
}

UScriptCode scriptOf(char32_t c) {
  UErrorCode error = U_ZERO_ERROR;
  const UScriptCode own = uscript_getScript(static_cast<UChar32>(c), &error);
  if (own != USCRIPT_COMMON) return own;
  // Several scripts may share it, such as the digits of Arabic or the full stop of Chinese and Japanese.
  std::array<UScriptCode, 64> sharing{};
  const int count =
      uscript_getScriptExtensions(static_cast<UChar32>(c), sharing.data(), static_cast<int>(sharing.size()), &error);
  if (U_FAILURE(error) || count < 1 || sharing[0] <= USCRIPT_INHERITED) return own;
  for (int i = 0; i < count; ++i) {
    if (sharing[static_cast<std::size_t>(i)] == USCRIPT_HAN) return USCRIPT_HAN;
    if (sharing[static_cast<std::size_t>(i)] == USCRIPT_LATIN) return USCRIPT_COMMON;
  }
  return sharing[0];
}

bool isWestern(char32_t c) {
  switch (scriptOf(c)) {
    case USCRIPT_COMMON:
    case USCRIPT_INHERITED:
    case USCRIPT_LATIN:
    case USCRIPT_GREEK:
    case USCRIPT_CYRILLIC:
      return true;
    default:
      return false;
  }
}

bool isEmoji(std::u16string_view cluster) {
  std::size_t at = 0;
  char32_t base = 0, c = 0;
  U16_NEXT(cluster.data(), at, cluster.size(), base);
  if (at == cluster.size()) return has(base, UCHAR_EMOJI_PRESENTATION);
  if (!has(base, UCHAR_EMOJI)) return false;
  const bool isPicture = has(base, UCHAR_EXTENDED_PICTOGRAPHIC);
  bool asText = false;
  while (at < cluster.size()) {
    U16_NEXT(cluster.data(), at, cluster.size(), c);
    if (c == kPictureSelector || c == kKeycap || has(c, UCHAR_EMOJI_MODIFIER)) return true;
    if (c == kJoiner && isPicture && at < cluster.size()) return true;
    asText = asText || c == kTextSelector;
  }
  return !asText && has(base, UCHAR_EMOJI_PRESENTATION);
}

bool isIgnorable(char32_t c) { return has(c, UCHAR_DEFAULT_IGNORABLE_CODE_POINT); }

hb_script_t shapingScript(UScriptCode script) {
  const char* name = uscript_getShortName(script);
  return name ? hb_script_from_string(name, -1) : HB_SCRIPT_COMMON;
}

hb_language_t shapingLanguage(UScriptCode script, HanLanguage han) {
  if (script != USCRIPT_HAN) return HB_LANGUAGE_INVALID;
  const std::string& language = languageOf(han);
  return hb_language_from_string(language.c_str(), static_cast<int>(language.size()));
}

std::string languageOf(UScriptCode script, HanLanguage han) {
  if (script == USCRIPT_HAN) return languageOf(han);
  if (script == USCRIPT_BOPOMOFO) return "zh-tw";
  const std::string likely = script > USCRIPT_INHERITED ? likelyLanguageOf(script) : "";
  return likely.empty() ? "en" : likely;
}

HanLanguage hanLanguageOf(std::string_view text) {
  static const std::optional<HanLanguage> kOfEnvironment = hanLanguageOfEnvironment();
  if (kOfEnvironment) return *kOfEnvironment;
  for (std::size_t at = 0; at < text.size();) {
    // Everything that tells begins with one of these bytes.
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte != 0xE1 && byte != 0xE3 && (byte < 0xEA || byte > 0xEF)) {
      ++at;
      continue;
    }
    const char32_t c = utf8::next(text, at);
    if ((c >= 0x3041 && c <= 0x30FF) || (c >= 0xFF66 && c <= 0xFF9F)) return HanLanguage::kJapanese;
    if ((c >= 0xAC00 && c <= 0xD7A3) || (c >= 0x1100 && c <= 0x11FF)) return HanLanguage::kKorean;
    if ((c >= 0x3105 && c <= 0x312F) || (c >= 0x31A0 && c <= 0x31BF)) return HanLanguage::kTraditionalChinese;
  }
  return HanLanguage::kJapanese;
}

}  // namespace chatsum::platform::system
