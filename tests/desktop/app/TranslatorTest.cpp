#include "hosts/desktop/app/Translator.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLocale>
#include <string>

#include "platform/system/bundle/SharedFolder.h"

namespace chatsum::desktop {
namespace {

std::string catalogues() { return platform::system::sharedFolder() + "/locale"; }

TEST(Translator, GivesTheTextsOfTheWindowsOwnCatalogues) {
  EXPECT_EQ(Translator(catalogues(), {"de"}).translate("Anything", "Sample device"), QStringLiteral("Beispielgerät"));
  EXPECT_EQ(Translator(catalogues(), {"ja"}).translate("Anything", "Close"), QStringLiteral("閉じる"));
}

TEST(Translator, GivesTheTextsOfTheLibraryToo) {
  const Translator translator(catalogues(), {"de"});
  EXPECT_EQ(translator.translate("Anything", "Generate Report"), QStringLiteral("Bericht erstellen"));
}

TEST(Translator, LeavesUnknownTextsToQt) {
  const Translator translator(catalogues(), {"de"});
  EXPECT_TRUE(translator.translate("Anything", "No such text anywhere").isNull());
  EXPECT_TRUE(Translator(catalogues(), {}).translate("Anything", "Close").isNull());
  EXPECT_TRUE(translator.translate("Anything", nullptr).isNull());
}

TEST(Translator, TellsMeaningsOfAWordApart) {
  const Translator translator(catalogues(), {"de"});
  EXPECT_EQ(translator.translate("Anything", "Clear", "ticks"), QStringLiteral("Aufheben"));
  EXPECT_EQ(translator.translate("Anything", "Clear", "what was typed"), QStringLiteral("Eingabe löschen"));
  EXPECT_TRUE(translator.translate("Anything", "Clear", "something else").isNull());
}

TEST(Translator, CountsInEnglishWithoutACatalogue) {
  const Translator translator(catalogues(), {});
  EXPECT_EQ(translator.translate("Anything", "%Ln call(s)", nullptr, 1), QStringLiteral("%Ln call"));
  EXPECT_EQ(translator.translate("Anything", "%Ln call(s)", nullptr, 2), QStringLiteral("%Ln calls"));
  EXPECT_EQ(translator.translate("Anything", "%Ln call(s)", nullptr, 0), QStringLiteral("%Ln calls"));
  EXPECT_EQ(translator.translate("Anything", "%Ln files (%1)", nullptr, 1), QStringLiteral("%Ln files (%1)"));
  EXPECT_TRUE(translator.translate("Anything", "call(s)").isNull());
}

TEST(Translator, CountsAsEachLanguageDoes) {
  const auto words = [](const char* language, int n) {
    return Translator(catalogues(), {language}).translate("Anything", "%Ln conversation(s)", nullptr, n).toStdString();
  };
  EXPECT_EQ(words("de", 0), "%Ln Konversationen");
  EXPECT_EQ(words("de", 1), "%Ln Konversation");
  EXPECT_EQ(words("es", 1), "%Ln conversación");
  EXPECT_EQ(words("es", 2), "%Ln conversaciones");
  EXPECT_EQ(words("fr", 0), "%Ln conversation");
  EXPECT_EQ(words("fr", 1), "%Ln conversation");
  EXPECT_EQ(words("fr", 2), "%Ln conversations");
  EXPECT_EQ(words("ja", 1), "チャット%Ln件");
  EXPECT_EQ(words("ja", 2), "チャット%Ln件");
}

TEST(Translator, ServesQtOnceItIsInstalled) {
  Translator translator(catalogues(), {"fr"});
  ASSERT_TRUE(QCoreApplication::installTranslator(&translator));
  EXPECT_EQ(QCoreApplication::translate("Anything", "Close"), QStringLiteral("Fermer"));
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_EQ(QCoreApplication::translate("Anything", "%Ln call(s)", nullptr, 12345), QStringLiteral("12.345 appels"));
  QCoreApplication::removeTranslator(&translator);
}

}  // namespace
}  // namespace chatsum::desktop
