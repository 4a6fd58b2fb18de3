#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/unit/platform/PlatformHosts.h"

namespace chatsum::platform {
namespace {

template <class Host>
class PropertyListsContract : public ::testing::Test {
 protected:
  void put(const std::string& name, const std::string& bytes) {
    std::ofstream(host_.realPath("/var/mobile/" + name), std::ios::binary) << bytes;
  }
  std::optional<Record> dictionary(const std::string& name) {
    return host_.platform().propertyLists.dictionary("/var/mobile/" + name);
  }
  Host host_;
};
TYPED_TEST_SUITE(PropertyListsContract, Hosts);

TYPED_TEST(PropertyListsContract, AnswersTheDictionaryOfAFile) {
  this->put("a.plist", "<plist><dict><key>a</key><integer>-1</integer></dict></plist>");
  EXPECT_EQ(this->dictionary("a.plist"), (Record{{"a", -1}}));
}

TYPED_TEST(PropertyListsContract, AnswersNoneForWhatCannotBeRead) {
  this->put("broken.plist", "<plist><dict>");
  this->put("list.plist", "<plist><array/></plist>");
  this->put("long.plist", "<plist><dict/>" + std::string(5'000'000, ' ') + "</plist>");
  std::filesystem::create_directory(this->host_.realPath("/var/mobile/folder.plist"));
  for (const char* name : {"broken.plist", "list.plist", "long.plist", "folder.plist", "missing.plist"}) {
    EXPECT_EQ(this->dictionary(name), std::nullopt) << name;
  }
}

template <class Host>
class CompanionContract : public PropertyListsContract<Host> {};
TYPED_TEST_SUITE(CompanionContract, Hosts);

TYPED_TEST(CompanionContract, AnswersWordsItDoesNotKnowAndNoContainers) {
  EXPECT_EQ(this->host_.platform().companion.localizedLabelFromUIKit("Close"), "Close");
  EXPECT_EQ(this->host_.platform().companion.localizedLabelFromUIKit("Some Word"), "Some Word");
  EXPECT_EQ(this->host_.platform().companion.applicationDataContainerDirectory("com.apple.MobileSMS"), std::nullopt);
}

}  // namespace
}  // namespace chatsum::platform
