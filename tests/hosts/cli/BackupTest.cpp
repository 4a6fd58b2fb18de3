#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "hosts/device/sample/SamplePictures.h"
#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/BackupWriter.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using testing::bytesOf;
using testing::everythingBelow;
using testing::linesOf;
using testing::Outcome;
using testing::putBytes;

constexpr const char* kPassword = "secret-Pa55";

/// Backups of the sample device, read by the program.
class Backup : public testing::ProgramTest {
 protected:
  [[nodiscard]] fs::path backup() const { return root() / "backup"; }
  [[nodiscard]] std::string passwordFile() const { return (root() / "password").string(); }

  void write(const test::BackupOptions& options) const {
    writeSample();
    const auto problem = test::writeBackup(device(), backup(), options);
    ASSERT_FALSE(problem) << *problem;
    putBytes(passwordFile(), std::string(kPassword) + "\n");
    before_ = everythingBelow(backup());
  }
  [[nodiscard]] std::vector<std::string> withPlaces(const std::vector<std::string>& arguments) const {
    std::vector<std::string> all = {"--source", backup().string(), "--home", home().string()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return all;
  }
  [[nodiscard]] Outcome onBackup(const std::vector<std::string>& arguments) const {
    return runPlain(withPlaces(arguments));
  }
  /// The backup is as it was, and nothing stays in the temporary folder.
  void expectNoTrace() const {
    EXPECT_EQ(everythingBelow(backup()), before_);
    EXPECT_TRUE(everythingBelow(temporary()).empty());
  }
  /// One sentence with `part` and nothing else.
  void expectRefusal(const std::vector<std::string>& arguments, const std::string& part) const {
    const Outcome outcome = onBackup(arguments);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "");
    ASSERT_EQ(linesOf(outcome.err).size(), 1U) << outcome.err;
    EXPECT_NE(outcome.err.find(part), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.err.find(kPassword), std::string::npos) << outcome.err;
    expectNoTrace();
  }
  /// Lists and reports are those of the device itself.
  void expectSameAsDevice(const std::vector<std::string>& options) const {
    const auto with = [&](std::vector<std::string> arguments) {
      arguments.insert(arguments.end(), options.begin(), options.end());
      return arguments;
    };
    const Outcome list = onBackup(with({"conversations", "--json"}));
    EXPECT_EQ(list.code, 0) << list.err;
    const Outcome expected = run({"conversations", "--json"});
    EXPECT_EQ(list.out, expected.out);
    EXPECT_GT(list.out.size(), 1000U);
    for (const char* const format : {"text", "csv", "pdf"}) {
      SCOPED_TRACE(format);
      const std::string name = std::string("of the device ") + format;
      const std::string wanted = report("Maya Lindqvist", {"--format", format, "--name", name});
      const Outcome made = onBackup(with({"report", "Maya Lindqvist", "--format", format, "--replace"}));
      EXPECT_EQ(made.code, 0) << made.err;
      ASSERT_EQ(linesOf(made.out).size(), 1U) << made.err;
      const std::string bytes = bytesOf(linesOf(made.out)[0]);
      if (std::string(format) == "pdf") {
        EXPECT_EQ(countOfPictures(bytes), countOfPictures(wanted));
        EXPECT_GT(countOfPictures(bytes), 0U);
      } else {
        EXPECT_EQ(bytes, wanted);
      }
    }
    expectNoTrace();
  }
  [[nodiscard]] static std::size_t countOfPictures(const std::string& pdf) {
    return testing::countOf(pdf, "/Subtype /Image") + testing::countOf(pdf, "/Subtype/Image");
  }

 private:
  mutable std::map<std::string, std::string> before_;
};

TEST_F(Backup, IsReadLikeTheDeviceItself) {
  write({});
  expectSameAsDevice({});
}

TEST_F(Backup, IsReadWhenItIsOld) {
  write({.isFlat = true, .isXml = true});
  expectSameAsDevice({});
}

TEST_F(Backup, LooksPeopleUpAsASystemOfItsAgeDoesAndFindsTheSameOnes) {
  write({.isFlat = true, .isXml = true});
  const std::string way = "Loading ABCFindPersonMatchingPhoneNumber is success.";
  for (const char* const conversation : {"Sunday Hikers", "55501", "Daniel Okafor", "Jo Ann Becker"}) {
    const Outcome wanted =
        run({"-v", "report", conversation, "--format", "text", "--name", "of the device", "--replace"});
    ASSERT_EQ(wanted.code, 0) << wanted.err;
    EXPECT_EQ(wanted.err.find(way), std::string::npos);
    const Outcome made = onBackup({"-v", "report", conversation, "--format", "text", "--replace"});
    ASSERT_EQ(made.code, 0) << made.err;
    EXPECT_NE(made.err.find(way), std::string::npos) << conversation;
    EXPECT_EQ(bytesOf(linesOf(made.out)[0]), bytesOf(linesOf(wanted.out)[0])) << conversation;
  }
}

TEST_F(Backup, IsReadWithItsPassword) {
  write({.password = kPassword});
  expectSameAsDevice({"--password-file", passwordFile()});
}

TEST_F(Backup, IsReadWhenItIsOldAndEncrypted) {
  write({.password = kPassword, .isFlat = true, .hasOldKeyBag = true});
  expectSameAsDevice({"--password-file", passwordFile()});
}

