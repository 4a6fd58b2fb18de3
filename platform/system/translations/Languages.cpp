#include "platform/system/translations/Languages.h"

#include <algorithm>
#include <cstdlib>

namespace chatsum::platform::system {
namespace {

constexpr std::size_t kLongestName = 64;

/// "de_AT@euro" of "de_AT.UTF-8@euro".
std::string withoutEncoding(std::string_view locale) {
  const auto dot = locale.find('.');
  if (dot == std::string_view::npos) return std::string(locale);
  const auto modifier = locale.find('@', dot);
  std::string name(locale.substr(0, dot));
  if (modifier != std::string_view::npos) name.append(locale.substr(modifier));
  return name;
}

/// A name becomes part of a path, so it has no other characters than names of languages have.
bool isName(std::string_view name) {
  return !name.empty() && name.size() <= kLongestName && std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-' ||
           c == '@';
  });
}

bool isPlain(std::string_view name) { return name.empty() || name == "C" || name == "POSIX"; }

bool isEnglish(std::string_view name) { return name.substr(0, name.find_first_of("_@-")) == "en"; }

void add(std::vector<std::string>& languages, std::string name) {
  if (std::find(languages.begin(), languages.end(), name) == languages.end()) languages.push_back(std::move(name));
}

/// From the most particular form to the bare language.
void addForms(std::vector<std::string>& languages, std::string name) {
  add(languages, name);
  const auto at = name.find('@');
  const std::string modifier = at == std::string::npos ? "" : name.substr(at);
  if (!modifier.empty()) name.erase(at);
  const auto country = name.find('_');
  const std::string language = name.substr(0, country);
  // The script that a modifier names matters more than the country.
  if (country != std::string::npos && !modifier.empty()) add(languages, language + modifier);
  add(languages, name);
  add(languages, language);
}

}  // namespace

std::vector<std::string> languagesFor(std::string_view locale, std::string_view wanted) {
  std::vector<std::string> languages;
  if (isPlain(locale.substr(0, locale.find('.')))) return languages;
  std::string list(wanted);
  list.append(wanted.empty() ? "" : ":").append(locale);
  for (std::size_t begin = 0; begin <= list.size();) {
    const std::size_t end = std::min(list.find(':', begin), list.size());
    const std::string name = withoutEncoding(std::string_view(list).substr(begin, end - begin));
    begin = end + 1;
    if (isEnglish(name) || name == "C" || name == "POSIX") break;
    if (isName(name)) addForms(languages, name);
  }
  return languages;
}

std::vector<std::string> languagesFromEnvironment() {
  const auto valueOf = [](const char* variable) -> std::string_view {
    const char* value = std::getenv(variable);
    return value ? value : "";
  };
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (const auto locale = valueOf(variable); !locale.empty()) return languagesFor(locale, valueOf("LANGUAGE"));
  }
  return {};
}

}  // namespace chatsum::platform::system
