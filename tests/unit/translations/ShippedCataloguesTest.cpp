#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

#include "platform/system/bundle/SharedFolder.h"
#include "platform/system/translations/Translations.h"

namespace chatsum::platform::system {
namespace {

namespace fs = std::filesystem;

std::string contentsOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The first group of every match.
std::set<std::string> matches(const std::string& text, const std::string& expression) {
  const std::regex pattern(expression);
  std::set<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
    found.insert((*match)[1].str());
  }
  return found;
}

std::set<std::string> textsOf(const fs::path& catalogue) {
  return matches(contentsOf(catalogue), "\nmsgid \"([^\"]+)\"\n");
}

const fs::path kRoot = CHATSUM_SOURCE_ROOT;
const fs::path kFolder = kRoot / "assets/translations";

TEST(ShippedCatalogues, HoldEveryTextOfTheTemplate) {
  const std::set<std::string> texts = textsOf(kFolder / "chatsum.pot");
  ASSERT_GT(texts.size(), 30U);
  for (const char* language : {"de", "fr", "es", "ja"}) {
    EXPECT_EQ(textsOf(kFolder / (std::string(language) + ".po")), texts) << language;
    const Translations translations(sharedFolder() + "/locale", {language});
    std::size_t translated = 0;
    for (const std::string& text : texts) translated += translations.text(text) != text ? 1 : 0;
    EXPECT_GT(translated, texts.size() - 5) << language;  // names such as FaceTime are the same everywhere
  }
}

TEST(ShippedCatalogues, HoldEveryTextThatTheLibraryLooksUp) {
  const std::set<std::string> texts = textsOf(kFolder / "chatsum.pot");
  std::set<std::string> lookedUp;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / "libchatsum")) {
    if (entry.path().extension() != ".cpp") continue;
    const std::string code = std::regex_replace(contentsOf(entry.path()), std::regex("\"\\s*\n\\s*\""), "");
    lookedUp.merge(matches(code, "[Ll]ocalized(?:String|LabelFromUIKit)?\\(\\s*\"([^\"]+)\""));
  }
  EXPECT_GT(lookedUp.size(), 4U);
  for (const std::string& text : lookedUp) EXPECT_THAT(texts, ::testing::Contains(text));
}

}  // namespace
}  // namespace chatsum::platform::system
