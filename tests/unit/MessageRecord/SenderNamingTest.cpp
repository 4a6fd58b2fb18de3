// Who sent a message: the raw handle, or the contact behind it with the label of the handle.

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using platform::fake::FakeEntity;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A card that counts how often its numbers are read.
class CountingCard final : public platform::ABRecord {
 public:
  mutable int reads = 0;
  [[nodiscard]] platform::ABRecordID recordID() const override { return 7; }
  [[nodiscard]] std::optional<std::vector<platform::ABLabelledValue>> values(
      platform::ABProperty property) const override {
    if (property != platform::ABProperty::kPhone) return std::nullopt;
    ++reads;
    return std::vector<platform::ABLabelledValue>{{"work", "(555) 010-0123"}};
  }
};

class SenderNaming : public ReadingTest {
 protected:
  static constexpr const char* kNumber = "+15550100123";

  SenderNaming() { conversation.entities = {std::make_shared<FakeEntity>("Yara Example", platform::IMHandle{})}; }

  /// Record 7 of the address book has the number, labelled "mobile".
  void addContact() {
    addressBook().value(7, "+1 (555) 010-0123");
    fake.addressBook.add(7, {{"mobile", "+1 (555) 010-0123"}});
  }
  /// So many messages from one handle.
  void receive(const std::string& handle, int count = 1) {
    const std::int64_t row = store().handle(handle);
    for (int i = 0; i < count; ++i) addMessage({.handle = row});
  }
};

TEST_F(SenderNaming, GivesTheHandleWithoutLabelWhenNoContactMatches) {
  receive(kNumber);
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "Name"), Value(kNumber));
  EXPECT_EQ(outcome.record(0).find("label"), nullptr);
}

TEST_F(SenderNaming, GivesTheOneRecipientsNameUntested) {
  addContact();
  // Nothing of this entity would pass a test.
  conversation.entities = {std::make_shared<FakeEntity>(
      "Yara Example", platform::IMHandle{.person = platform::IMPerson{99}, .cnContactIdentifier = "OTHER"},
      std::make_shared<platform::fake::FakeRecord>())};
  receive(kNumber);
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "Name"), Value("Yara Example"));
  EXPECT_EQ(outcome.at(0, "label"), Value("mobile"));
  EXPECT_EQ(fake.contacts.created, 0);
}

TEST_F(SenderNaming, GivesTheHandleWithItsLabelWhenThereIsNoRecipient) {
  addContact();
  conversation.entities = {};
  receive(kNumber);
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "Name"), Value(kNumber));
  EXPECT_EQ(outcome.at(0, "label"), Value("mobile"));
}

TEST_F(SenderNaming, KeepsAnEmptyNameOfTheRecipient) {
  addContact();
  conversation.entities = {std::make_shared<FakeEntity>("", platform::IMHandle{})};
  receive(kNumber);
  EXPECT_EQ(read().at(0, "Name"), Value(""));
}

TEST_F(SenderNaming, FindsAContactByItsEMailAddress) {
  addressBook().value(8, "o'brien@example.com");
  fake.addressBook.add(8, {}, {{{"home", "o'brien@example.com"}}});
  receive("o'brien@example.com");
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "Name"), Value("Yara Example"));
  EXPECT_EQ(outcome.at(0, "label"), Value("home"));
  EXPECT_THAT(errorLines(), IsEmpty());
}

TEST_F(SenderNaming, DoesNotNameOwnMessagesByTheirHandle) {
  addContact();
  addMessage({.isFromMe = 1, .handle = store().handle(kNumber)});
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "Name"), Value("Me"));
  EXPECT_EQ(outcome.record(0).find("label"), nullptr);
  EXPECT_EQ(opens(kAddressBookPath), 0);
}

TEST_F(SenderNaming, LabelsAContactThatTheAddressBookLostAsUnknown) {
  addressBook().value(7, kNumber);
  fake.addressBook.labels["unknown"] = "unbekannt";
  receive(kNumber);
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "Name"), Value("Yara Example"));
  EXPECT_EQ(outcome.at(0, "label"), Value("unbekannt"));
}

TEST_F(SenderNaming, LabelsEveryContactAsUnknownWithoutAnAddressBook) {
  addContact();
  fake.addressBook.exists = false;
  receive(kNumber);
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "Name"), Value("Yara Example"));
  EXPECT_EQ(outcome.at(0, "label"), Value("unknown"));
}

TEST_F(SenderNaming, ReadsACardForItsLabelOnce) {
  addressBook().value(7, kNumber);
  const auto card = std::make_shared<CountingCard>();
  fake.addressBook.persons[7] = card;
  receive(kNumber, 4);
  EXPECT_THAT(read().all("label"), Each("work"));
  EXPECT_EQ(card->reads, 1);
}

TEST_F(SenderNaming, ReadsACardOncePerHandle) {
  addressBook().value(7, kNumber);
  addressBook().value(7, "yara@example.com");
  const auto card = std::make_shared<CountingCard>();
  fake.addressBook.persons[7] = card;
  receive(kNumber, 2);
  receive("yara@example.com", 2);
  receive(kNumber, 1);
  EXPECT_THAT(read().all("label"), ElementsAre("work", "work", "unknown", "unknown", "work"));
  // The store has the number as two handles, but it is one text.
  EXPECT_EQ(card->reads, 2);
}

TEST_F(SenderNaming, NamesShortCodesThroughTheContactsService) {
  fake.contacts.answers["55512"] = {.error = std::nullopt, .contacts = {{"ID", {{"mobile", "55512"}}}}};
  addressBook().value(9, "55512");
  fake.addressBook.add(9, {{"alerts", "555-12"}});
  receive("55512", 3);
  const ReadOutcome outcome = read();
  EXPECT_THAT(outcome.all("Name"), Each("Yara Example"));
  EXPECT_THAT(outcome.all("label"), Each("alerts"));
  EXPECT_EQ(fake.contacts.created, 1);
}

TEST_F(SenderNaming, TakesRecordNumbersBelowOneForNobody) {
  addressBook().value(0, kNumber);
  addressBook().value(-4, "yara@example.com");
  receive(kNumber);
  receive("yara@example.com");
  const ReadOutcome outcome = read();
  EXPECT_THAT(outcome.all("Name"), ElementsAre(kNumber, "yara@example.com"));
  EXPECT_EQ(outcome.record(0).find("label"), nullptr);
  EXPECT_EQ(outcome.record(1).find("label"), nullptr);
}

}  // namespace
}  // namespace chatsum::tests
