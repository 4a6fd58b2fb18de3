#include "hosts/desktop/app/Translator.h"

#include <QRegularExpression>
#include <string_view>
#include <utility>

namespace chatsum::desktop {

namespace {

/// "%n call(s)" as "%n call" for one, else "%n calls".
QString inNumber(QString text, int n) {
  static const QRegularExpression kEnding(QStringLiteral("\\((\\p{L}+)\\)"));
  return text.replace(kEnding, n == 1 ? QString() : QStringLiteral("\\1"));
}

}  // namespace

Translator::Translator(std::string folder, std::vector<std::string> languages, QObject* parent)
    : QTranslator(parent), translations_(std::move(folder), std::move(languages)) {}

QString Translator::translate(const char* /*context*/, const char* sourceText, const char* /*disambiguation*/,
                              int n) const {
  const std::string_view english(sourceText ? sourceText : "");
  if (english.empty()) return {};
  const QString text = QString::fromStdString(translations_.text(english));
  if (n >= 0) return inNumber(text, n);
  return text.toStdString() == english ? QString() : text;
}

}  // namespace chatsum::desktop
