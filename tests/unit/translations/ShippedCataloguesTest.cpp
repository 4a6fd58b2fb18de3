// Compares the catalogues of the library, the command line and what both programs say with the texts in the sources.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "platform/system/bundle/SharedFolder.h"
#include "platform/system/translations/Translations.h"
#include "tests/support/SourceTexts.h"

namespace chatsum::platform::system {
namespace {

namespace fs = std::filesystem;
using test::CatalogueEntry;
using test::CatalogueText;
using test::SourceText;
using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::Not;

const fs::path kRoot = CHATSUM_SOURCE_ROOT;
const fs::path kFolder = kRoot / "assets/translations";
const std::vector<std::string> kLanguages = {"de", "fr", "es", "ja"};

std::set<CatalogueText> textsOf(const fs::path& catalogue) {
  std::set<CatalogueText> texts;
  for (const CatalogueEntry& entry : test::entriesOfCatalogue(catalogue)) texts.insert(entry.text);
  return texts;
}

/// What the library gives its services to translate, also by way of functions and tables of its own.
std::set<CatalogueText> textsOfTheLibrary() {
  static const std::vector<std::string> kCalls = {"localized", "localizedWith", "localizedString",
                                                  "localizedLabelFromUIKit", "kSectionTitles"};
  static const std::map<std::string, std::size_t> kGivenOn = {{"reportError", 1}, {"showQuestion", 1}, {"add", 0}};
  std::set<CatalogueText> texts;
  for (const SourceText& text : test::textsOfSources(kRoot, "libchatsum")) {
    const auto given = text.calls.empty() ? kGivenOn.end() : kGivenOn.find(text.calls.back());
    const bool isGivenOn = given != kGivenOn.end() && given->second == text.argument;
    if (isGivenOn || text.isWithin(kCalls)) texts.insert({text.text, ""});
  }
  return texts;
}

/// What the hosts say.
std::set<CatalogueText> textsOfTheHosts() {
  std::set<CatalogueText> texts;
  for (const char* folder : {"hosts/device", "hosts/cli", "platform/system/contacts"}) {
    std::string singular;
    for (const SourceText& text : test::textsOfSources(kRoot, folder)) {
      if (text.calls.empty()) continue;
      const std::string& call = text.calls.back();
      if ((call == "say" || call == "toSay") && text.argument == 0) texts.insert({text.text, ""});
      if (call != "sayCounted") continue;
      if (text.argument == 1) singular = text.text;
      if (text.argument == 2) texts.insert({singular, text.text});
    }
  }
  return texts;
}

std::multiset<std::string> placesIn(const std::string& text) {
  static const std::regex kPlace("%@|\\{[^{}]*\\}");
  std::multiset<std::string> places;
  for (std::sregex_iterator match(text.begin(), text.end(), kPlace), end; match != end; ++match) {
    places.insert(match->str());
  }
  return places;
}

/// Those of the first that the second has not.
std::vector<CatalogueText> missing(const std::set<CatalogueText>& wanted, const std::set<CatalogueText>& held) {
  std::vector<CatalogueText> absent;
  std::set_difference(wanted.begin(), wanted.end(), held.begin(), held.end(), std::back_inserter(absent));
  return absent;
}

TEST(ShippedCatalogues, HoldExactlyTheTextsOfTheLibrary) {
  const std::set<CatalogueText> held = textsOf(kFolder / "library.pot"), wanted = textsOfTheLibrary();
  EXPECT_GT(wanted.size(), 33U);
  EXPECT_THAT(missing(wanted, held), IsEmpty());
  EXPECT_THAT(missing(held, wanted), IsEmpty()) << "nobody asks for them any more";
}

TEST(ShippedCatalogues, HoldExactlyTheTextsOfTheLibraryAndTheHosts) {
  const std::set<CatalogueText> held = textsOf(kFolder / "chatsum.pot");
  std::set<CatalogueText> wanted = textsOfTheLibrary();
  wanted.merge(textsOfTheHosts());
  EXPECT_THAT(missing(wanted, held), IsEmpty()) << "tools/make-translations adds them";
  EXPECT_THAT(missing(held, wanted), IsEmpty()) << "nobody says them any more; tools/make-translations drops them";
}

TEST(ShippedCatalogues, TranslateEveryText) {
  const std::set<CatalogueText> texts = textsOf(kFolder / "chatsum.pot");
  for (const std::string& language : kLanguages) {
    const fs::path catalogue = kFolder / (language + ".po");
    EXPECT_THAT(missing(texts, textsOf(catalogue)), IsEmpty()) << language << "; tools/make-translations adds them";
    const std::size_t forms = language == "ja" ? 1 : 2;
    for (const CatalogueEntry& entry : test::entriesOfCatalogue(catalogue)) {
      EXPECT_FALSE(entry.isFuzzy) << language << ": " << entry.text;
      EXPECT_EQ(entry.translations.size(), entry.text.plural.empty() ? 1U : forms) << language << ": " << entry.text;
      EXPECT_THAT(entry.translations, Each(Not(IsEmpty()))) << language << ": " << entry.text;
    }
  }
}

TEST(ShippedCatalogues, KeepThePlacesOfEveryText) {
  for (const std::string& language : kLanguages) {
    for (const CatalogueEntry& entry : test::entriesOfCatalogue(kFolder / (language + ".po"))) {
      for (std::size_t form = 0; form < entry.translations.size(); ++form) {
        const bool isSeveral = !entry.text.plural.empty() && form + 1 == entry.translations.size();
        const auto places = placesIn(isSeveral ? entry.text.plural : entry.text.singular);
        EXPECT_EQ(placesIn(entry.translations[form]), places) << language << ": " << entry.text;
      }
    }
  }
}

TEST(ShippedCatalogues, AreReadFromWhereTheyAreBuilt) {
  const std::map<std::string, std::string> owners = {{"de", "Ich"}, {"fr", "Moi"}, {"es", "Yo"}, {"ja", "自分"}};
  for (const auto& [language, owner] : owners) {
    EXPECT_EQ(Translations(sharedFolder() + "/locale", {language}).text("Me"), owner);
  }
}

}  // namespace
}  // namespace chatsum::platform::system
