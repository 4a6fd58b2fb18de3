// PDF reports of the program, run as a child. Fonts are those of the machine's packages, whatever else is installed.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/hosts/cli/ProgramTest.h"
#include "tests/hosts/pdf/ReportPages.h"
#include "tests/support/PdfTools.h"
#include "tests/support/PinnedFonts.h"

namespace chatsum::test {

class PdfReportTest : public cli::testing::ProgramTest {
 protected:
  PdfReportTest();

  /// Writes a report, which must succeed, and answers its path.
  [[nodiscard]] std::filesystem::path pdf(const std::string& conversation,
                                          const std::vector<std::string>& more = {}) const;
  /// A device with one conversation, with +15550100101, of messages with these texts.
  void writeTexts(const std::vector<std::string>& texts) const;
  const std::string person = "+15550100101";

  /// Where a page is drawn to.
  [[nodiscard]] std::filesystem::path picture(std::size_t page) const {
    return root() / ("page-" + std::to_string(page) + ".png");
  }

 private:
  PinnedFonts fonts_;
};

}  // namespace chatsum::test
