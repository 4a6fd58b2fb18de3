#include <sqlite3.h>

#include "platform/sqlite/Connection.h"
#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using testing::bytesOf;
using testing::everythingBelow;
using testing::Outcome;
using testing::putBytes;
using testing::SmallStore;

class SourceProblems : public testing::ProgramTest {
 protected:
  void expectEveryCommandFails(const std::string& part) const {
    expectFailure({"conversations"}, part);
    expectFailure({"messages", "x", "--json"}, part);
    expectFailure({"report", "x"}, part);
    expectFailure({"report", "x", "--format", "csv"}, part);
  }
};

TEST_F(SourceProblems, AFolderWithoutAStore) {
  fs::create_directories(device() / "var/mobile");
  expectEveryCommandFails("no Messages store");
}

TEST_F(SourceProblems, AMissingFolder) { expectEveryCommandFails("no folder"); }

TEST_F(SourceProblems, AnEmptyFile) {
  putBytes(storePath(), "");
  expectEveryCommandFails("is empty");
}

TEST_F(SourceProblems, ATextFile) {
  putBytes(storePath(), "These are my notes.\n");
  expectEveryCommandFails("text file");
}

TEST_F(SourceProblems, ATruncatedFile) {
  writeSample();
  const std::string bytes = bytesOf(storePath());
  putBytes(storePath(), bytes.substr(0, bytes.size() / 2));
  expectEveryCommandFails("cut off");
}

TEST_F(SourceProblems, AnotherDatabase) {
  writeSample();
  fs::copy_file(addressBookPath(), storePath(), fs::copy_options::overwrite_existing);
  expectEveryCommandFails("not a Messages store");
}

TEST_F(SourceProblems, AWalWithoutItsStore) {
  putBytes(storePath().string() + "-wal", "x");
  expectEveryCommandFails("sms.db itself is missing");
}

TEST_F(SourceProblems, AFolderNamedAsTheStore) {
  fs::create_directories(storePath());
  expectEveryCommandFails("is a folder");
}

TEST_F(SourceProblems, AConversationThatDoesNotExist) {
  writeSample();
  expectFailure({"report", "Nobody I know"}, "chatsum conversations");
  expectFailure({"messages", " "}, "chatsum conversations");
  expectFailure({"report", "iMessage;-;' OR '1'='1"}, "chatsum conversations");
}

// A page of the message table overwritten: some rows cannot be read, so there is no report of the others.
TEST_F(SourceProblems, AStoreWithDamagedRows) {
  writeSeeded({.messages = 3000, .conversations = 1});
  std::string bytes = bytesOf(storePath());
  const std::size_t page = bytes.size() / 4096 / 2 * 4096;
  bytes.replace(page, 4096 * 8, std::string(4096 * 8, '\x0B'));
  putBytes(storePath(), bytes);
  const auto before = everythingBelow(device());
  const Outcome outcome = run({"report", "+15550100001"});
  EXPECT_EQ(outcome.code, 1) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(testing::linesOf(outcome.err).size(), 1U) << outcome.err;
  EXPECT_TRUE(everythingBelow(home()).empty());
  EXPECT_EQ(everythingBelow(device()), before);
}

TEST_F(SourceProblems, ADeviceWithoutAnAddressBookShowsHandles) {
  writeSample();
  fs::remove(addressBookPath());
  const Outcome outcome = run({"report", "+15550100142", "--name", "x"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("no address book"), std::string::npos) << outcome.err;
  EXPECT_NE(bytesOf(reports() / "x.txt").find("+15550100142: Happy almost new year!"), std::string::npos);
}

TEST_F(SourceProblems, ABrokenAddressBookShowsHandles) {
  writeSample();
  putBytes(addressBookPath(), "no database");
  const Outcome outcome = run({"conversations"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("AddressBook.sqlitedb"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.out.find("+15550100142"), std::string::npos);
}

TEST_F(SourceProblems, AnEmptyStoreHasNoConversations) {
  SmallStore(storePath()).finish();
  const Outcome table = run({"conversations"});
  EXPECT_EQ(table.code, 0);
  EXPECT_EQ(table.out, "");
  EXPECT_EQ(run({"conversations", "--json"}).out, "[]\n");
}

}  // namespace
}  // namespace chatsum::cli
