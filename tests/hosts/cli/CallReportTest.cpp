// Reports of calls. Set CHATSUM_UPDATE_GOLDEN to write what the program makes of the sample now; read the difference
// before it is kept.
#include <cctype>
#include <cstdlib>

#include "hosts/device/sample/CallWriter.h"
#include "hosts/device/sample/DevicePaths.h"
#include "tests/hosts/cli/ProgramTest.h"
#include "tests/support/PdfTools.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using testing::linesOf;
using testing::Outcome;

constexpr double kNoon = 727'012'800;  // 2024-01-15T12:00:00Z

class CallReport : public testing::ProgramTest {
 protected:
  /// Runs `report --app APP`, which must succeed, and answers the path it tells.
  [[nodiscard]] fs::path made(const std::string& app, std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"report", "--app", app});
    const Outcome outcome = run(more);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    const auto lines = linesOf(outcome.out);
    return lines.size() == 1 ? lines[0] : "";
  }
  [[nodiscard]] std::string text(const std::string& app, const std::vector<std::string>& more = {}) const {
    return testing::bytesOf(made(app, more));
  }
  void expectRefusal(const std::vector<std::string>& arguments, const std::string& part) const {
    const auto before = testing::everythingBelow(home());
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 2) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(part), std::string::npos) << outcome.err;
    EXPECT_EQ(testing::everythingBelow(home()), before);
  }
};

struct GoldenCalls {
  const char* file;
  const char* app;
  std::vector<std::string> more;
};

class GoldenCallReport : public CallReport, public ::testing::WithParamInterface<GoldenCalls> {};

TEST_P(GoldenCallReport, IsWhatTheProgramWrites) {
  const GoldenCalls& golden = GetParam();
  writeSample();
  const std::string written = text(golden.app, golden.more);
  const fs::path path = fs::path(CHATSUM_TEST_GOLDEN) / "cli" / golden.file;
  if (std::getenv("CHATSUM_UPDATE_GOLDEN")) testing::putBytes(path, written);
  ASSERT_TRUE(fs::exists(path)) << path;
  EXPECT_EQ(written, testing::bytesOf(path));
}

