#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli::testing {
namespace {

using Names = std::vector<std::string>;

class OddPeople : public ProgramTest {
 protected:
  [[nodiscard]] nlohmann::json conversations() const {
    return nlohmann::json::parse(run({"conversations", "--json"}).out, nullptr, false);
  }
};

TEST_F(OddPeople, WithThreeServicesHaveOneConversation) {
  SmallStore small(storePath());
  for (const std::string service : {"SMS", "iMessage", "RCS"}) {
    small.message(small.chat("+15550100142", service), "By " + service);
  }
  small.finish();
  const nlohmann::json list = conversations();
  ASSERT_EQ(list.size(), 1U);
  EXPECT_EQ(list[0]["guids"].get<Names>(),
            (Names{"SMS;-;+15550100142", "iMessage;-;+15550100142", "RCS;-;+15550100142"}));
  EXPECT_EQ(list[0]["messages"], 3);
  const std::string text = report("+15550100142");
  for (const std::string service : {"By SMS", "By iMessage", "By RCS"}) EXPECT_EQ(countOf(text, service), 1U) << text;
}

TEST_F(OddPeople, ThatAreBusinessesOrSendersWithoutANumberStandUnderTheirNames) {
  SmallStore small(storePath());
  const Names handles = {"urn:biz:5f3a9c", "EXAMPLEBANK", "55501"};
  for (const std::string& handle : handles) small.message(small.chat(handle, "SMS"), "From " + handle);
  small.finish();
  EXPECT_EQ(conversations().size(), handles.size());
  for (const std::string& handle : handles) {
    const std::string text = report(handle);
    EXPECT_NE(text.find("From " + handle), std::string::npos) << text;
    EXPECT_TRUE(text.starts_with(handle + ": ")) << text;
  }
}

TEST_F(OddPeople, WithFormulasQuotesAndLineBreaksInTheirTextsStayInTheirCells) {
  const Names texts = {"=cmd|' /C calc'!A0", "+1+1", "@SUM(A1)", "one, two", "she said \"no\"", "first\nsecond"};
  SmallStore small(storePath());
  const auto chat = small.chat("+15550100142");
  for (const std::string& text : texts) small.message(chat, text);
  small.finish();
  ASSERT_EQ(run({"report", "+15550100142", "--format", "csv", "--keys", "Text"}).code, 0);
  const std::string csv = bytesOf(reports() / "+15550100142.csv");
  for (const std::string text :
       {"\n=cmd|' /C calc'!A0\n", "\n+1+1\n", "\n\"one, two\"\n", "\n\"she said \"\"no\"\"\"\n", "\"first\nsecond\""}) {
    EXPECT_NE(csv.find(text), std::string::npos) << text << " in " << csv;
  }
}

TEST_F(OddPeople, WhoWroteInTheFarFutureAndBeforeTheEpochHaveTheirTrueDates) {
  SmallStore small(storePath());
  const auto chat = small.chat("+15550100142");
  const std::int64_t chats[] = {chat};
  const auto add = [&](const char* guid, const char* text, std::int64_t secondsSince2001) {
    device::MessageRow row;
    row.guid = guid;
    row.text = text;
    row.handle = small.lastHandle;
    row.chats = chats;
    row.date = secondsSince2001 * 1'000'000'000;
    small.store.addMessage(row);
  };
  add("A", "before the epoch", -86'400);
  add("B", "in 2039", 1'210'000'000);
  small.finish();
  const nlohmann::json messages =
      nlohmann::json::parse(run({"messages", "+15550100142", "--json"}).out, nullptr, false);
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0]["Date"].get<std::string>().substr(0, 10), "2000-12-30");
  EXPECT_EQ(messages[1]["Date"].get<std::string>().substr(0, 4), "2039");
}

}  // namespace
}  // namespace chatsum::cli::testing
