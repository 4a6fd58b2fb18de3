#include <gmock/gmock.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "hosts/cli/Cli.h"
#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::linesOf;
using testing::Outcome;

class ReportsCommand : public testing::ProgramTest {
 protected:
  void put(const std::string& name, const std::string& bytes = "text\n") const {
    testing::putBytes(reports() / name, bytes);
  }
  /// Without a source: no command of this kind needs one.
  Outcome reportsOf(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--home", home().string(), "reports"});
    return runPlain(arguments);
  }
  void expectRefusal(const std::vector<std::string>& arguments, const std::string& part) const {
    const auto before = testing::everythingBelow(home());
    const Outcome outcome = reportsOf(arguments);
    EXPECT_EQ(outcome.code, 2) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr(part));
    EXPECT_EQ(testing::everythingBelow(home()), before);
  }
  /// Runs the program inside this process with somebody who answers at a terminal.
  Outcome runAt(const std::string& answer, const std::vector<std::string>& words, bool outIsTerminal = false) const {
    std::vector<std::string> all = {"chatsum", "--home", home().string(), "reports"};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<const char*> arguments;
    for (const std::string& word : all) arguments.push_back(word.c_str());
    std::ostringstream out, err;
    std::istringstream in(answer);
    const int code = cli::run(static_cast<int>(arguments.size()), arguments.data(),
                              Streams{.out = out, .err = err, .outIsTerminal = outIsTerminal, .in = &in});
    return {.code = code, .out = out.str(), .err = err.str()};
  }
};

TEST_F(ReportsCommand, ListsWhatReportMade) {
  writeSample();
  report("Maya Lindqvist");
  report("Maya Lindqvist", {"--format", "csv"});
  const Outcome outcome = reportsOf({"--json"});
  ASSERT_EQ(outcome.code, 0) << outcome.err;
  const json list = json::parse(outcome.out);
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0]["name"], "Maya Lindqvist.csv");
  EXPECT_EQ(list[1]["name"], "Maya Lindqvist.txt");
  for (const json& element : list) {
    EXPECT_EQ(element.size(), 4U);
    EXPECT_EQ(element["path"], (reports() / element["name"].get<std::string>()).string());
    EXPECT_EQ(element["size"], fs::file_size(element["path"].get<std::string>()));
    EXPECT_THAT(element["created"].get<std::string>(), ::testing::MatchesRegex("20..-..-..T..:..:..-0[45]:00"));
  }
  const auto lines = linesOf(reportsOf({}).out);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_THAT(lines[0], ::testing::MatchesRegex("CREATED +SIZE +NAME"));
  EXPECT_THAT(lines[1], ::testing::MatchesRegex("20..-..-.. ..:.. +[0-9.]+ k?B  Maya Lindqvist.csv"));
}

TEST_F(ReportsCommand, OfANewHomeAreNone) {
  EXPECT_EQ(reportsOf({"--json"}).out, "[]\n");
  const Outcome outcome = reportsOf({});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(linesOf(outcome.err), ElementsAre(HasSubstr("no reports yet")));
  EXPECT_FALSE(fs::exists(home()));
}

TEST_F(ReportsCommand, WithoutAHomeAreThoseOfEveryApplication) {
  environment["XDG_DATA_HOME"] = (root() / "data").string();
  const fs::path data = root() / "data/chatsum";
  testing::putBytes(data / "com.apple.MobileSMS/Library/Preferences/Chatsum/chat.txt", "x");
  testing::putBytes(data / "com.apple.facetime/Library/Preferences/Chatsum/calls.txt", "x");
  testing::putBytes(data / "com.apple.facetime/Library/Preferences/Chatsum/chat.txt", "y");
  EXPECT_EQ(json::parse(runPlain({"reports", "--json"}).out).size(), 3U);
  EXPECT_THAT(runPlain({"reports"}).out, ::testing::AllOf(HasSubstr("FaceTime"), HasSubstr("Messages")));
  const Outcome several = runPlain({"reports", "show", "chat.txt"});
  EXPECT_EQ(several.code, 1);
  EXPECT_THAT(several.err, HasSubstr("com.apple.facetime'"));
  EXPECT_EQ(runPlain({"reports", "show", "calls.txt"}).out, "x");
  EXPECT_EQ(runPlain({"reports", "show", "chat.txt", "--home", (data / "com.apple.facetime").string()}).out, "y");
}

TEST_F(ReportsCommand, ThatCannotBeReadAreAFailure) {
  testing::putBytes(reports(), "in the way");
  const Outcome outcome = reportsOf({});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(outcome.err, HasSubstr("cannot be read"));
}

