// Gives Qt the texts of the catalogues that the library and the command line read too. Any thread.
#pragma once

#include <QTranslator>
#include <string>
#include <vector>

#include "platform/system/translations/Translations.h"

namespace chatsum::desktop {

class Translator : public QTranslator {
  Q_OBJECT

 public:
  /// The folder of catalogues and the languages, as Translations takes them.
  Translator(std::string folder, std::vector<std::string> languages, QObject* parent = nullptr);

  /// Never empty: catalogues are read when the first text is asked for.
  [[nodiscard]] bool isEmpty() const override { return false; }
  /// The text, whatever the context; a null string when no catalogue has it. Of a text with a number the endings in
  /// brackets, as in "%n call(s)", are left out for one and written for any other.
  [[nodiscard]] QString translate(const char* context, const char* sourceText, const char* disambiguation = nullptr,
                                  int n = -1) const override;

 private:
  platform::system::Translations translations_;
};

}  // namespace chatsum::desktop
