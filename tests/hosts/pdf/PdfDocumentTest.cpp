// The file as such: sound, whole in itself, the same each time.
#include <gmock/gmock.h>

#include "tests/hosts/pdf/PdfReportTest.h"
#include "tests/support/Tool.h"

namespace chatsum::test {
namespace {

using cli::testing::bytesOf;

class PdfDocumentFile : public PdfReportTest {};

TEST_F(PdfDocumentFile, HasNoFaults) {
  writeSample();
  for (const char* conversation : {"Maya Lindqvist", "Language table 🌍", "Sunday Hikers", "Daniel Okafor", "55501"}) {
    EXPECT_EQ(pdfProblems(pdf(conversation)), "") << conversation;
  }
}

TEST_F(PdfDocumentFile, HasNoFaultsWhenItIsLong) {
  writeSeeded({.messages = 5000, .conversations = 1});
  EXPECT_EQ(pdfProblems(pdf("+15550100001")), "");
}

TEST_F(PdfDocumentFile, CarriesTheUsedPartsOfItsFonts) {
  writeSample();
  const std::filesystem::path file = pdf("Language table 🌍");
  const std::vector<PdfFont> fonts = pdfFonts(file);
  ASSERT_GE(fonts.size(), 5U);
  for (const PdfFont& font : fonts) {
    EXPECT_TRUE(font.isEmbedded) << font.name;
    EXPECT_TRUE(font.hasUnicode) << font.name;
    if (font.type != "Type 3") {
      EXPECT_TRUE(font.isSubset) << font.name;
    }
  }
  EXPECT_LT(std::filesystem::file_size(file), 1'000'000U);
}

TEST_F(PdfDocumentFile, HasPagesOfOneSizeAndTellsNothingOfItsOwner) {
  writeSeeded({.messages = 60, .conversations = 1});
  const std::filesystem::path file = pdf("+15550100001");
  const ToolRun run = runTool({"pdfinfo", "-f", "1", "-l", "3", file});
  ASSERT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(cli::testing::countOf(run.out, " 762 x 792 pts"), 3U) << run.out;
  for (const char* entry : {"Author:", "Subject:", "Keywords:", "ModDate:"}) {
    EXPECT_EQ(run.out.find(entry), std::string::npos) << run.out;
  }
}

TEST_F(PdfDocumentFile, IsTheSameEachTimeButForTheTimeOfItsMaking) {
  writeSample();
  environment["SOURCE_DATE_EPOCH"] = "1700000000";
  const std::string one = bytesOf(pdf("Language table 🌍"));
  const std::string two = bytesOf(pdf("Language table 🌍", {"--replace"}));
  EXPECT_TRUE(one == two);
}

TEST_F(PdfDocumentFile, ShowsAPictureOnceHoweverOftenItIsSent) {
  writeSample();
  const std::uintmax_t all = std::filesystem::file_size(pdf("Maya Lindqvist"));
  EXPECT_LT(all, 300'000U);
}

}  // namespace
}  // namespace chatsum::test
