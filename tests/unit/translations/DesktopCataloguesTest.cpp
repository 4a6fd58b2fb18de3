// Compares the catalogues of the desktop program's window with the texts in its sources, as they stand in the tree.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace chatsum::platform::system {
namespace {

namespace fs = std::filesystem;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;

const fs::path kSources = fs::path(CHATSUM_SOURCE_ROOT) / "hosts/desktop";
const fs::path kCatalogues = fs::path(CHATSUM_SOURCE_ROOT) / "assets/translations/desktop";

/// A text as a catalogue has it.
struct Text {
  std::string context, singular, plural;  // the plural is empty for a text without a number
  auto operator<=>(const Text&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Text& text) {
  return stream << '[' << text.context << "] " << text.singular << " / " << text.plural;
}

std::string contentsOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string replaced(const std::string& text, const std::string& ending, const std::string& other) {
  return std::regex_replace(text, std::regex(ending), other);
}

std::vector<std::smatch> matches(const std::string& text, const std::regex& pattern) {
  return {std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator()};
}

/// The code of all files of that kind, with texts that are written in pieces put together.
std::vector<std::string> codeOf(const std::string& extension) {
  std::vector<std::string> all;
  for (const auto& entry : fs::recursive_directory_iterator(kSources)) {
    if (entry.path().extension() == extension) all.push_back(replaced(contentsOf(entry.path()), "\"\\s*\\n\\s*\"", ""));
  }
  return all;
}

/// A text with a number is written "%Ln call(s)".
Text asInCatalogue(const std::string& context, const std::string& source) {
  if (source.find("%Ln") == std::string::npos) return {context, source, ""};
  return {context, replaced(source, "\\(s\\)", ""), replaced(source, "\\(s\\)", "s")};
}

/// What QML and C++ ask a translation for; the first argument, and the second where that is a text too.
std::set<Text> textsOfSources() {
  const std::string literal = "\"((?:[^\"\\\\]|\\\\.)*)\"", second = "(?:\\s*,\\s*" + literal + ")?";
  std::set<Text> texts;
  const auto collect = [&](const std::string& extension, const std::string& call) {
    const std::regex pattern("\\b" + call + literal + second);
    for (const std::string& code : codeOf(extension)) {
      for (const std::smatch& match : matches(code, pattern)) texts.insert(asInCatalogue(match[2], match[1]));
    }
  };
  collect(".qml", "qsTr\\(\\s*");
  collect(".cpp", "tr\\(\\s*");
  collect(".cpp", "QT_TR_NOOP\\(\\s*");
  collect(".cpp", "QCoreApplication::translate\\(\\s*\"\\w+\",\\s*");
  return texts;
}

/// The entries of a catalogue and their translations, which are one or the plural forms.
std::map<Text, std::vector<std::string>> entriesOf(const fs::path& catalogue) {
  const std::regex entry(
      "\n(?:#[^\n]*\n)+(?:msgctxt \"(.*)\"\n)?msgid \"(.+)\"\n(?:msgid_plural \"(.+)\"\n)?((?:msgstr.*(?:\n|$))+)");
  std::map<Text, std::vector<std::string>> entries;
  const std::string contents = contentsOf(catalogue);
  for (const std::smatch& match : matches(contents, entry)) {
    std::vector<std::string>& translations = entries[Text{match[1], match[2], match[3]}];
    const std::string lines = match[4];
    for (const std::smatch& line : matches(lines, std::regex("msgstr(?:\\[\\d\\])? \"(.*)\""))) {
      translations.push_back(line[1]);
    }
  }
  return entries;
}

std::set<Text> textsOf(const fs::path& catalogue) {
  std::set<Text> texts;
  for (const auto& [text, translations] : entriesOf(catalogue)) texts.insert(text);
  return texts;
}

std::multiset<std::string> placesIn(const std::string& text) {
  std::multiset<std::string> places;
  for (const std::smatch& match : matches(text, std::regex("%L?[0-9n]"))) places.insert(match[0]);
  return places;
}

TEST(DesktopCatalogues, HoldExactlyTheTextsOfTheSources) {
  const std::set<Text> texts = textsOfSources();
  EXPECT_THAT(texts, IsSupersetOf({Text{"", "Sample device", ""}, Text{"ticks", "Clear", ""},
                                   Text{"", "%Ln call", "%Ln calls"}, Text{"", "Incoming phone call", ""}}));
  EXPECT_GT(texts.size(), 150U);
  EXPECT_EQ(textsOf(kCatalogues / "chatsum-desktop.pot"), texts) << "tools/make-translations helps";
  for (const char* language : {"de", "fr", "es", "ja"}) {
    EXPECT_EQ(textsOf(kCatalogues / (std::string(language) + ".po")), texts) << language;
  }
}

TEST(DesktopCatalogues, NeedTextsThatStandInTheSources) {
  for (const std::string& code : codeOf(".qml")) {
    EXPECT_EQ(matches(code, std::regex("\\bqsTr\\(")).size(), matches(code, std::regex("\\bqsTr\\(\\s*\"")).size());
    EXPECT_THAT(matches(code, std::regex("\\b(?:qsTranslate|qsTrId|QT_TR_NOOP)\\b")), ::testing::IsEmpty());
  }
}

TEST(DesktopCatalogues, TranslateEveryTextWithAllThatIsPutIntoIt) {
  const std::map<std::string, std::size_t> forms = {{"de", 2}, {"fr", 2}, {"es", 2}, {"ja", 1}};
  for (const auto& [language, count] : forms) {
    const auto entries = entriesOf(kCatalogues / (language + ".po"));
    EXPECT_FALSE(entries.empty());
    for (const auto& [text, translations] : entries) {
      EXPECT_EQ(translations.size(), text.plural.empty() ? 1 : count) << language << ' ' << text;
      for (const std::string& translation : translations) {
        EXPECT_FALSE(translation.empty()) << language << ' ' << text;
        EXPECT_EQ(placesIn(translation), placesIn(text.singular)) << language << ' ' << text;
      }
    }
  }
}

TEST(DesktopCatalogues, QuoteAndEndAsTheirLanguagesDo) {
  // Spaces before signs are those that no line is broken at.
  const std::map<std::string, std::vector<std::string>> foreign = {
      {"de", {"\\\"", "”", "«", " …"}},
      {"fr", {"\\\"", "“", "”", "„", "« ", " »", " ;", " :", " !", " ?", "'"}},
      {"es", {"\\\"", "“", "”", "„", "« ", " »", " …"}},
      {"ja", {"\\\"", "“", "”", "„", "«", " …"}}};
  for (const auto& [language, signs] : foreign) {
    for (const auto& [text, translations] : entriesOf(kCatalogues / (language + ".po"))) {
      for (const std::string& sign : signs) {
        EXPECT_THAT(translations, Each(Not(HasSubstr(sign)))) << language << ' ' << text;
      }
    }
  }
}

}  // namespace
}  // namespace chatsum::platform::system
