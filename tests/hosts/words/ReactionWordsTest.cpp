#include <gtest/gtest.h>

#include "hosts/device/words/Reactions.h"
#include "tests/hosts/words/WordsFixture.h"

namespace chatsum::device {
namespace {

using testing::kFriday;
using testing::kSecond;
using testing::Texts;
using testing::WordsFixture;

MessageRow reaction(int type, std::string_view target, std::string_view text = "Loved “Hello”") {
  return {.text = text, .associatedMessageGuid = target, .associatedMessageType = type};
}

TEST(ReactionWords, StandWithTheirMessageAndNotByThemselves) {
  WordsFixture device;
  device.add({.text = "Hello", .fromMe = true});
  device.add(reaction(2000, "p:0/M1"));
  device.add({.text = "Bye"});
  const Reading reading = device.read();
  EXPECT_EQ(WordsFixture::textsOf(reading), (Texts{"Hello [loved by Maya Lindqvist]", "Bye"}));
  EXPECT_EQ(reading.balance.sentence(),
            "Rows: 3 in the store = 2 written + 1 left out (1 reaction shown with its message).");
}

TEST(ReactionWords, NameEveryKind) {
  const std::vector<std::pair<int, std::string>> kinds = {
      {2000, "loved"},      {2001, "liked"},   {2002, "disliked"}, {2003, "laughed at"}, {2004, "emphasised"},
      {2005, "questioned"}, {2007, "sticker"}, {1000, "sticker"},  {2044, "reaction"}};
  for (const auto& [type, word] : kinds) {
    WordsFixture device;
    device.add({.text = "Hello", .fromMe = true});
    device.add(reaction(type, "M1"));
    EXPECT_EQ(device.text(), "Hello [" + word + " by Maya Lindqvist]") << type;
  }
  WordsFixture device;
  device.add({.text = "Hello", .fromMe = true});
  MessageRow emoji = reaction(2006, "bp:M1");
  emoji.reactionEmoji = "👩‍👩‍👧‍👦";
  device.add(emoji);
  EXPECT_EQ(device.text(), "Hello [👩‍👩‍👧‍👦 by Maya Lindqvist]");
}

TEST(ReactionWords, OnlyTheLastOfAPersonCounts) {
  WordsFixture device;
  device.addToGroup({.text = "Hello", .fromMe = true});
  device.addToGroup(reaction(2000, "p:0/M1"));
  device.addToGroup(reaction(2001, "p:0/M1"));
  MessageRow daniels = reaction(2003, "p:0/M1");
  daniels.handle = device.daniel;
  device.addToGroup(daniels);
  MessageRow mine = reaction(2001, "p:0/M1");
  mine.fromMe = true;
  device.addToGroup(mine);
  const Reading reading = device.read("group");
  EXPECT_EQ(WordsFixture::textsOf(reading),
            (Texts{"Hello [liked by Maya Lindqvist and Me; laughed at by Daniel Okafor]"}));
  EXPECT_EQ(reading.balance.reactionsShown, 3U);
  EXPECT_EQ(reading.balance.reactionsTakenBack, 1U);
}

TEST(ReactionWords, AreTakenBack) {
  WordsFixture device;
  device.add({.text = "Hello", .fromMe = true});
  device.add(reaction(2000, "p:0/M1"));
  device.add(reaction(3000, "p:0/M1", "Removed a heart from “Hello”"));
  const Reading reading = device.read();
  EXPECT_EQ(WordsFixture::textsOf(reading), Texts{"Hello"});
  EXPECT_EQ(reading.balance.sentence(),
            "Rows: 3 in the store = 1 written + 2 left out (2 reactions taken back or changed).");
}

TEST(ReactionWords, GoByTheirDatesAndNotByTheirRows) {
  WordsFixture device;
  device.add({.text = "Hello", .fromMe = true});
  MessageRow later = reaction(2001, "p:0/M1"), earlier = reaction(3001, "p:0/M1");
  later.date = kFriday + 900 * kSecond;
  earlier.date = kFriday + 800 * kSecond;
  device.add(later);
  device.add(earlier);
  EXPECT_EQ(device.text(), "Hello [liked by Maya Lindqvist]");
}

TEST(ReactionWords, OfOnePersonWithSeveralHandlesAreOnePersons) {
  WordsFixture device;
  const auto mail = device.writer->addHandle({.id = "maya@example.com"});
  device.add({.text = "Hello", .fromMe = true});
  device.add(reaction(2000, "p:0/M1"));
  MessageRow byMail = reaction(2001, "p:0/M1");
  byMail.handle = mail;
  device.add(byMail);
  EXPECT_EQ(device.text(), "Hello [liked by Maya Lindqvist]");
}

TEST(ReactionWords, KeepTheirOwnSentenceWhenTheMessageIsMissing) {
  WordsFixture device;
  device.add(reaction(2000, "p:0/nowhere", "Loved “Gone”"));
  MessageRow silent = reaction(2006, "p:0/nowhere");
  silent.text = {};
  silent.reactionEmoji = "🎉";
  device.add(silent);
  silent.associatedMessageType = 3003;
  device.add(silent);
  EXPECT_EQ(device.texts(), (Texts{"Loved “Gone”", "[🎉 on a message that is not there]",
                                   "[took back: laughed at a message that is not there]"}));
}

TEST(ReactionWords, KeepTheirOwnSentenceWhenTheMessageIsInAnotherConversation) {
  WordsFixture device;
  device.addToGroup({.text = "In the group", .fromMe = true});
  device.add(reaction(2000, "p:0/M1", "Loved “In the group”"));
  EXPECT_EQ(device.texts(), Texts{"Loved “In the group”"});
  EXPECT_EQ(device.texts("group"), Texts{"In the group"});
}

TEST(ReactionWords, ToAReactionStandAlone) {
  WordsFixture device;
  device.add({.text = "Hello", .fromMe = true});
  device.add(reaction(2000, "p:0/M1"));
  device.add(reaction(2001, "p:0/M2", "Liked a heart"));
  device.add(reaction(2001, "p:0/M4", "Liked itself"));
  EXPECT_EQ(device.texts(), (Texts{"Hello [loved by Maya Lindqvist]", "Liked a heart", "Liked itself"}));
}

TEST(ReactionWords, NameThePieceOfAMessageWithSeveral) {
  WordsFixture device;
  const std::int64_t files[] = {device.addFile("sunset.png"), device.addFile("boat.jpeg")};
  device.add({.text = "\uFFFC\uFFFCLook", .fromMe = true, .attachments = files});
  device.add(reaction(2000, "p:1/M1"));
  device.add(reaction(2001, "p:2/M1"));
  EXPECT_EQ(device.texts().front(),
            "[sunset.png] [boat.jpeg] Look [boat.jpeg loved by Maya Lindqvist; liked by Maya Lindqvist]");
}

TEST(ReactionWords, GiveAPictureARowOfWords) {
  WordsFixture device;
  const std::int64_t file = device.addFile("boat.jpeg");
  device.add({.text = "\uFFFC", .fromMe = true, .attachments = std::span(&file, 1)});
  device.add(reaction(2000, "p:0/M1"));
  const Reading reading = device.read();
  EXPECT_EQ(WordsFixture::textsOf(reading),
            (Texts{"[boat.jpeg] [loved by Maya Lindqvist]", "User/Library/SMS/Attachments/ab/12/A1/boat.jpeg"}));
  EXPECT_EQ(reading.balance.sentence(),
            "Rows: 2 in the store + 1 for words beside files = 2 written + 1 left out (1 reaction shown with its "
            "message).");
}

TEST(ReactionWords, WithAStickerFileAreOneRow) {
  WordsFixture device;
  const std::int64_t stickers[] = {
      device.writer->addAttachment({.guid = "S1", .filename = "~/s.heic", .sticker = true}),
      device.writer->addAttachment({.guid = "S2", .filename = "~/t.heic", .sticker = true})};
  device.add({.text = "Hello", .fromMe = true});
  MessageRow row = reaction(1000, "p:0/M1", "\uFFFC");
  row.attachments = stickers;
  device.add(row);
  const Reading reading = device.read();
  EXPECT_EQ(WordsFixture::textsOf(reading), Texts{"Hello [sticker by Maya Lindqvist]"});
  EXPECT_EQ(reading.balance.inStore, 3U);
  EXPECT_EQ(reading.balance.reactionsShown, 2U);
}

TEST(ReactionWords, OfStoresBeforeThemAreNone) {
  for (const Generation generation : {Generation::ios6, Generation::ios9}) {
    WordsFixture device(generation);
    device.add({.text = "Hello", .fromMe = true});
    EXPECT_EQ(device.text(), "Hello");
  }
}

TEST(ReactionWords, InStoresWithSecondsAreOrderedByThem) {
  WordsFixture device(Generation::ios10);
  device.add({.text = "Hello", .fromMe = true});
  device.add(reaction(2000, "p:0/M1"));
  device.add(reaction(2001, "p:0/M1"));
  EXPECT_EQ(device.text(), "Hello [liked by Maya Lindqvist]");
}

TEST(ReactionWords, ToHundredThousandStayShort) {
  WordsFixture device;
  device.addToGroup({.text = "Hello", .fromMe = true});
  device.execute(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000) INSERT INTO handle(ROWID, id, "
      "service) SELECT 1000 + i, '+1555' || i, 'x' FROM n;"
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100000) INSERT INTO message(ROWID, "
      "guid, "
      "text, handle_id, date, associated_message_guid, associated_message_type, associated_message_emoji) SELECT 1000 "
      "+ "
      "i, 'R' || i, 'Loved', 1000 + i, 736452400000000000 + i, 'p:0/M1', 2000 + i % 8, 'e' || i FROM n;"
      "INSERT INTO chat_message_join(chat_id, message_id) SELECT 2, ROWID FROM message WHERE ROWID > 1000");
  const Reading reading = device.read("group");
  ASSERT_EQ(reading.records.size(), 1U);
  EXPECT_EQ(reading.balance.reactionsShown, 100'000U);
  const std::string text = WordsFixture::textsOf(reading).front();
  EXPECT_LT(text.size(), 5'000U);
  EXPECT_NE(text.find("others"), std::string::npos);
  EXPECT_TRUE(text.ends_with("; and more]"));
}

TEST(ReactionWords, TakeTheTargetOutOfEachForm) {
  EXPECT_EQ(reactionTarget("p:3/ABC").guid, "ABC");
  EXPECT_EQ(reactionTarget("p:3/ABC").part, 3);
  EXPECT_EQ(reactionTarget("bp:ABC").guid, "ABC");
  EXPECT_EQ(reactionTarget("ABC").guid, "ABC");
  EXPECT_EQ(reactionTarget("p:99999999999999999999999/ABC").part, 0);
  EXPECT_EQ(reactionTarget("p:3").guid, "p:3");
}

}  // namespace
}  // namespace chatsum::device
