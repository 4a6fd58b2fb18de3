#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "platform/system/propertylists/PropertyListFile.h"
#include "platform/system/propertylists/PropertyListGuard.h"
#include "tests/support/BinaryPropertyList.h"

namespace chatsum::platform::system {
namespace {

using test::BinaryPropertyList;

bool isRefused(const std::string& bytes) { return !PropertyListFile::parse(bytes).has_value(); }

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) all += text;
  return all;
}

TEST(HostilePropertyList, NestedWithoutEndIsRefused) {
  EXPECT_TRUE(isRefused("<plist><dict><key>a</key>" + repeated("<array>", 100'000)));
  EXPECT_TRUE(isRefused("<plist><dict><key>a</key>" + repeated("<array>", 50'000) + repeated("</array>", 50'000) +
                        "</dict></plist>"));
  EXPECT_TRUE(isRefused("<plist>" + repeated("<dict><key>a</key>", 20'000)));
}

TEST(HostilePropertyList, NestedToTheLimitIsRead) {
  const std::size_t depth = propertylist::kMostContainers - 1;
  EXPECT_FALSE(isRefused("<plist><dict><key>a</key>" + repeated("<array>", depth) + repeated("</array>", depth) +
                         "</dict></plist>"));
  BinaryPropertyList list;
  auto inner = list.array({});
  for (std::size_t i = 1; i < depth; ++i) inner = list.array({inner});
  EXPECT_FALSE(isRefused(list.bytes(list.dictionary({list.text("a")}, {inner}))));
}

TEST(HostilePropertyList, BinaryDeeperThanTheLimitIsRefused) {
  BinaryPropertyList list;
  auto inner = list.array({});
  for (int i = 0; i < 20'000; ++i) inner = list.array({inner});
  EXPECT_TRUE(isRefused(list.bytes(list.dictionary({list.text("a")}, {inner}))));
}

TEST(HostilePropertyList, BinaryThatHoldsItselfIsRefused) {
  BinaryPropertyList list;
  const auto key = list.text("a");
  const auto array = list.next();
  list.array({array});
  EXPECT_TRUE(isRefused(list.bytes(list.dictionary({key}, {array}))));
  BinaryPropertyList self;
  const auto selfKey = self.text("a");
  const auto top = self.next();
  self.dictionary({selfKey}, {top});
  EXPECT_TRUE(isRefused(self.bytes(top)));
}

// Each list holds the one before it twice: thirty of them would be a thousand million.
TEST(HostilePropertyList, BinaryThatMultipliesIsRefused) {
  BinaryPropertyList list;
  auto inner = list.array({});
  for (int i = 0; i < 30; ++i) inner = list.array({inner, inner});
  EXPECT_TRUE(isRefused(list.bytes(list.dictionary({list.text("a")}, {inner}))));
}

TEST(HostilePropertyList, BinaryThatRepeatsALongTextIsRefused) {
  BinaryPropertyList list;
  const auto text = list.text(std::string(500'000, 'x'));
  EXPECT_TRUE(isRefused(list.bytes(
      list.dictionary({list.text("a")}, {list.array(std::vector<BinaryPropertyList::Object>(1000, text))}))));
}

TEST(HostilePropertyList, BinaryWithALieAboutItsSizesIsRefused) {
  const std::string good = test::binarySettings({{"a", 1}});
  ASSERT_FALSE(isRefused(good));
  const std::size_t trailer = good.size() - 32;
  for (std::size_t at = trailer + 6; at < good.size(); ++at) {
    for (const char byte : {'\0', '\x7F', '\xFF'}) {
      std::string bad = good;
      bad[at] = byte;
      static_cast<void>(isRefused(bad));  // some still make sense; none may crash
    }
  }
  std::string many = good;
  many[trailer + 8] = '\x10';
  EXPECT_TRUE(isRefused(many));
  std::string far = good;
  far[trailer + 24] = '\x10';
  EXPECT_TRUE(isRefused(far));
  BinaryPropertyList list;
  const auto key = list.text("a");
  EXPECT_TRUE(isRefused(list.bytes(list.dictionary({key}, {list.raw("\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF")}))));
  EXPECT_TRUE(isRefused(list.bytes(list.dictionary({key}, {list.raw("\x6F\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF")}))));
  EXPECT_TRUE(isRefused(list.bytes(list.dictionary({key}, {list.raw("\xDF\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF")}))));
  EXPECT_TRUE(isRefused(list.bytes(list.dictionary({key}, {9999}))));
}

TEST(HostilePropertyList, WithZerosInTextsIsRefused) {
  const std::string zero("a\0b", 3), wide("\x62\x00\x00\x00\x41", 5);
  for (const bool isKey : {true, false}) {
    BinaryPropertyList narrow, broad;
    const auto good = narrow.text("good"), bad = narrow.text(zero);
    EXPECT_TRUE(isRefused(narrow.bytes(narrow.dictionary({isKey ? bad : good}, {isKey ? good : bad}))));
    const auto broadGood = broad.text("good"), broadBad = broad.raw(wide);
    EXPECT_TRUE(
        isRefused(broad.bytes(broad.dictionary({isKey ? broadBad : broadGood}, {isKey ? broadGood : broadBad}))));
  }
  for (const char* reference : {"&#0;", "&#x0;", "&#X00;", "&#000;"}) {
    const std::string text = "a" + std::string(reference) + "b";
    EXPECT_TRUE(isRefused("<plist><dict><key>" + text + "</key><true/></dict></plist>")) << reference;
    EXPECT_TRUE(isRefused("<plist><dict><key>a</key><string>" + text + "</string></dict></plist>")) << reference;
  }
  EXPECT_TRUE(isRefused("<plist><dict><key>a" + std::string(1, '\0') + "</key><true/></dict></plist>"));
}

TEST(HostilePropertyList, LongerThanTheLimitIsRefused) {
  const std::string room(propertylist::kMostBytes, ' ');
  EXPECT_TRUE(isRefused("<plist><dict/>" + room + "</plist>"));
}

TEST(HostilePropertyList, DamagedAtAnyPlaceDoesNoHarm) {
  const std::string text =
      "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key><integer>-5</integer><key>b</key><array>"
      "<string>x&amp;y</string><data>AAEC</data><date>2020-01-06T10:40:00Z</date></array></dict></plist>";
  BinaryPropertyList list;
  const auto a = list.text("a"), b = list.text("b"), one = list.integer(1), words = list.text("words of some length");
  const std::string binary = list.bytes(list.dictionary({a, b}, {list.array({one, words, list.data("xyz")}), one}));
  std::mt19937 random(1);
  for (const std::string& good : {text, binary}) {
    ASSERT_FALSE(isRefused(good));
    for (std::size_t length = 0; length < good.size(); ++length) EXPECT_TRUE(isRefused(good.substr(0, length)));
    for (int i = 0; i < 20'000; ++i) {
      std::string bad = good;
      for (unsigned n = random() % 4 + 1; n > 0; --n) bad[random() % bad.size()] = static_cast<char>(random());
      if (const auto file = PropertyListFile::parse(bad)) {
        static_cast<void>(file->dictionary());
        static_cast<void>(file->bytes());
      }
    }
  }
}

}  // namespace
}  // namespace chatsum::platform::system
