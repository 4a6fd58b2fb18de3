// The fonts of an engine: finds them by name and for characters that a named font lacks, opens each face once and keeps
// it until the library goes. Nothing is read before it is asked for. Any thread.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/system/text/CharacterTraits.h"
#include "platform/system/text/FontCatalog.h"
#include "platform/system/text/FontFace.h"

namespace chatsum::platform::system {

/// A font by its name. Immutable, lives as long as the library.
struct NamedFont {
  std::uint32_t number = 0;           ///< counts the library's named fonts
  const FontFace* primary = nullptr;  ///< nullptr when no font is installed
  /// The font of that name is not there; the primary face shows only what that one would have shown.
  bool isStandIn = false;
  bool showsAscii = false;  ///< every printable character of it

  /// Whether the primary face shows the character.
  [[nodiscard]] bool shows(char32_t c) const { return primary->glyphFor(c) != 0 && (!isStandIn || isWestern(c)); }
};

class FontLibrary {
 public:
  FontLibrary();
  ~FontLibrary();

  /// The font of a PostScript-like name: family, or family-style ("Verdana", "Helvetica-Bold"). The empty name is the
  /// system's own font.
  [[nodiscard]] const NamedFont& fontNamed(std::string_view name);

  /// A face for a character that the named font does not show, in text of a script; nullptr when there is none. As an
  /// emoji only a face with colour pictures will do.
  [[nodiscard]] const FontFace* fallbackFor(char32_t c, UScriptCode script, HanLanguage han, bool asEmoji);

 private:
  FontCatalog& catalog();
  const FontFace* open(const FontSource& source);
  const FontFace* firstOf(const std::vector<FontSource>& sources);
  void find(std::string_view name, NamedFont& font);

  std::mutex mutex_;
  std::unique_ptr<FontCatalog> catalog_;
  std::map<std::pair<std::string, unsigned>, std::unique_ptr<const FontFace>> faces_;
  std::map<std::string, NamedFont, std::less<>> named_;
  std::unordered_map<std::uint64_t, const FontFace*> fallbacks_;
};

}  // namespace chatsum::platform::system
