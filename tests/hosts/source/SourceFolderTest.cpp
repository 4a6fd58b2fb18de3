#include "hosts/device/source/SourceFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/fake/TemporaryFolder.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class SourceFolderTest : public ::testing::Test {
 protected:
  void put(const std::string& path) {
    fs::create_directories((root() / path).parent_path());
    std::ofstream(root() / path) << "x";
  }
  void link(const std::string& target, const std::string& path) {
    fs::create_directories((root() / path).parent_path());
    fs::create_symlink(target, root() / path);
  }
  [[nodiscard]] fs::path root() const { return fs::path(folder_.path()) / "device"; }
  [[nodiscard]] std::string real(const std::string& path) const { return (root() / path).string(); }
  [[nodiscard]] fs::path outside() const { return fs::path(folder_.path()) / "outside"; }

  platform::fake::TemporaryFolder folder_;
};

TEST_F(SourceFolderTest, FollowsAbsoluteLinksInside) {
  put("private/var/mobile/a.txt");
  link("/private/var", "var");
  link("/var/mobile", "User");
  const SourceFolder source(root().string());
  EXPECT_EQ(source.resolve("/User/a.txt"), real("private/var/mobile/a.txt"));
  EXPECT_EQ(source.resolve("var/mobile//./a.txt"), real("private/var/mobile/a.txt"));
}

TEST_F(SourceFolderTest, FollowsRelativeLinks) {
  put("private/var/mobile/a.txt");
  link("private/var", "var");
  link("../private/./var/mobile/a.txt", "tmp/b.txt");
  const SourceFolder source(root().string());
  EXPECT_EQ(source.resolve("var/mobile/a.txt"), real("private/var/mobile/a.txt"));
  EXPECT_EQ(source.resolve("tmp/b.txt"), real("private/var/mobile/a.txt"));
}

TEST_F(SourceFolderTest, NeverLeavesTheFolder) {
  put("etc/inside");
  fs::create_directories(outside());
  std::ofstream(outside() / "secret") << "x";
  link("../../outside/secret", "a");
  link((outside() / "secret").string(), "b");
  link("../../../../../../etc/inside", "c");
  const SourceFolder source(root().string());
  EXPECT_EQ(source.resolve("a"), std::nullopt);
  EXPECT_EQ(source.resolve("b"), std::nullopt);
  EXPECT_EQ(source.resolve("../outside/secret"), std::nullopt);
  EXPECT_EQ(source.resolve("c"), real("etc/inside"));
  EXPECT_EQ(source.resolve("/etc/passwd"), std::nullopt);
}

TEST_F(SourceFolderTest, TakesALinkThatSpellsOutTheFolder) {
  put("var/mobile/a.txt");
  link((root() / "var/mobile").string(), "User");
  EXPECT_EQ(SourceFolder(root().string()).resolve("User/a.txt"), real("var/mobile/a.txt"));
}

TEST_F(SourceFolderTest, EndsLinksThatGoInCircles) {
  link("b", "a");
  link("a", "b");
  EXPECT_EQ(SourceFolder(root().string()).resolve("a"), std::nullopt);
}

TEST_F(SourceFolderTest, AnswersNothingForWhatIsNotThere) {
  put("var/mobile/a.txt");
  const SourceFolder source(root().string());
  EXPECT_EQ(source.resolve("var/mobile/b.txt"), std::nullopt);
  EXPECT_EQ(source.resolve("var/mobile/a.txt/c"), std::nullopt);
}

}  // namespace
}  // namespace chatsum::device
