// The texts in C++ sources and in catalogues of translations, for tests that compare them.
#pragma once

#include <compare>
#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace chatsum::test {

/// A string literal; pieces that follow each other are one. UTF-8, escapes resolved.
struct SourceText {
  std::string text;
  std::string place;               ///< "hosts/cli/Cli.cpp:12", below the folder that was read
  std::vector<std::string> calls;  ///< the names before the open parentheses and braces around it, the innermost last
  std::size_t argument = 0;        ///< its place among the arguments of the innermost, from 0

  [[nodiscard]] bool isWithin(const std::vector<std::string>& names) const;
};

/// Of a file's code; `place` is the path to tell. Includes and comments have none.
[[nodiscard]] std::vector<SourceText> textsOfCode(const std::string& code, const std::string& place);
/// Of all .h and .cpp files below a folder, with paths below `root`, in the order of their names.
[[nodiscard]] std::vector<SourceText> textsOfSources(const std::filesystem::path& root, const std::string& folder);

/// An entry of a catalogue (GNU gettext manual, "The Format of PO Files").
struct CatalogueText {
  std::string singular, plural;  // the plural is empty for a text without a number
  auto operator<=>(const CatalogueText&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const CatalogueText& text);

struct CatalogueEntry {
  CatalogueText text;
  std::vector<std::string> translations;  ///< one, or the plural forms; empty where there is none yet
  bool isFuzzy = false;
};

/// In the order of the file, without the header.
[[nodiscard]] std::vector<CatalogueEntry> entriesOfCatalogue(const std::filesystem::path& catalogue);

}  // namespace chatsum::test
