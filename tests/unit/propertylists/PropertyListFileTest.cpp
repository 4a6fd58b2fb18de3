#include "platform/system/propertylists/PropertyListFile.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/BinaryPropertyList.h"

namespace chatsum::platform::system {
namespace {

using test::BinaryPropertyList;

std::string xml(const std::string& inside) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">" +
         inside + "</plist>\n";
}

Record dictionaryOf(const std::string& bytes) {
  const auto file = PropertyListFile::parse(bytes);
  if (file) return file->dictionary();
  ADD_FAILURE() << "no property list: " << bytes;
  return {};
}

bool isRefused(const std::string& bytes) { return !PropertyListFile::parse(bytes).has_value(); }

std::string utf16(const std::string& ascii, bool isBigEndian) {
  std::string bytes = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii) bytes += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return bytes;
}

TEST(PropertyListFile, ReadsEveryKindOfXml) {
  const Record list = dictionaryOf(
      xml("<dict><key>yes</key><true/><key>no</key><false/><key>five</key><integer>5</integer><key>minus</key>"
          "<integer>-5</integer><key>hex</key><integer>0x10</integer><key>half</key><real>0.5</real><key>word</key>"
          "<string>a &amp; &#228;</string><key>when</key><date>2020-01-06T10:40:00Z</date><key>data</key>"
          "<data>AAEC</data><key>list</key><array><integer>1</integer><string>b</string></array><key>inner</key><dict>"
          "<key>deep</key><true/></dict></dict>"));
  EXPECT_EQ(list.size(), 11U);
  EXPECT_EQ(list["yes"].kind(), Value::Kind::kBool);
  EXPECT_TRUE(list["yes"].boolValue());
  EXPECT_FALSE(list["no"].boolValue());
  EXPECT_EQ(list["no"].kind(), Value::Kind::kBool);
  EXPECT_EQ(list["five"].integerValue(), 5);
  EXPECT_EQ(list["minus"].integerValue(), -5);
  EXPECT_EQ(list["hex"].integerValue(), 16);
  EXPECT_EQ(list["half"].doubleValue(), 0.5);
  EXPECT_EQ(list["word"], Value("a & ä"));
  ASSERT_NE(list["when"].asDate(), nullptr);
  EXPECT_EQ(list["when"].asDate()->secondsSince1970, 1578307200);
  EXPECT_TRUE(list["data"].isNone());
  EXPECT_EQ(list["list"], Value(Array{1, "b"}));
  EXPECT_EQ(list["inner"], Value(Record{{"deep", true}}));
  EXPECT_EQ(list.keyAt(0), "yes");
  EXPECT_EQ(list.keyAt(10), "inner");
}

TEST(PropertyListFile, ReadsEveryKindOfBinary) {
  BinaryPropertyList list;
  const auto keyOne = list.text("one"), keyMinus = list.text("minus"), keyYes = list.text("yes"),
             keyWord = list.text("a key of more than fifteen letters"), keyWide = list.text("wide"),
             keyHalf = list.text("half"), keyData = list.text("data"), keyList = list.text("list");
  const auto one = list.raw(std::string("\x10\x01", 2)), minus = list.integer(-5), yes = list.boolean(true),
             word = list.text("words"), wide = list.raw(std::string("\x61\x00\xE4", 3)),
             half = list.raw(std::string("\x23\x3F\xE0\x00\x00\x00\x00\x00\x00", 9)), data = list.data("\x01\x02");
  const auto array = list.array({one, word});
  const Record read =
      dictionaryOf(list.bytes(list.dictionary({keyOne, keyMinus, keyYes, keyWord, keyWide, keyHalf, keyData, keyList},
                                              {one, minus, yes, word, wide, half, data, array})));
  EXPECT_EQ(read["one"].integerValue(), 1);
  EXPECT_EQ(read["minus"].integerValue(), -5);
  EXPECT_TRUE(read["yes"].boolValue());
  EXPECT_EQ(read["a key of more than fifteen letters"], Value("words"));
  EXPECT_EQ(read["wide"], Value("ä"));
  EXPECT_EQ(read["half"].doubleValue(), 0.5);
  EXPECT_TRUE(read["data"].isNone());
  EXPECT_EQ(read["list"], Value(Array{1, "words"}));
}

TEST(PropertyListFile, ReadsTheEncodingsOfXml) {
  const std::string text = xml("<dict><key>a</key><integer>1</integer></dict>");
  EXPECT_EQ(dictionaryOf("\xEF\xBB\xBF" + text)["a"].integerValue(), 1);
  EXPECT_EQ(dictionaryOf(utf16(text, true))["a"].integerValue(), 1);
  EXPECT_EQ(dictionaryOf(utf16(text, false))["a"].integerValue(), 1);
  // U+1F600 as two units of UTF-16.
  const std::string smile = utf16("<plist><dict><key>a</key><string>", true) + std::string("\xD8\x3D\xDE\x00", 4) +
                            utf16("</string></dict></plist>", true).substr(2);
  EXPECT_EQ(dictionaryOf(smile)["a"], Value("😀"));
  EXPECT_TRUE(isRefused(xml("<dict><key>a</key><string>\xE4</string></dict>")));
}

