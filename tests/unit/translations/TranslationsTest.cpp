#include "platform/system/translations/Translations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/fake/TemporaryFolder.h"
#include "platform/system/SystemPlatform.h"
#include "tests/unit/translations/MoFile.h"

namespace chatsum::platform::system {
namespace {

class TranslationsTest : public ::testing::Test {
 protected:
  void put(const std::string& language, const std::string& bytes, const std::string& name = "chatsum") const {
    const auto place = std::filesystem::path(folder_.path()) / language / "LC_MESSAGES" / (name + ".mo");
    std::filesystem::create_directories(place.parent_path());
    std::ofstream(place, std::ios::binary) << bytes;
  }
  [[nodiscard]] std::string text(const std::string& english, std::vector<std::string> languages) const {
    return Translations(folder_.path(), std::move(languages)).text(english);
  }

  fake::TemporaryFolder folder_;
};

TEST_F(TranslationsTest, AreTheEnglishTextsWithoutACatalogue) {
  EXPECT_EQ(text("Close", {}), "Close");
  EXPECT_EQ(text("Close", {"de_DE", "de"}), "Close");
  EXPECT_EQ(text("", {"de"}), "");
  EXPECT_EQ(Translations("", {"de"}).text("Close"), "Close");
}

TEST_F(TranslationsTest, ComeFromTheFirstLanguageThatHasThem) {
  put("de_AT", test::moFile({{"January", "Jänner"}}));
  put("de", test::moFile({{"January", "Januar"}, {"Close", "Schließen"}}));
  put("fr", test::moFile({{"Error", "Erreur"}}));
  const std::vector<std::string> languages = {"de_AT", "de", "fr"};
  EXPECT_EQ(text("January", languages), "Jänner");
  EXPECT_EQ(text("Close", languages), "Schließen");
  EXPECT_EQ(text("Error", languages), "Erreur");
  EXPECT_EQ(text("Cancel", languages), "Cancel");
}

TEST_F(TranslationsTest, AreFoundByTheirContextAndNumber) {
  put("de", test::moFile({{"Clear", "Löschen"},
                          {"ticks\4Clear", "Aufheben"},
                          {std::string("%1 call\0%1 calls", 16), std::string("%1 Anruf\0%1 Anrufe", 18)}}));
  const Translations translations(folder_.path(), {"de"});
  EXPECT_EQ(translations.find("Clear"), "Löschen");
  EXPECT_EQ(translations.find("Clear", "ticks"), "Aufheben");
  EXPECT_EQ(translations.find("Clear", "letters"), std::nullopt);
  EXPECT_EQ(translations.find("Close"), std::nullopt);
  EXPECT_EQ(translations.find("%1 call", {}, 1), "%1 Anruf");
  EXPECT_EQ(translations.find("%1 call", {}, 0), "%1 Anrufe");
}

TEST_F(TranslationsTest, ComeFromTheCatalogueOfTheirName) {
  put("de", test::moFile({{"Close", "Schließen"}}));
  put("de", test::moFile({{"Close", "Zumachen"}}), "window");
  EXPECT_EQ(text("Close", {"de"}), "Schließen");
  EXPECT_EQ(Translations(folder_.path(), {"de"}, "window").text("Close"), "Zumachen");
  EXPECT_EQ(Translations(folder_.path(), {"de"}, "none").text("Close"), "Close");
}

TEST_F(TranslationsTest, PassOverACatalogueThatCannotBeRead) {
  put("de", "not a catalogue");
  put("fr", test::moFile({{"Close", "Fermer"}}));
  std::filesystem::create_directories(folder_.path() + "/es/LC_MESSAGES/chatsum.mo");
  EXPECT_EQ(text("Close", {"de", "es", "fr"}), "Fermer");
}

TEST_F(TranslationsTest, AnswerOnManyThreads) {
  put("de", test::moFile({{"Close", "Schließen"}}));
  const Translations translations(folder_.path(), {"de"});
  std::vector<std::jthread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int n = 0; n < 100; ++n) EXPECT_EQ(translations.text("Close"), "Schließen");
    });
  }
}

// The program of this test stands in the build's bin, like those that are built for people.
TEST(Catalogues, OfTheBuildServeTheBundleAndTheCompanion) {
  SystemOptions options;
  options.homeDirectory = "/var/mobile";
  SystemPlatform plain(options);
  options.languages = {"de"};
  SystemPlatform german(options);
  EXPECT_EQ(german.platform().mainBundle.localizedString("Me"), "Ich");
  EXPECT_EQ(german.platform().companion.localizedLabelFromUIKit("Error"), "Fehler");
  EXPECT_EQ(german.platform().companion.localizedLabelFromUIKit("Close"), "Schließen");
  EXPECT_EQ(german.platform().companion.localizedLabelFromUIKit("Rotate"), "Rotate");
  EXPECT_EQ(plain.platform().mainBundle.localizedString("Me"), "Me");
}

}  // namespace
}  // namespace chatsum::platform::system
