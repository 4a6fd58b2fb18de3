#include "platform/system/text/FontLibrary.h"

#include <algorithm>

namespace chatsum::platform::system {
namespace {

/// A name's two halves.
struct SplitName {
  std::string family;
  FontStyle style;
};

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

SplitName split(std::string_view name) {
  struct Word {
    std::string_view text;
    int weight;
  };
  // Longer words before those they contain.
  static constexpr Word kWeights[] = {
      {"semibold", FC_WEIGHT_DEMIBOLD},     {"demi", FC_WEIGHT_DEMIBOLD}, {"black", FC_WEIGHT_BLACK},
      {"heavy", FC_WEIGHT_BLACK},           {"bold", FC_WEIGHT_BOLD},     {"medium", FC_WEIGHT_MEDIUM},
      {"ultralight", FC_WEIGHT_ULTRALIGHT}, {"thin", FC_WEIGHT_THIN},     {"light", FC_WEIGHT_LIGHT}};
  const std::size_t dash = name.rfind('-');
  SplitName result{std::string(name.substr(0, dash)), {}};
  if (dash == std::string_view::npos) return result;
  const std::string style = lowerCase(name.substr(dash + 1));
  for (const Word& word : kWeights) {
    if (style.find(word.text) == std::string::npos) continue;
    result.style.weight = word.weight;
    break;
  }
  result.style.isSlanted = style.find("italic") != std::string::npos || style.find("oblique") != std::string::npos;
  return result;
}

/// Families with the same or nearly the same widths, the best first.
std::vector<std::string> standInsFor(std::string_view family) {
  const std::string lower = lowerCase(family);
  if (lower == "verdana") return {"DejaVu Sans", "Bitstream Vera Sans", "Liberation Sans"};
  if (lower == "helvetica" || lower == "helvetica neue" || lower == "arial") {
    return {"Liberation Sans", "Nimbus Sans", "Arimo", "DejaVu Sans"};
  }
  return {};
}

}  // namespace

FontLibrary::FontLibrary() = default;
FontLibrary::~FontLibrary() = default;

FontCatalog& FontLibrary::catalog() {
  if (!catalog_) catalog_ = std::make_unique<FontCatalog>();
  return *catalog_;
}

const FontFace* FontLibrary::open(const FontSource& source) {
  const std::pair<std::string, unsigned> key{source.path, source.number};
  const auto known = faces_.find(key);
  if (known != faces_.end()) return known->second.get();
  return faces_.emplace(key, FontFace::open(source.path, source.number)).first->second.get();
}

const FontFace* FontLibrary::firstOf(const std::vector<FontSource>& sources) {
  for (const FontSource& source : sources) {
    if (const FontFace* face = open(source)) return face;
  }
  return nullptr;
}

void FontLibrary::find(std::string_view name, NamedFont& font) {
  const SplitName wanted = split(name.empty() ? "Helvetica" : name);
  const std::vector<std::string> standIns = standInsFor(wanted.family);
  // A bold stand-in is better than the real font that is not bold.
  for (const bool strict : {true, false}) {
    font.isStandIn = false;
    font.primary = firstOf(catalog().facesOfFamily(wanted.family, wanted.style, strict));
    if (font.primary) return;
    font.isStandIn = true;
    for (const std::string& family : standIns) {
      font.primary = firstOf(catalog().facesOfFamily(family, wanted.style, strict));
      if (font.primary) return;
    }
  }
  font.primary = firstOf(catalog().facesLike(wanted.family, wanted.style));
}

const NamedFont& FontLibrary::fontNamed(std::string_view name) {
  const std::lock_guard lock(mutex_);
  const auto known = named_.find(name);
  if (known != named_.end()) return known->second;
  NamedFont font;
  font.number = static_cast<std::uint32_t>(named_.size());
  find(name, font);
  font.showsAscii = font.primary != nullptr;
  for (char c = '!'; c <= '~'; ++c) font.showsAscii = font.showsAscii && font.primary->asciiGlyph(c) != 0;
  return named_.emplace(std::string(name), font).first->second;
}

const FontFace* FontLibrary::fallbackFor(char32_t c, UScriptCode script, HanLanguage han, bool asEmoji) {
  const std::uint64_t key = (static_cast<std::uint64_t>(c) << 32) | (static_cast<std::uint64_t>(script) << 8) |
                            (static_cast<std::uint64_t>(han) << 1) | (asEmoji ? 1U : 0U);
  const std::lock_guard lock(mutex_);
  const auto known = fallbacks_.find(key);
  if (known != fallbacks_.end()) return known->second;

  const auto firstWith = [&](bool inColor) -> const FontFace* {
    for (const FontSource& source : catalog().facesWith(c, languageOf(script, han), inColor)) {
      const FontFace* face = open(source);
      if (face && face->glyphFor(c) != 0 && face->hasColorPictures() == inColor) return face;
    }
    return nullptr;
  };
  // A picture is better than nothing for what is no emoji, but not the other way round: who asks for an emoji asks
  // again.
  const FontFace* face = firstWith(asEmoji);
  if (!face && !asEmoji) face = firstWith(true);
  fallbacks_.emplace(key, face);
  return face;
}

}  // namespace chatsum::platform::system
