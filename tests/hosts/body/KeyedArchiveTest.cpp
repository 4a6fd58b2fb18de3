#include "hosts/device/body/KeyedArchive.h"

#include <gtest/gtest.h>

#include <random>

#include "hosts/device/body/TypedStream.h"

namespace chatsum::device {
namespace {

std::string string(const std::string& ascii) {
  std::string object;
  if (ascii.size() < 15) {
    object += static_cast<char>(0x50 + ascii.size());
  } else {
    object = "\x5F\x10";
    object += static_cast<char>(ascii.size());
  }
  return object + ascii;
}

std::string utf16(std::u16string_view text) {
  std::string object = "\x6F\x10";
  object += static_cast<char>(text.size());
  for (const char16_t unit : text) {
    object += static_cast<char>(unit >> 8);
    object += static_cast<char>(unit & 0xFF);
  }
  return object;
}

std::string dictionary(std::initializer_list<std::pair<int, int>> entries) {
  std::string object(1, static_cast<char>(0xD0 + entries.size()));
  for (const auto& [key, value] : entries) object += static_cast<char>(key);
  for (const auto& [key, value] : entries) object += static_cast<char>(value);
  return object;
}

std::string array(std::initializer_list<int> elements) {
  std::string object(1, static_cast<char>(0xA0 + elements.size()));
  for (const int element : elements) object += static_cast<char>(element);
  return object;
}

std::string reference(int number) { return std::string("\x80") + static_cast<char>(number); }

// Object 0 is the top.
std::string propertyList(const std::vector<std::string>& objects) {
  std::string list = "bplist00";
  std::string offsets;
  for (const std::string& object : objects) {
    offsets += static_cast<char>(list.size() >> 8);
    offsets += static_cast<char>(list.size() & 0xFF);
    list += object;
  }
  const std::size_t table = list.size();
  list += offsets;
  std::string trailer(32, '\0');
  trailer[6] = 2;
  trailer[7] = 1;
  trailer[15] = static_cast<char>(objects.size());
  trailer[30] = static_cast<char>(table >> 8);
  trailer[31] = static_cast<char>(table & 0xFF);
  return list + trailer;
}

// An attributed string whose string is `text`, an object of the archive's list.
std::string attributedString(const std::string& text) {
  return propertyList({
      dictionary({{1, 2}, {3, 4}}),  // 0
      string("$top"),                // 1
      dictionary({{5, 6}}),          // 2
      string("$objects"),            // 3
      array({7, 8, 9}),              // 4
      string("root"),                // 5
      reference(1),                  // 6: the second of $objects
      string("$null"),               // 7
      dictionary({{10, 11}}),        // 8: the attributed string
      text,                          // 9: the third of $objects
      string("NSString"),            // 10
      reference(2),                  // 11
      string("NS.string"),           // 12
      string("behind NS.string"),    // 13
  });
}

TEST(KeyedArchive, ReadsThePlainString) {
  const BodyText body = decodeBody(attributedString(string("Hello")));
  EXPECT_EQ(body.status, BodyStatus::kDecoded);
  EXPECT_EQ(body.text, "Hello");
}

TEST(KeyedArchive, ReadsTheMutableString) {
  const BodyText body = decodeBody(attributedString(dictionary({{12, 13}})));
  EXPECT_EQ(body.status, BodyStatus::kDecoded);
  EXPECT_EQ(body.text, "behind NS.string");
}

TEST(KeyedArchive, ReadsUtf16AndReplacesLoneSurrogates) {
  std::u16string text = u"\u00E9 \u4F60 ";
  text += {0xD83D, 0xDC4B, 0xD83D, u'x', 0xDC4B};
  const BodyText body = decodeBody(attributedString(utf16(text)));
  EXPECT_EQ(body.status, BodyStatus::kDecoded);
  EXPECT_EQ(body.text, "\xC3\xA9 \xE4\xBD\xA0 \xF0\x9F\x91\x8B\xEF\xBF\xBDx\xEF\xBF\xBD");
  EXPECT_EQ(body.replacedSequences, 2);
}

TEST(KeyedArchive, FollowsNoCycle) {
  // The string is a reference to itself.
  EXPECT_EQ(decodeBody(attributedString(reference(2))).status, BodyStatus::kUndecodable);
  // The string's object names the attributed string again.
  EXPECT_EQ(decodeBody(attributedString(dictionary({{12, 8}}))).status, BodyStatus::kUndecodable);
}

TEST(KeyedArchive, FindsNothingInOtherLists) {
  EXPECT_EQ(decodeBody("bplist00").status, BodyStatus::kUndecodable);
  EXPECT_EQ(decodeBody(propertyList({string("only a text")})).status, BodyStatus::kUndecodable);
  EXPECT_EQ(decodeBody(propertyList({dictionary({{1, 1}}), string("a")})).status, BodyStatus::kUndecodable);
  EXPECT_EQ(decodeBody(attributedString("\x33"
                                        "12345678"))
                .status,
            BodyStatus::kUndecodable);
}

TEST(KeyedArchive, SurvivesEveryTruncationAndEveryDamagedByte) {
  const std::string archive = attributedString(dictionary({{12, 13}}));
  for (std::size_t length = 0; length < archive.size(); ++length) {
    EXPECT_LE(decodeBody(archive.substr(0, length)).text.size(), 3 * archive.size());
  }
  for (std::size_t i = 0; i < archive.size(); ++i) {
    std::string damaged = archive;
    for (int value = 0; value < 256; ++value) {
      damaged[i] = static_cast<char>(value);
      EXPECT_LE(decodeBody(damaged).text.size(), 3 * archive.size());
    }
  }
}

TEST(KeyedArchive, SurvivesRandomDamage) {
  std::mt19937 random(7);
  const std::string archive = attributedString(string("Hello"));
  for (int round = 0; round < 20000; ++round) {
    std::string damaged = archive;
    for (int i = 0; i < 6; ++i) damaged[random() % damaged.size()] = static_cast<char>(random());
    EXPECT_LE(decodeBody(damaged).text.size(), 3 * archive.size());
  }
}

}  // namespace
}  // namespace chatsum::device
