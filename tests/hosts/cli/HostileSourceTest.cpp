#include <fstream>
#include <sstream>

#include "hosts/cli/Cli.h"
#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/BackupWriter.h"

namespace chatsum::cli::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTitle = "\x1b]0;owned\x07";
constexpr const char* kTurned = "\u202E";

/// What others chose is in sentences and cells; nothing of it may move a terminal's cursor or turn a line round.
class HostileSource : public ProgramTest {
 protected:
  static void expectHarmless(const std::string& text) {
    EXPECT_FALSE(text.empty());
    for (const char* part : {"\x1b", "\x07", "\u202E", "\u2066", "\u2028", "\u009B", "\r"}) {
      EXPECT_EQ(text.find(part), std::string::npos) << text;
    }
  }
  /// Runs the program inside this process with its results going to a terminal.
  [[nodiscard]] Outcome runAtTerminal(const std::vector<std::string>& words) const {
    std::vector<std::string> all = {"chatsum", "--source", device().string(), "--home", home().string()};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<const char*> arguments;
    for (const std::string& word : all) arguments.push_back(word.c_str());
    std::ostringstream out, err;
    const int code = cli::run(static_cast<int>(arguments.size()), arguments.data(),
                              Streams{.out = out, .err = err, .outIsTerminal = true});
    return {.code = code, .out = out.str(), .err = err.str()};
  }
};

TEST_F(HostileSource, StateOfABackupIsShownWithoutItsControls) {
  writeSample();
  const fs::path backup = root() / "backup";
  const auto problem =
      test::writeBackup(device(), backup, {.snapshotState = std::string("new") + kTitle + kTurned + "\u009B\n2"});
  ASSERT_FALSE(problem) << *problem;
  const Outcome outcome = runPlain({"--source", backup.string(), "conversations"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("new ]0;owned"), std::string::npos) << outcome.err;
  expectHarmless(outcome.err);
}

TEST_F(HostileSource, FoldersAreNamedWithoutTheirControls) {
  const fs::path folder = root() / (std::string("odd") + kTitle + kTurned + "\nname");
  const Outcome missing = runPlain({"--source", folder.string(), "conversations"});
  EXPECT_EQ(missing.code, 1);
  expectHarmless(missing.err);
  EXPECT_EQ(linesOf(missing.err).size(), 1U);
  fs::create_directories(folder);
  const Outcome found = runPlain({"sources", folder.string()});
  EXPECT_EQ(found.code, 0);
  expectHarmless(found.err);
}

TEST_F(HostileSource, SourceOfAForeignManifestIsNamedWithoutItsControls) {
  writeSample();
  ASSERT_EQ(run({"report", "Maya Lindqvist", "--evidence"}).code, 0);
  const fs::path manifest = reports() / "Maya Lindqvist.txt.evidence.json";
  std::string json = bytesOf(manifest);
  const std::string path = device().string();
  const auto at = json.find(path);
  ASSERT_NE(at, std::string::npos) << json;
  json.replace(at, path.size(), "/nowhere\\u001b]0;owned\\u0007\\u202e\\u2028");
  putBytes(manifest, json);
  const Outcome outcome = runPlain({"verify", manifest.string()});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_NE(outcome.err.find("/nowhere"), std::string::npos) << outcome.err;
  expectHarmless(outcome.err);
}

TEST_F(HostileSource, StoresErrorsAreToldWithoutTheirControls) {
  fs::create_directories(storePath().parent_path());
  SmallStore small(storePath());
  small.message(small.chat("+15550100142"), "hello");
  small.store.file().execute(std::string("CREATE TABLE \"evil") + kTitle + kTurned + "\" (a)");
  small.finish();
  // A broken line of the schema makes SQLite quote the name.
  std::string bytes = bytesOf(storePath());
  const std::string sql = std::string("CREATE TABLE \"evil") + kTitle + kTurned + "\" (a)";
  const auto at = bytes.find(sql);
  ASSERT_NE(at, std::string::npos);
  bytes[at + sql.size() - 1] = '(';
  putBytes(storePath(), bytes);
  const Outcome outcome = run({"conversations"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_NE(outcome.err.find("evil ]0;owned"), std::string::npos) << outcome.err;
  expectHarmless(outcome.err);
}

TEST_F(HostileSource, NameOfAConversationDoesNotTurnThePathOfItsReportRound) {
  SmallStore small(storePath());
  const auto handle = small.store.addHandle({.id = "+15550100142"});
  const std::string title = "Invoice " + std::string(kTurned) + "fdp.exe";
  const auto chat = small.store.addChat(
      {.guid = "g", .identifier = "chat1", .group = true, .displayName = title, .handles = std::span(&handle, 1)});
  small.message({.text = "hello", .handle = handle, .chats = std::span(&chat, 1)});
  small.finish();
  const Outcome shown = runAtTerminal({"report", "g", "--format", "text"});
  EXPECT_EQ(shown.code, 0) << shown.err;
  expectHarmless(shown.out);
  EXPECT_NE(shown.out.find("Invoice  fdp.exe.txt"), std::string::npos) << shown.out;
  // A script needs the file.
  const Outcome piped = run({"report", "g", "--replace"});
  ASSERT_EQ(linesOf(piped.out).size(), 1U);
  EXPECT_TRUE(fs::exists(linesOf(piped.out).front())) << piped.out;
  EXPECT_NE(piped.out.find(kTurned), std::string::npos);
  expectHarmless(runAtTerminal({"conversations", "--json"}).out);
}

}  // namespace
}  // namespace chatsum::cli::testing
