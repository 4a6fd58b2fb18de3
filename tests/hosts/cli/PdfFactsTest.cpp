// What a PDF report says about itself.
#include <gmock/gmock.h>

#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/Tool.h"

namespace chatsum::cli {
namespace {

using ::testing::HasSubstr;

class PdfFacts : public testing::ProgramTest {
 protected:
  void SetUp() override {
    writeSample();
    environment["SOURCE_DATE_EPOCH"] = "1700000000";
  }
  [[nodiscard]] std::string given() const { return (root() / "given.pdf").string(); }
};

TEST_F(PdfFacts, NameTheReportAndTheFixedTimeOfItsMaking) {
  const std::string first = report("Maya Lindqvist", {"--format", "pdf", "--output", given()});
  const std::string info = test::runTool({"pdfinfo", "-isodates", given()}).out;
  EXPECT_THAT(info, HasSubstr("Title:           Maya Lindqvist\n"));
  EXPECT_THAT(info, HasSubstr("Creator:         Chatsum\n"));
  EXPECT_THAT(info, ::testing::ContainsRegex("CreationDate: +2023-11-1[45]T"));
  EXPECT_TRUE(report("Maya Lindqvist", {"--format", "pdf", "--replace"}) == first);
}

TEST_F(PdfFacts, NameTheLanguageOfTheTexts) {
  const auto languageIn = [&](const char* locale) {
    environment["LC_ALL"] = locale;
    (void)report("Maya Lindqvist", {"--format", "pdf", "--replace", "--output", given()});
    const std::string objects = test::runTool({"qpdf", "--qdf", "--object-streams=disable", given(), "-"}).out;
    const std::size_t at = objects.find("/Lang ");
    return at == std::string::npos ? "" : objects.substr(at, objects.find('\n', at) - at);
  };
  EXPECT_EQ(languageIn("en_US.UTF-8"), "/Lang (en)");
  EXPECT_EQ(languageIn("de_DE.UTF-8"), "/Lang (de)");
}

}  // namespace
}  // namespace chatsum::cli
