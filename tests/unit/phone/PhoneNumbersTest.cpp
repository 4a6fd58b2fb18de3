#include "platform/system/phone/PhoneNumbers.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace chatsum::platform::system {
namespace {

TEST(PhoneNumbers, WritesNorthAmericanNumbersWithTheAreaCodeInParentheses) {
  EXPECT_EQ(formattedLikeAPhone("+15550100123", "US"), "+1 (555) 010-0123");
  EXPECT_EQ(formattedLikeAPhone("+15550100123", "FR"), "+1 (555) 010-0123");
  EXPECT_EQ(formattedLikeAPhone("+1 (555) 010-0123", "US"), "+1 (555) 010-0123");
}

TEST(PhoneNumbers, WritesOtherCountriesInternationally) {
  EXPECT_EQ(formattedLikeAPhone("+33612345678", "US"), "+33 6 12 34 56 78");
  EXPECT_EQ(formattedLikeAPhone("+442079460123", "US"), "+44 20 7946 0123");
}

TEST(PhoneNumbers, WritesNumbersWithoutCountryCodeAsTheRegionDoes) {
  EXPECT_EQ(formattedLikeAPhone("5550100123", "US"), "(555) 010-0123");
  EXPECT_EQ(formattedLikeAPhone("555.010.0123", "us"), "(555) 010-0123");
  EXPECT_EQ(formattedLikeAPhone("0612345678", "FR"), "06 12 34 56 78");
}

TEST(PhoneNumbers, ReadsDigitsOfOtherScripts) {
  EXPECT_EQ(formattedLikeAPhone("+١٥٥٥٠١٠٠١٢٣", "US"), "+1 (555) 010-0123");
  EXPECT_EQ(formattedLikeAPhone("５５５０１００１２３", "US"), "(555) 010-0123");
}

TEST(PhoneNumbers, IgnoresMarksThatCopyingAdds) {
  EXPECT_EQ(formattedLikeAPhone("\u202A+15550100123\u202C", "US"), "+1 (555) 010-0123");
  EXPECT_EQ(formattedLikeAPhone("+1\u00A0555\u00A0010\u00A00123", "US"), "+1 (555) 010-0123");
}

TEST(PhoneNumbers, KeepsWhatFollowsAPause) {
  EXPECT_EQ(formattedLikeAPhone("+15550100123,5", "US"), "+1 (555) 010-0123,5");
  EXPECT_EQ(formattedLikeAPhone("+15550100123;ext=5", "US"), "+1 (555) 010-0123;ext=5");
}

TEST(PhoneNumbers, LeavesWhatIsNoNumberAsItIs) {
  for (const std::string text : {"", "ann@example.com", "ExampleShop", "1-800-EXAMPLE", "+", "()", "*67 5550100123",
                                 "#31#", "+999123456789", "12 34 56 78 90 12 34 56 78", "\xFF\xFE"}) {
    EXPECT_EQ(formattedLikeAPhone(text, "US"), text);
  }
}

TEST(PhoneNumbers, LeavesNumbersOfUnknownRegionsAsTheyAre) {
  EXPECT_EQ(formattedLikeAPhone("5550100123", ""), "5550100123");
  EXPECT_EQ(formattedLikeAPhone("5550100123", "XX"), "5550100123");
  EXPECT_EQ(formattedLikeAPhone("+15550100123", ""), "+1 (555) 010-0123");
}

TEST(PhoneNumbers, LeavesAbsurdlyLongTextAsItIs) {
  const std::string text(100'000, '5');
  EXPECT_EQ(formattedLikeAPhone(text, "US"), text);
}

TEST(PhoneNumbers, AnswersTheSameAgainAndOnManyThreads) {
  std::vector<std::thread> threads;
  std::vector<int> wrong(4, 0);
  for (std::size_t t = 0; t < wrong.size(); ++t) {
    threads.emplace_back([&wrong, t] {
      for (int i = 0; i < 200; ++i) {
        if (formattedLikeAPhone("+1555010012" + std::to_string(i % 10), "US") !=
            "+1 (555) 010-012" + std::to_string(i % 10)) {
          ++wrong[t];
        }
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

TEST(PhoneNumbers, PrintsNothingAboutMalformedNumbers) {
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  (void)formattedLikeAPhone("+0", "US");
  (void)formattedLikeAPhone("+99999999999999999999", "US");
  EXPECT_FALSE(isPossibleInRegion("", "XX"));
  EXPECT_FALSE(nationalDigits("()", "FR"));
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(PhoneNumbers, TakesNationalDigitsApartAsTheRegionWritesThem) {
  EXPECT_EQ(nationalDigits("0612345678", "FR"), "612345678");
  EXPECT_EQ(nationalDigits("0655501001", "IT"), "0655501001");
  EXPECT_TRUE(isPossibleInRegion("5550100123", "US"));
  EXPECT_FALSE(isPossibleInRegion("0100123", "US"));
}

}  // namespace
}  // namespace chatsum::platform::system
