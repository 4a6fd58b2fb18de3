#include "hosts/desktop/app/Translator.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <string>

#include "platform/system/bundle/SharedFolder.h"

namespace chatsum::desktop {
namespace {

std::string catalogues() { return platform::system::sharedFolder() + "/locale"; }

TEST(Translator, GivesTheTextsOfTheCatalogues) {
  const Translator translator(catalogues(), {"de"});
  EXPECT_EQ(translator.translate("Anything", "Close"), QStringLiteral("Schließen"));
}

TEST(Translator, LeavesUnknownTextsToQt) {
  const Translator translator(catalogues(), {"de"});
  EXPECT_TRUE(translator.translate("Anything", "No such text anywhere").isNull());
  EXPECT_TRUE(Translator(catalogues(), {}).translate("Anything", "Close").isNull());
  EXPECT_TRUE(translator.translate("Anything", nullptr).isNull());
}

TEST(Translator, WritesEndingsByTheNumber) {
  const Translator translator(catalogues(), {});
  EXPECT_EQ(translator.translate("Anything", "%n call(s)", nullptr, 1), QStringLiteral("%n call"));
  EXPECT_EQ(translator.translate("Anything", "%n call(s)", nullptr, 2), QStringLiteral("%n calls"));
  EXPECT_EQ(translator.translate("Anything", "%n call(s)", nullptr, 0), QStringLiteral("%n calls"));
  EXPECT_EQ(translator.translate("Anything", "%n files (%1)", nullptr, 1), QStringLiteral("%n files (%1)"));
}

TEST(Translator, ServesQtOnceItIsInstalled) {
  Translator translator(catalogues(), {"fr"});
  ASSERT_TRUE(QCoreApplication::installTranslator(&translator));
  EXPECT_EQ(QCoreApplication::translate("Anything", "Close"), QStringLiteral("Fermer"));
  QCoreApplication::removeTranslator(&translator);
}

}  // namespace
}  // namespace chatsum::desktop
