#include "hosts/desktop/app/Translator.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace chatsum::desktop {

namespace {

constexpr const char* kCatalogue = "chatsum-desktop";

/// "%Ln call" or "%Ln calls" of "%Ln call(s)".
std::string inNumber(std::string text, bool isOne) {
  constexpr std::string_view kEnding = "(s)";
  for (auto at = text.find(kEnding); at != std::string::npos; at = text.find(kEnding, at)) {
    text.replace(at, kEnding.size(), isOne ? "" : "s");
  }
  return text;
}

}  // namespace

Translator::Translator(std::string folder, std::vector<std::string> languages, QObject* parent)
    : QTranslator(parent), own_(folder, languages, kCatalogue), library_(std::move(folder), std::move(languages)) {}

QString Translator::translate(const char* /*context*/, const char* sourceText, const char* disambiguation,
                              int n) const {
  const std::string source(sourceText ? sourceText : "");
  if (source.empty()) return {};
  const std::string_view meaning(disambiguation ? disambiguation : "");
  const bool hasNumber = n >= 0;
  const std::string english = hasNumber ? inNumber(source, true) : source;
  const auto number = hasNumber ? std::optional(static_cast<std::uint64_t>(n)) : std::nullopt;
  auto text = own_.find(english, meaning, number);
  if (!text) text = library_.find(english, meaning, number);
  if (!text && hasNumber) text = inNumber(source, n == 1);
  return text ? QString::fromStdString(*text) : QString();
}

}  // namespace chatsum::desktop
