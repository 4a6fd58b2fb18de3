#include <gtest/gtest.h>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"

namespace chatsum::test {
namespace {

using Specifiers = std::vector<platform::PSSpecifierRef>;

class SpecifierLookUp : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};

  static platform::PSSpecifierRef specifier(const Record& properties) {
    return std::make_shared<platform::PSSpecifier>(platform::PSSpecifier{properties});
  }
  static Specifiers labelled(std::initializer_list<Value> labels) {
    Specifiers list;
    for (const Value& label : labels) list.push_back(specifier({{"label", label}}));
    return list;
  }
  /// The place, after both look-ups agreed on it.
  static int find(const Specifiers& list, std::string_view text) {
    const int index = ChatsumUtils::getIdetifierIndex(list, text);
    EXPECT_EQ(ChatsumUtils::specifier(list, text), index < 0 ? nullptr : list[static_cast<std::size_t>(index)]);
    return index;
  }
};

TEST_F(SpecifierLookUp, FindsTheLastOfSeveralIgnoringCase) {
  const Specifiers list = labelled({"A", "b", "B"});
  EXPECT_EQ(find(list, "b"), 2);
  EXPECT_EQ(find(list, "B"), 2);
  EXPECT_EQ(find(list, "a"), 0);
}

TEST_F(SpecifierLookUp, FindsNothing) {
  EXPECT_EQ(find(labelled({"A", "b", "B"}), "z"), -1);
  EXPECT_EQ(find({}, "a"), -1);
  EXPECT_EQ(find({}, ""), -1);
}

TEST_F(SpecifierLookUp, ComparesWholeLabels) {
  const Specifiers list = labelled({"Messages", "Messages "});
  EXPECT_EQ(find(list, "message"), -1);
  EXPECT_EQ(find(list, "MESSAGES"), 0);
  EXPECT_EQ(find(list, "messages "), 1);
}

TEST_F(SpecifierLookUp, IgnoresCaseInEveryScriptButKeepsDiacritics) {
  const Specifiers list = labelled({"Größe", "ΑΘΗΝΑ"});
  EXPECT_EQ(find(list, "GRÖSSE"), 0);
  EXPECT_EQ(find(list, "αθηνα"), 1);
  EXPECT_EQ(find(list, "Grosse"), -1);
}

TEST_F(SpecifierLookUp, SkipsSpecifiersWithoutATextualLabel) {
  Specifiers list = labelled({"a", 1, Value(), Array{"a"}});
  list.push_back(specifier({}));
  list.push_back(specifier({{"id", "a"}, {"identifier", "a"}, {"Label", "a"}}));
  EXPECT_EQ(find(list, "a"), 0);
  EXPECT_EQ(find(list, "1"), -1);
  EXPECT_EQ(find(list, ""), -1);
}

TEST_F(SpecifierLookUp, FindsAnEmptyLabel) { EXPECT_EQ(find(labelled({"", "a"}), ""), 0); }

TEST_F(SpecifierLookUp, SkipsAPlaceThatHoldsNoSpecifier) {
  Specifiers list = labelled({"a"});
  list.push_back(nullptr);
  EXPECT_EQ(find(list, "a"), 0);
  EXPECT_EQ(find(list, "b"), -1);
}

class NavigationBarColor : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};
  std::shared_ptr<platform::fake::FakeBundle> bundle = std::make_shared<platform::fake::FakeBundle>();
  platform::UIImageRef fromFile = std::make_shared<platform::fake::FakeImage>(Size{1, 44});
  platform::UIImageRef byName = std::make_shared<platform::fake::FakeImage>(Size{2, 88});

  void SetUp() override { fake.artwork.bundles["RootListController"] = bundle; }
  platform::UIImageRef pattern(std::string_view className = "RootListController") {
    return ChatsumUtils::navigationBarColor(className).pattern;
  }
};

TEST_F(NavigationBarColor, TilesThePictureFileOfTheBundle) {
  bundle->resources["nav.png"] = "/bundle/nav.png";
  bundle->images["nav"] = byName;
  fake.artwork.files["/bundle/nav.png"] = fromFile;
  EXPECT_EQ(pattern(), fromFile);
}

TEST_F(NavigationBarColor, FallsBackToTheNamedPictureWithoutAFile) {
  bundle->images["nav"] = byName;
  EXPECT_EQ(pattern(), byName);
}

TEST_F(NavigationBarColor, FallsBackToTheNamedPictureWhenTheFileCannotBeRead) {
  bundle->resources["nav.png"] = "/bundle/broken.png";
  bundle->images["nav"] = byName;
  EXPECT_EQ(pattern(), byName);
}

TEST_F(NavigationBarColor, IsEmptyWithoutAnyPicture) {
  EXPECT_EQ(pattern(), nullptr);
  bundle->resources["nav.jpg"] = "/bundle/nav.jpg";
  bundle->images["Nav"] = byName;
  EXPECT_EQ(pattern(), nullptr);
}

TEST_F(NavigationBarColor, LooksIntoTheMainBundleForAnUnknownClass) {
  bundle->images["nav"] = byName;
  fake.artwork.mainBundle->images["nav"] = fromFile;
  EXPECT_EQ(pattern("NoSuchClass"), fromFile);
  EXPECT_EQ(pattern(), byName);
}

}  // namespace
}  // namespace chatsum::test
