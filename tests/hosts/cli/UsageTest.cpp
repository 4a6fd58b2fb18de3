#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

using testing::linesOf;
using testing::Outcome;

class Usage : public testing::ProgramTest {
 protected:
  void expectRefusal(const std::vector<std::string>& arguments, const std::string& part) const {
    const Outcome outcome = runPlain(arguments);
    EXPECT_EQ(outcome.code, 2) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    const auto lines = linesOf(outcome.err);
    ASSERT_EQ(lines.size(), 2U) << outcome.err;
    EXPECT_TRUE(lines[0].starts_with("chatsum: ")) << lines[0];
    EXPECT_NE(lines[0].find(part), std::string::npos) << lines[0];
    EXPECT_NE(lines[1].find("--help"), std::string::npos) << lines[1];
  }
};

TEST_F(Usage, PrintsTheVersion) {
  const Outcome outcome = runPlain({"--version"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(outcome.out.starts_with("chatsum ")) << outcome.out;
  EXPECT_EQ(linesOf(outcome.out).size(), 1U);
}

TEST_F(Usage, PrintsHelpOfTheProgramAndOfEachCommand) {
  EXPECT_NE(runPlain({"--help"}).out.find("conversations"), std::string::npos);
  for (const char* command :
       {"sources", "conversations", "messages", "calls", "report", "reports", "settings", "demo"}) {
    const Outcome outcome = runPlain({command, "--help"});
    EXPECT_EQ(outcome.code, 0) << command;
    EXPECT_EQ(outcome.err, "") << command;
    EXPECT_FALSE(outcome.out.empty()) << command;
  }
  for (const char* option : {"--format", "--sort", "--name", "--replace", "--since", "--until", "--exclude", "--keys",
                             "--line-format", "--columns", "--output", "--app", "--with"}) {
    EXPECT_NE(runPlain({"report", "--help"}).out.find(option), std::string::npos) << option;
  }
}

TEST_F(Usage, RefusesWhatItDoesNotUnderstand) {
  expectRefusal({}, "command is missing");
  expectRefusal({"dance"}, "dance");
  expectRefusal({"report"}, "CONVERSATION");
  expectRefusal({"report", "x", "--format", "doc"}, "doc");
  expectRefusal({"report", "x", "--sort", "up"}, "up");
  expectRefusal({"report", "x", "--colour"}, "--colour");
  expectRefusal({"report", "x", "--name"}, "--name");
  expectRefusal({"conversations", "extra"}, "extra");
  expectRefusal({"--region", "Texas", "conversations"}, "Texas");
}

TEST_F(Usage, RefusesOptionsThatMakeNoSenseBeforeItLooksAtTheSource) {
  expectRefusal({"report", "x", "--name", "a/b"}, "'/'");
  expectRefusal({"report", "x", "--name", ".."}, "folder");
  expectRefusal({"report", "x", "--name", ""}, "name");
  expectRefusal({"report", "x", "--name", "  "}, "needs a name");
  expectRefusal({"report", "x", "--name", ".hidden"}, "hidden");
  expectRefusal({"report", "x", "--name", std::string(300, 'a')}, "255");
  expectRefusal({"report", "x", "--since", "yesterday"}, "yesterday");
  expectRefusal({"report", "x", "--until", "2024-02-30"}, "2024-02-30");
  expectRefusal({"report", "x", "--since", "2024-02-02", "--until", "2024-02-01"}, "--until");
  expectRefusal({"report", "x", "--keys", "Name,Colour"}, "Colour");
  expectRefusal({"report", "x", "--columns", "A,B"}, "2 column titles for 3 keys");
  expectRefusal({"report", "x", "--line-format", "nothing"}, "%@");
  expectRefusal({"report", "x", "--format", "pdf", "--keys", "Name,Text,Date,label"}, "room for 3 columns");
}

TEST_F(Usage, TakesNoEmptyValueOfAnyOption) {
  writeSample();
  const std::string source = device().string();
  for (const std::string option : {"--since", "--until", "--keys", "--columns", "--exclude", "--with", "--name",
                                   "--format", "--sort", "--app", "--line-format", "--output", "--source", "--home",
                                   "--owner", "--region", "--timezone", "--password-file", "--password-fd"}) {
    expectRefusal({"--source", source, "--home", home().string(), "report", "Maya Lindqvist", option, ""}, option);
    // The next argument is no value of it.
    expectRefusal(
        {"--source", source, "--home", home().string(), "report", "Maya Lindqvist", option + "=", "2020-01-01"},
        option + ": The value is empty");
  }
  expectRefusal({"calls", "--with", ""}, "--with");
  EXPECT_FALSE(std::filesystem::exists(home()));
}

TEST_F(Usage, TakesNoEmptyArgumentOfAnyCommand) {
  expectRefusal({"report", ""}, "CONVERSATION");
  expectRefusal({"messages", ""}, "CONVERSATION");
  expectRefusal({"reports", "show", ""}, "NAME");
  expectRefusal({"reports", "delete", "a.txt", "", "--yes"}, "NAME");
  expectRefusal({"settings", ""}, "KEY");
  expectRefusal({"settings", "ChatsumEnabled", ""}, "VALUE");
  expectRefusal({"sources", ""}, "DIR");
  expectRefusal({"verify", ""}, "MANIFEST");
  expectRefusal({"demo", ""}, "DIR");
}

TEST_F(Usage, AsksForASource) {
  for (const char* command : {"conversations", "messages", "report"}) {
    std::vector<std::string> arguments = {command};
    if (std::string(command) != "conversations") arguments.emplace_back("x");
    expectRefusal(arguments, "--source");
  }
}

TEST_F(Usage, TakesTheSourceFromTheEnvironmentAndOptionsAfterTheCommand) {
  writeSample();
  environment["CHATSUM_SOURCE"] = device().string();
  EXPECT_EQ(runPlain({"conversations"}).code, 0);
  environment.erase("CHATSUM_SOURCE");
  EXPECT_EQ(runPlain({"conversations", "--json", "--source", device().string()}).code, 0);
}

}  // namespace
}  // namespace chatsum::cli
