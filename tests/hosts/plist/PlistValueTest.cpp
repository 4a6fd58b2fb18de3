#include "hosts/device/plist/PlistValue.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdlib>
#include <string>

namespace chatsum::device {
namespace {

/// libplist's binary form of what a test builds: another writer than our reader.
std::string binaryOf(plist_t root) {
  char* bytes = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(root, &bytes, &length);
  std::string binary(bytes, length);
  std::free(bytes);  // NOLINT(cppcoreguidelines-no-malloc): libplist's own
  plist_free(root);
  return binary;
}

std::string binaryOfXml(const std::string& body) {
  const std::string xml = "<?xml version=\"1.0\"?><plist version=\"1.0\">" + body + "</plist>";
  plist_t root = nullptr;
  plist_from_xml(xml.c_str(), static_cast<std::uint32_t>(xml.size()), &root);
  return binaryOf(root);
}

plist_t dictionary(std::initializer_list<std::pair<const char*, plist_t>> entries) {
  plist_t made = plist_new_dict();
  for (const auto& [key, value] : entries) plist_dict_set_item(made, key, value);
  return made;
}

plist_t array(std::initializer_list<plist_t> items) {
  plist_t made = plist_new_array();
  for (plist_t item : items) plist_array_append_item(made, item);
  return made;
}

std::string archiveOf(plist_t objects) {
  return binaryOf(dictionary({{"$version", plist_new_uint(100000)},
                              {"$archiver", plist_new_string("NSKeyedArchiver")},
                              {"$top", dictionary({{"root", plist_new_uid(1)}})},
                              {"$objects", objects}}));
}

constexpr const char* kEveryKind =
    "<dict><key>flag</key><true/><key>count</key><integer>4294967298</integer><key>negative</key><integer>-3</integer>"
    "<key>real</key><real>2.5</real><key>when</key><date>2001-01-02T00:00:00Z</date><key>bytes</key><data>AAEC</data>"
    "<key>name</key><string>Zoë 👋</string><key>list</key><array><string>a</string><dict/></array></dict>";

void expectEveryKind(const PlistValue& list) {
  EXPECT_EQ(list["flag"].asBool(), true);
  EXPECT_EQ(list["count"].asInteger(), 4294967298);
  EXPECT_EQ(list["negative"].asInteger(), -3);
  EXPECT_EQ(list["real"].asReal(), 2.5);
  EXPECT_EQ(list["real"].asInteger(), std::nullopt);
  ASSERT_TRUE(list["when"].asDate());
  EXPECT_EQ(list["when"].asDate()->secondsSince1970, 86400.0 + static_cast<double>(kSecondsFrom1970To2001));
  ASSERT_TRUE(list["bytes"].asData());
  EXPECT_EQ(*list["bytes"].asData(), std::string("\0\1\2", 3));
  EXPECT_EQ(list.stringAt("name"), "Zoë 👋");
  ASSERT_TRUE(list["list"].asArray());
  ASSERT_EQ(list["list"].asArray()->size(), 2U);
  EXPECT_TRUE(list["list"].asArray()->at(1).asDictionary());
  EXPECT_TRUE(list["nothing"].isNone());
  EXPECT_TRUE(list["flag"]["deeper"].isNone());
}

TEST(PlistValue, HoldsEveryKindOfAnXmlList) {
  const auto list = parsePlist("<?xml version=\"1.0\"?><plist version=\"1.0\">" + std::string(kEveryKind) + "</plist>");
  ASSERT_TRUE(list);
  expectEveryKind(*list);
}

TEST(PlistValue, HoldsEveryKindOfABinaryList) {
  const auto list = parsePlist(binaryOfXml(kEveryKind));
  ASSERT_TRUE(list);
  expectEveryKind(*list);
}

TEST(PlistValue, IsNotMadeOfOtherBytes) {
  for (const std::string bytes : {"", "bplist00", "hello", "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>"}) {
    EXPECT_FALSE(parsePlist(bytes)) << bytes;
  }
}

TEST(PlistValue, SurvivesEveryCutAndEveryFlippedByte) {
  const std::string good = binaryOfXml(kEveryKind);
  int refused = 0;
  for (std::size_t length = 0; length < good.size(); ++length) refused += parsePlist(good.substr(0, length)) ? 0 : 1;
  EXPECT_EQ(refused, static_cast<int>(good.size()));
  for (std::size_t at = 0; at < good.size(); ++at) {
    for (const int flip : {0x01, 0x80, 0xFF}) {
      std::string bad = good;
      bad[at] = static_cast<char>(bad[at] ^ flip);
      const auto list = parsePlist(bad);  // whatever it is, it ends
      if (list) static_cast<void>(unarchived(*list));
    }
  }
}

/// A list of arrays, each holding the next `width` times.
std::string nestedArrays(int depth, int width) {
  std::string objects, table;
  for (int i = 0; i < depth; ++i) {
    table += static_cast<char>(8 + objects.size());
    objects += static_cast<char>(0xA0 + (i + 1 < depth ? width : 0));
    if (i + 1 < depth) objects += std::string(static_cast<std::size_t>(width), static_cast<char>(i + 1));
  }
  std::string trailer(32, '\0');
  trailer[6] = 1;
  trailer[7] = 1;
  trailer[15] = static_cast<char>(depth);
  trailer[31] = static_cast<char>(8 + objects.size());
  return "bplist00" + objects + table + trailer;
}

TEST(PlistValue, RefusesListsThatExplodeOrGoInCircles) {
  EXPECT_TRUE(parsePlist(nestedArrays(4, 3)));
  EXPECT_FALSE(parsePlist(nestedArrays(20, 10)));  // 10^19 values
  std::string circle = nestedArrays(2, 1);
  circle[9] = 0;  // the first array holds itself
  EXPECT_FALSE(parsePlist(circle));
}

TEST(PlistValue, IsUnarchivedWithItsObjectsInPlace) {
  const auto archive = parsePlist(
      archiveOf(array({plist_new_string("$null"),
                       dictionary({{"$class", plist_new_uid(2)},
                                   {"title", plist_new_uid(3)},
                                   {"none", plist_new_uid(0)},
                                   {"link", plist_new_uid(4)},
                                   {"table", plist_new_uid(6)},
                                   {"count", plist_new_uint(7)}}),
                       dictionary({{"$classname", plist_new_string("Card")}}), plist_new_string("A title"),
                       dictionary({{"NS.base", plist_new_uid(0)}, {"NS.relative", plist_new_uid(5)}}),
                       plist_new_string("https://example.com/a"),
                       dictionary({{"NS.keys", array({plist_new_uid(3)})}, {"NS.objects", array({plist_new_uid(7)})}}),
                       dictionary({{"NS.string", plist_new_string("inner")}})})));
  ASSERT_TRUE(archive);
  const auto root = unarchived(*archive);
  ASSERT_TRUE(root);
  EXPECT_EQ(root->stringAt("title"), "A title");
  EXPECT_EQ(root->stringAt("$class"), "Card");
  EXPECT_TRUE((*root)["none"].isNone());
  EXPECT_EQ(root->stringAt("link"), "https://example.com/a");
  EXPECT_EQ((*root)["table"].stringAt("A title"), "inner");
  EXPECT_EQ((*root)["count"].asInteger(), 7);
}

TEST(PlistValue, EndsTheCirclesOfAnArchive) {
  const auto archive = parsePlist(archiveOf(
      array({plist_new_string("$null"), dictionary({{"me", plist_new_uid(1)}, {"away", plist_new_uid(99)}})})));
  ASSERT_TRUE(archive);
  const auto root = unarchived(*archive);
  ASSERT_TRUE(root);
  EXPECT_TRUE((*root)["me"].isNone());
  EXPECT_TRUE((*root)["away"].isNone());
}

TEST(PlistValue, RefusesAnArchiveThatExplodes) {
  plist_t objects = array({plist_new_string("$null")});
  for (unsigned i = 1; i < 30; ++i) {
    plist_t next = plist_new_array();
    for (int j = 0; j < 10; ++j) plist_array_append_item(next, plist_new_uid(i + 1));
    plist_array_append_item(objects, dictionary({{"NS.objects", next}}));
  }
  const auto archive = parsePlist(archiveOf(objects));
  ASSERT_TRUE(archive);
  EXPECT_FALSE(unarchived(*archive));
}

TEST(PlistValue, IsNoArchiveWithoutObjects) { EXPECT_FALSE(unarchived(PlistValue())); }

}  // namespace
}  // namespace chatsum::device
