#include "hosts/device/body/TypedStreamWriter.h"

#include <gtest/gtest.h>

#include "hosts/device/body/TypedStream.h"
#include "tests/hosts/body/BodyVectors.h"

namespace chatsum::device {
namespace {

TEST(TypedStreamWriter, WritesTheKnownBodiesByteForByte) {
  for (const auto& known : testing::kKnownBodies) {
    if (known.text == testing::kAttachmentText) continue;
    EXPECT_TRUE(encodeBody(known.text) == known.body) << known.name;
  }
}

TEST(TypedStreamWriter, WritesAnAttachmentByteForByte) {
  EXPECT_EQ(encodeBody(testing::kAttachmentText, {{1, 0, testing::kAttachmentGuid}, {5, 1, std::nullopt}}),
            testing::kAttachment);
}

TEST(TypedStreamWriter, SharesTheAttributesOfEqualRuns) {
  const std::string once = encodeBody("abcd", {{2, 0, std::nullopt}});
  const std::string twice = encodeBody("abcd", {{2, 0, std::nullopt}, {2, 0, std::nullopt}});
  EXPECT_EQ(twice.size(), once.size() + 3);  // encoding, run number, length
}

TEST(TypedStreamWriter, WritesWhatTheReaderReadsInAllScripts) {
  const std::vector<std::string> texts = {
      "Grüße aus Köln",
      "Ελληνικά και Русский",
      "שלום עולם",
      "مرحبا بالعالم",
      "नमस्ते दुनिया",
      "สวัสดีชาวโลก",
      "你好，世界 こんにちは 안녕하세요",
      "👩‍👩‍👧‍👦 🇩🇪 👋🏽 e\u0301",
      "𝔘𝔫𝔦𝔠𝔬𝔡𝔢 \U0010FFFF",
      std::string("\0\x01\x84\x02", 2) + "\n\t\"'",
      std::string(127, 'x'),
      std::string(128, 'x'),
      std::string(146, 'x'),
      std::string(255, 'x'),
      std::string(32768, 'x'),
      std::string(65536, 'x'),
      std::string(1 << 20, 'x'),
  };
  for (const std::string& text : texts) {
    const BodyText body = decodeBody(encodeBody(text));
    EXPECT_EQ(body.status, BodyStatus::kDecoded);
    EXPECT_TRUE(body.text == text);
    EXPECT_EQ(body.replacedSequences, 0);
  }
}

TEST(TypedStreamWriter, WritesManyRuns) {
  std::vector<BodyRun> runs;
  std::string text;
  for (int i = 0; i < 500; ++i) {
    text += "\xEF\xBF\xBC";
    runs.push_back({1, i, "at_" + std::to_string(i) + "_0000"});
  }
  const BodyText body = decodeBody(encodeBody(text, runs));
  EXPECT_EQ(body.status, BodyStatus::kDecoded);
  EXPECT_EQ(body.text, text);
}

}  // namespace
}  // namespace chatsum::device
