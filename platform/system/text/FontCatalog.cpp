#include "platform/system/text/FontCatalog.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>

namespace chatsum::platform::system {
namespace {

using PatternRef = std::unique_ptr<FcPattern, void (*)(FcPattern*)>;
using FontSetRef = std::unique_ptr<FcFontSet, void (*)(FcFontSet*)>;

/// fontconfig does not look whether its allocations succeed and falls over the first that did not. So it is asked only
/// while there is several times the room that it takes: 1.1 MB, measured with 440 fonts.
void throwWithoutRoom() {
  constexpr std::size_t kRoom = std::size_t{4} << 20;
  void* volatile room = std::malloc(kRoom);  // volatile: or the compiler leaves it out
  if (!room) throw std::bad_alloc();
  std::free(room);
}

FcConfig* loadConfig() {
  throwWithoutRoom();
  return FcInitLoadConfigAndFonts();
}

std::string textOf(const FcPattern* pattern, const char* object, int place = 0) {
  FcChar8* text = nullptr;
  if (FcPatternGetString(pattern, object, place, &text) != FcResultMatch) return {};
  return reinterpret_cast<const char*>(text);
}

bool flagOf(const FcPattern* pattern, const char* object) {
  FcBool flag = FcFalse;
  return FcPatternGetBool(pattern, object, 0, &flag) == FcResultMatch && flag == FcTrue;
}

double numberOf(const FcPattern* pattern, const char* object, double otherwise) {
  double number = 0;
  return FcPatternGetDouble(pattern, object, 0, &number) == FcResultMatch ? number : otherwise;
}

FontSource sourceOf(const FcPattern* pattern) {
  int number = 0;
  FcPatternGetInteger(pattern, FC_INDEX, 0, &number);
  return {textOf(pattern, FC_FILE), static_cast<unsigned>(number)};
}

/// A face of its own with outlines (TrueType or PostScript) or colour pictures; not a variable font or an instance of
/// one.
bool isUsable(const FcPattern* pattern) {
  int number = 0;
  if (FcPatternGetInteger(pattern, FC_INDEX, 0, &number) != FcResultMatch || number < 0 || number > 0xFFFF)
    return false;
  if (flagOf(pattern, FC_VARIABLE)) return false;
  const std::string format = textOf(pattern, FC_FONTFORMAT);
  if (format != "TrueType" && format != "CFF") return false;
  return flagOf(pattern, FC_OUTLINE) || flagOf(pattern, FC_COLOR);
}

/// Letters and digits only, in lower case.
std::string foldedName(std::string_view name) {
  std::string folded;
  for (const char c : name) {
    if (c == ' ' || c == '-' || c == '_') continue;
    folded += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return folded;
}

bool isOfFamily(const FcPattern* pattern, const std::string& foldedFamily) {
  for (int place = 0;; ++place) {
    const std::string family = textOf(pattern, FC_FAMILY, place);
    if (family.empty()) return false;
    if (foldedName(family) == foldedFamily) return true;
  }
}

bool isSlanted(const FcPattern* pattern) { return numberOf(pattern, FC_SLANT, FC_SLANT_ROMAN) > FC_SLANT_ROMAN; }
bool isBold(double weight) { return weight >= FC_WEIGHT_DEMIBOLD; }

/// 0 for the very style.
double distanceFrom(const FcPattern* pattern, FontStyle style) {
  return std::abs(numberOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR) - style.weight) +
         std::abs(numberOf(pattern, FC_WIDTH, FC_WIDTH_NORMAL) - FC_WIDTH_NORMAL) +
         (isSlanted(pattern) == style.isSlanted ? 0 : 200);
}

bool isOfStyle(const FcPattern* pattern, FontStyle style) {
  return isBold(numberOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR)) == isBold(style.weight) &&
         isSlanted(pattern) == style.isSlanted;
}

/// Whether running text of another script looks right in it: upright, regular, of normal width, without serifs.
bool isPlainSans(const FcPattern* pattern) {
  const std::string family = textOf(pattern, FC_FAMILY);
  for (const char* word : {"Serif", "Mono", "Nastaliq", "Naskh", "Kufi"}) {
    if (family.find(word) != std::string::npos) return false;
  }
  return distanceFrom(pattern, {}) == 0;
}

/// Whether the family is made for the Han characters of another language; it may have all the characters all the same.
bool isOfOtherRegion(const FcPattern* pattern, const std::string& language) {
  struct Region {
    std::string_view language, ending;
  };
  static constexpr Region kRegions[] = {{"ja", " JP"}, {"ko", " KR"}, {"zh-cn", " SC"}, {"zh-tw", " TC"}};
  if (std::none_of(std::begin(kRegions), std::end(kRegions), [&](const Region& r) { return r.language == language; })) {
    return false;
  }
  const std::string family = textOf(pattern, FC_FAMILY);
  return family.ends_with(" HK") || std::any_of(std::begin(kRegions), std::end(kRegions), [&](const Region& region) {
           return region.language != language && family.ends_with(region.ending);
         });
}

/// Lower is better.
int rankOf(const FcPattern* pattern, const std::string& language) {
  if (!isPlainSans(pattern)) return 2;
  return isOfOtherRegion(pattern, language) ? 1 : 0;
}

PatternRef patternFor(FcConfig* config, const std::string& family, FontStyle style, const std::string& language) {
  throwWithoutRoom();
  PatternRef pattern(FcPatternCreate(), FcPatternDestroy);
  FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcPatternAddInteger(pattern.get(), FC_WEIGHT, style.weight);
  FcPatternAddInteger(pattern.get(), FC_SLANT, style.isSlanted ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  // Always one, or fontconfig would take that of the process.
  FcPatternAddString(pattern.get(), FC_LANG, reinterpret_cast<const FcChar8*>(language.c_str()));
  FcConfigSubstitute(config, pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  return pattern;
}

FontSetRef sorted(FcConfig* config, FcPattern* pattern) {
  FcResult result = FcResultMatch;
  // May be nullptr, for instance when there is no font.
  throwWithoutRoom();
  return {FcFontSort(config, pattern, FcFalse, nullptr, &result), [](FcFontSet* set) {
            if (set) FcFontSetDestroy(set);
          }};
}

}  // namespace

FontCatalog::FontCatalog()
    : config_(loadConfig(), [](FcConfig* config) {
        if (config) FcConfigDestroy(config);
      }) {}

FontCatalog::~FontCatalog() = default;

std::vector<FontSource> FontCatalog::facesOfFamily(std::string_view family, FontStyle style, bool strict) const {
  const FcFontSet* fonts = config_ ? FcConfigGetFonts(config_.get(), FcSetSystem) : nullptr;
  if (!fonts) return {};
  const std::string folded = foldedName(family);
  std::vector<std::pair<double, FontSource>> found;
  for (int i = 0; i < fonts->nfont; ++i) {
    const FcPattern* pattern = fonts->fonts[i];
    if (!isOfFamily(pattern, folded) || !isUsable(pattern) || (strict && !isOfStyle(pattern, style))) continue;
    found.emplace_back(distanceFrom(pattern, style), sourceOf(pattern));
  }
  std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<FontSource> sources;
  for (auto& [distance, source] : found) sources.push_back(std::move(source));
  return sources;
}

std::vector<FontSource> FontCatalog::facesLike(const std::string& family, FontStyle style) const {
  if (!config_) return {};
  const auto pattern = patternFor(config_.get(), family, style, "en");
  const auto fonts = sorted(config_.get(), pattern.get());
  std::vector<FontSource> sources;
  for (int i = 0; fonts && i < fonts->nfont; ++i) {
    if (isUsable(fonts->fonts[i]) && !flagOf(fonts->fonts[i], FC_COLOR)) sources.push_back(sourceOf(fonts->fonts[i]));
  }
  return sources;
}

const FontCatalog::Choices& FontCatalog::choicesFor(const std::string& language, bool inColor) {
  const std::pair<std::string, bool> key{language, inColor};
  const auto known = choices_.find(key);
  if (known != choices_.end()) return known->second;
  return choices_.emplace(key, findChoices(language, inColor)).first->second;
}

FontCatalog::Choices FontCatalog::findChoices(const std::string& language, bool inColor) const {
  Choices choices;
  if (!config_) return choices;
  const auto pattern = patternFor(config_.get(), inColor ? "emoji" : "sans-serif", {}, language);
  const auto fonts = sorted(config_.get(), pattern.get());
  if (!fonts) return choices;
  for (const int rank : {0, 1, 2}) {
    for (int i = 0; i < fonts->nfont; ++i) {
      const FcPattern* font = fonts->fonts[i];
      FcCharSet* characters = nullptr;
      // Colour fonts without pictures are refused when they are opened.
      if (!isUsable(font) || flagOf(font, FC_COLOR) != inColor || rankOf(font, language) != rank) continue;
      if (FcPatternGetCharSet(font, FC_CHARSET, 0, &characters) != FcResultMatch) continue;
      choices.push_back({sourceOf(font), {FcCharSetCopy(characters), FcCharSetDestroy}});
    }
  }
  return choices;
}

std::vector<FontSource> FontCatalog::facesWith(char32_t character, const std::string& language, bool inColor) {
  std::vector<FontSource> sources;
  for (const Choice& choice : choicesFor(language, inColor)) {
    if (FcCharSetHasChar(choice.characters.get(), character)) sources.push_back(choice.source);
  }
  return sources;
}

}  // namespace chatsum::platform::system
