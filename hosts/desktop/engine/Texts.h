// Texts of the engine as the window takes them. Pure functions: any thread.
#pragma once

#include <QString>
#include <QStringList>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum::desktop {

/// UTF-8 as Qt has it; what is malformed shows as U+FFFD.
[[nodiscard]] inline QString shownText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

[[nodiscard]] inline QStringList shownTexts(const std::vector<std::string>& texts) {
  QStringList shown;
  for (const std::string& text : texts) shown.append(shownText(text));
  return shown;
}

/// The bytes of a file's name, or of a person's words.
[[nodiscard]] inline std::string utf8Of(const QString& text) { return text.toStdString(); }

}  // namespace chatsum::desktop
