#include "platform/system/pdf/Sha256.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platform/system/pdf/PdfSyntax.h"

namespace chatsum::platform::system {
namespace {

std::span<const std::uint8_t> bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string hexOf(std::string_view text, std::size_t part) {
  Sha256 hash;
  for (std::size_t at = 0; at < text.size(); at += part) hash.add(bytesOf(text.substr(at, part)));
  const Sha256::Digest digest = hash.finish();
  std::string hex;
  pdf::appendHex(hex, {reinterpret_cast<const char*>(digest.data()), digest.size()});
  return hex;
}

TEST(Sha256, AnswersThePublishedDigests) {
  EXPECT_EQ(hexOf("", 1), "E3B0C44298FC1C149AFBF4C8996FB92427AE41E4649B934CA495991B7852B855");
  EXPECT_EQ(hexOf("abc", 3), "BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD");
  EXPECT_EQ(hexOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq", 100),
            "248D6A61D20638B8E5C026930C3E6039A33CE45964FF2167F6ECEDD419DB06C1");
  EXPECT_EQ(hexOf(std::string(1000000, 'a'), 1000000),
            "CDC76E5C9914FB9281A1C7E284D73E67F1809A48A497200E046D39CCC7112CD0");
}

TEST(Sha256, DoesNotDependOnHowTheBytesCome) {
  for (std::size_t size = 0; size < 200; ++size) {
    const std::string text(size, 'x');
    const std::string whole = hexOf(text, 1000);
    for (const std::size_t part : {1U, 7U, 63U, 64U, 65U})
      EXPECT_EQ(hexOf(text, part), whole) << size << " by " << part;
  }
}

TEST(Sha256, TakesNumbersHighestByteFirst) {
  Sha256 asNumber, asBytes;
  asNumber.add(0x61626364U);
  asBytes.add(bytesOf("abcd"));
  EXPECT_EQ(asNumber.finish(), asBytes.finish());
}

}  // namespace
}  // namespace chatsum::platform::system
