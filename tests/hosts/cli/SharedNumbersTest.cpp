#include "hosts/device/sample/ContactWriter.h"
#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli::testing {
namespace {

/// Two people share a number, one has her own.
class SharedNumbers : public ProgramTest {
 protected:
  SharedNumbers() {
    device::ContactWriter contacts(addressBookPath());
    contacts.addContact({.first = "Ann", .last = "Lee", .phones = {{"_$!<Home>!$_", "+15550100142"}}});
    contacts.addContact({.first = "Bob", .last = "Ray", .phones = {{"_$!<Home>!$_", "+15550100142"}}});
    contacts.addContact({.first = "Cleo", .last = "Fox", .phones = {{"_$!<Mobile>!$_", "+15550100175"}}});
    contacts.addContact({.first = "Dan", .last = "Poe", .phones = {{"_$!<Mobile>!$_", "+15550100176"}}});
    EXPECT_FALSE(contacts.finish());
  }
};

TEST_F(SharedNumbers, AreToldOnceWithEverybodyWhoHasThem) {
  SmallStore small(storePath());
  const auto chat = small.chat("+15550100142");
  for (int i = 0; i < 3; ++i) small.message(chat, "hello");
  small.message(small.chat("+15550100175"), "hello");
  small.finish();
  const Outcome outcome = run({"report", "+15550100142"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(countOf(outcome.err,
                    "Several people have +15550100142 on their cards (Ann Lee, Bob Ray); +15550100142 is shown."),
            1U)
      << outcome.err;
  EXPECT_EQ(countOf(run({"messages", "+15550100142"}).err, "on their cards"), 1U);
  EXPECT_EQ(countOf(run({"report", "Cleo Fox"}).err, "on their cards"), 0U);
}

TEST_F(SharedNumbers, OfSomebodyWhoOnlyWritesInAGroupAreTold) {
  SmallStore small(storePath());
  const auto chat = small.chat("+15550100175");
  const auto handle = small.store.addHandle({.id = "+15550100142"});
  small.message({.text = "from both", .handle = handle, .chats = std::span(&chat, 1)});
  small.finish();
  EXPECT_EQ(countOf(run({"report", "Cleo Fox"}).err, "on their cards (Ann Lee, Bob Ray)"), 1U);
}

TEST_F(SharedNumbers, OfMessagesInNoConversationAreNamedByTheirCards) {
  SmallStore small(storePath());
  const auto chat = small.chat("+15550100199");
  small.message(chat, "in a chat");
  for (const char* number : {"+15550100175", "+15550100176", "+15550100142"}) {
    const auto handle = small.store.addHandle({.id = number});
    small.message({.text = number, .handle = handle});
  }
  small.finish();
  const Outcome outcome = run({"messages", "--orphaned"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("  Cleo Fox: +15550100175"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("  Dan Poe: +15550100176"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("  +15550100142: +15550100142"), std::string::npos) << outcome.out;
  EXPECT_EQ(countOf(outcome.err, "on their cards (Ann Lee, Bob Ray)"), 1U) << outcome.err;
}

}  // namespace
}  // namespace chatsum::cli::testing
