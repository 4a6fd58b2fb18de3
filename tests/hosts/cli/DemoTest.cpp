#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using testing::linesOf;
using testing::Outcome;

class Demo : public testing::ProgramTest {};

TEST_F(Demo, WritesADeviceAndOneReportOfEachKind) {
  const Outcome outcome = runPlain({"demo", (root() / "demo").string()});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  const auto lines = linesOf(outcome.out);
  ASSERT_EQ(lines.size(), 4U) << outcome.out;
  EXPECT_TRUE(lines[0].ends_with(".txt"));
  EXPECT_TRUE(lines[1].ends_with(".csv"));
  EXPECT_TRUE(lines[2].ends_with(".pdf"));
  EXPECT_TRUE(lines[3].ends_with("Phone calls.txt"));
  for (const std::string& line : lines) {
    EXPECT_TRUE(line.starts_with((root() / "demo/home").string())) << line;
    EXPECT_GT(fs::file_size(line), 1000U);
  }
  EXPECT_TRUE(fs::exists(root() / "demo/device/var/mobile/Library/SMS/sms.db"));
  EXPECT_NE(outcome.err.find("chatsum --source"), std::string::npos);
}

TEST_F(Demo, CanBeRunAgainWithTheSameResult) {
  const std::vector<std::string> arguments = {"demo", (root() / "demo").string()};
  const Outcome first = runPlain(arguments);
  const std::string text = testing::bytesOf(linesOf(first.out)[0]), csv = testing::bytesOf(linesOf(first.out)[1]);
  const Outcome second = runPlain(arguments);
  EXPECT_EQ(second.code, 0) << second.err;
  EXPECT_EQ(second.out, first.out);
  EXPECT_EQ(testing::bytesOf(linesOf(second.out)[0]), text);
  EXPECT_EQ(testing::bytesOf(linesOf(second.out)[1]), csv);
}

TEST_F(Demo, GoesToAFolderOfItsOwnByDefault) {
  const Outcome outcome = runPlain({"demo"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_TRUE(fs::exists(root() / "run/chatsum-demo/device/var/mobile/Library/SMS/sms.db"));
}

TEST_F(Demo, LeavesSomebodysDeviceAlone) {
  testing::SmallStore store(root() / "demo/device/var/mobile/Library/SMS/sms.db");
  store.finish();
  const auto before = testing::everythingBelow(root() / "demo");
  const Outcome outcome = runPlain({"demo", (root() / "demo").string()});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(linesOf(outcome.err).size(), 1U) << outcome.err;
  EXPECT_EQ(testing::everythingBelow(root() / "demo"), before);
}

}  // namespace
}  // namespace chatsum::cli
