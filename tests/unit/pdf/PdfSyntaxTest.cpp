#include "platform/system/pdf/PdfSyntax.h"

#include <gtest/gtest.h>

#include <limits>

namespace chatsum::platform::system::pdf {
namespace {

std::string number(double value) {
  std::string text;
  appendHundredths(text, hundredths(value));
  return text;
}

TEST(PdfSyntax, WritesNumbersWithAsFewDigitsAsPossible) {
  EXPECT_EQ(number(0), "0");
  EXPECT_EQ(number(12), "12");
  EXPECT_EQ(number(1.5), "1.5");
  EXPECT_EQ(number(-0.05), "-.05");
  EXPECT_EQ(number(0.004), "0");
  EXPECT_EQ(number(-0.004), "0");
  EXPECT_EQ(number(662.996), "663");
  EXPECT_EQ(number(100.1), "100.1");
}

TEST(PdfSyntax, WritesNumbersThatAreNoneOrFarTooLarge) {
  EXPECT_EQ(number(std::numeric_limits<double>::quiet_NaN()), "0");
  EXPECT_EQ(number(std::numeric_limits<double>::infinity()), "1000000");
  EXPECT_EQ(number(-1e300), "-1000000");
}

TEST(PdfSyntax, WritesShares) {
  const auto share = [](double value) {
    std::string text;
    appendShare(text, value);
    return text;
  };
  EXPECT_EQ(share(1.0 / 3), ".333");
  EXPECT_EQ(share(1), "1");
  EXPECT_EQ(share(7), "1");
  EXPECT_EQ(share(-1), "0");
  EXPECT_EQ(share(std::numeric_limits<double>::quiet_NaN()), "0");
}

TEST(PdfSyntax, EscapesWhatEndsAStringOrIsReadAsSomethingElse) {
  std::string text;
  appendLiteral(text, std::string("a(b)\\\r\n\0\xFF", 9));
  EXPECT_EQ(text, std::string("a\\(b\\)\\\\\\r\n\0\xFF", 13));
}

TEST(PdfSyntax, MakesUtf16) {
  EXPECT_EQ(utf16("A"), std::string("\0A", 2));
  EXPECT_EQ(utf16("é"), std::string("\0\xE9", 2));
  EXPECT_EQ(utf16("😀"), std::string("\xD8\x3D\xDE\x00", 4));
  EXPECT_EQ(utf16("\xFF"), std::string("\xFF\xFD", 2));
}

}  // namespace
}  // namespace chatsum::platform::system::pdf
