#include "hosts/device/settings/SettingWords.h"

#include <gtest/gtest.h>

#include <string>

namespace chatsum::device {
namespace {

const Setting& setting(std::string_view name) {
  const Setting* found = findSetting(name);
  if (!found) throw std::invalid_argument(std::string(name));
  return *found;
}

const Setting& format() { return setting("ChatsumMessagesDefaultFileFormat"); }
const Setting& order() { return setting("ChatsumMessagesDefaultDateSortOrder"); }
const Setting& enabled() { return setting("ChatsumEnabled"); }

TEST(SettingWords, AreFoundByNameInAnyCase) {
  EXPECT_EQ(allSettings().size(), 5U);
  EXPECT_EQ(findSetting("chatsumenabled"), &enabled());
  EXPECT_EQ(findSetting("ChatsumEnable"), nullptr);
  EXPECT_EQ(findSetting(""), nullptr);
}

TEST(SettingWords, OfFormatsAreCodesInTheFile) {
  EXPECT_EQ(valueOfWord(format(), "csv"), Value(0));
  EXPECT_EQ(valueOfWord(format(), "PDF"), Value(1));
  EXPECT_EQ(valueOfWord(format(), "text"), Value(2));
  EXPECT_EQ(valueOfWord(format(), "txt"), Value(2));
  EXPECT_EQ(valueOfWord(format(), "2"), Value(2));
  for (const char* word : {"3", "-1", "", "doc", "02", "1 ", "asc"})
    EXPECT_EQ(valueOfWord(format(), word), std::nullopt);
}

TEST(SettingWords, OfOrdersAreCodesInTheFile) {
  EXPECT_EQ(valueOfWord(order(), "asc"), Value(0));
  EXPECT_EQ(valueOfWord(order(), "Descending"), Value(1));
  EXPECT_EQ(valueOfWord(order(), "1"), Value(1));
  EXPECT_EQ(valueOfWord(order(), "2"), std::nullopt);
}

TEST(SettingWords, OfSwitchesAreBooleansInTheFile) {
  for (const char* word : {"yes", "ON", "true", "1"}) {
    ASSERT_TRUE(valueOfWord(enabled(), word).has_value()) << word;
    EXPECT_EQ(valueOfWord(enabled(), word)->kind(), Value::Kind::kBool) << word;
    EXPECT_TRUE(valueOfWord(enabled(), word)->boolValue()) << word;
  }
  EXPECT_FALSE(valueOfWord(enabled(), "no")->boolValue());
  EXPECT_EQ(valueOfWord(enabled(), "maybe"), std::nullopt);
}

TEST(SettingWords, SayWhatTheLibraryMakesOfTheFile) {
  EXPECT_EQ(wordOfValue(format(), 1), "pdf");
  EXPECT_EQ(wordOfValue(format(), "2nd"), "text");
  EXPECT_EQ(wordOfValue(format(), 7), "7");
  EXPECT_EQ(wordOfValue(format(), -1), "-1");
  EXPECT_EQ(wordOfValue(order(), 0), "asc");
  EXPECT_EQ(wordOfValue(order(), -4), "desc");
  EXPECT_EQ(wordOfValue(enabled(), "Yes"), "yes");
  EXPECT_EQ(wordOfValue(enabled(), 2), "yes");
  EXPECT_EQ(wordOfValue(enabled(), "on"), "no");
}

TEST(SettingWords, SayTheDefaultsOfTheLibraryWithoutAValue) {
  EXPECT_EQ(wordOfValue(format(), Value()), "csv");
  EXPECT_EQ(wordOfValue(order(), Value()), "asc");
  EXPECT_EQ(wordOfValue(enabled(), Value()), "no");
}

}  // namespace
}  // namespace chatsum::device