TEST_F(Backup, TakesThePasswordBeforeTheCommand) {
  write({.password = kPassword});
  const Outcome outcome = onBackup({"--password-file", passwordFile(), "conversations"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("Maya Lindqvist"), std::string::npos);
  expectNoTrace();
}

TEST_F(Backup, RefusesAWrongPassword) {
  write({.password = kPassword});
  putBytes(passwordFile(), "secret-pa55\n");
  for (const char* const command : {"conversations", "messages", "report"}) {
    std::vector<std::string> arguments = {"--password-file", passwordFile(), command};
    if (std::string(command) != "conversations") arguments.emplace_back("Maya Lindqvist");
    expectRefusal(arguments, "The password does not open the backup '" + backup().string() + "'");
  }
}

TEST_F(Backup, AsksForThePasswordItWasNotGiven) {
  write({.password = kPassword});
  expectRefusal({"conversations"}, "--password-file");
}

TEST_F(Backup, IsRefusedWhenItsKeysAreDamaged) {
  write({.password = kPassword, .keyBag = "VERS"});
  expectRefusal({"--password-file", passwordFile(), "conversations"}, "are damaged");
}

/// Runs that are ended in the middle.
class InterruptedBackup : public Backup {
 protected:
  /// Starts the listing of messages, which does not fit into a pipe that nobody empties, and waits for its beginning.
  [[nodiscard]] int startListing() {
    writeSeeded({.messages = 3000, .conversations = 1});
    const auto problem = test::writeBackup(device(), backup(), {.password = kPassword});
    EXPECT_FALSE(problem) << *problem;
    // The program is started on what stands in the device's place.
    fs::remove_all(device());
    fs::rename(backup(), device());
    putBytes(passwordFile(), kPassword);
    EXPECT_EQ(::pipe2(pipe_.data(), O_CLOEXEC), 0);
    const int child = start({"--password-file", passwordFile(), "messages", "+15550100001", "--json"}, pipe_[1]);
    constexpr int kMilliseconds = 60'000;
    pollfd wanted{pipe_[0], POLLIN, 0};
    EXPECT_EQ(::poll(&wanted, 1, kMilliseconds), 1);
    EXPECT_FALSE(everythingBelow(temporary()).empty());
    return child;
  }
  void TearDown() override {
    for (const int end : pipe_) ::close(end);
  }
  std::array<int, 2> pipe_{-1, -1};
};

TEST_F(InterruptedBackup, LeavesNothingDecrypted) {
  const int child = startListing();
  ASSERT_EQ(::kill(child, SIGTERM), 0);
  EXPECT_EQ(finish(child).code, 128 + SIGTERM);
  EXPECT_TRUE(everythingBelow(temporary()).empty());
}

TEST_F(InterruptedBackup, IsClearedAwayByTheNextRunAfterAKill) {
  const int child = startListing();
  ASSERT_EQ(::kill(child, SIGKILL), 0);
  EXPECT_EQ(finish(child).code, 128 + SIGKILL);
  EXPECT_FALSE(everythingBelow(temporary()).empty());
  EXPECT_EQ(run({"reports"}).code, 0);
  EXPECT_TRUE(everythingBelow(temporary()).empty());
}

TEST_F(Backup, TellsOfPicturesThatMayNotBeWhole) {
  putBytes(passwordFile(), kPassword);
  const std::string picture(device::boatJpeg());
  std::string blocks = picture;  // what follows the picture's own end does no harm
  blocks.resize((picture.size() / 16 + 1) * 16, '\0');
  struct Case {
    const char* name;
    std::string content;
    std::uint64_t size;
    bool isPadded;
    bool isDoubtful;
  };
  const std::vector<Case> cases = {{"padded, listed longer", picture, picture.size() + 500, true, false},
                                   {"padded, listed shorter", picture, 40, true, false},
                                   {"as long as listed", blocks, blocks.size(), false, false},
                                   {"cut to what is listed", blocks, picture.size(), false, true},
                                   {"listed longer", blocks, blocks.size() + 500, false, true}};
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    const std::string path = "Library/SMS/Attachments/ab/11/A1/IMG_1.jpg";
    const fs::path stored = root() / "sms.db";
    fs::remove(stored);
    fs::remove_all(backup());
    testing::SmallStore store(stored);
    const auto chat = store.chat("+15550100142");
    const std::int64_t file[] = {
        store.store.addAttachment({.guid = "A1", .filename = "~/" + path, .transferName = "IMG_1.jpg"})};
    store.message({.guid = {}, .text = "\uFFFC", .chats = std::span(&chat, 1), .attachments = file});
    store.finish();
    test::BackupWriter writer(backup(), {.password = kPassword});
    writer.add({.domain = "HomeDomain", .path = "Library/SMS/sms.db", .content = bytesOf(stored)});
    writer.add(
        {.domain = "MediaDomain", .path = path, .content = each.content, .size = each.size, .isPadded = each.isPadded});
    const auto problem = writer.finish();
    ASSERT_FALSE(problem) << *problem;
    for (const std::string format : {"pdf", "text"}) {
      const Outcome made = onBackup({"--password-file", passwordFile(), "report", "+15550100142", "--name", "x",
                                     "--format", format, "--replace"});
      ASSERT_EQ(made.code, 0) << made.err;
      const bool isTold = made.err.find("1 picture may not be whole") != std::string::npos;
      EXPECT_EQ(isTold, each.isDoubtful && format == "pdf") << made.err;
      EXPECT_EQ(made.err.find("missing or damaged"), std::string::npos) << made.err;
    }
  }
}

TEST_F(Backup, SaysThatItWasNotFinished) {
  write({.snapshotState = "uploading"});
  const Outcome outcome = onBackup({"conversations"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_NE(outcome.err.find("was not finished"), std::string::npos) << outcome.err;
}

}  // namespace
}  // namespace chatsum::cli
