// A report of very many rows needs little memory beside the rows themselves.
#include "hosts/device/sample/SeededDevice.h"
#include "tests/hosts/pdf/PdfReportTest.h"

namespace chatsum::test {
namespace {

class LongPdf : public PdfReportTest {};

TEST_F(LongPdf, StaysWithinItsMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "A sanitizer needs memory of its own.";
#endif
  constexpr std::uint64_t kRows = 200'000, kBytesOfRow = 1000, kBytesBeside = 60'000'000;
  writeSeeded({.messages = kRows, .conversations = 1, .attachmentShare = 0});
  const cli::testing::Outcome outcome = run({"report", "+15550100001", "--format", "pdf"});
  ASSERT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_LT(outcome.peakBytes, kRows * kBytesOfRow + kBytesBeside);
  EXPECT_NE(outcome.err.find("Rows: 200000 in the store = 200000 written"), std::string::npos) << outcome.err;

  const std::filesystem::path file = cli::testing::linesOf(outcome.out).at(0);
  EXPECT_GT(pdfPageCount(file), kRows / 25);
  EXPECT_LT(std::filesystem::file_size(file), kRows * 150);
}

}  // namespace
}  // namespace chatsum::test
