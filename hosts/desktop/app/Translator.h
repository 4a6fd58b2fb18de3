// Gives Qt the texts of the window's own catalogues, and of those that the library and the command line read too. Any
// thread.
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
  /// The text, whatever part of the window (`context`) asks; a null string when no catalogue has it. The disambiguation
  /// is the context of the catalogue's entry. A text with a number, such as "%Ln call(s)", stands in catalogues as
  /// "%Ln call" and "%Ln calls", and is given in English when no catalogue has it.
  [[nodiscard]] QString translate(const char* context, const char* sourceText, const char* disambiguation = nullptr,
                                  int n = -1) const override;

 private:
  platform::system::Translations own_, library_;
};

}  // namespace chatsum::desktop
