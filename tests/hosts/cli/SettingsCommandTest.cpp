#include <gmock/gmock.h>

#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/BinaryPropertyList.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::linesOf;
using testing::Outcome;

constexpr const char* kFormat = "ChatsumMessagesDefaultFileFormat";
constexpr const char* kOrder = "ChatsumMessagesDefaultDateSortOrder";

class SettingsCommand : public testing::ProgramTest {
 protected:
  [[nodiscard]] fs::path file() const { return home() / "Library/Preferences/com.orbelle.chatsum.plist"; }
  void put(const std::string& bytes) const { testing::putBytes(file(), bytes); }
  Outcome settings(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--home", home().string(), "settings"});
    return runPlain(arguments);
  }
  void expectFailure(const std::vector<std::string>& arguments, int code, const std::string& part) const {
    const auto before = testing::everythingBelow(home());
    const Outcome outcome = settings(arguments);
    EXPECT_EQ(outcome.code, code) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(linesOf(outcome.err).at(0), HasSubstr(part));
    EXPECT_EQ(testing::everythingBelow(home()), before);
  }
};

TEST_F(SettingsCommand, ShowsTheDefaultsOfANewHome) {
  const Outcome outcome = settings({});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(linesOf(outcome.out).size(), 6U);
  EXPECT_THAT(outcome.out, ::testing::ContainsRegex("ChatsumEnabled +no \\(default\\) "));
  EXPECT_THAT(outcome.out, ::testing::ContainsRegex(std::string(kFormat) + " +csv \\(default\\) "));
  EXPECT_THAT(outcome.out, ::testing::ContainsRegex(std::string(kOrder) + " +asc \\(default\\) "));
  EXPECT_FALSE(fs::exists(home()));
}

TEST_F(SettingsCommand, ShowsOne) {
  put(test::binarySettings({{kFormat, 1}}));
  const Outcome set = settings({kFormat});
  EXPECT_EQ(set.code, 0);
  EXPECT_EQ(set.out, "pdf\n");
  EXPECT_EQ(set.err, "");
  const Outcome unset = settings({"chatsumenabledphone"});
  EXPECT_EQ(unset.out, "no\n");
  EXPECT_THAT(linesOf(unset.err), ElementsAre("ChatsumEnabledPhone is not set; this is the default."));
}

