#include "libchatsum/ChatsumSettings/ChatsumSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"
#include "tests/support/BinaryPropertyList.h"
#include "tests/support/LogLine.h"

namespace chatsum::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kFormat = "ChatsumMessagesDefaultFileFormat";
constexpr const char* kOrder = "ChatsumMessagesDefaultDateSortOrder";

class Settings : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};

  void putFile(const std::string& bytes) { fake.put("User/Library/Preferences/com.orbelle.chatsum.plist", bytes); }
  /// An XML file of these entries.
  void put(const std::string& entries) { putFile("<plist version=\"1.0\"><dict>" + entries + "</dict></plist>"); }
  /// The format that is read when the file holds this element for it.
  std::int64_t formatOf(const std::string& element) {
    put("<key>" + std::string(kFormat) + "</key>" + element);
    return ChatsumSettings().msgDefaultFileFormat();
  }
  bool switchOf(const std::string& element) {
    put("<key>ChatsumEnabled</key>" + element);
    return ChatsumSettings().isChatsumEnabled();
  }
  static void expectDefaults(const ChatsumSettings& settings) {
    EXPECT_FALSE(settings.isChatsumEnabled());
    EXPECT_FALSE(settings.isChatsumEnabledMessages());
    EXPECT_FALSE(settings.isChatsumEnabledPhone());
    EXPECT_EQ(settings.msgDefaultFileFormat(), 0);
    EXPECT_EQ(settings.msgDefaultDateSortOrder(), 0);
  }
};

TEST_F(Settings, StandInARelativePath) {
  EXPECT_EQ(ChatsumSettings::settingsPath(), "User/Library/Preferences/com.orbelle.chatsum.plist");
}

TEST_F(Settings, HaveDefaultsWithoutAFile) {
  expectDefaults(ChatsumSettings::sharedSettings());
  EXPECT_FALSE(ChatsumUtils::isChatsumOnlyOn());
  EXPECT_EQ(ChatsumUtils::defaultFileFormat(), 0);
  EXPECT_THAT(fake.log.lines(), ElementsAre(information("+[ChatsumSettings sharedSettings]_block_invoke", 104,
                                                        "Initiallizing settings for first time..")));
}

TEST_F(Settings, HaveDefaultsWithAMalformedFileAndSayNothing) {
  for (const char* bytes :
       {"", "garbage", "<plist><array/></plist>", "<plist><dict><key>ChatsumEnabled</key><true/>"}) {
    putFile(bytes);
    expectDefaults(ChatsumSettings());
  }
  EXPECT_THAT(fake.log.lines(), IsEmpty());
}

TEST_F(Settings, AreReadFromXml) {
  put("<key>other.component</key><string>kept</string><key>ChatsumEnabled</key><true/><key>ChatsumEnabledMessages</key>"
      "<true/><key>ChatsumEnabledPhone</key><true/><key>ChatsumMessagesDefaultFileFormat</key><integer>1</integer>"
      "<key>ChatsumMessagesDefaultDateSortOrder</key><integer>7</integer>");
  const ChatsumSettings& settings = ChatsumSettings::sharedSettings();
  EXPECT_TRUE(settings.isChatsumEnabled());
  EXPECT_TRUE(settings.isChatsumEnabledMessages());
  EXPECT_TRUE(settings.isChatsumEnabledPhone());
  EXPECT_EQ(settings.msgDefaultFileFormat(), 1);
  EXPECT_EQ(settings.msgDefaultDateSortOrder(), 7);
  EXPECT_EQ(ChatsumUtils::defaultFileFormat(), 1);
  EXPECT_TRUE(ChatsumUtils::isChatsumOnlyOn());
}

TEST_F(Settings, AreReadFromBinary) {
  putFile(binarySettings({{kFormat, 2}, {kOrder, -1}, {"ChatsumEnabledPhone", 1}}));
  const ChatsumSettings settings;
  EXPECT_EQ(settings.msgDefaultFileFormat(), 2);
  EXPECT_EQ(settings.msgDefaultDateSortOrder(), -1);
  EXPECT_TRUE(settings.isChatsumEnabledPhone());
  EXPECT_FALSE(settings.isChatsumEnabled());
}

TEST_F(Settings, TakeNumbersOfEveryKind) {
  EXPECT_EQ(formatOf("<integer>2</integer>"), 2);
  EXPECT_EQ(formatOf("<integer>-5</integer>"), -5);
  EXPECT_EQ(formatOf("<integer>9223372036854775807</integer>"), 9223372036854775807);
  EXPECT_EQ(formatOf("<real>1.9</real>"), 1);
  EXPECT_EQ(formatOf("<real>-1.9</real>"), -1);
  EXPECT_EQ(formatOf("<true/>"), 1);
  EXPECT_EQ(formatOf("<false/>"), 0);
}

