#include "hosts/device/backup/PrivateCopies.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "tests/hosts/backup/BackupFixture.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::bytesOf;
using testing::putBytes;

class PrivateCopiesTest : public ::testing::Test {
 protected:
  [[nodiscard]] PrivateCopies make(const PrivateCopies::Limits& limits) const {
    return PrivateCopies(std::move(SnapshotFolder::create(folder_.path()).value()), limits);
  }
  std::optional<std::string> ask(PrivateCopies& copies, const std::string& name, const std::string& content = "x") {
    return copies.copyOf(name, [&](const std::string& path) -> std::optional<std::uint64_t> {
      ++made_;
      putBytes(path, content);
      return content.size();
    });
  }
  [[nodiscard]] static std::size_t filesIn(const PrivateCopies& copies) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(copies.folder())) count += entry.path().filename() != "lock";
    return count;
  }

  platform::fake::TemporaryFolder folder_;
  int made_ = 0;
};

TEST_F(PrivateCopiesTest, MakesEachCopyOnceAndKeepsItsEnding) {
  auto copies = make({});
  const auto first = ask(copies, "MediaDomain-a/IMG.JPG", "one");
  ASSERT_TRUE(first);
  EXPECT_TRUE(first->ends_with(".JPG"));
  EXPECT_TRUE(first->starts_with(copies.folder() + "/"));
  EXPECT_EQ(bytesOf(*first), "one");
  EXPECT_EQ(ask(copies, "MediaDomain-a/IMG.JPG"), first);
  EXPECT_EQ(made_, 1);
  EXPECT_NE(ask(copies, "MediaDomain-b/IMG.JPG"), first);
}

TEST_F(PrivateCopiesTest, LeavesOutEndingsThatAreNone) {
  auto copies = make({});
  for (const std::string name : {"a/none", "a/b.x/../c", "a/c. ", "a/d.j%g", "a/e.abcdefghijklmnopqrstuvwxyz"}) {
    const auto path = ask(copies, name);
    ASSERT_TRUE(path);
    EXPECT_EQ(fs::path(*path).filename().string().find_first_not_of("0123456789"), std::string::npos) << *path;
  }
}

TEST_F(PrivateCopiesTest, RemovesTheOldestBeyondItsBounds) {
  auto copies = make({.most = 3, .mostBytes = 100, .fewest = 2});
  const auto a = ask(copies, "a"), b = ask(copies, "b"), c = ask(copies, "c");
  EXPECT_EQ(ask(copies, "a"), a);  // now the newest
  const auto d = ask(copies, "d");
  EXPECT_FALSE(fs::exists(*b));
  EXPECT_TRUE(fs::exists(*a) && fs::exists(*c) && fs::exists(*d));
  EXPECT_EQ(filesIn(copies), 3U);
  EXPECT_NE(ask(copies, "b"), b);  // made again, elsewhere
  EXPECT_EQ(made_, 5);
}

TEST_F(PrivateCopiesTest, BoundsTheBytesButKeepsTheNewest) {
  auto copies = make({.most = 100, .mostBytes = 100, .fewest = 2});
  const auto a = ask(copies, "a", std::string(80, 'x')), b = ask(copies, "b", std::string(80, 'x'));
  EXPECT_TRUE(fs::exists(*a) && fs::exists(*b));
  const auto c = ask(copies, "c", "x");
  EXPECT_FALSE(fs::exists(*a));
  EXPECT_TRUE(fs::exists(*b) && fs::exists(*c));
}

TEST_F(PrivateCopiesTest, RemembersNoCopyThatCouldNotBeMade) {
  auto copies = make({});
  EXPECT_FALSE(copies.copyOf("a", [](const std::string&) { return std::nullopt; }));
  EXPECT_TRUE(ask(copies, "a"));
}

TEST_F(PrivateCopiesTest, RemovesEverythingAtItsEnd) {
  std::string path;
  {
    auto copies = make({});
    path = copies.folder();
    ASSERT_TRUE(ask(copies, "a"));
    putBytes(copies.pathFor("store"), "x");
  }
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(PrivateCopiesTest, ServesManyThreads) {
  auto copies = make({.most = 64, .mostBytes = 1 << 20, .fewest = 8});
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (int i = 0; i < 200; ++i) {
        const std::string name = "name " + std::to_string(i % 32);
        const auto path = copies.copyOf(name, [&](const std::string& to) -> std::optional<std::uint64_t> {
          putBytes(to, name);
          return name.size();
        });
        EXPECT_TRUE(path && bytesOf(*path) == name);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(filesIn(copies), 32U);
}

}  // namespace
}  // namespace chatsum::device
