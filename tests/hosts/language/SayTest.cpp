#include "hosts/device/language/Say.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/fake/TemporaryFolder.h"
#include "tests/unit/translations/MoFile.h"

namespace chatsum::device {
namespace {

using platform::system::Translations;

class SayTest : public ::testing::Test {
 protected:
  SayTest() : translations_(folder_.path(), {"xx"}) {
    const std::string plurals = "Plural-Forms: nplurals=2; plural=n > 1;\n";
    const auto place = std::filesystem::path(folder_.path()) / "xx/LC_MESSAGES/chatsum.mo";
    std::filesystem::create_directories(place.parent_path());
    std::ofstream(place, std::ios::binary) << test::moFile({
        {"", plurals},
        {"'{0}' holds {1} files.", "{1} Dateien hält '{0}'."},
        {"'{0}' is gone.", "{1} fehlt."},
        {"'{0}' is odd.", "'{0:d}' ist"},
        {"'{0}' is open.", "'{0' offen"},
        {std::string("{0} row\0{0} rows", 16), std::string("{0} Zeile\0{0} Zeilen", 20)},
        {std::string("{0} in {1}\0{0} all in {1}", 25), std::string("{0} aus {1}\0{0} {2}", 19)},
    });
  }
  template <typename... Arguments>
  std::string filled(std::string_view english, const Arguments&... arguments) const {
    return language::filled(translations_, english, fmt::make_format_args(arguments...));
  }
  template <typename... Arguments>
  std::string counted(std::uint64_t count, std::string_view one, std::string_view many,
                      const Arguments&... arguments) const {
    return language::filledCounted(translations_, count, one, many, fmt::make_format_args(count, arguments...));
  }

 private:
  platform::fake::TemporaryFolder folder_;
  Translations translations_;
};

TEST_F(SayTest, FillsThePlacesOfTheTranslationInItsOwnOrder) {
  EXPECT_EQ(filled("'{0}' holds {1} files.", std::string("a"), 3), "3 Dateien hält 'a'.");
  EXPECT_EQ(filled("'{0}' holds {1} files.", std::string("{1}"), 3), "3 Dateien hält '{1}'.");
}

TEST_F(SayTest, SaysTheEnglishSentenceWithoutATranslation) {
  EXPECT_EQ(filled("Nobody knows '{0}'.", std::string("a")), "Nobody knows 'a'.");
  EXPECT_EQ(say("Nobody knows '{0}', {{not even}} {1}.", "a", 2), "Nobody knows 'a', {not even} 2.");
}

TEST_F(SayTest, SaysTheEnglishSentenceWhenThePlacesOfTheTranslationDoNotFit) {
  EXPECT_EQ(filled("'{0}' is gone.", std::string("a")), "'a' is gone.");
  EXPECT_EQ(filled("'{0}' is odd.", std::string("a")), "'a' is odd.");
  EXPECT_EQ(filled("'{0}' is open.", std::string("a")), "'a' is open.");
}

TEST_F(SayTest, TakesTheFormThatBelongsToTheNumber) {
  EXPECT_EQ(counted(0, "{0} row", "{0} rows"), "0 Zeile");  // as in French
  EXPECT_EQ(counted(1, "{0} row", "{0} rows"), "1 Zeile");
  EXPECT_EQ(counted(2, "{0} row", "{0} rows"), "2 Zeilen");
  EXPECT_EQ(counted(1, "{0} in {1}", "{0} all in {1}", "a"), "1 aus a");
  EXPECT_EQ(counted(7, "{0} in {1}", "{0} all in {1}", "a"), "7 all in a");
  EXPECT_EQ(sayCounted(0, "{0} fish of {1}", "{0} fishes of {1}", "a"), "0 fishes of a");
  EXPECT_EQ(sayCounted(1, "{0} fish of {1}", "{0} fishes of {1}", "a"), "1 fish of a");
}

TEST_F(SayTest, LeavesWordsOfTablesAsTheyAreWithoutACatalogue) {
  constexpr std::string_view kWord = toSay("a {word}");
  EXPECT_EQ(said(kWord), "a {word}");
}

}  // namespace
}  // namespace chatsum::device
