#include <gtest/gtest.h>

#include <string>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli::testing {
namespace {

/// A conversation with a reaction, a message that lost its chat, and one that was deleted lately.
class WordsTest : public ProgramTest {
 protected:
  WordsTest() {
    SmallStore small(storePath());
    const auto chat = small.chat("+15550100142");
    small.message(chat, "Are you coming?");
    device::MessageRow loved;
    loved.text = "Loved “Are you coming?”";
    loved.handle = small.lastHandle;
    const std::int64_t chats[] = {chat};
    loved.chats = chats;
    loved.associatedMessageGuid = "p:0/M1";
    loved.associatedMessageType = 2000;
    loved.guid = "R1";
    loved.date = small.nextDate;
    small.store.addMessage(loved);
    device::MessageRow lost;
    lost.text = "Left behind";
    lost.handle = small.lastHandle;
    lost.guid = "L1";
    lost.date = small.nextDate + 1'000'000'000;
    small.store.addMessage(lost);
    small.finish();
  }
};

TEST_F(WordsTest, TellReactionsAtTheirMessageUnlessPlain) {
  const Outcome words = run({"messages", "+15550100142"});
  EXPECT_NE(words.out.find("Are you coming? [loved by +15550100142]"), std::string::npos) << words.out;
  EXPECT_EQ(countOf(words.out, "Loved"), 0U) << words.out;
  EXPECT_NE(words.err.find("1 reaction shown with its message"), std::string::npos) << words.err;
  const Outcome plain = run({"messages", "+15550100142", "--plain"});
  EXPECT_EQ(countOf(plain.out, "[loved"), 0U) << plain.out;
  EXPECT_NE(plain.out.find("Loved “Are you coming?”"), std::string::npos) << plain.out;
}

TEST_F(WordsTest, AddMessagesThatLostTheirConversationOnRequest) {
  const Outcome without = run({"messages", "+15550100142"});
  EXPECT_EQ(countOf(without.out, "Left behind"), 0U) << without.out;
  const Outcome with = run({"messages", "+15550100142", "--orphaned"});
  EXPECT_EQ(countOf(with.out, "Left behind"), 1U) << with.out;
  EXPECT_EQ(countOf(with.out, "Are you coming?"), 1U) << with.out;
  const Outcome alone = run({"messages", "--orphaned"});
  EXPECT_EQ(countOf(alone.out, "Left behind"), 1U) << alone.out;
  EXPECT_EQ(countOf(alone.out, "Are you coming?"), 0U) << alone.out;
  ASSERT_EQ(run({"report", "--orphaned"}).code, 0);
  EXPECT_EQ(countOf(bytesOf(reports() / "Messages in no conversation.txt"), "Left behind"), 1U);
}

TEST_F(WordsTest, AreNotHadBothWays) {
  for (const std::string command : {"messages", "report"}) {
    EXPECT_EQ(run({command, "+15550100142", "--plain", "--deleted"}).code, 2);
    EXPECT_EQ(run({command, "+15550100142", "--plain", "--orphaned"}).code, 2);
    EXPECT_EQ(run({command}).code, 2);
  }
}

TEST_F(WordsTest, FindAPersonByTheNumberHoweverItIsWritten) {
  EXPECT_EQ(run({"messages", "(555) 010-0142"}).code, 0);
  EXPECT_EQ(run({"messages", "0142"}).code, 1);
}

}  // namespace
}  // namespace chatsum::cli::testing
