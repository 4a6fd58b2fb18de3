#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "hosts/device/sample/SamplePictures.h"
#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/MacBookWriter.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using test::macBookPath;
using test::MacBookWriter;
using testing::bytesOf;
using testing::countOf;
using testing::everythingBelow;
using testing::Outcome;
using testing::putBytes;
using testing::SmallStore;

/// The home of a Mac stands where the other tests have their device.
class Mac : public testing::ProgramTest {
 protected:
  [[nodiscard]] fs::path messages() const { return device() / "Library/Messages"; }

  void writeMessages(device::Placement placement = device::Placement::mainFile) const {
    SmallStore store(messages() / "chat.db", device::Generation::ios18, placement);
    store.message(store.chat("+15550100142"), "Tea at four?");
    store.message(store.chat("daniel@example.com"), "The boat is ready");
    store.message(store.chat("+15550100120", "SMS"), "Your appointment is on Monday");
    store.finish();
  }
  /// Two accounts, whose numbers of entities differ.
  void writeBooks(device::Placement placement = device::Placement::mainFile) const {
    MacBookWriter top(macBookPath(device())), home(macBookPath(device(), "5D1A"), {.placement = placement}),
        work(macBookPath(device(), "77B0"), {.contactEntity = 19});
    home.addGroup("Friends");
    home.add({.first = "Maya", .last = "Lindqvist", .phones = {{"_$!<Mobile>!$_", "(555) 010-0142"}}});
    home.add({.nickname = "Dan", .link = "L1", .phones = {{"", "+15550100175"}}});
    work.add({.first = "Daniel", .last = "Okafor", .link = "L1", .emails = {{"", "Daniel@example.com"}}});
    work.add({.organization = "Harbour Dental Clinic", .phones = {{"_$!<Main>!$_", "555-010-0120"}}});
    finish(top);
    finish(home);
    finish(work);
  }
  static void finish(MacBookWriter& book) {
    const auto problem = book.finish();
    if (problem) throw std::runtime_error(*problem);
  }
  [[nodiscard]] std::vector<std::string> names() const {
    const Outcome outcome = run({"conversations", "--json"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    std::vector<std::string> names;
    for (const Json& conversation : Json::parse(outcome.out)) names.push_back(conversation["name"]);
    std::sort(names.begin(), names.end());
    return names;
  }
  /// Runs and makes sure that the source stays as it is and nothing private is left.
  Outcome runWithoutTrace(const std::vector<std::string>& arguments) const {
    const auto before = everythingBelow(device());
    Outcome outcome = run(arguments);
    EXPECT_EQ(everythingBelow(device()), before);
    EXPECT_TRUE(everythingBelow(temporary()).empty());
    return outcome;
  }
};

using Names = std::vector<std::string>;

TEST_F(Mac, ListsConversationsByTheNamesOfAllAccounts) {
  writeMessages();
  writeBooks();
  EXPECT_EQ(names(), (Names{"Daniel Okafor", "Harbour Dental Clinic", "Maya Lindqvist"}));
  const Outcome outcome = runWithoutTrace({"conversations"});
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Mac, MakesReportsInAllFormats) {
  writeMessages();
  writeBooks();
  const auto before = everythingBelow(device());
  EXPECT_EQ(report("Maya Lindqvist"), "Maya Lindqvist: Tea at four? (Mon, 01-06-2020 05:40 AM)\n");
  EXPECT_EQ(report("Daniel Okafor", {"--format", "csv"}),
            "Name,Text,Date\nDaniel Okafor,The boat is ready,\"Mon, 01-06-2020 05:41 AM\"\n");
  EXPECT_TRUE(report("Harbour Dental Clinic", {"--format", "pdf"}).starts_with("%PDF-"));
  EXPECT_EQ(everythingBelow(device()), before);
  EXPECT_TRUE(everythingBelow(temporary()).empty());
}

TEST_F(Mac, IsReadFromItsWals) {
  writeMessages(device::Placement::wal);
  writeBooks(device::Placement::wal);
  ASSERT_EQ(fs::file_size(messages() / "chat.db"), 4096U);
  ASSERT_EQ(fs::file_size(macBookPath(device(), "5D1A")), 4096U);
  const Outcome outcome = runWithoutTrace({"report", "Maya Lindqvist", "--name", "x"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(bytesOf(reports() / "x.txt"), "Maya Lindqvist: Tea at four? (Mon, 01-06-2020 05:40 AM)\n");
}

TEST_F(Mac, DoesWithoutAddressBooks) {
  writeMessages();
  EXPECT_EQ(names(), (Names{"+15550100120", "+15550100142", "daniel@example.com"}));
  EXPECT_NE(run({"conversations"}).err.find("no address book"), std::string::npos);
}

TEST_F(Mac, LeavesADamagedBookOutAndSaysSo) {
  writeMessages();
  writeBooks();
  putBytes(macBookPath(device(), "77B0"), "no database");
  const Outcome outcome = runWithoutTrace({"conversations"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(names(), (Names{"+15550100120", "Maya Lindqvist", "daniel@example.com"}));
  EXPECT_NE(outcome.err.find("An address book is left out: '" + macBookPath(device(), "77B0").string()),
            std::string::npos)
      << outcome.err;
}

TEST_F(Mac, ShowsNumbersWhenNoBookCanBeRead) {
  writeMessages();
  putBytes(macBookPath(device()), "no database");
  const Outcome outcome = runWithoutTrace({"conversations"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_NE(outcome.err.find("shown by their numbers"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.out.find("+15550100142"), std::string::npos) << outcome.out;
}

TEST_F(Mac, NamesNobodyWhenANumberIsOnTwoCards) {
  writeMessages();
  MacBookWriter one(macBookPath(device())), two(macBookPath(device(), "5D1A"));
  one.add({.first = "Maya", .phones = {{"", "+15550100142"}}});
  two.add({.first = "Vera", .phones = {{"", "+15550100142"}}});
  finish(one);
  finish(two);
  EXPECT_EQ(names(), (Names{"+15550100120", "+15550100142", "daniel@example.com"}));
}

TEST_F(Mac, KeepsHostileNamesHarmless) {
  writeMessages();
  const std::string hostile = "Robert'); DROP TABLE message; --\" ../../etc/passwd\x1b[2J";
  MacBookWriter book(macBookPath(device()));
  book.add({.first = hostile, .phones = {{"'", "+15550100142"}}});
  finish(book);
  EXPECT_EQ(names()[1], hostile);
  EXPECT_EQ(run({"conversations"}).out.find('\x1b'), std::string::npos);
  const Outcome outcome = runWithoutTrace({"report", "iMessage;-;+15550100142", "--name", "x"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(bytesOf(reports() / "x.txt"), hostile + ": Tea at four? (Mon, 01-06-2020 05:40 AM)\n");
}

TEST_F(Mac, ShowsPicturesOfItsOwnFolderAndNoOthers) {
  const std::string picture(device::boatJpeg());
  putBytes(messages() / "Attachments/ab/11/A/IMG_1.jpg", picture);
  putBytes(device() / "Pictures/private.jpg", picture);
  putBytes(root() / "outside.jpg", picture);
  fs::create_symlink("../../../Pictures/private.jpg", messages() / "Attachments/ab/link.jpg");
  fs::create_symlink(root() / "outside.jpg", messages() / "Attachments/ab/out.jpg");
  const auto picturesWith = [&](const std::string& filename) {
    fs::remove(messages() / "chat.db");
    SmallStore store(messages() / "chat.db");
    const auto chat = store.chat("+15550100142");
    const std::int64_t file[] = {
        store.store.addAttachment({.guid = "A1", .filename = filename, .transferName = "a.jpg"})};
    store.message({.guid = {}, .text = "\uFFFC", .chats = std::span(&chat, 1), .attachments = file});
    store.finish();
    return countOf(report("+15550100142", {"--format", "pdf", "--replace"}), "/Subtype/Image");
  };
  // The report has pictures of its own.
  const std::size_t none = picturesWith("~/Library/Messages/Attachments/ab/11/A/missing.jpg");
  EXPECT_EQ(picturesWith("~/Library/Messages/Attachments/ab/11/A/IMG_1.jpg"), none + 1);
  EXPECT_EQ(picturesWith("/Users/maya/Library/Messages/Attachments/ab/11/A/IMG_1.jpg"), none + 1);
  for (const std::string& path :
       {(device() / "Pictures/private.jpg").string(), std::string("~/Pictures/private.jpg"),
        std::string("~/Library/Messages/../../Pictures/private.jpg"),
        std::string("~/Library/Messages/Attachments/ab/link.jpg"),
        std::string("~/Library/Messages/Attachments/ab/out.jpg"), (root() / "outside.jpg").string()}) {
    EXPECT_EQ(picturesWith(path), none) << path;
  }
}

TEST_F(Mac, IsReadFromItsMessagesFolderAlone) {
  writeMessages();
  fs::rename(messages(), root() / "copy");
  const Outcome outcome = runPlain({"--source", (root() / "copy").string(), "conversations"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("daniel@example.com"), std::string::npos) << outcome.out;
}

TEST_F(Mac, SaysThatItsStoreIsMissingBesideItsWal) {
  putBytes(messages() / "chat.db-wal", "x");
  expectFailure({"conversations"}, "chat.db itself is missing");
}

}  // namespace
}  // namespace chatsum::cli
