#include <nlohmann/json.hpp>

#include "hosts/device/sample/ContactWriter.h"
#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

using Json = nlohmann::ordered_json;
using testing::linesOf;
using testing::Outcome;
using testing::SmallStore;

class Conversations : public testing::ProgramTest {
 protected:
  [[nodiscard]] Json list() const {
    const Outcome outcome = run({"conversations", "--json"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return Json::parse(outcome.out);
  }
  [[nodiscard]] Json named(const std::string& name) const {
    for (const Json& conversation : list()) {
      if (conversation["name"] == name) return conversation;
    }
    ADD_FAILURE() << "no conversation " << name;
    return {};
  }
};

TEST_F(Conversations, HaveTheKeysOfTheirInterface) {
  writeSample();
  for (const Json& conversation : list()) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : conversation.items()) keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"guids", "name", "recipients", "messages", "first", "last"}));
  }
}

TEST_F(Conversations, MergeThePhoneAndMailOfOnePerson) {
  writeSample();
  const Json daniel = named("Daniel Okafor");
  EXPECT_EQ(daniel["guids"],
            (Json{"SMS;-;+15550100175", "iMessage;-;+15550100175", "iMessage;-;daniel.okafor@example.com"}));
  EXPECT_EQ(daniel["recipients"], (Json{"+15550100175", "daniel.okafor@example.com"}));
}

TEST_F(Conversations, TellWhoIsInAGroupNow) {
  writeSample();
  const Json hikers = named("Sunday Hikers");
  EXPECT_EQ(hikers["recipients"], (Json{"+15550100142", "+15550100175", "+15550100118", "+15550100199"}));
  EXPECT_EQ(hikers["messages"], 69);
}

TEST_F(Conversations, AreNamedRightWhereOneAddressEndsLikeAnother) {
  writeSample();
  EXPECT_EQ(named("ann@example.com")["recipients"], (Json{"ann@example.com"}));
  EXPECT_EQ(named("Jo Ann Becker")["recipients"], (Json{"joann@example.com"}));
}

TEST_F(Conversations, CutFractionsOfSecondsFromTheirTimes) {
  environment["TZ"] = "UTC";
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100142");
  store.nextDate = 600'000'000'999'999'999;
  store.message(chat, "First");
  store.nextDate = 700'000'000'999'999'950;
  store.message(chat, "Last");
  store.finish();
  EXPECT_EQ(list()[0]["first"], "2020-01-06T10:40:00+00:00");
  EXPECT_EQ(list()[0]["last"], "2023-03-08T20:26:40+00:00");
}

TEST_F(Conversations, TellTimesInTheZoneOfTheEnvironment) {
  SmallStore store(storePath());
  store.message(store.chat("+15550100101"), "Hi");
  store.finish();
  EXPECT_EQ(list()[0]["first"], "2020-01-06T05:40:00-05:00");
  environment["TZ"] = "Asia/Tokyo";
  EXPECT_EQ(list()[0]["last"], "2020-01-06T19:40:00+09:00");
}

TEST_F(Conversations, HaveNoTimesWithoutMessages) {
  SmallStore store(storePath());
  store.chat("+15550100101");
  store.finish();
  EXPECT_EQ(list()[0]["messages"], 0);
  EXPECT_TRUE(list()[0]["first"].is_null());
  EXPECT_TRUE(list()[0]["last"].is_null());
}

TEST_F(Conversations, AreReadFromTheWal) {
  writeSeeded({.messages = 200, .conversations = 3, .placement = device::Placement::wal});
  const auto before = testing::everythingBelow(device());
  std::int64_t messages = 0;
  for (const Json& conversation : list()) messages += conversation["messages"].get<std::int64_t>();
  EXPECT_EQ(messages, 200);
  EXPECT_EQ(testing::everythingBelow(device()), before);
  EXPECT_TRUE(testing::everythingBelow(temporary()).empty());
}

TEST_F(Conversations, StandInATable) {
  writeSample();
  const auto lines = linesOf(run({"conversations"}).out);
  ASSERT_EQ(lines.size(), list().size() + 1);
  EXPECT_TRUE(lines[0].starts_with("NAME"));
  EXPECT_NE(lines[1].find("Harbour Dental Clinic"), std::string::npos);
  EXPECT_NE(lines[1].find("SMS;-;+15550100120"), std::string::npos);
}

TEST_F(Conversations, ShowNothingThatATerminalWouldObey) {
  SmallStore store(storePath());
  store.store.addChat({.guid = "g\x1b[2J", .identifier = "chat1", .group = true, .displayName = "a\x1b[31m\nb"});
  store.finish();
  const Outcome outcome = run({"conversations"});
  EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos);
  EXPECT_EQ(linesOf(outcome.out).size(), 2U);
}

TEST_F(Conversations, ReplaceBytesThatAreNoText) {
  SmallStore store(storePath());
  store.store.addChat({.guid = "g", .identifier = "chat1", .group = true, .displayName = "caf\xE9"});
  store.finish();
  EXPECT_EQ(list()[0]["name"], "caf\uFFFD");
}

TEST_F(Conversations, OfOneNameAreListedAndRefused) {
  SmallStore store(storePath());
  store.message(store.chat("+15550100101"), "Hi");
  store.message(store.chat("+15550100102"), "Ho");
  store.finish();
  device::ContactWriter contacts(addressBookPath());
  contacts.addContact({.first = "Sam", .phones = {{"", "+15550100101"}}});
  contacts.addContact({.first = "SAM", .phones = {{"", "+15550100102"}}});
  ASSERT_FALSE(contacts.finish().has_value());
  const Outcome outcome = run({"report", "sam"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find("iMessage;-;+15550100101"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("iMessage;-;+15550100102"), std::string::npos) << outcome.err;
  EXPECT_TRUE(testing::everythingBelow(home()).empty());
  EXPECT_NE(report("iMessage;-;+15550100102").find("Ho"), std::string::npos);
}

}  // namespace
}  // namespace chatsum::cli
