#include "hosts/device/conversations/FoldedText.h"

#include <gtest/gtest.h>

namespace chatsum::device {
namespace {

TEST(FoldedText, TakesNoNoticeOfCase) {
  EXPECT_EQ(foldedCase("Family CHAT"), foldedCase("family chat"));
  EXPECT_EQ(foldedCase("ΕΛΕΝΗ"), foldedCase("ελενη"));
  EXPECT_EQ(foldedCase("Оксана"), foldedCase("ОКСАНА"));
  EXPECT_EQ(foldedCase("GROSS"), foldedCase("groß"));
}

TEST(FoldedText, TakesNoNoticeOfHowLettersAreComposed) { EXPECT_EQ(foldedCase("L\u00e9a"), foldedCase("Le\u0301A")); }

TEST(FoldedText, KeepsAccents) { EXPECT_NE(foldedCase("José"), foldedCase("Jose")); }

TEST(FoldedText, TakesBytesThatAreNoUtf8) { EXPECT_EQ(foldedCase("A\xFF"), foldedCase("a\xFF")); }

}  // namespace
}  // namespace chatsum::device
