#include <nlohmann/json.hpp>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

using Json = nlohmann::ordered_json;
using testing::linesOf;
using testing::Outcome;
using testing::SmallStore;

class Messages : public testing::ProgramTest {
 protected:
  [[nodiscard]] Json read(const std::string& conversation) const {
    const Outcome outcome = run({"messages", conversation, "--json"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    return Json::parse(outcome.out);
  }
};

TEST_F(Messages, AreTheRecordsThemselves) {
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100101");
  store.message(chat, "Hi \"you\"\n2");
  store.message(chat, "Ho", true);
  store.finish();
  const Json records = read("+15550100101");
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0], Json::parse(R"({"guid":"M1","Text":"Hi \"you\"\n2","Date":"2020-01-06T05:40:00-05:00",
                                        "is_from_me":0,"Name":"+15550100101","cache_has_attachments":0,
                                        "Address":"+15550100101","Service":"iMessage"})"));
  EXPECT_EQ(records[1]["Name"], "Me");
  EXPECT_EQ(records[1]["is_from_me"], 1);
}

TEST_F(Messages, CarryTheirAttachmentsAndLabels) {
  writeSample();
  bool hasAttachment = false, hasLabel = false;
  for (const Json& record : read("Maya Lindqvist")) {
    hasLabel = hasLabel || record.value("label", "") == "mobile";
    if (!record.contains("attachment_location")) continue;
    hasAttachment = true;
    EXPECT_EQ(record["Text"], record["attachment_location"]);
    EXPECT_TRUE(record["Text"].get<std::string>().starts_with("User/Library/SMS/Attachments/"));
  }
  EXPECT_TRUE(hasAttachment);
  EXPECT_TRUE(hasLabel);
}

TEST_F(Messages, AreInTheOrderOfTheirDates) {
  writeSeeded({.messages = 500, .conversations = 1, .outOfOrderShare = 0.3});
  std::string last;
  environment["TZ"] = "UTC";
  const Json records = read("+15550100001");
  EXPECT_GE(records.size(), 500U);
  for (const Json& record : records) {
    EXPECT_GE(record["Date"].get<std::string>(), last);
    last = record["Date"];
  }
}

TEST_F(Messages, WithoutADateHaveNone) {
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100101");
  device::MessageRow row{.guid = {}, .text = "When?", .dateAsIs = true, .chats = std::span(&chat, 1)};
  store.message(row);
  store.message(chat, "Now");
  store.finish();
  const Outcome outcome = run({"messages", "+15550100101", "--json"});
  const Json records = Json::parse(outcome.out);
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0]["Text"], "When?");
  EXPECT_FALSE(records[0].contains("Date"));
  EXPECT_NE(outcome.err.find("1 row has no date"), std::string::npos) << outcome.err;
}

TEST_F(Messages, StandInLines) {
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100101");
  store.message(chat, "one\ntwo\x1b[0m");
  store.finish();
  const Outcome outcome = run({"messages", "+15550100101"});
  EXPECT_EQ(outcome.out, "2020-01-06 05:40  +15550100101: one\n    two [[0m\n");
  EXPECT_EQ(outcome.err,
            "Note: The source has no address book, so people are shown by their numbers and addresses.\n"
            "Rows: 1 in the store = 1 shown + 0 left out.\n");
}

TEST_F(Messages, SayWhatTheLibraryLeftOut) {
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100101");
  store.message(chat, "one");
  store.message({.guid = {}, .chats = std::span(&chat, 1)});
  store.message({.guid = {}, .attributedBody = "no body at all", .chats = std::span(&chat, 1)});
  store.finish();
  const Outcome outcome = run({"messages", "+15550100101"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_NE(
      outcome.err.find("Rows: 3 in the store = 1 shown + 2 left out (1 without text, 1 with an unreadable body)."),
      std::string::npos)
      << outcome.err;
}

TEST_F(Messages, OfAnEmptyConversationAreAnEmptyArray) {
  SmallStore store(storePath());
  store.chat("+15550100101");
  store.finish();
  EXPECT_EQ(run({"messages", "+15550100101", "--json"}).out, "[]\n");
}

TEST_F(Messages, AreQuietWhenAsked) {
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100101");
  store.message(chat, "one");
  store.finish();
  EXPECT_EQ(run({"-q", "messages", "+15550100101"}).err, "");
  EXPECT_NE(run({"-v", "messages", "+15550100101"}).err.find("Getting all messages for GUIDs"), std::string::npos);
}

}  // namespace
}  // namespace chatsum::cli
