// A handle is looked up again for every row while nobody is found, and no more once somebody was.

#include <functional>

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using platform::fake::FakeEntity;
using ::testing::Each;
using ::testing::ElementsAre;

constexpr const char* kFramework = "/System/Library/Frameworks/AddressBook.framework/AddressBook";
constexpr const char* kFindSymbol = "ABCFindPersonMatchingPhoneNumber";

/// A conversation that does something when it is asked for its members.
class TalkingConversation final : public platform::CKConversation {
 public:
  std::function<void()> onRecipients;
  [[nodiscard]] std::vector<std::string> chatGuids() const override { return {"iMessage;-;+15550100123"}; }
  [[nodiscard]] std::vector<platform::CKEntityRef> recipients() const override {
    onRecipients();
    return {std::make_shared<FakeEntity>("Yara Example", platform::IMHandle{})};
  }
};

class RepeatedLookUp : public ReadingTest {
 protected:
  void receive(const std::vector<std::int64_t>& handles) {
    for (const std::int64_t handle : handles) addMessage({.handle = handle});
  }
};

TEST_F(RepeatedLookUp, OpensNoDatabaseForAMissInAFullIndex) {
  addressBook().value(7, "+15550100177");
  const std::int64_t a = store().handle("+15550100123"), b = store().handle("b@example.com");
  receive({a, b, a, b, a, a, b});
  read();
  EXPECT_EQ(opens(kAddressBookPath), 1);
}

// An empty index is read again at every look-up, so the openings count the look-ups.
TEST_F(RepeatedLookUp, IsMadeForEveryRowWhileNobodyIsFound) {
  addressBook();
  const std::int64_t a = store().handle("+15550100123"), b = store().handle("b@example.com");
  receive({a, b, a, b, a, a, b});
  addMessage({.isFromMe = 1, .handle = a});
  read();
  EXPECT_EQ(opens(kAddressBookPath), 7);
}

TEST_F(RepeatedLookUp, IsMadeForEveryRowWithoutAnAddressBook) {
  const std::int64_t a = store().handle("+15550100123");
  receive({a, a, a});
  read();
  EXPECT_EQ(opens(kAddressBookPath), 3);
}

TEST_F(RepeatedLookUp, IsMadeForEveryRowFromAShortCodeThatTheContactsServiceDoesNotKnow) {
  const std::int64_t code = store().handle("55512");
  receive({code, code, code});
  EXPECT_THAT(read().all("Name"), Each("55512"));
  EXPECT_EQ(fake.contacts.created, 3);
  EXPECT_EQ(fake.contacts.access.requests(), 3);
}

TEST_F(RepeatedLookUp, FindsSomebodyFromTheRowOnThatComesAfterTheCardWasWritten) {
  fake.device.version = "10.3";
  int calls = 0;
  fake.runtime.libraries[kFramework][kFindSymbol] = [&](const platform::ABAddressBookRef&, std::string_view, int,
                                                        int) -> platform::ABRecordRef {
    return ++calls < 3 ? nullptr : std::make_shared<platform::fake::FakeRecord>(7, std::nullopt);
  };
  conversation.entities = {std::make_shared<FakeEntity>("Yara Example", platform::IMHandle{})};
  const std::int64_t a = store().handle("+15550100123");
  receive({a, a, a, a, a});
  EXPECT_THAT(read().all("Name"),
              ElementsAre("+15550100123", "+15550100123", "Yara Example", "Yara Example", "Yara Example"));
  EXPECT_EQ(calls, 3);
}

TEST_F(RepeatedLookUp, IsNotMadeForAShortCodeThatTheContactsServiceKnows) {
  fake.contacts.answers["55512"] = {.error = std::nullopt, .contacts = {{"ID", {}}}};
  fake.contacts.persons["ID"] = std::make_shared<platform::fake::FakeRecord>(9, std::nullopt);
  conversation.entities = {std::make_shared<FakeEntity>("Alerts", platform::IMHandle{})};
  const std::int64_t code = store().handle("55512");
  receive({code, code, code});
  EXPECT_THAT(read().all("Name"), Each("Alerts"));
  EXPECT_EQ(fake.contacts.created, 1);
}

TEST_F(RepeatedLookUp, KnowsAHandleUnderSeveralServicesByItsText) {
  fake.contacts.answers["55512"] = {.error = std::nullopt, .contacts = {{"ID", {}}}};
  fake.contacts.persons["ID"] = std::make_shared<platform::fake::FakeRecord>(9, std::nullopt);
  const std::int64_t sms = store().handle("55512"), iMessage = store().handle("55512");
  receive({sms, iMessage, sms});
  read();
  EXPECT_EQ(fake.contacts.created, 1);
}

TEST_F(RepeatedLookUp, IsMadeWhenAnotherProcessChangedTheAddressBookMeanwhile) {
  ChatsumUtils::load();
  addressBook().value(7, "+15550100177");
  const std::int64_t later = store().handle("+15550100123"), known = store().handle("+15550100177");
  receive({later, known, later, later});
  TalkingConversation talking;
  talking.onRecipients = [&] {
    addressBook().value(8, "+15550100123");
    fake.darwinNotifications.post("__ABDataBaseChangedByOtherProcessNotification");
    fake.dispatch.runGlobal();
  };
  EXPECT_THAT(read(talking, kOldest).all("Name"),
              ElementsAre("+15550100123", "Yara Example", "Yara Example", "Yara Example"));
}

TEST_F(RepeatedLookUp, IsMadeForEveryRowOnSystemsBefore11Too) {
  fake.device.version = "10.3";
  int calls = 0;
  fake.runtime.libraries[kFramework][kFindSymbol] = [&](const platform::ABAddressBookRef&, std::string_view number, int,
                                                        int) -> platform::ABRecordRef {
    ++calls;
    if (number == "+15550100177") return std::make_shared<platform::fake::FakeRecord>(7, std::nullopt);
    return nullptr;
  };
  const std::int64_t missed = store().handle("+15550100123"), found = store().handle("+15550100177");
  receive({missed, found, missed, found, missed, found});
  const ReadOutcome outcome = read();
  EXPECT_EQ(calls, 3 + 1);
  EXPECT_EQ(fake.addressBook.created, 1 + 4);  // one for the read, one for each look-up
  EXPECT_EQ(outcome.record(0).find("label"), nullptr);
  EXPECT_EQ(outcome.at(1, "label"), Value("unknown"));
}

}  // namespace
}  // namespace chatsum::tests
