#include <functional>

#include "hosts/device/sample/SamplePictures.h"
#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/BackupWriter.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using testing::countOf;
using testing::linesOf;
using testing::Outcome;
using testing::putBytes;
using testing::SmallStore;

constexpr const char* kPerson = "+15550100101";
constexpr const char* kArtwork = "/System/Library/PreferenceBundles/ChatsumSettings.bundle/";

/// Messages that name pictures of the machine that reads them: by their texts and by the paths of their attachments.
class ForeignPictures : public testing::ProgramTest {
 protected:
  ForeignPictures() {
    putBytes(reports() / "secret.jpg", std::string(device::boatJpeg()));
    putBytes(root() / "secret.jpg", std::string(device::boatJpeg()));
  }

  /// Every way to a picture that is none of the source's.
  [[nodiscard]] std::vector<std::string> ways() const {
    std::string up;
    for (int i = 0; i < 30; ++i) up += "../";
    const std::string machine = root().string().substr(1);
    std::vector<std::string> ways;
    for (const std::string file : {"secret.jpg", "Other report.pdf"}) {
      ways.push_back((reports() / file).string());
      ways.push_back(home().string() + "/x/../Library/Preferences/Chatsum/" + file);
      ways.push_back(kArtwork + up + fs::relative(reports() / file, "/").string());
      ways.push_back("~/" + up + fs::relative(reports() / file, "/").string());
    }
    ways.push_back((root() / "secret.jpg").string());
    ways.push_back(home().string() + "/../secret.jpg");
    ways.push_back(kArtwork + up + machine + "/secret.jpg");
    ways.push_back(std::string(kArtwork) + "./" + up + machine + "/secret.jpg");
    for (const std::string start : {"~/", "User/", "/var/mobile/", "/private/var/mobile/", "/Users/maya/"}) {
      ways.push_back(start + up + machine + "/secret.jpg");
      ways.push_back(start + "Library/SMS/Attachments/link.jpg");
      ways.push_back(start + "Library/Messages/Attachments/link.jpg");
      ways.push_back(start + "Library/SMS/Attachments/folder/secret.jpg");
      ways.push_back(start + "Library/Messages/Attachments/folder/secret.jpg");
    }
    return ways;
  }

  /// A store with a picture of its own, which is the last message's, after messages that name others.
  static void write(const fs::path& store, const std::vector<std::string>& names, const std::string& own) {
    fs::remove(store);
    SmallStore rows(store);
    const auto chat = rows.chat(kPerson);
    const auto attach = [&](const std::string& name) {
      const std::int64_t file[] = {rows.store.addAttachment({.guid = name, .filename = name, .transferName = "a.jpg"})};
      rows.message({.guid = {}, .text = "\uFFFC", .chats = std::span(&chat, 1), .attachments = file});
    };
    for (const std::string& name : names) {
      rows.message(chat, name);
      attach(name);
    }
    attach(own);
    rows.finish();
  }
  /// What stands beside the store: the picture, and links that lead away.
  void writeAttachments(const fs::path& folder) const {
    putBytes(folder / "own.jpg", std::string(device::hillsJpeg()));
    fs::create_symlink(root() / "secret.jpg", folder / "link.jpg");
    fs::create_symlink(root(), folder / "folder");
  }
  /// How many pictures a report holds. It has some of its own.
  [[nodiscard]] std::size_t pictures(std::vector<std::string> arguments, bool isPlain) const {
    for (const char* more : {"report", kPerson, "--format", "pdf", "--replace"}) arguments.emplace_back(more);
    if (isPlain) arguments.emplace_back("--plain");
    const Outcome outcome = runPlain(arguments);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    const auto lines = linesOf(outcome.out);
    return lines.empty() ? 0 : countOf(testing::bytesOf(lines[0]), "/Subtype/Image");
  }
  /// Reports hold the source's own picture and no other.
  void expectOwnPictureOnly(
      const fs::path& source, const fs::path& store, const std::string& attachments,
      const std::vector<std::string>& options = {}, const std::function<void()>& prepare = [] {}) const {
    const std::string own = attachments + "/own.jpg";
    for (const bool isPlain : {false, true}) {
      SCOPED_TRACE(isPlain);
      std::vector<std::string> arguments = {"--source", source.string(), "--home", home().string()};
      arguments.insert(arguments.end(), options.begin(), options.end());
      write(store, {}, attachments + "/missing.jpg");
      prepare();
      const std::size_t none = pictures(arguments, isPlain);
      write(store, {}, own);
      prepare();
      ASSERT_EQ(pictures(arguments, isPlain), none + 1);
      fs::copy_file(reports() / (std::string(kPerson) + ".pdf"), reports() / "Other report.pdf",
                    fs::copy_options::overwrite_existing);
      write(store, ways(), own);
      prepare();
      EXPECT_EQ(pictures(arguments, isPlain), none + 1);
    }
  }
};

TEST_F(ForeignPictures, AreInNoReportOfADevice) {
  writeAttachments(storePath().parent_path() / "Attachments");
  expectOwnPictureOnly(device(), storePath(), "~/Library/SMS/Attachments");
}

TEST_F(ForeignPictures, AreInNoReportOfAStoreAlone) {
  const fs::path store = root() / "copy/sms.db";
  writeAttachments(root() / "copy/Attachments");
  expectOwnPictureOnly(store, store, "~/Library/SMS/Attachments");
}

TEST_F(ForeignPictures, AreInNoReportOfAMac) {
  const fs::path messages = device() / "Library/Messages";
  writeAttachments(messages / "Attachments");
  expectOwnPictureOnly(device(), messages / "chat.db", "~/Library/Messages/Attachments");
}

TEST_F(ForeignPictures, AreInNoReportOfABackup) {
  const fs::path backup = root() / "backup";
  putBytes(root() / "password", "secret-Pa55\n");
  for (const bool isEncrypted : {false, true}) {
    SCOPED_TRACE(isEncrypted);
    test::BackupOptions options;
    std::vector<std::string> arguments;
    if (isEncrypted) {
      options.password = "secret-Pa55";
      arguments = {"--password-file", (root() / "password").string()};
    }
    fs::remove_all(device());
    writeAttachments(storePath().parent_path() / "Attachments");
    expectOwnPictureOnly(backup, storePath(), "~/Library/SMS/Attachments", arguments, [&] {
      fs::remove_all(backup);
      const auto problem = test::writeBackup(device(), backup, options);
      ASSERT_FALSE(problem) << *problem;
      // A file that the backup lists is a link in the folder.
      const test::BackupWriter places(backup, options);
      const fs::path stored = places.storedPath("MediaDomain", "Library/SMS/Attachments/link.jpg");
      fs::create_directories(stored.parent_path());
      fs::remove(stored);
      fs::create_symlink(root() / "secret.jpg", stored);
    });
  }
}

}  // namespace
}  // namespace chatsum::cli
