#include "hosts/device/report/FileDelivery.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "hosts/device/report/PartialFile.h"
#include "platform/fake/TemporaryFolder.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class FileDeliveryTest : public ::testing::Test {
 protected:
  [[nodiscard]] std::string path(const std::string& name) const { return folder_.path() + "/" + name; }
  void put(const std::string& name, const std::string& bytes) const { std::ofstream(path(name)) << bytes; }
  [[nodiscard]] std::string bytes(const std::string& name) const {
    std::ifstream file(path(name));
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  [[nodiscard]] std::size_t count() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()));
  }

  platform::fake::TemporaryFolder folder_;
};

TEST_F(FileDeliveryTest, PutsACopyThere) {
  put("a", std::string(600'000, 'x'));
  EXPECT_FALSE(deliver(path("a"), path("b"), false).has_value());
  EXPECT_EQ(bytes("b"), bytes("a"));
  EXPECT_EQ(count(), 2U);
}

TEST_F(FileDeliveryTest, ReplacesOnlyWhenAsked) {
  put("a", "new");
  put("b", "old");
  EXPECT_TRUE(checkDelivery(path("b"), false).has_value());
  EXPECT_TRUE(deliver(path("a"), path("b"), false).has_value());
  EXPECT_EQ(bytes("b"), "old");
  EXPECT_FALSE(checkDelivery(path("b"), true).has_value());
  EXPECT_FALSE(deliver(path("a"), path("b"), true).has_value());
  EXPECT_EQ(bytes("b"), "new");
  EXPECT_EQ(count(), 2U);
}

TEST_F(FileDeliveryTest, TakesTheManifestAwayOfWhatItReplaces) {
  put("a", "new");
  put("b.evidence.json", "of a file that was moved");
  EXPECT_FALSE(deliver(path("a"), path("b"), false).has_value());
  EXPECT_EQ(bytes("b.evidence.json"), "of a file that was moved");
  EXPECT_FALSE(deliver(path("a"), path("b"), true).has_value());
  EXPECT_FALSE(fs::exists(path("b.evidence.json")));
}

TEST_F(FileDeliveryTest, RefusesPlacesThatCannotHoldAFile) {
  fs::create_directory(path("folder"));
  EXPECT_TRUE(checkDelivery(path("folder"), true).has_value());
  EXPECT_TRUE(checkDelivery(path("folder/"), true).has_value());
  EXPECT_TRUE(checkDelivery(path("missing/file"), true).has_value());
  EXPECT_TRUE(checkDelivery("/dev/null", true).has_value());
  EXPECT_TRUE(checkDelivery("", true).has_value());
  EXPECT_FALSE(checkDelivery(path("folder/file"), false).has_value());
}

TEST_F(FileDeliveryTest, LeavesNothingOfAFileThatWasNotFinished) {
  {
    const PartialFile partial(folder_.path(), "txt");
    EXPECT_EQ(partial.path(), folder_.path() + "/" + partial.name());
    EXPECT_TRUE(partial.name().starts_with(".chatsum-"));
    EXPECT_TRUE(partial.name().ends_with(".txt"));
    put(partial.name(), "half");
    EXPECT_EQ(count(), 1U);
  }
  EXPECT_EQ(count(), 0U);
}

TEST_F(FileDeliveryTest, RemovesPartialFilesAtTheEndOfTheProcess) {
  const PartialFile one(folder_.path(), ""), two(folder_.path(), "");
  put(one.name(), "half");
  PartialFile::removeAll(std::chrono::milliseconds(0));
  EXPECT_EQ(count(), 0U);
}

}  // namespace
}  // namespace chatsum::device