TEST_F(ReportsCommand, ShowsTheBytesOfAReport) {
  const std::string bytes = "a\tb\n\x1b[31mc\xff\nno end";
  put("odd name; x.txt", bytes);
  const Outcome outcome = reportsOf({"show", "odd name; x.txt"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(outcome.out, bytes);
  EXPECT_EQ(outcome.err, "");
}

TEST_F(ReportsCommand, ShowsATerminalNothingThatItWouldObey) {
  put("a.txt", "one\n\x1b[31mred\r\n\xff end");
  EXPECT_EQ(runAt("", {"show", "a.txt"}, true).out, "one\n [31mred \n\uFFFD end\n");
}

TEST_F(ReportsCommand, ShowsTheWordsOfADocument) {
  writeSample();
  const Outcome made = run({"report", "Maya Lindqvist", "--format", "pdf", "--name", "book"});
  ASSERT_EQ(made.code, 0) << made.err;
  const Outcome outcome = reportsOf({"show", "book.pdf"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_THAT(outcome.out, HasSubstr("This report was generated on"));
  EXPECT_THAT(linesOf(outcome.err), ElementsAre(HasSubstr("book.pdf")));
}

TEST_F(ReportsCommand, SaysHowToOpenADocumentThatItCannotRead) {
  put("broken.pdf", "%PDF-1.7 but no more");
  const Outcome broken = reportsOf({"-q", "show", "broken.pdf"});
  EXPECT_EQ(broken.code, 1);
  EXPECT_THAT(linesOf(broken.err), ElementsAre(HasSubstr((reports() / "broken.pdf").string())));
  environment["PATH"] = (root() / "nothing").string();
  const Outcome missing = reportsOf({"-q", "show", "broken.pdf"});
  EXPECT_EQ(missing.code, 1);
  EXPECT_THAT(linesOf(missing.err), ElementsAre(HasSubstr("not installed")));
}

TEST_F(ReportsCommand, ShowsOnlyReportsThatAreThere) {
  put("a.txt");
  testing::putBytes(reports() / "folder/b.txt", "x");
  for (const char* name : {"b.txt", "a", "A.txt", "folder", ".."}) {
    const Outcome outcome = reportsOf({"show", name});
    EXPECT_EQ(outcome.code, 1) << name;
    EXPECT_EQ(outcome.out, "") << name;
    EXPECT_THAT(linesOf(outcome.err), ElementsAre(HasSubstr("'" + std::string(name) + "'"))) << name;
  }
  expectRefusal({"show", "folder/b.txt"}, "is a path");
  expectRefusal({"show"}, "NAME");
  expectRefusal({"show", "a.txt", "b.txt"}, "b.txt");
}

TEST_F(ReportsCommand, DeletesWithoutAQuestionWhenToldSo) {
  put("a.txt");
  put("b.pdf");
  put("c.csv");
  const Outcome outcome = reportsOf({"delete", "a.txt", "b.pdf", "a.txt", "--yes"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(linesOf(outcome.err), ElementsAre("Deleted 'a.txt'.", "Deleted 'b.pdf'."));
  EXPECT_FALSE(fs::exists(reports() / "a.txt"));
  EXPECT_FALSE(fs::exists(reports() / "b.pdf"));
  EXPECT_TRUE(fs::exists(reports() / "c.csv"));
}

TEST_F(ReportsCommand, DeletesNothingWhenOneIsMissing) {
  put("a.txt");
  const auto before = testing::everythingBelow(home());
  const Outcome outcome = reportsOf({"delete", "a.txt", "z.txt", "--yes"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(linesOf(outcome.err), ElementsAre(HasSubstr("no report 'z.txt'")));
  EXPECT_EQ(testing::everythingBelow(home()), before);
}

TEST_F(ReportsCommand, DeletesNeitherPathsNorWithoutAnybodyToAsk) {
  put("a.txt");
  testing::putBytes(home() / "Library/keep.txt", "x");
  expectRefusal({"delete", "../../keep.txt", "--yes"}, "is a path");
  expectRefusal({"delete", (reports() / "a.txt").string(), "--yes"}, "is a path");
  expectRefusal({"delete", "a.txt"}, "--yes");
  expectRefusal({"delete"}, "NAME");
}

TEST_F(ReportsCommand, DeletesALinkAndNotWhatItNames) {
  const fs::path target = root() / "target.txt";
  testing::putBytes(target, "kept");
  put("a.txt");
  fs::create_symlink(target, reports() / "link.txt");
  EXPECT_EQ(reportsOf({"delete", "link.txt", "--yes"}).code, 0);
  EXPECT_FALSE(fs::exists(fs::symlink_status(reports() / "link.txt")));
  EXPECT_EQ(testing::bytesOf(target), "kept");
}

TEST_F(ReportsCommand, DeletesWhenThePersonAgrees) {
  put("a.txt");
  put("b.txt");
  for (const char* answer : {"", "n\n", "\n", "maybe\n"}) {
    const Outcome kept = runAt(answer, {"delete", "a.txt"});
    EXPECT_EQ(kept.code, 0);
    EXPECT_THAT(kept.err,
                ::testing::AllOf(HasSubstr("Delete this report?\n  a.txt\n"), HasSubstr("Nothing was deleted")));
    EXPECT_TRUE(fs::exists(reports() / "a.txt"));
  }
  const Outcome outcome = runAt("y\n", {"delete", "a.txt", "b.txt"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.err, HasSubstr("Delete these reports?\n  a.txt\n  b.txt\n"));
  EXPECT_TRUE(fs::is_empty(reports()));
}

TEST_F(ReportsCommand, ListsThousands) {
  fs::create_directories(reports());
  for (int i = 0; i < 10'000; ++i) std::ofstream(reports() / ("Report - " + std::to_string(i) + ".txt"));
  EXPECT_EQ(linesOf(reportsOf({}).out).size(), 10'001U);
}

}  // namespace
}  // namespace chatsum::cli
