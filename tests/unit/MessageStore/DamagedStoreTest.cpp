// A store with a broken page in its middle: what can be read is kept, and the read ends.

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;

class DamagedStore : public ReadingTest {
 protected:
  static constexpr int kMessages = 400;

  /// A store of many pages in which a leaf in the middle of a table or index is overwritten.
  void writeAndDamage(const std::string& tree) {
    store().run("BEGIN");
    for (int i = 0; i < kMessages; ++i) {
      addMessage({.guid = std::to_string(i), .text = std::string(500, 'x'), .date = 600'000'000'000'000'000 + i});
    }
    store().run("COMMIT");
    const std::int64_t leaves =
        store().number("SELECT count(*) FROM dbstat WHERE name='" + tree + "' AND pagetype='leaf'");
    const std::int64_t page =
        store().number("SELECT pageno FROM dbstat WHERE name='" + tree +
                       "' AND pagetype='leaf' ORDER BY path LIMIT 1 OFFSET " + std::to_string(leaves / 2));
    store().destroyPages({page});
  }
};

TEST_F(DamagedStore, EndsTheReadWithAnErrorLineAndKeepsWhatCameBefore) {
  writeAndDamage("message");
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.completions, 1);
  EXPECT_THAT(errorLines(),
              ElementsAre("com.orbelle.Chatsum: Error => +[ChatsumUtils "
                          "allMessagesForConversation:excludedGuids:order:completion:], [Line 709], Error while "
                          "reading rows. Error: 'database disk image is malformed'"));
  ASSERT_GT(outcome.records.size(), 10U);
  ASSERT_LT(outcome.records.size(), static_cast<std::size_t>(kMessages));
  for (std::size_t i = 0; i < outcome.records.size(); ++i) {
    ASSERT_EQ(outcome.at(i, "guid").description(), std::to_string(i));
  }
}

TEST_F(DamagedStore, GivesNothingWhenTheMessagesOfTheChatCannotBeFound) {
  writeAndDamage("sqlite_autoindex_chat_message_join_1");
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.completions, 1);
  EXPECT_TRUE(outcome.records.empty());
  EXPECT_THAT(errorLines(),
              ElementsAre(EndsWith("Error while reading rows. Error: 'database disk image is malformed'")));
}

TEST_F(DamagedStore, GivesTheNewestOfWhatCouldBeReadFirst) {
  writeAndDamage("message");
  const std::size_t readable = read(kOldest).records.size();
  const ReadOutcome outcome = read(kNewest);
  ASSERT_EQ(outcome.records.size(), readable);
  EXPECT_EQ(outcome.at(0, "guid").description(), std::to_string(readable - 1));
  EXPECT_EQ(outcome.at(readable - 1, "guid").description(), "0");
}

TEST_F(DamagedStore, CountsZeroWhenTheCountCannotBeMade) {
  writeAndDamage("sqlite_autoindex_chat_message_join_1");
  EXPECT_EQ(ChatsumUtils::totalMessageCount(conversation), 0);
}

TEST_F(DamagedStore, IsReadAsFarAsATruncatedFileGoes) {
  writeAndDamage("message");
  std::filesystem::resize_file(store().path(), std::filesystem::file_size(store().path()) / 3);
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.completions, 1);
  EXPECT_EQ(errorLines().size(), 1U);
}

}  // namespace
}  // namespace chatsum::tests
