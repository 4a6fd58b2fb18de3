#include "platform/system/pdf/PdfSyntax.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

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

TEST(PdfSyntax, WritesTimesToTheSecond) {
  EXPECT_EQ(dateString({0}), "(D:19700101000000Z)");
  EXPECT_EQ(dateString({1700000000.999}), "(D:20231114221320Z)");
  EXPECT_EQ(dateString({-1.5}), "(D:19691231235958Z)");
  EXPECT_EQ(dateString({951782400}), "(D:20000229000000Z)");
  EXPECT_EQ(dateString({1e300}), "(D:99991231235959Z)");
  EXPECT_EQ(dateString({-1e300}), "(D:00000101000000Z)");
  EXPECT_EQ(dateString({std::nan("")}), "(D:19700101000000Z)");
}

TEST(PdfSyntax, WritesTextsForPeopleAsUtf16) {
  EXPECT_EQ(textString("a(ü"), std::string("(\xFE\xFF\0a\0\\(\0\xFC)", 11));
  EXPECT_EQ(textString(""), "(\xFE\xFF)");
}

}  // namespace
}  // namespace chatsum::platform::system::pdf
