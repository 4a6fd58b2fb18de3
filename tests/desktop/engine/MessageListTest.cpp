#include "hosts/desktop/engine/MessageList.h"

#include <gtest/gtest.h>

#include "tests/desktop/engine/RowsFixture.h"

namespace chatsum::desktop {
namespace {

using Rows = std::vector<std::uint32_t>;

/// A message by that way; an empty word stands for a key that the record has not.
Record by(const std::string& address, const std::string& service, const std::string& name = "Maya Lindqvist") {
  Record record = testing::message("words");
  record.set("Name", name);
  if (!address.empty()) record.set("Address", address);
  if (!service.empty()) record.set("Service", service);
  return record;
}

Rows originsIn(std::vector<Record> records, const Rows& events = {}, bool isGroup = false, bool isMerged = true) {
  device::Conversation conversation;
  conversation.chats = isMerged ? std::vector<std::int64_t>{1, 2} : std::vector<std::int64_t>{1};
  conversation.isGroup = isGroup;
  return findOrigins(conversation, testing::arrayOf(std::move(records)), events);
}

TEST(Origins, AreTheRowsWhereAddressOrServiceChange) {
  EXPECT_EQ(originsIn({by("+15550100142", "iMessage"), by("+15550100142", "iMessage"), by("+15550100142", "SMS"),
                       by("maya@example.com", "SMS"), by("maya@example.com", "SMS", "Me"), by("+15550100142", "SMS")}),
            (Rows{0, 2, 3, 5}));
}

TEST(Origins, AreNoneInAConversationOfOneChat) {
  EXPECT_EQ(originsIn({by("+15550100142", "iMessage"), by("+15550100142", "SMS")}, {}, false, false), Rows());
}

TEST(Origins, AreNotChangedByRowsThatDoNotKnowTheirs) {
  EXPECT_EQ(originsIn({by("+15550100142", "SMS"), by("", ""), by("", "SMS"), by("+15550100142", "SMS")}), Rows{0});
  EXPECT_EQ(originsIn({by("", ""), by("", "")}), Rows());
}

TEST(Origins, AreNotThoseOfEvents) {
  EXPECT_EQ(originsIn({by("+15550100142", "SMS"), by("+15550100175", "iMessage"), by("+15550100142", "SMS")}, {1}),
            Rows{0});
}

TEST(Origins, OfAGroupAreThoseOfEachSender) {
  EXPECT_EQ(originsIn({by("+15550100142", "iMessage", "Maya"), by("+15550100175", "iMessage", "Daniel"),
                       by("+15550100142", "iMessage", "Maya"), by("maya@example.com", "iMessage", "Maya"),
                       by("+15550100175", "SMS", "Daniel")},
                      {}, true),
            (Rows{0, 1, 3, 4}));
}

}  // namespace
}  // namespace chatsum::desktop
