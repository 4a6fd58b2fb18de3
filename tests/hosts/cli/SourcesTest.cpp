#include <nlohmann/json.hpp>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using testing::countOf;
using testing::everythingBelow;
using testing::linesOf;
using testing::Outcome;
using testing::putBytes;

class Sources : public testing::ProgramTest {
 protected:
  void putBackup(const fs::path& folder, const std::string& name, bool isEncrypted = false) const {
    const std::string start = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>",
                      end = "</dict></plist>";
    putBytes(folder / "Manifest.db", "not looked at");
    putBytes(folder / "Manifest.plist",
             start + "<key>IsEncrypted</key>" + (isEncrypted ? "<true/>" : "<false/>") + end);
    putBytes(folder / "Info.plist", start + "<key>Device Name</key><string>" + name +
                                        "</string><key>Last Backup Date</key><date>2024-05-01T10:00:00Z</date>" + end);
  }
  /// The program's own home, as the environment says it.
  [[nodiscard]] fs::path user() const { return root() / "user"; }
  [[nodiscard]] Json list(const std::vector<std::string>& folders = {}) const {
    std::vector<std::string> arguments = {"sources", "--json"};
    arguments.insert(arguments.end(), folders.begin(), folders.end());
    const Outcome outcome = runPlain(arguments);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return Json::parse(outcome.out);
  }
};

TEST_F(Sources, HaveTheKeysOfTheirInterface) {
  putBackup(user() / "Library/Application Support/MobileSync/Backup/aaa", "Maya's iPhone", true);
  putBytes(user() / "Library/Messages/chat.db", "not looked at");
  const auto before = everythingBelow(user());
  const std::string home = fs::canonical(user()).string();
  EXPECT_EQ(list(),
            (Json{{{"path", home + "/Library/Application Support/MobileSync/Backup/aaa"},
                   {"kind", "backup"},
                   {"encrypted", true},
                   {"device", "Maya's iPhone"},
                   {"date", "2024-05-01T06:00:00-04:00"}},
                  {{"path", home}, {"kind", "mac"}, {"encrypted", false}, {"device", nullptr}, {"date", nullptr}}}));
  EXPECT_EQ(everythingBelow(user()), before);
}

TEST_F(Sources, StandInATable) {
  putBackup(user() / "Apple/MobileSync/Backup/aaa", "Maya's iPhone\x1b[2J");
  const Outcome outcome = runPlain({"sources"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  const auto lines = linesOf(outcome.out);
  ASSERT_EQ(lines.size(), 2U) << outcome.out;
  EXPECT_TRUE(lines[0].starts_with("KIND")) << lines[0];
  for (const std::string part : {"backup", "Maya's iPhone", "2024-05-01", "no", "/Apple/MobileSync/Backup/aaa"}) {
    EXPECT_NE(lines[1].find(part), std::string::npos) << part << " in " << lines[1];
  }
  EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos);
}

TEST_F(Sources, AreFoundBelowFoldersInstead) {
  putBackup(user() / "Apple/MobileSync/Backup/aaa", "Elsewhere");
  putBackup(root() / "one/bbb", "One");
  writeSample();
  const Json found = list({(root() / "one").string(), device().string()});
  ASSERT_EQ(found.size(), 2U) << found;
  EXPECT_EQ(found[0]["device"], "One");
  EXPECT_EQ(found[1]["kind"], "device");
  EXPECT_EQ(found[1]["path"], fs::canonical(device()).string());
}

TEST_F(Sources, ThatAreNotThereAreNoError) {
  fs::create_directories(root() / "empty");
  const Outcome usual = runPlain({"sources"});
  EXPECT_EQ(usual.code, 0);
  EXPECT_EQ(usual.out, "");
  EXPECT_NE(usual.err.find((user() / "Library/Application Support/MobileSync/Backup").string()), std::string::npos)
      << usual.err;
  const Outcome below = runPlain({"sources", (root() / "empty").string(), "--json"});
  EXPECT_EQ(below.code, 0);
  EXPECT_EQ(below.out, "[]\n");
  EXPECT_NE(below.err.find((root() / "empty").string()), std::string::npos) << below.err;
  EXPECT_EQ(runPlain({"-q", "sources", (root() / "empty").string()}).err, "");
}

TEST_F(Sources, AreNotLookedForBelowWhatIsNoFolder) {
  for (const std::string& path : {(root() / "missing").string(), std::string("/dev/null")}) {
    const Outcome outcome = runPlain({"sources", path});
    EXPECT_EQ(outcome.code, 1) << path;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find("no folder '" + path + "'"), std::string::npos) << outcome.err;
  }
}

TEST_F(Sources, CanBeOpenedAsTheyAreListed) {
  writeSample();
  const std::string path = list({root().string()})[0]["path"];
  EXPECT_EQ(runPlain({"--source", path, "conversations"}).code, 0);
}

TEST_F(Sources, AreNamedWhenTheFolderAroundThemIsGiven) {
  putBackup(root() / "backups/aaa", "One");
  putBackup(root() / "backups/bbb", "Two");
  const Outcome outcome = runPlain({"--source", (root() / "backups").string(), "conversations"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(linesOf(outcome.err).size(), 1U) << outcome.err;
  EXPECT_EQ(countOf(outcome.err, "(backup)"), 2U) << outcome.err;
}

}  // namespace
}  // namespace chatsum::cli
