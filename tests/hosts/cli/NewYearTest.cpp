// The year that reports print in the days around New Year, when the year of the week is another than the calendar's.
#include "hosts/device/sample/CallWriter.h"
#include "hosts/device/sample/DevicePaths.h"
#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/PdfTools.h"

namespace chatsum::cli {
namespace {

constexpr std::int64_t kMonday = 599'400'300;  // 2019-12-30T12:05:00Z, in the first week of 2020

class NewYear : public testing::ProgramTest {
 protected:
  NewYear() { environment["TZ"] = "UTC"; }
  void writeMessage() const {
    testing::SmallStore store(storePath());
    store.nextDate = kMonday * 1'000'000'000;
    store.message(store.chat("+15550100142"), "Nearly there");
    store.finish();
  }
};

TEST_F(NewYear, IsTheCalendarsInReportsOfMessages) {
  writeMessage();
  EXPECT_EQ(report("+15550100142"), "+15550100142: Nearly there (Mon, 12-30-2019 12:05 PM)\n");
  EXPECT_EQ(report("+15550100142", {"--format", "csv"}),
            "Name,Text,Date\n+15550100142,Nearly there,\"Mon, 12-30-2019 12:05 PM\"\n");
  (void)report("+15550100142", {"--format", "pdf"});
  const std::string page = test::pdfRawText(reports() / "+15550100142.pdf");
  EXPECT_NE(page.find("12-30-2019 12:05 PM"), std::string::npos) << page;
}

TEST_F(NewYear, IsTheCalendarsInReportsOfCalls) {
  device::CallWriter writer(device::callListPath(device()));
  writer.addCall({.date = kMonday, .duration = 60, .address = "+15550100142", .answered = true});
  const auto problem = writer.finish();
  ASSERT_FALSE(problem.has_value()) << *problem;
  const testing::Outcome outcome = run({"report", "--app", "phone"});
  ASSERT_EQ(outcome.code, 0) << outcome.err;
  const std::string text = testing::bytesOf(reports() / "Phone calls.txt");
  EXPECT_NE(text.find("(Mon, 12-30-2019 12:05 PM)"), std::string::npos) << text;
}

TEST_F(NewYear, IsThatOfTheWeekInPlainReports) {
  writeMessage();
  EXPECT_EQ(report("+15550100142", {"--plain"}), "+15550100142: Nearly there (Mon, 12-30-2020 12:05 PM)\n");
}

}  // namespace
}  // namespace chatsum::cli