TEST_F(SettingsCommand, ChangesOne) {
  const Outcome outcome = settings({kFormat, "2"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, std::string(kFormat) + " is now text.\n");
  EXPECT_THAT(testing::bytesOf(file()), HasSubstr("<integer>2</integer>"));
  EXPECT_EQ(settings({kFormat}).out, "text\n");
  EXPECT_EQ(settings({"ChatsumEnabled", "yes"}).code, 0);
  EXPECT_THAT(testing::bytesOf(file()), HasSubstr("<true/>"));
  EXPECT_EQ(settings({kOrder, "desc"}).code, 0);
  EXPECT_EQ(settings({kOrder}).out, "desc\n");
  EXPECT_EQ(settings({kFormat}).out, "text\n");
}

TEST_F(SettingsCommand, KeepsTheFormOfTheFileAndKeysItDoesNotKnow) {
  put("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>of.others</key><data>AAEC</data></dict></plist>");
  EXPECT_EQ(settings({kFormat, "pdf"}).code, 0);
  EXPECT_THAT(testing::bytesOf(file()),
              ::testing::AllOf(HasSubstr("of.others"), HasSubstr("AAEC"), HasSubstr("<integer>1</integer>")));
  put(test::binarySettings({{kFormat, 0}}, {{"of.others", "kept"}}));
  EXPECT_EQ(settings({kFormat, "pdf"}).code, 0);
  EXPECT_THAT(testing::bytesOf(file()), ::testing::AllOf(::testing::StartsWith("bplist00"), HasSubstr("kept")));
  EXPECT_EQ(settings({kFormat}).out, "pdf\n");
}

TEST_F(SettingsCommand, RefusesWhatMakesNoSense) {
  expectFailure({"Colour"}, 2, kOrder);
  expectFailure({"Colour", "red"}, 2, "no setting 'Colour'");
  expectFailure({kFormat, "3"}, 2, "csv, pdf or text");
  expectFailure({kFormat, ""}, 2, "VALUE: The value is empty");
  expectFailure({kOrder, "2"}, 2, "asc or desc");
  expectFailure({"ChatsumEnabled", "perhaps"}, 2, "yes or no");
  expectFailure({kFormat, "1", "2"}, 2, "2");
}

TEST_F(SettingsCommand, LeavesAMalformedFileAlone) {
  for (const char* bytes : {"", "garbage", "<plist><dict><key>a</key>", "bplist00???"}) {
    put(bytes);
    expectFailure({}, 1, file().string());
    expectFailure({kFormat}, 1, file().string());
    expectFailure({kFormat, "1"}, 1, "no property list");
  }
}

TEST_F(SettingsCommand, ThatCannotBeWrittenIsAFailure) {
  const Outcome outcome = runPlain({"--home", "/dev/null/home", "settings", kFormat, "1"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_THAT(linesOf(outcome.err), ElementsAre(HasSubstr("nothing was changed")));
  // Smaller than the file, larger than the sentence, which goes to a file as well.
  put("<plist><dict><key>a</key><string>" + std::string(4000, 'x') + "</string></dict></plist>");
  largestFile = 2000;
  expectFailure({kFormat, "1"}, 1, "nothing was changed");
}

class ReportDefaults : public SettingsCommand {
 protected:
  void SetUp() override { writeSample(); }
  /// Makes a report of a format that the arguments, or else the program, decide.
  Outcome makeReport(std::vector<std::string> more) const {
    more.insert(more.begin(), {"--source", device().string(), "--home", home().string(), "report", "Maya Lindqvist"});
    return runPlain(more);
  }
  /// The path of a report made with these options.
  std::string made(std::vector<std::string> more) const {
    more.push_back("--replace");
    const Outcome outcome = makeReport(more);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return linesOf(outcome.out).at(0);
  }
};

TEST_F(ReportDefaults, ComeFromTheSettings) {
  const auto oldestFirst = linesOf(testing::bytesOf(made({"--format", "text"})));
  EXPECT_EQ(settings({kFormat, "text"}).code, 0);
  EXPECT_EQ(linesOf(testing::bytesOf(made({}))), oldestFirst);
  EXPECT_EQ(settings({kFormat, "pdf"}).code, 0);
  EXPECT_TRUE(made({}).ends_with(".pdf"));
  EXPECT_EQ(settings({kOrder, "desc"}).code, 0);
  const auto newestFirst = linesOf(testing::bytesOf(made({"--format", "text"})));
  EXPECT_NE(newestFirst, oldestFirst);
  EXPECT_EQ(newestFirst, linesOf(testing::bytesOf(made({"--format", "text", "--sort", "desc"}))));
  EXPECT_EQ(oldestFirst, linesOf(testing::bytesOf(made({"--format", "text", "--sort", "asc"}))));
}

TEST_F(ReportDefaults, AreThoseThatTheSettingsShowWhenNothingIsSet) {
  EXPECT_TRUE(made({}).ends_with(".csv"));
  EXPECT_EQ(settings({kFormat}).out, "csv\n");
  EXPECT_THAT(runPlain({"report", "--help"}).out, HasSubstr("default: as set, else csv"));
  EXPECT_EQ(settings({kOrder, "desc"}).code, 0);  // a file without the format's key
  EXPECT_TRUE(made({}).ends_with(".csv"));
}

TEST_F(ReportDefaults, OfMalformedSettingsAreToldAndThoseWithoutSettings) {
  put("garbage");
  const Outcome outcome = makeReport({});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_TRUE(linesOf(outcome.out).at(0).ends_with(".csv"));
  EXPECT_THAT(outcome.err, HasSubstr(file().string()));
  EXPECT_EQ(testing::bytesOf(file()), "garbage");
}

TEST_F(ReportDefaults, OfAFormatThatDoesNotExistAreToldAndTheFirstOne) {
  put(test::binarySettings({{kFormat, 9}}));
  const Outcome outcome = makeReport({});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_TRUE(linesOf(outcome.out).at(0).ends_with(".csv"));
  EXPECT_THAT(outcome.err, HasSubstr("does not exist (9)"));
}

TEST_F(ReportDefaults, NeverComeFromTheSource) {
  testing::putBytes(device() / "var/mobile/Library/Preferences/com.orbelle.chatsum.plist",
                    test::binarySettings({{kFormat, 1}}));
  EXPECT_TRUE(made({}).ends_with(".csv"));
}

}  // namespace
}  // namespace chatsum::cli
