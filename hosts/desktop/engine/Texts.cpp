#include "hosts/desktop/engine/Texts.h"

#include <algorithm>

#include "platform/foundation/Utf8.h"

namespace chatsum::desktop {
namespace {

constexpr std::size_t kBytesOfName = 4096;                     // that are looked at
constexpr qsizetype kLongestName = 200, kLongestNames = 1000;  // UTF-16 code units
constexpr QChar kMore(0x2026), kIsolate(0x2068), kEndOfIsolate(0x2069);

bool isLineEnd(QChar c) {
  return c.category() == QChar::Other_Control || c.unicode() == 0x2028 || c.unicode() == 0x2029;
}

bool isControlOfDirection(QChar c) {
  const char16_t code = c.unicode();
  return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

bool isRightToLeft(char32_t character) {
  const QChar::Direction direction = QChar::direction(character);
  return direction == QChar::DirR || direction == QChar::DirAL || direction == QChar::DirAN;
}

QString nameOf(const QString& text, bool isLonger) {
  QString name;
  for (const QChar c : text) {
    if (isControlOfDirection(c)) continue;
    if (!isLineEnd(c)) {
      name += c;
    } else if (!name.endsWith(u' ')) {
      name += u' ';
    }
    if (name.size() > kLongestName) break;
  }
  if (name.size() <= kLongestName) return isLonger ? name + kMore : name;
  name.truncate(name.at(kLongestName - 1).isHighSurrogate() ? kLongestName - 1 : kLongestName);
  return name + kMore;
}

}  // namespace

QString shownSentence(std::string_view sentence) {
  QString shown;
  for (const QChar c : shownText(sentence)) {
    if (!isControlOfDirection(c)) shown += isLineEnd(c) ? QChar(u' ') : c;
  }
  return shown;
}

QString shownStart(std::string_view text, std::size_t bytes) {
  if (text.size() <= bytes) return shownText(text);
  const std::string_view start = text.substr(0, bytes);
  return shownText(start.substr(0, utf8::lengthWithoutPartialTail(start)));
}

QString shownName(std::string_view name) { return nameOf(shownStart(name, kBytesOfName), name.size() > kBytesOfName); }

QString shownName(const QString& name) {
  constexpr auto kMost = static_cast<qsizetype>(kBytesOfName);
  return nameOf(name.left(kMost), name.size() > kMost);
}

QString isolatedName(const QString& name) {
  const QList<uint> characters = name.toUcs4();
  if (std::none_of(characters.begin(), characters.end(), isRightToLeft)) return name;
  return kIsolate + name + kEndOfIsolate;
}

QString joinedNames(const QStringList& names) {
  const QString between = QStringLiteral(", ");
  QString joined;
  for (const QString& name : names) {
    if (&name != &names.front()) joined += between;
    if (joined.size() > kLongestNames) return joined + kMore;
    joined += isolatedName(name);
  }
  return joined;
}

}  // namespace chatsum::desktop
