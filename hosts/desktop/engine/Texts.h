// Texts of the engine as the window takes them. Pure functions: any thread.
#pragma once

#include <QString>
#include <QStringList>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum::desktop {

/// UTF-8 as Qt has it; what is malformed shows as U+FFFD.
[[nodiscard]] inline QString shownText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// A sentence of the engine, which may quote what others wrote, on one line: control characters and line ends are a
/// blank, controls of the direction of writing are left out.
[[nodiscard]] QString shownSentence(std::string_view sentence);

[[nodiscard]] inline QStringList shownSentences(const std::vector<std::string>& sentences) {
  QStringList shown;
  for (const std::string& sentence : sentences) shown.append(shownSentence(sentence));
  return shown;
}

/// At most so many bytes from the beginning of a text, whole characters only: laying out what is longer holds the
/// window up.
[[nodiscard]] QString shownStart(std::string_view text, std::size_t bytes);

/// The name of a person, a conversation, a device or a file as one line that keeps to itself, whoever chose it: control
/// characters and line ends are a blank, controls of the direction of writing (UAX #9) are left out, and what is longer
/// than 200 UTF-16 code units ends with "…". Usual names stay as they are.
[[nodiscard]] QString shownName(std::string_view name);
[[nodiscard]] QString shownName(const QString& name);

/// A name from `shownName` for a text in which others stand beside it: one that is written from right to left, at least
/// in part, stands between U+2068 and U+2069, so that the others keep their places (UAX #9, isolates).
[[nodiscard]] QString isolatedName(const QString& name);

/// Names from `shownName` with ", " between them; of very many only the first ones and "…".
[[nodiscard]] QString joinedNames(const QStringList& names);

/// The bytes of a file's name, or of a person's words.
[[nodiscard]] inline std::string utf8Of(const QString& text) { return text.toStdString(); }

}  // namespace chatsum::desktop
