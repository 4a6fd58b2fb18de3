// The keys of a record and where their values come from.

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RecordFields : public ReadingTest {
 protected:
  static std::vector<std::string> keys(const Record& record) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < record.size(); ++i) names.emplace_back(record.keyAt(i));
    return names;
  }
};

TEST_F(RecordFields, OfAnOwnMessage) {
  addMessage({.guid = "A", .text = "Hi", .isFromMe = 1});
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.record(0), (Record{{"guid", "A"},
                                       {"Text", "Hi"},
                                       {"Date", Date{1'578'307'200}},
                                       {"is_from_me", 1},
                                       {"Name", "Me"},
                                       {"cache_has_attachments", 0}}));
  EXPECT_FALSE(outcome.hasAttachments);
  EXPECT_FALSE(outcome.hasMultiMediaAttachments);
}

TEST_F(RecordFields, OfAMessageWithEverything) {
  addressBook().value(7, "+15550100123");
  fake.addressBook.add(7, {{"mobile", "+15550100123"}});
  const std::int64_t handle = store().handle("+15550100123");
  const std::int64_t message = addMessage({.guid = "A", .text = "\xEF\xBF\xBC", .handle = handle, .hasAttachments = 1});
  store().attachment(message, "~/Library/SMS/Attachments/a.png");
  EXPECT_EQ(read().record(0), (Record{{"guid", "A"},
                                      {"Text", "User/Library/SMS/Attachments/a.png"},
                                      {"Date", Date{1'578'307'200}},
                                      {"is_from_me", 0},
                                      {"Name", "+15550100123"},
                                      {"label", "mobile"},
                                      {"cache_has_attachments", 1},
                                      {"attachment_location", "User/Library/SMS/Attachments/a.png"}}));
}

TEST_F(RecordFields, AreFewestWithoutGuidAndHandle) {
  addMessage({.guid = std::nullopt});
  EXPECT_THAT(keys(read().record(0)), ElementsAre("Text", "Date", "is_from_me", "cache_has_attachments"));
}

TEST_F(RecordFields, HaveNoNameWhenTheHandleRowHasNoText) {
  const std::int64_t handle = store().handle(std::nullopt);
  addMessage({.guid = "A", .handle = handle});
  EXPECT_THAT(keys(read().record(0)), ElementsAre("guid", "Text", "Date", "is_from_me", "cache_has_attachments"));
}

TEST_F(RecordFields, NameTheHandleAlsoWhenItIsAnEmptyText) {
  addMessage({.guid = "A", .handle = store().handle("")});
  EXPECT_EQ(read().at(0, "Name"), Value(""));
}

TEST_F(RecordFields, KeepAnEmptyText) {
  addMessage({.text = ""});
  EXPECT_EQ(read().at(0, "Text"), Value(""));
}

TEST_F(RecordFields, EndTextsAtTheirFirstNul) {
  addMessage({.guid = std::string("A\0B", 3),
              .text = std::string("seen\0hidden", 11),
              .handle = store().handle(std::string("+15550100123\0x", 14))});
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "guid"), Value("A"));
  EXPECT_EQ(outcome.at(0, "Text"), Value("seen"));
  EXPECT_EQ(outcome.at(0, "Name"), Value("+15550100123"));
}

TEST_F(RecordFields, RepairTextsThatAreNoUtf8) {
  const std::int64_t message =
      addMessage({.guid = "A\xFF", .text = "caf\xE9", .handle = store().handle("\xC3(@example.com")});
  store().message(chat, {.guid = "B", .text = "ok \xF0\x9F\x98\x80"});
  store().attachment(message, "~/\xFEphoto.jpeg");
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "guid"), Value("A\xEF\xBF\xBD"));
  EXPECT_EQ(outcome.at(0, "Name"), Value("\xEF\xBF\xBD(@example.com"));
  EXPECT_EQ(outcome.at(0, "attachment_location"), Value("User/\xEF\xBF\xBDphoto.jpeg"));
  EXPECT_EQ(outcome.at(1, "Text"), Value("ok \xF0\x9F\x98\x80"));
}

TEST_F(RecordFields, RepairTheTextOfAMessage) {
  addMessage({.text = "caf\xE9"});
  EXPECT_EQ(read().at(0, "Text"), Value("caf\xEF\xBF\xBD"));
}

TEST_F(RecordFields, HoldTheNumbersOfTheStore) {
  addMessage({.guid = "A", .date = 1, .isFromMe = 2, .hasAttachments = 0});
  addMessage({.guid = "B", .date = 2, .isFromMe = -1, .handle = store().handle("b@example.com"), .hasAttachments = -1});
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "is_from_me"), Value(2));
  EXPECT_EQ(outcome.at(0, "Name"), Value("Me"));
  EXPECT_EQ(outcome.at(1, "is_from_me"), Value(-1));
  EXPECT_EQ(outcome.at(1, "Name"), Value("b@example.com"));
  EXPECT_EQ(outcome.at(1, "cache_has_attachments"), Value(-1));
  EXPECT_FALSE(outcome.hasAttachments);
}

TEST_F(RecordFields, NameTheOwnerByTheFullName) {
  fake.messages.owner = "Ada Example";
  fake.mainBundle.strings["Me"] = "Ich";
  addMessage({.isFromMe = 1, .handle = store().handle("+15550100123")});
  EXPECT_EQ(read().at(0, "Name"), Value("Ada Example"));
  EXPECT_TRUE(read().at(0, "label").isNone());
}

TEST_F(RecordFields, NameAnOwnerWithoutOrWithAnEmptyFullNameInTheHostsWords) {
  fake.mainBundle.strings["Me"] = "Ich";
  addMessage({.isFromMe = 1});
  EXPECT_EQ(read().at(0, "Name"), Value("Ich"));
  fake.messages.owner = "";
  EXPECT_EQ(read().at(0, "Name"), Value("Ich"));
}

TEST_F(RecordFields, TellOfAttachmentsFromTheFirstMessageThatHasSome) {
  addMessage({.guid = "A", .date = 1, .hasAttachments = 0});
  EXPECT_FALSE(read().hasAttachments);
  addMessage({.guid = "B", .date = 2, .hasAttachments = 2});
  addMessage({.guid = "C", .date = 3, .hasAttachments = 0});
  const ReadOutcome outcome = read();
  EXPECT_TRUE(outcome.hasAttachments);
  EXPECT_THAT(outcome.all("cache_has_attachments"), ElementsAre("0", "2", "0"));
  EXPECT_FALSE(outcome.hasMultiMediaAttachments);
}

TEST_F(RecordFields, ShareNothingThatOneRecordsOwnerCouldChangeInAnother) {
  addMessage({.guid = "A", .date = 1, .isFromMe = 1});
  addMessage({.guid = "B", .date = 2, .isFromMe = 1});
  const ReadOutcome outcome = read();
  Record first = outcome.record(0);
  first.set("Name", "Changed");
  first.set("More", 1);
  EXPECT_EQ(outcome.at(1, "Name"), Value("Me"));
  EXPECT_EQ(outcome.record(1).find("More"), nullptr);
}

}  // namespace
}  // namespace chatsum::tests
