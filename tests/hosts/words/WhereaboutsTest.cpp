// Messages that were deleted or stand in no chat, and the rows that Messages writes by itself.

#include <gtest/gtest.h>

#include "hosts/device/body/TypedStreamWriter.h"
#include "hosts/device/words/Orphans.h"
#include "tests/hosts/words/WordsFixture.h"

namespace chatsum::device {
namespace {

using testing::kFriday;
using testing::Texts;
using testing::WordsFixture;

std::string hex(const std::string& bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string digits;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    digits += {kDigits[byte >> 4U], kDigits[byte & 0x0FU]};
  }
  return digits;
}

/// A message that was deleted lately from Maya's conversation.
void addDeleted(WordsFixture& device, std::string_view text) {
  device.isAdrift = true;
  const auto row = device.add({.text = text});
  device.isAdrift = false;
  device.execute("INSERT INTO chat_recoverable_message_join(chat_id, message_id, delete_date) VALUES (" +
                 std::to_string(device.chat) + ", " + std::to_string(row) + ", " + std::to_string(kFriday) + ")");
}

TEST(DeletedMessages, AreTheOnesThatWereAskedFor) {
  WordsFixture device;
  device.add({.text = "Kept"});
  addDeleted(device, "Gone");
  device.add(
      {.text = "Loved “Gone”", .fromMe = true, .associatedMessageGuid = "p:0/M2", .associatedMessageType = 2000});
  const Reading without = device.read();
  EXPECT_EQ(WordsFixture::textsOf(without), (Texts{"Kept", "Loved “Gone”"}));
  EXPECT_EQ(without.balance.sentence(), "Rows: 2 in the store = 2 written + 0 left out.");
  EXPECT_EQ(without.notes, Texts{"1 message was deleted lately and is not shown; --deleted shows it."});
  EXPECT_EQ(device.read("maya", {.namesOptions = false}).notes,
            Texts{"1 message was deleted lately and is not shown."});
  const Reading with = device.read("maya", {.deleted = true});
  EXPECT_EQ(WordsFixture::textsOf(with), (Texts{"Kept", "Gone [loved by Me] [deleted 2024-05-03 18:05]"}));
  EXPECT_TRUE(with.notes.empty());
  EXPECT_EQ(with.balance.inStore, 3U);
}

TEST(DeletedMessages, OfOtherConversationsStayThere) {
  WordsFixture device;
  device.addToGroup({.text = "Group"});
  addDeleted(device, "Gone");
  EXPECT_EQ(device.texts("group", {.deleted = true}), Texts{"Group"});
}

TEST(DeletedMessages, LeaveTheirPartsBehind) {
  WordsFixture device;
  const auto row = device.add({.text = "Kept"});
  device.execute(
      "INSERT INTO recoverable_message_part(chat_id, message_id, part_index, delete_date, part_text) VALUES (" +
      std::to_string(device.chat) + ", " + std::to_string(row) + ", 1, " + std::to_string(kFriday) + ", x'" +
      hex(encodeBody("the other half")) + "')");
  EXPECT_EQ(device.texts(), Texts{"Kept"});
  EXPECT_EQ(device.texts("maya", {.deleted = true}), Texts{"Kept [deleted part 2024-05-03 18:05: “the other half”]"});
}

TEST(DeletedMessages, OfOldStoresAreNone) {
  WordsFixture device(Generation::ios14);
  device.add({.text = "Kept"});
  EXPECT_EQ(device.texts("maya", {.deleted = true, .orphaned = true}), Texts{"Kept"});
}

TEST(DeletedMessages, ThatAreScheduledAreNotDeleted) {
  WordsFixture device;
  device.add({.text = "Tomorrow", .fromMe = true, .scheduleType = 2, .scheduleState = 1});
  EXPECT_EQ(device.texts("maya", {.deleted = true}), Texts{"Tomorrow [scheduled]"});
}

TEST(OrphanedMessages, AreTheOnesThatWereAskedFor) {
  WordsFixture device;
  device.add({.text = "Kept"});
  device.isAdrift = true;
  device.add({.text = "Maya's"});
  device.add({.text = "Daniel's", .handle = device.daniel});
  device.add({.text = "The group's", .roomName = "chat0,chat1"});
  device.add({.text = "Nobody's", .fromMe = true});
  const Reading without = device.read();
  EXPECT_EQ(WordsFixture::textsOf(without), Texts{"Kept"});
  EXPECT_EQ(without.notes, Texts{"1 message of these people stands in no conversation; --orphaned shows it."});
  EXPECT_EQ(device.read("maya", {.namesOptions = false}).notes,
            Texts{"1 message of these people stands in no conversation and is not shown."});
  const Reading with = device.read("maya", {.orphaned = true});
  EXPECT_EQ(WordsFixture::textsOf(with), (Texts{"Kept", "Maya's [in no conversation]"}));
  EXPECT_EQ(with.balance.inStore, 2U);
  EXPECT_TRUE(with.notes.empty());
  EXPECT_EQ(device.texts("group", {.orphaned = true}), Texts{"The group's [in no conversation]"});
  EXPECT_EQ(device.texts("maya", {.deleted = true, .orphaned = true}).size(), 2U);
}

TEST(OrphanedMessages, CanBeReadAltogether) {
  WordsFixture device;
  device.add({.text = "Kept"});
  device.isAdrift = true;
  const std::int64_t file = device.addFile("boat.jpeg");
  device.add({.text = "Maya's \uFFFC", .attachments = std::span(&file, 1)});
  device.add({.text = "Daniel's", .handle = device.daniel});
  device.add({.text = "Mine", .fromMe = true});
  const auto session = device.open();
  const Reading reading = WordsFixture::readOf(*session, conversationOfOrphans());
  EXPECT_EQ(WordsFixture::textsOf(reading),
            (Texts{"Maya's [boat.jpeg] [in no conversation]", "User/Library/SMS/Attachments/ab/12/A1/boat.jpeg",
                   "Daniel's [in no conversation]", "Mine [in no conversation]"}));
}

TEST(OrphanedMessages, OfAMissingChatAreOrphans) {
  WordsFixture device;
  const std::int64_t nowhere = 999;
  device.add({.text = "Left over", .chats = std::span(&nowhere, 1)});
  EXPECT_EQ(device.texts("maya", {.orphaned = true}), Texts{"Left over [in no conversation]"});
}

TEST(SystemRows, AreToldInWords) {
  WordsFixture device;
  const auto event = [&](MessageRow row) { device.addToGroup(row); };
  event({.itemType = 1, .groupActionType = 0, .otherHandle = device.daniel});
  event({.itemType = 1, .groupActionType = 1, .otherHandle = device.daniel});
  event({.itemType = 1, .groupActionType = 0, .otherHandle = device.maya});
  event({.itemType = 1, .groupActionType = 0, .otherHandle = -1});
  event({.itemType = 2, .groupTitle = "Sunday\nHikers"});
  event({.itemType = 2});
  event({.itemType = 3});
  event({.itemType = 3, .groupActionType = 1});
  event({.itemType = 3, .groupActionType = 2});
  event({.itemType = 3, .groupActionType = 4});
  event({.itemType = 3, .groupActionType = 6});
  event({.itemType = 4});
  event({.itemType = 4, .shareStatus = 1});
  event({.itemType = 5});
  event({.itemType = 6});
  event({.itemType = 3, .groupActionType = 9});
  event({.itemType = 77, .groupActionType = 8});
  const Reading reading = device.read("group");
  EXPECT_EQ(WordsFixture::textsOf(reading),
            (Texts{"[added Daniel Okafor]", "[removed Daniel Okafor]", "[has a new number]", "[added somebody]",
                   "[named the group “Sunday Hikers”]", "[removed the group's name]", "[left the group]",
                   "[changed the group photo]", "[removed the group photo]", "[changed the background]",
                   "[removed the background]", "[started sharing a location]", "[stopped sharing a location]",
                   "[kept an audio message]", "[SharePlay or FaceTime]", "[system event 3/9]", "[system event 77/8]"}));
  EXPECT_EQ(reading.balance.sentence(), "Rows: 17 in the store = 17 written + 0 left out.");
}

TEST(SystemRows, OfTheOwnerSaySo) {
  WordsFixture device;
  device.addToGroup({.fromMe = true, .itemType = 3});
  const auto row = device.addToGroup({.itemType = 3});
  device.execute("UPDATE message SET handle_id = 0 WHERE ROWID = " + std::to_string(row));
  const Reading reading = device.read("group");
  EXPECT_EQ(WordsFixture::textsOf(reading), (Texts{"[left the group]", "[left the group]"}));
  for (const Value& record : reading.records) EXPECT_EQ((*record.asRecord())["Name"].description(), "Me");
}

TEST(SystemRows, TellOfSomebodyWhoLeftAndCameBack) {
  WordsFixture device;
  device.addToGroup({.text = "Bye", .handle = device.stranger});
  device.addToGroup({.handle = device.stranger, .itemType = 3});
  device.addToGroup({.itemType = 1, .groupActionType = 0, .otherHandle = device.stranger});
  device.addToGroup({.text = "Back", .handle = device.stranger});
  EXPECT_EQ(device.texts("group"), (Texts{"Bye", "[left the group]", "[added +15550100199]", "Back"}));
}

}  // namespace
}  // namespace chatsum::device