TEST_F(Settings, TakeStringsByTheirLeadingDigits) {
  EXPECT_EQ(formatOf("<string>2</string>"), 2);
  EXPECT_EQ(formatOf("<string>  2 of them</string>"), 2);
  EXPECT_EQ(formatOf("<string>-3x</string>"), -3);
  EXPECT_EQ(formatOf("<string>two</string>"), 0);
  EXPECT_EQ(formatOf("<string></string>"), 0);
}

TEST_F(Settings, TakeSwitchesOfEveryKind) {
  EXPECT_TRUE(switchOf("<true/>"));
  EXPECT_FALSE(switchOf("<false/>"));
  EXPECT_TRUE(switchOf("<integer>2</integer>"));
  EXPECT_FALSE(switchOf("<integer>0</integer>"));
  EXPECT_TRUE(switchOf("<real>0.5</real>"));
  for (const char* word : {"YES", "yes", "true", "T", "1", "9", "007", " +1"}) {
    EXPECT_TRUE(switchOf("<string>" + std::string(word) + "</string>")) << word;
  }
  for (const char* word : {"NO", "no", "false", "0", "", "on", "x1"}) {
    EXPECT_FALSE(switchOf("<string>" + std::string(word) + "</string>")) << word;
  }
}

TEST_F(Settings, TakeNothingFromOtherKinds) {
  for (const char* element :
       {"<array><integer>2</integer></array>", "<dict><key>a</key><true/></dict>", "<data>AAEC</data>"}) {
    EXPECT_EQ(formatOf(element), 0) << element;
    EXPECT_FALSE(switchOf(element)) << element;
  }
}

TEST_F(Settings, OfKeysThatWereRemovedGoBackToTheirDefaults) {
  put("<key>ChatsumEnabled</key><true/><key>ChatsumMessagesDefaultFileFormat</key><integer>2</integer>");
  ChatsumSettings& settings = ChatsumSettings::sharedSettings();
  EXPECT_TRUE(settings.isChatsumEnabled());
  put("<key>ChatsumEnabled</key><true/>");
  EXPECT_EQ(settings.msgDefaultFileFormat(), 2);
  settings.loadSettings();
  EXPECT_EQ(settings.msgDefaultFileFormat(), 0);
  EXPECT_TRUE(settings.isChatsumEnabled());
  putFile("no longer a property list");
  settings.loadSettings();
  expectDefaults(settings);
}

TEST_F(Settings, ThatAreSetChangeInMemoryOnly) {
  put("<key>ChatsumEnabled</key><true/>");
  const std::string before = fake.read("User/Library/Preferences/com.orbelle.chatsum.plist");
  ChatsumSettings& settings = ChatsumSettings::sharedSettings();
  settings.setIsChatsumEnabled(false);
  settings.setIsChatsumEnabledMessages(true);
  settings.setIsChatsumEnabledPhone(true);
  settings.setMsgDefaultFileFormat(1);
  settings.setMsgDefaultDateSortOrder(1);
  EXPECT_FALSE(ChatsumUtils::isChatsumOnlyOn());
  EXPECT_EQ(ChatsumUtils::defaultFileFormat(), 1);
  EXPECT_TRUE(settings.isChatsumEnabledMessages());
  EXPECT_TRUE(settings.isChatsumEnabledPhone());
  EXPECT_EQ(settings.msgDefaultDateSortOrder(), 1);
  EXPECT_EQ(fake.read("User/Library/Preferences/com.orbelle.chatsum.plist"), before);
  EXPECT_THAT(fake.files.calls(), IsEmpty());
}

TEST_F(Settings, AreMadeOnceHoweverManyAskAtOnce) {
  constexpr int kThreads = 8;
  std::latch start(kThreads);
  std::vector<ChatsumSettings*> seen(kThreads, nullptr);
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&, i] {
        start.arrive_and_wait();
        seen[static_cast<std::size_t>(i)] = &ChatsumSettings::sharedSettings();
      });
    }
  }
  EXPECT_THAT(seen, ::testing::Each(&ChatsumSettings::sharedSettings()));
  EXPECT_EQ(fake.log.lines().size(), 1U);
}

TEST_F(Settings, DictionaryIsReadFromAnyPath) {
  fake.put("/elsewhere/a.plist", "<plist><dict><key>a</key><integer>1</integer></dict></plist>");
  const auto found = ChatsumSettings::settingsDictionary("/elsewhere/a.plist", "any.application");
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(*found, (Record{{"a", 1}}));
  EXPECT_FALSE(ChatsumSettings::settingsDictionary("/elsewhere/b.plist", "any.application").has_value());
  EXPECT_FALSE(ChatsumSettings::settingsDictionary("/elsewhere", "any.application").has_value());
}

}  // namespace
}  // namespace chatsum::test
