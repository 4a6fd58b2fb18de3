#include <gmock/gmock.h>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using testing::Outcome;

/// No locale needs to be installed for these: the catalogues are the program's own.
class TranslatedReport : public testing::ProgramTest {
 protected:
  void SetUp() override { writeSample(); }
  std::string wordsOfDocument() const {
    EXPECT_EQ(run({"report", "Maya Lindqvist", "--format", "pdf", "--name", "a", "--replace"}).code, 0);
    return run({"reports", "show", "a.pdf"}).out;
  }
};

TEST_F(TranslatedReport, NamesTheOwnerInTheLanguageOfTheUser) {
  environment["LC_ALL"] = "de_DE.UTF-8";
  EXPECT_THAT(report("Maya Lindqvist"), ::testing::ContainsRegex("(^|\n)Ich: "));
  environment["LC_ALL"] = "ja_JP.UTF-8";
  EXPECT_THAT(report("Maya Lindqvist", {"--replace"}), ::testing::ContainsRegex("(^|\n)自分: "));
}

TEST_F(TranslatedReport, HasItsHeadingInTheLanguageOfTheUser) {
  environment["LC_ALL"] = "de_DE.UTF-8";
  EXPECT_THAT(wordsOfDocument(), HasSubstr("Dieser Bericht wurde am"));
  environment["LC_ALL"] = "";
  environment["LANG"] = "fr_CA.UTF-8";
  EXPECT_THAT(wordsOfDocument(), HasSubstr("Ce rapport a été créé le"));
  environment["LANGUAGE"] = "es:de";
  EXPECT_THAT(wordsOfDocument(), HasSubstr("Este informe se generó el"));
}

TEST_F(TranslatedReport, IsEnglishInThePlainLocaleAndInLanguagesWithoutACatalogue) {
  for (const char* locale : {"C.UTF-8", "C", "en_GB.UTF-8", "nl_NL.UTF-8"}) {
    environment["LC_ALL"] = locale;
    const std::string words = wordsOfDocument();
    EXPECT_THAT(words, HasSubstr("This report was generated on")) << locale;
    EXPECT_THAT(words, Not(HasSubstr("Bericht"))) << locale;
  }
}

}  // namespace
}  // namespace chatsum::cli
