// Which member of a group is behind the contact of a handle, and what the read remembers of a handle meanwhile.

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using platform::IMHandle;
using platform::IMPerson;
using platform::fake::FakeEntity;
using platform::fake::FakeRecord;
using ::testing::Each;
using ::testing::ElementsAre;

class RecipientMatch : public ReadingTest {
 protected:
  static constexpr const char* kNumber = "+15550100123";

  /// The number belongs to record 7.
  RecipientMatch() {
    addressBook().value(7, kNumber);
    fake.addressBook.add(7, {{"mobile", kNumber}});
  }

  static platform::CKEntityRef byPerson(const std::string& name, std::optional<IMPerson> person) {
    return std::make_shared<FakeEntity>(name, IMHandle{.person = person, .cnContactIdentifier = {}});
  }
  static platform::CKEntityRef byRecord(const std::string& name, platform::ABRecordRef record, IMHandle handle = {}) {
    return std::make_shared<FakeEntity>(name, std::move(handle), std::move(record));
  }
  static platform::CKEntityRef byContact(const std::string& name, std::optional<std::string> identifier) {
    return std::make_shared<FakeEntity>(
        name, IMHandle{.person = {}, .cnContactIdentifier = std::optional(std::move(identifier))});
  }
  static platform::CKEntityRef mute(const std::string& name) { return std::make_shared<FakeEntity>(name, IMHandle{}); }

  /// The names of so many messages from the number.
  std::vector<std::string> names(std::vector<platform::CKEntityRef> entities, int messages = 1) {
    conversation.entities = std::move(entities);
    const std::int64_t handle = store().handle(kNumber);
    for (int i = 0; i < messages; ++i) addMessage({.handle = handle});
    const ReadOutcome outcome = read();
    labels_ = outcome.all("label");
    return outcome.all("Name");
  }

  std::vector<std::string> labels_;
};

TEST_F(RecipientMatch, IsByTheHandlesPerson) {
  EXPECT_THAT(names({byPerson("Alex", IMPerson{6}), byPerson("Blair", IMPerson{7}), byPerson("Casey", IMPerson{8})}),
              ElementsAre("Blair"));
  EXPECT_EQ(fake.contacts.created, 0);
}

TEST_F(RecipientMatch, EndsAtTheFirstMemberThatMatches) {
  EXPECT_THAT(names({byPerson("Alex", IMPerson{7}), byPerson("Blair", IMPerson{7})}), ElementsAre("Alex"));
}

TEST_F(RecipientMatch, IsByTheEntitysRecord) {
  const auto record = [](platform::ABRecordID id) { return std::make_shared<FakeRecord>(id, std::nullopt); };
  EXPECT_THAT(names({byRecord("Alex", record(6)), byRecord("Blair", record(7))}), ElementsAre("Blair"));
  EXPECT_EQ(fake.contacts.created, 0);
}

TEST_F(RecipientMatch, GoesOnToTheRecordWhenThePersonIsAnotherOrNil) {
  const auto record = std::make_shared<FakeRecord>(7, std::nullopt);
  EXPECT_THAT(names({mute("Alex"), byRecord("Blair", record, {.person = IMPerson{6}, .cnContactIdentifier = {}})}),
              ElementsAre("Blair"));
  store().run("DELETE FROM message; DELETE FROM chat_message_join");
  EXPECT_THAT(names({mute("Alex"),
                     byRecord("Blair", record, {.person = std::optional<IMPerson>(), .cnContactIdentifier = {}})}),
              ElementsAre("Blair"));
}

TEST_F(RecipientMatch, TestsNoContactOfAnEntityThatRespondsToItsRecord) {
  fake.contacts.identifiers[7] = "ABC";
  const IMHandle withContact{.person = IMPerson{6}, .cnContactIdentifier = "ABC"};
  EXPECT_THAT(names({byRecord("Alex", std::make_shared<FakeRecord>(8, std::nullopt), withContact),
                     byRecord("Blair", nullptr, withContact)}),
              ElementsAre(kNumber));
  EXPECT_EQ(fake.contacts.created, 0);
  EXPECT_THAT(labels_, ElementsAre("mobile"));
}

TEST_F(RecipientMatch, IsByTheContactIdentifier) {
  fake.contacts.identifiers[7] = "ABC";
  EXPECT_THAT(names({byContact("Alex", "abc"), byContact("Blair", "ABC")}), ElementsAre("Blair"));
  // Fetched once, kept for the rest of the members.
  EXPECT_EQ(fake.contacts.created, 1);
  EXPECT_THAT(fake.contacts.entityTypes, ElementsAre(0));
}

TEST_F(RecipientMatch, GoesOnToTheContactWhenThePersonIsAnother) {
  fake.contacts.identifiers[7] = "ABC";
  EXPECT_THAT(names({mute("Alex"), std::make_shared<FakeEntity>(
                                       "Blair", IMHandle{.person = IMPerson{6}, .cnContactIdentifier = "ABC"})}),
              ElementsAre("Blair"));
}

TEST_F(RecipientMatch, FetchesTheIdentifierAlsoForAContactThatIsNil) {
  fake.contacts.identifiers[7] = "ABC";
  EXPECT_THAT(names({byContact("Alex", std::nullopt), byContact("Blair", std::nullopt)}), ElementsAre(kNumber));
  EXPECT_EQ(fake.contacts.created, 1);
}

