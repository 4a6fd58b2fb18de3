#include "hosts/device/sample/ContactWriter.h"
#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/MacBookWriter.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using testing::bytesOf;
using testing::everythingBelow;
using testing::Outcome;
using testing::putBytes;
using testing::SmallStore;

class BareFile : public testing::ProgramTest {
 protected:
  [[nodiscard]] fs::path papers() const { return root() / "papers"; }
  void writeMessages(const fs::path& path, device::Placement placement = device::Placement::mainFile) const {
    SmallStore store(path, device::Generation::ios17, placement);
    store.message(store.chat("+15550100142"), "Tea at four?");
    store.finish();
  }
  Outcome runOn(const fs::path& source, const std::vector<std::string>& arguments) const {
    const auto before = everythingBelow(papers());
    std::vector<std::string> all = {"--source", source.string(), "--home", home().string()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    Outcome outcome = runPlain(all);
    EXPECT_EQ(everythingBelow(papers()), before);
    EXPECT_TRUE(everythingBelow(temporary()).empty());
    return outcome;
  }
  /// The text of a report on the store's one conversation.
  [[nodiscard]] std::string reportOn(const fs::path& source) const {
    const Outcome outcome = runOn(source, {"report", "+15550100142", "--format", "text", "--name", "x", "--replace"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return bytesOf(reports() / "x.txt");
  }
};

constexpr const char* kByNumber = "+15550100142: Tea at four? (Mon, 01-06-2020 05:40 AM)\n";
constexpr const char* kByName = "Maya: Tea at four? (Mon, 01-06-2020 05:40 AM)\n";

TEST_F(BareFile, IsReadWithoutNeighbours) {
  for (const char* const name : {"sms.db", "chat.db", "3d0d7e5fb2ce288813306e4d4636395e047a3d28", "my messages"}) {
    writeMessages(papers() / name);
    EXPECT_EQ(reportOn(papers() / name), kByNumber) << name;
  }
}

TEST_F(BareFile, IsReadWithItsWal) {
  writeMessages(papers() / "renamed.db", device::Placement::wal);
  ASSERT_EQ(fs::file_size(papers() / "renamed.db"), 4096U);
  EXPECT_EQ(reportOn(papers() / "renamed.db"), kByNumber);
}

TEST_F(BareFile, TakesNamesFromADevicesAddressBookBesideIt) {
  writeMessages(papers() / "sms.db");
  device::ContactWriter contacts(papers() / "AddressBook.sqlitedb");
  contacts.addContact({.first = "Maya", .phones = {{"", "+15550100142"}}});
  ASSERT_FALSE(contacts.finish().has_value());
  EXPECT_EQ(reportOn(papers() / "sms.db"), kByName);
}

TEST_F(BareFile, TakesNamesFromAMacsAddressBookBesideIt) {
  writeMessages(papers() / "chat.db");
  test::MacBookWriter contacts(papers() / "AddressBook-v22.abcddb", {.placement = device::Placement::wal});
  contacts.add({.first = "Maya", .phones = {{"", "(555) 010-0142"}}});
  ASSERT_FALSE(contacts.finish().has_value());
  EXPECT_EQ(reportOn(papers() / "chat.db"), kByName);
}

TEST_F(BareFile, IsTheDeviceOrTheMacThatItStandsIn) {
  writeMessages(papers() / "dump/private/var/mobile/Library/SMS/sms.db");
  device::ContactWriter device(papers() / "dump/private/var/mobile/Library/AddressBook/AddressBook.sqlitedb");
  device.addContact({.first = "Maya", .phones = {{"", "+15550100142"}}});
  ASSERT_FALSE(device.finish().has_value());
  EXPECT_EQ(reportOn(papers() / "dump/private/var/mobile/Library/SMS/sms.db"), kByName);
  EXPECT_EQ(reportOn(papers()), kByName) << "the folder around the extraction will do";

  writeMessages(papers() / "maya/Library/Messages/chat.db");
  test::MacBookWriter mac(test::macBookPath(papers() / "maya", "5D1A"));
  mac.add({.first = "Maya", .phones = {{"", "+15550100142"}}});
  ASSERT_FALSE(mac.finish().has_value());
  EXPECT_EQ(reportOn(papers() / "maya/Library/Messages/chat.db"), kByName);
}

TEST_F(BareFile, IsRefusedWhenItIsNoStore) {
  putBytes(papers() / "notes.txt", "These are my notes.\n");
  putBytes(papers() / "empty", "");
  device::ContactWriter contacts(papers() / "AddressBook.sqlitedb");
  ASSERT_FALSE(contacts.finish().has_value());
  for (const auto& [name, part] : {std::pair("notes.txt", "is a text file"), std::pair("empty", "is empty"),
                                   std::pair("AddressBook.sqlitedb", "not a Messages store"),
                                   std::pair("missing.db", "There is no folder or file")}) {
    const Outcome outcome = runOn(papers() / name, {"conversations"});
    EXPECT_EQ(outcome.code, 1) << name;
    EXPECT_NE(outcome.err.find(part), std::string::npos) << outcome.err;
    EXPECT_EQ(testing::linesOf(outcome.err).size(), 1U) << outcome.err;
  }
}

TEST_F(BareFile, SaysThatACallListHoldsNoMessages) {
  device::StoreFile calls(papers() / "CallHistory.storedata", device::Placement::mainFile,
                          "CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY);");
  ASSERT_FALSE(calls.finish("").has_value());
  const Outcome outcome = runOn(papers() / "CallHistory.storedata", {"conversations"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_NE(outcome.err.find("no Messages store beside"), std::string::npos) << outcome.err;
}

}  // namespace
}  // namespace chatsum::cli
