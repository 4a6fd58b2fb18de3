#include "tests/hosts/pdf/PdfReportTest.h"

#include <cstdlib>

namespace chatsum::test {

namespace fs = std::filesystem;

PdfReportTest::PdfReportTest() {
  if (const char* file = std::getenv("FONTCONFIG_FILE")) environment["FONTCONFIG_FILE"] = file;
}

fs::path PdfReportTest::pdf(const std::string& conversation, const std::vector<std::string>& more) const {
  std::vector<std::string> arguments = {"report", conversation, "--format", "pdf"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const cli::testing::Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  const std::vector<std::string> lines = cli::testing::linesOf(outcome.out);
  EXPECT_EQ(lines.size(), 1U) << outcome.out;
  return lines.empty() ? fs::path() : fs::path(lines[0]);
}

void PdfReportTest::writeTexts(const std::vector<std::string>& texts) const {
  cli::testing::SmallStore store(storePath());
  const auto chat = store.chat(person);
  for (const std::string& text : texts) store.message(chat, text);
  store.finish();
}

}  // namespace chatsum::test
