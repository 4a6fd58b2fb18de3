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

TEST_F(TranslatedReport, TellsInTextWhatHappenedInTheLanguageOfTheUser) {
  environment["LC_ALL"] = "de_DE.UTF-8";
  const std::string german = report("Sunday Hikers");
  EXPECT_THAT(german, HasSubstr("[hat die Gruppe “Sunday Hikers” genannt]"));
  EXPECT_THAT(german, HasSubstr("[hat die Gruppe verlassen]"));
  EXPECT_THAT(german, Not(HasSubstr("[named the group")));
  environment["LC_ALL"] = "ja_JP.UTF-8";
  const std::string japanese = report("Sunday Hikers", {"--replace"});
  EXPECT_THAT(japanese, HasSubstr("[グループ名を“Sunday Hikers”に変更]"));
  EXPECT_THAT(japanese, HasSubstr("[グループを退出]"));
}

TEST_F(TranslatedReport, HasItsColumnTitlesInTheLanguageOfTheUser) {
  environment["LC_ALL"] = "de_DE.UTF-8";
  EXPECT_TRUE(report("Maya Lindqvist", {"--format", "csv"}).starts_with("Name,Text,Datum\n"));
  EXPECT_TRUE(report("Maya Lindqvist", {"--format", "csv", "--columns", "Who,What,Date", "--replace"})
                  .starts_with("Who,What,Date\n"));
  EXPECT_THAT(wordsOfDocument(), ::testing::ContainsRegex("Name +Text +Datum"));
  environment["LC_ALL"] = "ja_JP.UTF-8";
  EXPECT_TRUE(report("Maya Lindqvist", {"--format", "csv", "--replace"}).starts_with("名前,テキスト,日付\n"));
  EXPECT_THAT(wordsOfDocument(), HasSubstr("日付"));
}

TEST_F(TranslatedReport, OfCallsIsInTheLanguageOfTheUser) {
  const auto calls = [this] {
    const Outcome made = run({"report", "--app", "facetime", "--format", "csv", "--name", "calls", "--replace",
                              "--keys", "Name,Text,Date,Direction,Status,Medium"});
    EXPECT_EQ(made.code, 0) << made.err;
    return testing::bytesOf(testing::linesOf(made.out).at(0));
  };
  environment["LC_ALL"] = "de_DE.UTF-8";
  const std::string german = calls();
  EXPECT_TRUE(german.starts_with("Name,Anruf,Datum,Richtung,Status,Medium\n")) << german;
  EXPECT_THAT(german, HasSubstr("Eingehender FaceTime-Videoanruf"));
  EXPECT_THAT(german, HasSubstr(",eingehend,"));
  EXPECT_THAT(german, Not(HasSubstr("ncoming")));
  environment["LC_ALL"] = "ja_JP.UTF-8";
  EXPECT_THAT(calls(), HasSubstr("FaceTimeビデオ着信"));
}

TEST_F(TranslatedReport, EndsWithABalanceInTheLanguageOfTheUser) {
  environment["LC_ALL"] = "de_DE.UTF-8";
  const Outcome german = run({"messages", "Sunday Hikers"});
  EXPECT_THAT(german.err,
              ::testing::ContainsRegex("Zeilen: [0-9]+ im Speicher.* = [0-9]+ gezeigt [+] [0-9]+ weggelassen"));
  environment["LC_ALL"] = "fr_FR.UTF-8";
  EXPECT_THAT(run({"calls"}).err, ::testing::ContainsRegex("Appels : .* affichés"));
  environment["LC_ALL"] = "es_ES.UTF-8";
  EXPECT_THAT(run({"report", "Nobody"}).err, HasSubstr("No hay ninguna conversación «Nobody»"));
  environment["LC_ALL"] = "ja_JP.UTF-8";
  EXPECT_THAT(run({"report"}).err, HasSubstr("何のレポートかを指定してください"));
  EXPECT_THAT(run({"conversations"}).out, HasSubstr("メッセージ"));
}

TEST_F(TranslatedReport, KeepsTheWordsThatProgramsRead) {
  environment["LC_ALL"] = "de_DE.UTF-8";
  const std::string calls = run({"calls", "--json"}).out;
  EXPECT_THAT(calls, HasSubstr("\"direction\":\"incoming\""));
  EXPECT_THAT(calls, HasSubstr("\"status\":\"missed\""));
  const std::string sources = run({"sources", device().string(), "--json"}).out;
  EXPECT_THAT(sources, HasSubstr("\"kind\":\"device\""));
  EXPECT_THAT(run({"sources", device().string()}).out, HasSubstr("Gerät"));
  EXPECT_THAT(run({"settings", "ChatsumEnabled"}).out, Not(HasSubstr("ja")));
}

TEST_F(TranslatedReport, NamesTheLabelsOfNumbersInTheLanguageOfTheUser) {
  EXPECT_THAT(run({"messages", "Maya Lindqvist", "--json"}).out, HasSubstr("\"label\":\"mobile\""));
  environment["LC_ALL"] = "de_DE.UTF-8";
  EXPECT_THAT(run({"messages", "Maya Lindqvist", "--json"}).out, HasSubstr("\"label\":\"Mobil\""));
  EXPECT_THAT(report("Maya Lindqvist", {"--format", "csv", "--keys", "Name,label"}), HasSubstr(",Mobil\n"));
  environment["LC_ALL"] = "ja_JP.UTF-8";
  EXPECT_THAT(report("Maya Lindqvist", {"--format", "csv", "--keys", "Name,label", "--replace"}), HasSubstr(",携帯\n"));
}

}  // namespace
}  // namespace chatsum::cli