TEST(PropertyListFile, RefusesWhatIsNoDictionary) {
  for (const std::string& bytes :
       {std::string(), std::string("garbage"), xml("<array/>"), xml("<string>x</string>"), xml(""),
        std::string("<plist><dict><key>a</key>"), xml("<dict><key>a</key><odd/></dict>"), std::string("bplist00"),
        std::string("{ a = 1; }"), std::string(1000, '\0'), std::string("<")}) {
    EXPECT_TRUE(isRefused(bytes)) << bytes;
  }
}

TEST(PropertyListFile, RefusesNumbersAndDatesThatAreNone) {
  for (const char* element : {"<integer>12abc</integer>", "<integer></integer>", "<integer>1.5</integer>",
                              "<real>half</real>", "<date>yesterday</date>", "<integer>1"}) {
    EXPECT_TRUE(isRefused(xml("<dict><key>a</key>" + std::string(element) + "</dict>"))) << element;
  }
  EXPECT_EQ(dictionaryOf(xml("<dict><key>a</key><integer> +7\n</integer></dict>"))["a"].integerValue(), 7);
}

TEST(PropertyListFile, TakesTheLastOfTwoEqualKeys) {
  const Record list = dictionaryOf(
      xml("<dict><key>a</key><integer>1</integer><key>b</key><true/><key>a</key><integer>2</integer></dict>"));
  EXPECT_EQ(list.size(), 2U);
  EXPECT_EQ(list["a"].integerValue(), 2);
}

TEST(PropertyListFile, ChangesOneKeyAndKeepsTheRestInXml) {
  auto file = PropertyListFile::parse(
      xml("<dict><key>first</key><integer>1</integer><key>real</key><real>0.1</real><key>data</key><data>AAEC</data>"
          "<key>inner</key><dict><key>minus</key><integer>-5</integer></dict></dict>"));
  ASSERT_TRUE(file.has_value());
  EXPECT_FALSE(file->isBinary());
  EXPECT_TRUE(file->set("first", 2));
  EXPECT_TRUE(file->set("new", true));
  const auto bytes = file->bytes();
  ASSERT_TRUE(bytes.has_value());
  EXPECT_TRUE(bytes->starts_with("<?xml")) << *bytes;
  EXPECT_NE(bytes->find("AAEC"), std::string::npos) << *bytes;
  const Record list = dictionaryOf(*bytes);
  EXPECT_EQ(list.keyAt(0), "first");
  EXPECT_EQ(list["first"].integerValue(), 2);
  EXPECT_EQ(list["real"].doubleValue(), 0.1);
  EXPECT_EQ(list["inner"], Value(Record{{"minus", -5}}));
  EXPECT_EQ(list.keyAt(4), "new");
  EXPECT_EQ(list["new"].kind(), Value::Kind::kBool);
}

TEST(PropertyListFile, ChangesOneKeyAndKeepsTheRestInBinary) {
  BinaryPropertyList list;
  const auto key = list.text("format"), dataKey = list.text("data"), minusKey = list.text("minus");
  const auto number = list.integer(1), data = list.data("\x01\x02\x03"), minus = list.integer(-5);
  auto file = PropertyListFile::parse(list.bytes(list.dictionary({key, dataKey, minusKey}, {number, data, minus})));
  ASSERT_TRUE(file.has_value());
  EXPECT_TRUE(file->isBinary());
  EXPECT_TRUE(file->set("format", 2));
  const auto bytes = file->bytes();
  ASSERT_TRUE(bytes.has_value());
  EXPECT_TRUE(bytes->starts_with("bplist00"));
  EXPECT_NE(bytes->find("\x01\x02\x03"), std::string::npos);
  EXPECT_EQ(dictionaryOf(*bytes)["format"].integerValue(), 2);
  EXPECT_EQ(dictionaryOf(*bytes)["minus"].integerValue(), -5);
}

TEST(PropertyListFile, IsNotWrittenWhenItCouldNotBeReadAgain) {
  auto file = PropertyListFile::parse(xml("<dict><key>half a character</key><string>&#55296;</string></dict>"));
  ASSERT_TRUE(file.has_value());
  EXPECT_EQ(file->bytes(), std::nullopt);
}

TEST(PropertyListFile, BeginsAsEmptyXml) {
  PropertyListFile file;
  EXPECT_TRUE(file.dictionary().empty());
  EXPECT_TRUE(file.set("word", "a < b"));
  EXPECT_TRUE(file.set("half", 0.5));
  EXPECT_FALSE(file.set("list", Array{1}));
  EXPECT_FALSE(file.set("nothing", Value()));
  EXPECT_EQ(dictionaryOf(file.bytes().value()), (Record{{"word", "a < b"}, {"half", 0.5}}));
}

}  // namespace
}  // namespace chatsum::platform::system
