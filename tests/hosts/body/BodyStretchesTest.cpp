#include "hosts/device/body/BodyStretches.h"

#include <gtest/gtest.h>

#include "hosts/device/body/TypedStreamWriter.h"
#include "tests/hosts/body/BodyVectors.h"

namespace chatsum::device {
namespace {

TEST(BodyStretches, AreThoseOfARealBody) {
  const auto greeting = decodeStretches(testing::kGreeting);
  ASSERT_EQ(greeting.size(), 1U);
  EXPECT_EQ(greeting[0].utf16Length, 7U);
  EXPECT_EQ(greeting[0].partNumber, 0);
  EXPECT_EQ(greeting[0].fileGuid, "");
  const auto attachment = decodeStretches(testing::kAttachment);
  ASSERT_EQ(attachment.size(), 2U);
  EXPECT_EQ(attachment[0].utf16Length, 1U);
  EXPECT_EQ(attachment[0].fileGuid, testing::kAttachmentGuid);
  EXPECT_EQ(attachment[0].partNumber, 0);
  EXPECT_EQ(attachment[1].utf16Length, 5U);
  EXPECT_EQ(attachment[1].partNumber, 1);
  EXPECT_EQ(attachment[1].fileGuid, "");
  EXPECT_TRUE(decodeStretches(testing::kEmpty).empty());
}

TEST(BodyStretches, ShareTheirAttributes) {
  const std::string body = encodeBody("ab\uFFFCcd", {{2, 4}, {1, 5, "F", "spoken"}, {2, 4}});
  const auto stretches = decodeStretches(body);
  ASSERT_EQ(stretches.size(), 3U);
  EXPECT_EQ(stretches[0].partNumber, 4);
  EXPECT_EQ(stretches[1].partNumber, 5);
  EXPECT_EQ(stretches[1].fileGuid, "F");
  EXPECT_EQ(stretches[1].transcription, "spoken");
  EXPECT_EQ(stretches[2].partNumber, 4);
}

TEST(BodyStretches, StopAtADamage) {
  const std::string body = testing::kAttachment;
  for (std::size_t length = 0; length < body.size(); ++length) {
    EXPECT_LE(decodeStretches(std::string_view(body).substr(0, length)).size(), 2U);
    std::string damaged = body;
    damaged[length] = static_cast<char>(damaged[length] ^ 0x15);
    (void)decodeStretches(damaged);
  }
  EXPECT_TRUE(decodeStretches("").empty());
  EXPECT_TRUE(decodeStretches("bplist00").empty());
}

TEST(BodyStretches, AreAtMostAThousand) {
  std::vector<BodyRun> runs;
  for (int i = 0; i < 5000; ++i) runs.push_back({1, i % 7});
  EXPECT_EQ(decodeStretches(encodeBody(std::string(5000, 'x'), runs)).size(), 1000U);
}

}  // namespace
}  // namespace chatsum::device
