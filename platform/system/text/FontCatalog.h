// The installed fonts, as fontconfig knows them. Reads the configuration and its caches when made. One thread at a
// time.
#pragma once

#include <fontconfig/fontconfig.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum::platform::system {

/// Where a face stands.
struct FontSource {
  std::string path;
  unsigned number = 0;
  friend bool operator==(const FontSource&, const FontSource&) = default;
};

/// How a face should look.
struct FontStyle {
  int weight = FC_WEIGHT_REGULAR;
  bool isSlanted = false;
};

class FontCatalog {
 public:
  FontCatalog();
  ~FontCatalog();
  FontCatalog(const FontCatalog&) = delete;
  FontCatalog& operator=(const FontCatalog&) = delete;

  /// The outline faces of exactly that family (case and blanks do not count), the one that looks most like the style
  /// first. With `strict` only those of the same boldness and slant.
  [[nodiscard]] std::vector<FontSource> facesOfFamily(std::string_view family, FontStyle style, bool strict) const;
  /// Every outline face, those first that fontconfig holds for the best match.
  [[nodiscard]] std::vector<FontSource> facesLike(const std::string& family, FontStyle style) const;

  /// The faces that have a character, in the order to try them: sans before others, regular before others, in
  /// fontconfig's order for a language (RFC 3066, such as "ar" or "zh-cn"). `inColor` asks for colour fonts instead.
  [[nodiscard]] std::vector<FontSource> facesWith(char32_t character, const std::string& language, bool inColor);

 private:
  /// Faces for a language, sorted once.
  struct Choice {
    FontSource source;
    std::shared_ptr<const FcCharSet> characters;
  };
  using Choices = std::vector<Choice>;

  const Choices& choicesFor(const std::string& language, bool inColor);
  [[nodiscard]] Choices findChoices(const std::string& language, bool inColor) const;

  std::unique_ptr<FcConfig, void (*)(FcConfig*)> config_;
  std::map<std::pair<std::string, bool>, Choices> choices_;
};

}  // namespace chatsum::platform::system
