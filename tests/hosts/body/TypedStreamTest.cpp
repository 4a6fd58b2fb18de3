#include "hosts/device/body/TypedStream.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/foundation/Utf8.h"
#include "tests/hosts/body/BodyVectors.h"

namespace chatsum::device {
namespace {

using testing::fromHex;
using testing::kAttachment;
using testing::kGreeting;
using testing::kGreetingText;
using testing::kKnownBodies;

bool isValidUtf8(const std::string& text) {
  std::string copy;
  return utf8::appendRepaired(copy, text) == 0 && copy == text;
}

// Everything before the root object, and the start of an attributed string whose first group may follow.
const std::string kRootStart = kGreeting.substr(0, 55);
// The same and a string object up to the encoding of its bytes.
const std::string kStringStart = kGreeting.substr(0, 73);

TEST(TypedStream, DecodesTheKnownBodies) {
  EXPECT_EQ(kGreeting.size(), 185U);
  EXPECT_EQ(kAttachment.size(), 337U);
  for (const auto& known : kKnownBodies) {
    const BodyText body = decodeBody(known.body);
    EXPECT_EQ(body.status, BodyStatus::kDecoded) << known.name;
    EXPECT_TRUE(body.text == known.text) << known.name;
    EXPECT_EQ(body.replacedSequences, 0) << known.name;
  }
}

TEST(TypedStream, DecodesABigEndianStream) {
  std::string body = testing::handmadeBody(testing::kLongText, fromHex("810082"), fromHex("810082"));
  body.replace(2, 11, "typedstream");
  body.replace(13, 3, fromHex("8103e8"));
  const BodyText decoded = decodeBody(body);
  EXPECT_EQ(decoded.status, BodyStatus::kDecoded);
  EXPECT_EQ(decoded.text, testing::kLongText);
}

TEST(TypedStream, DecodesAPlainStringAsTheRoot) {
  std::string body = kGreeting.substr(0, 19);  // header and the encoding of an object
  body += fromHex("848484084e53537472696e67018484084e534f626a656374008584012b0548656c6c6f86");
  const BodyText decoded = decodeBody(body);
  EXPECT_EQ(decoded.status, BodyStatus::kDecoded);
  EXPECT_EQ(decoded.text, "Hello");
}

TEST(TypedStream, ReadsGroupsOfEveryTypeThatStandBeforeTheText) {
  std::string body = kRootStart;
  const auto group = [&body](std::string_view types, std::string_view values) {
    body += '\x84';
    body += static_cast<char>(types.size());
    body.append(types).append(values);
  };
  group("cCB", "\xFF\x90\x85");
  group("silq", fromHex("92810010820000010087ffffffffffffff7f"));
  group("SILQ", fromHex("ff0182ffffffff05"));
  group("fd", fromHex("830000803f"
                      "07"));
  group("d", fromHex("83000000000000f03f"));
  group("#", fromHex("94"));
  group("*", fromHex("8484016b"));
  group("*", fromHex("85"));
  group("%:", fromHex("840173"
                      "85"));
  group("+", fromHex("03616263"));
  group("[4c]", "abcd");
  group("[2{pair=ci}]", fromHex("0a050b92"));
  group("[0i]", "");
  group("[3!]", "");
  group("{empty}", "");
  group("{point=dd}!", fromHex("0102"));
  body += kGreeting.substr(55);  // what it refers to up to its text stands in front of everything added above
  const BodyText decoded = decodeBody(body);
  EXPECT_EQ(decoded.text, kGreetingText);
  EXPECT_EQ(decoded.status, BodyStatus::kDecoded);
}

TEST(TypedStream, IgnoresDamageBehindTheText) {
  const std::size_t behindText = kStringStart.size() + 1 + kGreetingText.size();
  const BodyText cut = decodeBody(kGreeting.substr(0, behindText));
  EXPECT_EQ(cut.status, BodyStatus::kDecoded);
  EXPECT_EQ(cut.text, kGreetingText);
  const BodyText garbage = decodeBody(kGreeting.substr(0, behindText) + std::string(50, '\x80'));
  EXPECT_EQ(garbage.status, BodyStatus::kDecoded);
  EXPECT_EQ(garbage.text, kGreetingText);
}

TEST(TypedStream, RecoversTheTextThatATruncatedBodyStillHolds) {
  // Three bytes of the hand are there, the fourth is not: the partial character is dropped.
  const BodyText body = decodeBody(kGreeting.substr(0, kStringStart.size() + 1 + 6));
  EXPECT_EQ(body.status, BodyStatus::kRecovered);
  EXPECT_EQ(body.text, "Hi ");
  EXPECT_EQ(body.replacedSequences, 0);
}

TEST(TypedStream, CutsATextWithATooLargeLengthAtTheEndOfItsString) {
  std::string body = kGreeting;
  body.replace(kStringStart.size(), 1, fromHex("81ff7f"));
  const BodyText decoded = decodeBody(body);
  EXPECT_EQ(decoded.status, BodyStatus::kRecovered);
  EXPECT_EQ(decoded.text, kGreetingText);
}

TEST(TypedStream, RecoversWhenTheRootsClassIsDamaged) {
  for (const std::size_t damaged : {16U, 17U, 19U, 20U, 21U, 22U, 25U, 40U, 44U}) {
    std::string body = kGreeting;
    body[damaged] = static_cast<char>(body[damaged] ^ 0x20);
    const BodyText decoded = decodeBody(body);
    EXPECT_EQ(decoded.status, BodyStatus::kRecovered) << damaged;
    EXPECT_EQ(decoded.text, kGreetingText) << damaged;
  }
}

TEST(TypedStream, RecoversWhenOnlyTheEncodingIsDamaged) {
  std::string body = kGreeting;
  body[kStringStart.size() - 1] = 'k';
  const BodyText decoded = decodeBody(body);
  EXPECT_EQ(decoded.status, BodyStatus::kRecovered);
  EXPECT_EQ(decoded.text, kGreetingText);
}

TEST(TypedStream, RecoversATextWhoseOwnBytesLookLikeTags) {
  std::string body = testing::kLookalike;
  body[25] = '?';
  const BodyText decoded = decodeBody(body);
  EXPECT_EQ(decoded.status, BodyStatus::kRecovered);
  EXPECT_EQ(decoded.text, testing::kLookalikeText);
}

TEST(TypedStream, ReplacesMalformedSequencesAndCountsThem) {
  const std::string text = std::string("a\xC3") + "b\xED\xA0\x80" + "c\xF0\x9F\x91" + "d\xFF";
  const BodyText body = decodeBody(testing::handmadeBody(text, std::string(1, static_cast<char>(text.size())), "\x08"));
  EXPECT_EQ(body.status, BodyStatus::kDecoded);
  const std::string bad = "\xEF\xBF\xBD";
  EXPECT_EQ(body.text, "a" + bad + "b" + bad + bad + bad + "c" + bad + "d" + bad);
  EXPECT_EQ(body.replacedSequences, 6);
}

TEST(TypedStream, KeepsNulAndControlCharacters) {
  const std::string text("a\0b\x01\x1F\x7F", 6);
  const BodyText body = decodeBody(testing::handmadeBody(text, "\x06", "\x06"));
  EXPECT_EQ(body.status, BodyStatus::kDecoded);
  EXPECT_EQ(body.text, text);
}

TEST(TypedStream, FindsNothingInOtherBytes) {
  const std::vector<std::string> others = {"",
                                           "x",
                                           "hello",
                                           std::string(1, '\x04'),
                                           std::string(200, '\0'),
                                           "\x03\x0Bstreamtyped",
                                           "\x04\x0Bstreamtypes",
                                           "\x04\x0Bstreamtyped",
                                           kGreeting.substr(1),
                                           "NSString\x01\x94\x84\x01+\x02hi"};
  for (const std::string& other : others) {
    const BodyText body = decodeBody(other);
    EXPECT_EQ(body.status, BodyStatus::kUndecodable);
    EXPECT_EQ(body.text, "");
  }
}

TEST(TypedStream, DoesNotTakeADictionarysKeyForTheText) {
  // Root: a dictionary whose first group is a string object.
  const std::string body = kGreeting.substr(0, 19) +
                           fromHex(
                               "8484840c4e5344696374696f6e617279008484084e534f626a65637400"
                               "8592848484084e53537472696e67018484") +
                           "x";
  EXPECT_NE(decodeBody(body).status, BodyStatus::kDecoded);
}

TEST(TypedStream, SurvivesEveryTruncation) {
  for (const auto& known : kKnownBodies) {
    // The very long one holds nothing new between its start and its end.
    const std::size_t step = known.body.size() > 1000 ? 997 : 1;
    for (std::size_t length = 0; length < known.body.size(); length += step) {
      const std::string cut = known.body.substr(0, length);
      const BodyText body = decodeBody(cut);
      ASSERT_TRUE(isValidUtf8(body.text));
      ASSERT_EQ(known.text.compare(0, body.text.size(), body.text), 0) << known.name << " at " << length;
      if (body.status == BodyStatus::kDecoded) {
        ASSERT_EQ(body.text, known.text) << known.name << " at " << length;
      }
    }
  }
}

TEST(TypedStream, SurvivesEveryDamagedByte) {
  for (const auto& known : kKnownBodies) {
    if (known.body.size() > 1000) continue;  // its start is that of the others
    std::string body = known.body;
    for (std::size_t i = 0; i < body.size(); ++i) {
      const char original = body[i];
      for (int value = 0; value < 256; ++value) {
        body[i] = static_cast<char>(value);
        const BodyText decoded = decodeBody(body);
        ASSERT_TRUE(isValidUtf8(decoded.text)) << known.name << " byte " << i << " value " << value;
        ASSERT_LE(decoded.text.size(), 3 * body.size());
      }
      body[i] = original;
    }
  }
}

TEST(TypedStream, SavesTheTextWhereverOneByteInFrontOfTheStringIsDamaged) {
  for (std::size_t i = 13; i < 54; ++i) {
    std::string body = kGreeting;
    body[i] = static_cast<char>(body[i] ^ 0x55);
    EXPECT_EQ(decodeBody(body).text, kGreetingText) << i;
  }
}

TEST(TypedStream, SurvivesNestedObjects) {
  std::string objects = kRootStart;
  for (int i = 0; i < 200000; ++i)
    objects += fromHex(
        "92"
        "84"
        "93");  // an object of the root's class inside another
  EXPECT_EQ(decodeBody(objects).status, BodyStatus::kUndecodable);
}

TEST(TypedStream, SurvivesNestedTypes) {
  for (const auto& [open, close] : {std::pair<std::string, std::string>("[1", "]"), {"{a=", "}"}}) {
    std::string types;
    for (int i = 0; i < 20000; ++i) types += open;
    types += "c";
    for (int i = 0; i < 20000; ++i) types += close;
    std::string body = kRootStart + "\x84\x82";
    for (unsigned i = 0; i < 4; ++i) body += static_cast<char>(types.size() >> (8 * i));
    EXPECT_EQ(decodeBody(body + types + "x").status, BodyStatus::kUndecodable);
  }
}

TEST(TypedStream, EndsSoonWhenTypesTakeNoBytes) {
  // Half the body is one encoding of nothing, the other half asks for it again and again.
  std::string body = kRootStart + "\x84\x82" + fromHex("40420f00") + std::string(1000000, '!');
  body += std::string(1000000, '\x97');
  EXPECT_EQ(decodeBody(body).status, BodyStatus::kUndecodable);
  std::string arrays = kRootStart + "\x84\x0C[500000![5!]";
  arrays += std::string(1000000, '\x97');
  EXPECT_EQ(decodeBody(arrays).status, BodyStatus::kUndecodable);
}

TEST(TypedStream, EndsWhenAClassIsItsOwnAncestor) {
  // A root whose class names itself (object 1) as its superclass.
  const std::string body = kGreeting.substr(0, 19) + fromHex("8484840561616161610093") + "x";
  EXPECT_EQ(decodeBody(body).status, BodyStatus::kUndecodable);
}

TEST(TypedStream, RefusesALongerClassChainThanAnyRealOne) {
  std::string body = kGreeting.substr(0, 20);
  for (int i = 0; i < 100; ++i) body += fromHex("8484016100");
  body += fromHex("8484124e5341747472696275746564537472696e670085");
  EXPECT_EQ(decodeBody(body + "x").status, BodyStatus::kUndecodable);
}

TEST(TypedStream, SurvivesRandomBytes) {
  std::mt19937 random(20240229);
  for (int round = 0; round < 20000; ++round) {
    std::string body = round % 2 == 0 ? kGreeting.substr(0, 16 + random() % 60) : std::string();
    const std::size_t length = random() % 300;
    for (std::size_t i = 0; i < length; ++i) {
      // Mostly bytes that mean something to the format.
      static constexpr std::string_view kTags = "\x84\x85\x86\x81\x92\x93\x94\x01@+iI*[]{}=";
      body += random() % 3 == 0 ? static_cast<char>(random()) : kTags[random() % kTags.size()];
    }
    ASSERT_TRUE(isValidUtf8(decodeBody(body).text));
  }
}

}  // namespace
}  // namespace chatsum::device
