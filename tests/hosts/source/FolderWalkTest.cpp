#include "hosts/device/source/FolderWalk.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/fake/TemporaryFolder.h"
#include "tests/support/OrdinaryUser.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class FolderWalkTest : public ::testing::Test {
 protected:
  void make(const std::string& path) const { fs::create_directories(folder_.path() + "/" + path); }
  FolderWalkEnd walk(const FolderWalkLimits& limits, const std::string& shut = "?") {
    visited_.clear();
    return walkFolders(folder_.path(), limits, [&](const std::string& folder, int depth) {
      const std::string name = folder == folder_.path() ? "." : folder.substr(folder_.path().size() + 1);
      visited_.push_back(name + " " + std::to_string(depth));
      return name != shut;
    });
  }

  platform::fake::TemporaryFolder folder_;
  std::vector<std::string> visited_;
};

TEST_F(FolderWalkTest, GoesFromNearToFarInTheOrderOfNames) {
  make("b/x");
  make("a/y/z");
  EXPECT_TRUE(walk({}).isComplete);
  EXPECT_EQ(visited_, (std::vector<std::string>{". 0", "a 1", "b 1", "a/y 2", "b/x 2", "a/y/z 3"}));
}

TEST_F(FolderWalkTest, KeepsItsLimits) {
  make("a/b/c");
  (void)walk({.depth = 1, .entries = 100});
  EXPECT_EQ(visited_, (std::vector<std::string>{". 0", "a 1"}));
  for (int i = 0; i < 50; ++i) make("x" + std::to_string(i));
  EXPECT_FALSE(walk({.depth = 9, .entries = 10}).isComplete);
  EXPECT_EQ(visited_.size(), 11U);
}

TEST_F(FolderWalkTest, LeavesOutWhatIsBelowAFolderThatIsShut) {
  make("a/b");
  make("c");
  (void)walk({}, "a");
  EXPECT_EQ(visited_, (std::vector<std::string>{". 0", "a 1", "c 1"}));
}

TEST_F(FolderWalkTest, FollowsNoLinksAndPassesFiles) {
  make("a");
  std::ofstream(folder_.path() + "/file") << "x";
  fs::create_symlink(folder_.path(), folder_.path() + "/a/loop");
  EXPECT_TRUE(walk({}).isComplete);
  EXPECT_EQ(visited_, (std::vector<std::string>{". 0", "a 1"}));
}

TEST_F(FolderWalkTest, TellsWhatCannotBeListed) {
  std::vector<std::string> visited;
  make("shut");
  fs::permissions(folder_.path(), fs::perms::all);
  fs::permissions(folder_.path() + "/shut", fs::perms::none);
  const auto end = [&] {
    const test::OrdinaryUser user;
    return walkFolders(folder_.path(), {}, [&](const std::string& folder, int) {
      visited.push_back(folder);
      return true;
    });
  }();
  EXPECT_EQ(visited.size(), 2U);
  ASSERT_EQ(end.unreadable.size(), 1U);
  EXPECT_NE(end.unreadable[0].find("/shut' ("), std::string::npos) << end.unreadable[0];
}

}  // namespace
}  // namespace chatsum::device
