#include <nlohmann/json.hpp>
#include <set>

#include "hosts/device/sample/CallWriter.h"
#include "hosts/device/sample/DevicePaths.h"
#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

using Json = nlohmann::ordered_json;
using testing::linesOf;
using testing::Outcome;

constexpr double kNoon = 727'012'800;  // 2024-01-15T12:00:00Z

class Calls : public testing::ProgramTest {
 protected:
  [[nodiscard]] Json list(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"calls", "--json"});
    const Outcome outcome = run(more);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return Json::parse(outcome.out);
  }
  void writeCalls(const std::vector<device::CallRow>& rows) const {
    device::CallWriter writer(device::callListPath(device()));
    for (const device::CallRow& row : rows) writer.addCall(row);
    ASSERT_EQ(writer.finish(), std::nullopt);
  }
};

TEST_F(Calls, HaveTheKeysOfTheirInterface) {
  writeSample();
  const Json calls = list();
  ASSERT_EQ(calls.size(), 21U);
  for (const Json& call : calls) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : call.items()) keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"names", "addresses", "date", "duration", "service", "medium",
                                              "direction", "status"}));
  }
  EXPECT_EQ(calls[1], (Json{{"names", {"Pat Nguyen"}},
                            {"addresses", {"5550155"}},
                            {"date", "2024-06-11T06:15:42-04:00"},
                            {"duration", 75.5},
                            {"service", "phone"},
                            {"medium", "audio"},
                            {"direction", "incoming"},
                            {"status", "answered"}}));
}

TEST_F(Calls, StandNewestFirstAndEachOnce) {
  writeSample();
  const Json calls = list();
  EXPECT_EQ(calls[0]["date"], "2024-06-12T04:05:06-04:00");  // only in the temporary list
  std::string before = "9";
  for (const Json& call : calls) {
    EXPECT_LT(call["date"].get<std::string>(), before);
    before = call["date"];
  }
  EXPECT_NE(run({"calls"}).err.find("21 shown + 1 left out (1 found twice)"), std::string::npos);
}

TEST_F(Calls, HaveEveryStatusAndService) {
  writeSample();
  std::set<std::string> statuses, services;
  for (const Json& call : list()) {
    statuses.insert(call["status"]);
    services.insert(call["service"]);
  }
  EXPECT_EQ(statuses, (std::set<std::string>{"answered", "missed", "declined", "blocked", "connected", "no answer"}));
  EXPECT_EQ(services, (std::set<std::string>{"phone", "facetime", "com.example.chatter"}));
}

TEST_F(Calls, NameEverybodyOfAGroup) {
  writeSample();
  const Json calls = list({"--app", "facetime", "--with", "Priya Raman"});
  ASSERT_EQ(calls.size(), 2U);
  EXPECT_EQ(calls[1]["names"], (Json{"Maya Lindqvist", "Daniel Okafor", "Priya Raman"}));
  EXPECT_EQ(calls[1]["addresses"], (Json{"+15550100142", "+15550100175", "+15550100118"}));
  EXPECT_EQ(calls[1]["medium"], "video");
}

TEST_F(Calls, OfAWithheldNumberHaveNoAddress) {
  writeSample();
  const Json calls = list({"--with", "no caller id"});
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_EQ(calls[0]["names"], Json{"No caller ID"});
  EXPECT_EQ(calls[0]["addresses"], Json::array());
}

TEST_F(Calls, AreChosenByAppPersonAndTimes) {
  writeSample();
  EXPECT_EQ(list({"--app", "phone"}).size(), 14U);
  EXPECT_EQ(list({"--app", "facetime"}).size(), 6U);
  EXPECT_EQ(list({"--with", "(555) 010-0142"}).size(), 6U);
  EXPECT_EQ(list({"--with", "MAYA lindqvist"}).size(), 6U);
  EXPECT_EQ(list({"--with", "Maya"}).size(), 0U);
  EXPECT_EQ(list({"--with", "Daniel.Okafor@example.com"}).size(), 1U);
  EXPECT_EQ(list({"--since", "2024-06-01"}).size(), 3U);
  EXPECT_EQ(list({"--until", "2024-03-02"}).size(), 2U);
  // The first call began at 10:15:08.25 UTC: ends are inside.
  EXPECT_EQ(list({"--until", "2024-03-02T10:15:08.25Z"}).size(), 1U);
  EXPECT_EQ(list({"--until", "2024-03-02T10:15:08.2Z"}).size(), 0U);
  EXPECT_EQ(list({"--since", "2024-06-12T04:05:06.5-04:00"}).size(), 1U);
}