TEST_F(RecipientMatch, AsksAgainForEachMemberWhileThereIsNoIdentifier) {
  EXPECT_THAT(names({byContact("Alex", "ABC"), byContact("Blair", "DEF")}, 3), Each(kNumber));
  // Twice for the first message; from the second on the handle's entry is its record number.
  EXPECT_EQ(fake.contacts.created, 2);
  EXPECT_THAT(labels_, Each("mobile"));
}

TEST_F(RecipientMatch, FindsNobodyAmongMembersThatAnswerNothing) {
  EXPECT_THAT(names({mute("Alex"), mute("Blair")}, 2), Each(kNumber));
  EXPECT_EQ(fake.contacts.created, 0);
  EXPECT_THAT(labels_, Each("mobile"));
}

// The entry of the handle: none, its record number, the contact identifier in its place, the record number again.
TEST_F(RecipientMatch, LosesAContactFromTheThirdMessageOnBecauseTheEntryIsANumberAgain) {
  fake.contacts.identifiers[7] = "ABC";
  EXPECT_THAT(names({byContact("Alex", "DEF"), byContact("Blair", "ABC")}, 5),
              ElementsAre("Blair", "Blair", kNumber, kNumber, kNumber));
  EXPECT_THAT(labels_, Each("mobile"));
  EXPECT_EQ(fake.contacts.created, 1);
  EXPECT_EQ(opens(kAddressBookPath), 1);
}

TEST_F(RecipientMatch, TakesItsTurnsFromTheNewestMessageOnWhenThatComesFirst) {
  fake.contacts.identifiers[7] = "ABC";
  conversation.entities = {byContact("Alex", "DEF"), byContact("Blair", "ABC")};
  const std::int64_t handle = store().handle(kNumber);
  for (const std::int64_t date : {1, 2, 3, 4}) addMessage({.date = 600'000'000'000'000'000 + date, .handle = handle});
  EXPECT_THAT(read(kOldest).all("Name"), ElementsAre("Blair", "Blair", kNumber, kNumber));
  EXPECT_THAT(read(kNewest).all("Name"), ElementsAre("Blair", "Blair", kNumber, kNumber));
}

TEST_F(RecipientMatch, TakesItsTurnsByDateWhereRowsAreNotInDateOrder) {
  fake.contacts.identifiers[7] = "ABC";
  conversation.entities = {byContact("Alex", "DEF"), byContact("Blair", "ABC")};
  const std::int64_t handle = store().handle(kNumber);
  for (const std::int64_t date : {4, 1, 3, 2}) addMessage({.date = 600'000'000'000'000'000 + date, .handle = handle});
  EXPECT_THAT(read(kOldest).all("Name"), ElementsAre("Blair", "Blair", kNumber, kNumber));
}

TEST_F(RecipientMatch, KeepsOtherMembersApartMeanwhile) {
  fake.contacts.identifiers[7] = "ABC";
  fake.contacts.identifiers[8] = "DEF";
  addressBook().value(8, "+15550100188");
  conversation.entities = {byContact("Alex", "DEF"), byContact("Blair", "ABC")};
  const std::int64_t blair = store().handle(kNumber), alex = store().handle("+15550100188");
  for (const std::int64_t handle : {blair, alex, blair, alex, blair, alex}) addMessage({.handle = handle});
  EXPECT_THAT(read().all("Name"), ElementsAre("Blair", "Alex", "Blair", "Alex", kNumber, "+15550100188"));
}

TEST_F(RecipientMatch, TakesTheLeadingDigitsOfAnIdentifierForTheRecordNumber) {
  fake.contacts.identifiers[7] = "12-ABC";
  fake.addressBook.add(12, {{"office", kNumber}});
  EXPECT_THAT(names({byContact("Alex", "DEF"), byContact("Blair", "12-ABC")}, 3), Each("Blair"));
  EXPECT_THAT(labels_, ElementsAre("mobile", "office", "office"));
  EXPECT_EQ(fake.contacts.created, 1);
}

TEST_F(RecipientMatch, LooksAHandleUpAgainWhenTheDigitsOfItsIdentifierAreZero) {
  fake.contacts.identifiers[7] = "00-ABC";
  EXPECT_THAT(names({byContact("Alex", "DEF"), byContact("Blair", "00-ABC")}, 4),
              ElementsAre("Blair", "Blair", kNumber, kNumber));
}

TEST_F(RecipientMatch, NeedsNoIdentifierWhereAnEarlierMemberMatches) {
  fake.contacts.identifiers[7] = "ABC";
  EXPECT_THAT(names({byPerson("Alex", IMPerson{7}), byContact("Blair", "ABC")}, 4), Each("Alex"));
  EXPECT_EQ(fake.contacts.created, 0);
}

TEST_F(RecipientMatch, StartsAnewInTheNextRead) {
  fake.contacts.identifiers[7] = "ABC";
  EXPECT_THAT(names({byContact("Alex", "DEF"), byContact("Blair", "ABC")}, 3), ElementsAre("Blair", "Blair", kNumber));
  EXPECT_THAT(read().all("Name"), ElementsAre("Blair", "Blair", kNumber));
  EXPECT_EQ(fake.contacts.created, 2);
}

}  // namespace
}  // namespace chatsum::tests
