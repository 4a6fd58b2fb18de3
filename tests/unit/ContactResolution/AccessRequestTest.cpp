// Contacts store and address book are handed out once the user answered, whatever the answer, on whatever thread.

#include <future>
#include <thread>

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using platform::fake::AnswerTime;
using ::testing::ElementsAre;

class AccessRequest : public ReadingTest {
 protected:
  /// Lets the test answer the one request that will wait.
  static void answerOne(platform::fake::FakeAccess& access) {
    while (access.waiting() == 0) std::this_thread::yield();
    EXPECT_EQ(access.answerAll(), 1U);
  }
};

TEST_F(AccessRequest, GivesANewStoreAndBookEachTime) {
  const auto store = ChatsumUtils::contactStore();
  const auto book = ChatsumUtils::addressBook();
  EXPECT_NE(store, nullptr);
  EXPECT_NE(book, nullptr);
  EXPECT_NE(ChatsumUtils::contactStore(), store);
  EXPECT_NE(ChatsumUtils::addressBook(), book);
  EXPECT_EQ(fake.contacts.access.requests(), 2);
  EXPECT_EQ(fake.addressBook.access.requests(), 2);
  EXPECT_THAT(fake.contacts.entityTypes, ElementsAre(0, 0));
}

TEST_F(AccessRequest, WaitsForAnAnswerFromAnotherThread) {
  fake.contacts.access.time = AnswerTime::kOnOtherThread;
  fake.addressBook.access.time = AnswerTime::kOnOtherThread;
  for (int i = 0; i < 50; ++i) {
    EXPECT_NE(ChatsumUtils::contactStore(), nullptr);
    EXPECT_NE(ChatsumUtils::addressBook(), nullptr);
  }
}

TEST_F(AccessRequest, ReturnsTheContactsStoreOnlyAfterTheAnswer) {
  fake.contacts.access.time = AnswerTime::kByHand;
  auto store = std::async(std::launch::async, [] { return ChatsumUtils::contactStore(); });
  while (fake.contacts.access.waiting() == 0) std::this_thread::yield();
  EXPECT_EQ(store.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  answerOne(fake.contacts.access);
  EXPECT_NE(store.get(), nullptr);
}

TEST_F(AccessRequest, HoldsAReadUntilTheAnswer) {
  addMessage({.guid = "A"});
  fake.addressBook.access.time = AnswerTime::kByHand;
  auto outcome = std::async(std::launch::async, [this] { return read(); });
  while (fake.addressBook.access.waiting() == 0) std::this_thread::yield();
  EXPECT_EQ(outcome.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  answerOne(fake.addressBook.access);
  EXPECT_THAT(outcome.get().all("guid"), ElementsAre("A"));
}

TEST_F(AccessRequest, GivesStoreAndBookAlsoWhenItIsDenied) {
  fake.contacts.access.granted = false;
  fake.addressBook.access.granted = false;
  EXPECT_NE(ChatsumUtils::contactStore(), nullptr);
  EXPECT_NE(ChatsumUtils::addressBook(), nullptr);
  addMessage({.guid = "A"});
  EXPECT_THAT(read().all("guid"), ElementsAre("A"));
}

TEST_F(AccessRequest, GivesNoBookWhereThereIsNone) {
  fake.addressBook.exists = false;
  EXPECT_EQ(ChatsumUtils::addressBook(), nullptr);
  EXPECT_EQ(fake.addressBook.access.requests(), 1);
}

}  // namespace
}  // namespace chatsum::tests
