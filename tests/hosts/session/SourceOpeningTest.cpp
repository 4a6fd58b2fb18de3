#include "hosts/device/session/SourceOpening.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/fake/TemporaryFolder.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class SourceOpeningTest : public ::testing::Test {
 protected:
  void put(const std::string& path) const {
    fs::create_directories((root() / path).parent_path());
    std::ofstream(root() / path) << "x";
  }
  /// "kind path", the path below the root; the problem when there is none.
  [[nodiscard]] std::string opened(const std::string& path) const {
    const auto source = openSource(real(path), {});
    if (!source) return source.problem().sentence;
    const SourceFacts& facts = source.value()->facts();
    const bool isInside = facts.path.starts_with(folder_.path() + "/");
    return std::string(wordOf(facts.kind)) + " " +
           (isInside ? facts.path.substr(folder_.path().size() + 1) : facts.path);
  }
  [[nodiscard]] std::string messagesOf(const std::string& path) const {
    auto source = openSource(real(path), {});
    if (!source) return source.problem().sentence;
    const auto location = source.value()->store(SourceStore::kMessages);
    return location && location.value() ? location.value()->main : "";
  }
  [[nodiscard]] fs::path root() const { return folder_.path(); }
  [[nodiscard]] std::string real(const std::string& path) const { return (root() / path).string(); }

  platform::fake::TemporaryFolder folder_;
};

TEST_F(SourceOpeningTest, KnowsFoldersOfDevicesAndMacs) {
  put("device/var/mobile/Library/SMS/sms.db");
  put("maya/Library/Messages/chat.db");
  EXPECT_EQ(opened("device"), "device device");
  EXPECT_EQ(opened("device/"), "device device");
  EXPECT_EQ(opened("maya"), "mac maya");
}

TEST_F(SourceOpeningTest, KnowsTheDeviceOrHomeAroundAStore) {
  put("device/var/mobile/Library/SMS/sms.db");
  put("device/var/mobile/Library/CallHistoryDB/CallHistory.storedata");
  put("maya/Library/Messages/chat.db");
  EXPECT_EQ(opened("device/var/mobile/Library/SMS/sms.db"), "device device");
  EXPECT_EQ(opened("device/var/mobile/Library/CallHistoryDB/CallHistory.storedata"), "device device");
  EXPECT_EQ(opened("maya/Library/Messages/chat.db"), "mac maya");
  fs::create_symlink(real("maya/Library/Messages/chat.db"), root() / "link.db");
  EXPECT_EQ(opened("link.db"), "mac maya");
  EXPECT_EQ(messagesOf("link.db"), real("maya/Library/Messages/chat.db"));
}

TEST_F(SourceOpeningTest, TakesAStoreAloneAsAFile) {
  put("papers/sms.db");
  put("papers/chat.db");
  EXPECT_EQ(opened("papers/chat.db"), "file papers/chat.db");
  EXPECT_EQ(messagesOf("papers/chat.db"), real("papers/chat.db"));
}

TEST_F(SourceOpeningTest, TakesAFolderThatHoldsAStoreForTheStore) {
  put("papers/chat.db");
  EXPECT_EQ(opened("papers"), "file papers/chat.db");
  put("maya/Library/Messages/chat.db");
  EXPECT_EQ(opened("maya/Library/Messages"), "mac maya");
}

TEST_F(SourceOpeningTest, NamesTheSourcesBelowAFolderThatIsNone) {
  put("backups/aaa/Manifest.db");
  put("backups/bbb/Manifest.db");
  put("backups/maya/Library/Messages/chat.db");
  const std::string problem = opened("backups");
  for (const std::string& name : {"'" + real("backups/aaa") + "' (backup)", "'" + real("backups/bbb") + "' (backup)",
                                  "'" + real("backups/maya") + "' (mac)"}) {
    EXPECT_NE(problem.find(name), std::string::npos) << name << " in " << problem;
  }
}

TEST_F(SourceOpeningTest, SaysWhatItLookedForWhenNothingFits) {
  put("papers/notes.txt");
  const std::string problem = opened("papers");
  for (const std::string part :
       {"no Messages store", "var/mobile/Library/SMS/sms.db", "Library/Messages/chat.db", "Manifest.db"}) {
    EXPECT_NE(problem.find(part), std::string::npos) << part << " in " << problem;
  }
  EXPECT_EQ(opened("nothing"), "There is no folder or file '" + real("nothing") + "'; check the path.");
}

}  // namespace
}  // namespace chatsum::device