std::string nameOf(const ::testing::TestParamInfo<GoldenCalls>& golden) {
  std::string name;
  for (const char c : std::string(golden.param.file)) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(
    Sample, GoldenCallReport,
    ::testing::Values(GoldenCalls{"phone.txt", "phone", {}}, GoldenCalls{"phone.csv", "phone", {"--format", "csv"}},
                      GoldenCalls{"facetime.txt", "facetime", {"--sort", "desc"}},
                      GoldenCalls{"facetime.csv",
                                  "facetime",
                                  {"--format", "csv", "--keys",
                                   "Name,Text,Date,Address,Duration,Direction,Status,Service,Medium"}}),
    nameOf);

TEST_F(CallReport, IsNamedAfterItsApp) {
  writeSample();
  EXPECT_EQ(made("phone"), reports() / "Phone calls.txt");
  EXPECT_EQ(made("facetime", {"--format", "csv"}), reports() / "FaceTime calls.csv");
  EXPECT_EQ(made("phone", {"--name", "March"}), reports() / "March.txt");
  expectFailure({"report", "--app", "phone"}, "already a report");
  EXPECT_EQ(made("phone", {"--replace"}), reports() / "Phone calls.txt");
}

TEST_F(CallReport, GoesToTheHomeOfItsAppWhenNoneIsGiven) {
  writeSample();
  const fs::path data = root() / "user/.local/share/chatsum";
  for (const auto& [app, container] : std::vector<std::pair<std::string, std::string>>{
           {"phone", "com.apple.mobilephone"}, {"facetime", "com.apple.facetime"}}) {
    const Outcome outcome = runPlain({"--source", device().string(), "report", "--app", app, "--format", "text"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_TRUE(outcome.out.starts_with((data / container).string())) << outcome.out;
  }
  const Outcome listed = runPlain({"reports"});
  EXPECT_NE(listed.out.find("Phone        Phone calls.txt"), std::string::npos) << listed.out;
  EXPECT_NE(listed.out.find("FaceTime     FaceTime calls.txt"), std::string::npos) << listed.out;
}

TEST_F(CallReport, ClosesWithABalance) {
  writeSample();
  const Outcome outcome = run({"report", "--app", "phone", "--since", "2024-06-01", "--with", "+1 555 010 0142"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_NE(
      outcome.err.find("Calls: 22 in the lists (20 in the main one, 2 in the temporary one) = 1 written + 21 left "
                       "out (1 found twice, 7 of other apps, 12 with other people, 1 outside the times)."),
      std::string::npos)
      << outcome.err;
  EXPECT_EQ(linesOf(testing::bytesOf(linesOf(outcome.out)[0])).size(), 1U);
}

TEST_F(CallReport, IsSortedAsTold) {
  writeSample();
  const auto oldestFirst = linesOf(text("phone")),
             newestFirst = linesOf(text("phone", {"--sort", "desc", "--replace"}));
  EXPECT_EQ(oldestFirst, std::vector<std::string>(newestFirst.rbegin(), newestFirst.rend()));
  EXPECT_NE(oldestFirst.front().find("Harbour Dental Clinic"), std::string::npos);
}

TEST_F(CallReport, ShowsTheKeysThatAreAskedFor) {
  writeSample();
  const auto lines = linesOf(text("phone", {"--keys", "Status,Duration,Address", "--line-format", "%@|%@|%@"}));
  EXPECT_EQ(lines.front(), "connected|0:02:14|+15550100120");
  expectRefusal({"report", "--app", "phone", "--keys", "Name,guid", "--name", "x"}, "There is no key 'guid'");
  expectRefusal({"report", "Maya Lindqvist", "--keys", "Name,Duration"}, "There is no key 'Duration'");
}

TEST_F(CallReport, IsADocumentWithFittingTitles) {
  writeSample();
  const fs::path pdf = made("facetime", {"--format", "pdf"});
  const std::string words = test::pdfRawText(pdf);
  for (const char* part : {"Name", "Call", "Date", "Maya Lindqvist", "FaceTime video call", "0:45:10"}) {
    EXPECT_NE(words.find(part), std::string::npos) << part << " in " << words;
  }
}

TEST_F(CallReport, PutsACopyWhereItIsWanted) {
  writeSample();
  const fs::path copy = root() / "copy.csv";
  const fs::path original = made("phone", {"--format", "csv", "--output", copy.string()});
  EXPECT_EQ(testing::bytesOf(copy), testing::bytesOf(original));
  expectFailure({"report", "--app", "facetime", "--output", copy.string()}, "already a file");
}

TEST_F(CallReport, OfAnUnreadableListLeavesNothingBehind) {
  writeSample();
  testing::putBytes(device::callListPath(device()), "this is no database");
  expectFailure({"report", "--app", "phone"}, "CallHistory.storedata");
}

TEST_F(CallReport, KeepsNamesThatLookLikePictures) {
  device::CallWriter writer(device::callListPath(device()));
  writer.addCall({.date = kNoon, .address = "someone@example.gif"});
  ASSERT_EQ(writer.finish(), std::nullopt);
  EXPECT_TRUE(text("phone").starts_with("someone@example.gif : Incoming phone call")) << text("phone", {"--replace"});
  EXPECT_EQ(testing::countOf(text("phone", {"--format", "csv"}), "\nsomeone@example.gif ,"), 1U);
}

TEST_F(CallReport, IsOfOneThing) {
  expectRefusal({"report", "Maya", "--app", "phone"}, "one of the two");
  expectRefusal({"report"}, "CONVERSATION");
  expectRefusal({"report", "--app", "mail"}, "mail");
  expectRefusal({"report", "--app", "phone", "--exclude", "M1"}, "--exclude");
  expectRefusal({"report", "Maya", "--with", "Daniel"}, "--app");
  expectRefusal({"report", "--app", "phone", "--since", "2024-02-02", "--until", "2024-02-01"}, "--until");
  expectRefusal({"report", "--app", "phone", "--columns", "A,B"}, "2 column titles for 3 keys");
}

}  // namespace
}  // namespace chatsum::cli