TEST_F(Calls, AreToldInATableWithTheTimeTheyCover) {
  writeSample();
  const Outcome outcome = run({"calls"});
  const auto lines = linesOf(outcome.out);
  ASSERT_EQ(lines.size(), 22U);
  EXPECT_TRUE(lines[0].starts_with("DATE ")) << lines[0];
  EXPECT_TRUE(lines[1].starts_with("2024-06-12 04:05  Maya Lindqvist (+15550100142) ")) << lines[1];
  EXPECT_NE(lines[2].find("Incoming phone call"), std::string::npos);
  EXPECT_TRUE(lines[2].ends_with("answered    0:01:15")) << lines[2];
  EXPECT_NE(outcome.err.find("The call list reaches from 2024-03-02 to 2024-06-12"), std::string::npos) << outcome.err;
}

TEST_F(Calls, ShowNothingThatATerminalWouldObey) {
  writeCalls({{.date = kNoon, .address = "x\x1b[2J\ny", .name = "a\x1b[31m\r\nb"}});
  const Outcome outcome = run({"calls"});
  EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos);
  EXPECT_EQ(linesOf(outcome.out).size(), 2U);
}

TEST_F(Calls, AreReadWithoutAnyMessages) {
  writeCalls({{.date = kNoon, .address = "+15550100142"}});
  EXPECT_EQ(list().size(), 1U);
  testing::putBytes(storePath(), "no store");
  EXPECT_EQ(list().size(), 1U);
}

TEST_F(Calls, OfAbsurdTimesAreShownWithoutThem) {
  device::CallWriter writer(device::callListPath(device()));
  writer.addCall({.date = kNoon, .address = "+15550100142"});
  writer.file().execute("UPDATE ZCALLRECORD SET ZDATE = 1e300, ZDURATION = -1e300");
  ASSERT_EQ(writer.finish(), std::nullopt);
  const Json calls = list();
  EXPECT_TRUE(calls[0]["date"].is_null());
  EXPECT_TRUE(calls[0]["duration"].is_null());
  EXPECT_EQ(list({"--since", "2001-01-01"}).size(), 0U);
  EXPECT_NE(run({"calls", "--until", "2030-01-01"}).err.find("1 without a date"), std::string::npos);
}

TEST_F(Calls, SayWhenThereIsNoList) {
  testing::SmallStore store(storePath());
  store.finish();
  expectFailure({"calls"}, "There is no call list below");
  expectFailure({"report", "--app", "phone"}, "There is no call list below");
}

TEST_F(Calls, AreReadFromTheWalAndTheSourceStaysAsItIs) {
  {
    device::CallWriter writer(device::callListPath(device()), device::CallGeneration::ios17, device::Placement::wal);
    writer.addCall({.date = kNoon, .address = "+15550100142"});
    ASSERT_EQ(writer.finish(), std::nullopt);
  }
  const auto before = testing::everythingBelow(device());
  EXPECT_EQ(list().size(), 1U);
  EXPECT_EQ(testing::everythingBelow(device()), before);
  EXPECT_TRUE(testing::everythingBelow(temporary()).empty());
}

TEST_F(Calls, OfAnEmptyListAreAnEmptyArray) {
  writeCalls({});
  EXPECT_EQ(list(), Json::array());
  const Outcome outcome = run({"calls"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find("Calls: 0 in the list = 0 shown + 0 left out."), std::string::npos) << outcome.err;
}

TEST_F(Calls, RefuseWordsThatMeanNothing) {
  for (const auto& [arguments, part] : std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{"calls", "--app", "skype"}, "skype"},
           {{"calls", "--since", "yesterday"}, "yesterday"},
           {{"calls", "--since", "2024-02-02", "--until", "2024-02-01"}, "--until"},
           {{"calls", "extra"}, "extra"}}) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 2) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(part), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(runPlain({"calls"}).code, 2);
}

}  // namespace
}  // namespace chatsum::cli
