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
  for (const char* entry : {"Title:", "Author:", "Creator:", "CreationDate:", "ModDate:"}) {
    EXPECT_EQ(run.out.find(entry), std::string::npos) << run.out;
  }
}

// Two runs within one minute, which the heading shows, write the same bytes.
TEST_F(PdfDocumentFile, IsTheSameEachTime) {
  writeSample();
  const auto notice = [](const std::filesystem::path& file) { return readReportPages(file).notices[0].text; };
  constexpr int kTries = 3;
  for (int i = 0; i < kTries; ++i) {
    const std::filesystem::path one = pdf("Language table 🌍", {"--name", "one", "--replace"});
    const std::filesystem::path two = pdf("Language table 🌍", {"--name", "two", "--replace"});
    if (notice(one) != notice(two)) continue;
    EXPECT_TRUE(bytesOf(one) == bytesOf(two));
    return;
  }
  FAIL() << "no two reports were made within one minute";
}

TEST_F(PdfDocumentFile, ShowsAPictureOnceHoweverOftenItIsSent) {
  writeSample();
  const std::uintmax_t all = std::filesystem::file_size(pdf("Maya Lindqvist"));
  EXPECT_LT(all, 300'000U);
}

}  // namespace
}  // namespace chatsum::test
