#include "hosts/device/words/MessageWords.h"

#include <gtest/gtest.h>

#include "hosts/device/body/TypedStreamWriter.h"
#include "hosts/device/sample/MessageArchives.h"
#include "tests/hosts/words/WordsFixture.h"

namespace chatsum::device {
namespace {

using testing::kFriday;
using testing::kSecond;
using testing::Texts;
using testing::WordsFixture;

constexpr std::string_view kLinkBundle = "com.apple.messages.URLBalloonProvider";
constexpr double kFridaySeconds = 736'452'300;

TEST(MessageWords, LeaveOrdinaryMessagesAlone) {
  WordsFixture device;
  device.add({.text = " Hello\n"});
  device.add({.text = ""});
  const std::string body = encodeBody("from the body");
  device.add({.attributedBody = body});
  EXPECT_EQ(device.texts(), (Texts{" Hello\n", "", "from the body"}));
}

TEST(MessageWords, AreLeftOutWherePlainRecordsAreWanted) {
  WordsFixture device;
  device.add({.text = "Hello", .fromMe = true, .error = 22, .effect = "com.apple.MobileSMS.expressivesend.impact"});
  device.add({.text = "Loved “Hello”", .associatedMessageGuid = "p:0/M1", .associatedMessageType = 2000});
  device.add({.itemType = 3});
  const std::int64_t file = device.addFile("a.jpeg");
  device.add({.text = "\uFFFCLook", .attachments = std::span(&file, 1)});
  const Reading reading = device.read("maya", {.deleted = true, .orphaned = true}, true);
  EXPECT_EQ(WordsFixture::textsOf(reading),
            (Texts{"Hello", "Loved “Hello”", "User/Library/SMS/Attachments/ab/12/A1/a.jpeg"}));
  EXPECT_EQ(reading.balance.sentence(), "Rows: 4 in the store = 3 written + 1 left out (1 without text).");
  ASSERT_EQ(reading.notes.size(), 1U);
  EXPECT_EQ(reading.notes[0],
            "1 message has words beside its attachment; the attachment's path stands in their place.");
}

TEST(MessageWords, TellWhatAReplyIsTo) {
  WordsFixture device;
  device.add({.text = "Shall we meet at the\nharbour?"});
  device.add({.text = "Yes", .fromMe = true, .threadOriginatorGuid = "M1"});
  device.add({.text = "Good", .threadOriginatorGuid = "M2"});
  device.add({.text = "Who?", .threadOriginatorGuid = "nowhere"});
  const std::int64_t file = device.addFile("boat.jpeg");
  device.add({.text = "\uFFFC", .attachments = std::span(&file, 1)});
  device.add({.text = "Nice", .fromMe = true, .threadOriginatorGuid = "M5"});
  const Texts texts = device.texts();
  EXPECT_EQ(texts[1], "[reply to Maya Lindqvist: “Shall we meet at the harbour?”] Yes");
  EXPECT_EQ(texts[2], "[reply to Me: “Yes”] Good");
  EXPECT_EQ(texts[3], "[reply to a message that is not there] Who?");
  EXPECT_EQ(texts[5], "[reply to Maya Lindqvist: “[boat.jpeg]”] Nice");
}

TEST(MessageWords, TakeReplyToGuidForNoReply) {
  WordsFixture device;
  device.add({.text = "One"});
  const auto second = device.add({.text = "Two"});
  device.execute("UPDATE message SET reply_to_guid = 'M1' WHERE ROWID = " + std::to_string(second));
  EXPECT_EQ(device.texts(), (Texts{"One", "Two"}));
}

TEST(MessageWords, CutLongQuotationsBetweenWords) {
  WordsFixture device;
  const std::string flags = "🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹🇵🇹";
  device.add({.text = "one two three four five six seven eight nine ten eleven twelve thirteen"});
  device.add({.text = "x", .threadOriginatorGuid = "M1"});
  device.add({.text = flags});
  device.add({.text = "x", .threadOriginatorGuid = "M3"});
  const Texts texts = device.texts();
  EXPECT_EQ(texts[1], "[reply to Maya Lindqvist: “one two three four five six seven eight nine ten eleven…”] x");
  EXPECT_EQ(texts[3], "[reply to Maya Lindqvist: “" + flags.substr(0, 30 * 8) + "…”] x");
}

TEST(MessageWords, UseTheOwnersName) {
  WordsFixture device;
  device.add({.text = "Hi", .fromMe = true});
  device.add({.text = "Yes", .threadOriginatorGuid = "M1"});
  EXPECT_EQ(WordsFixture::textsOf(device.read("maya", {}, false, "Casey Morgan"))[1],
            "[reply to Casey Morgan: “Hi”] Yes");
}

TEST(MessageWords, TellWhatAMessageWasBeforeItWasEdited) {
  WordsFixture device;
  const std::string once = messageHistory({{0, {{"Helo", kFridaySeconds}, {"Hello", kFridaySeconds + 60}}}}, {});
  device.add({.text = "Hello", .summaryInfo = once, .dateEdited = kFriday});
  const std::string five = messageHistory({{0, {{"a", 1}, {"b", 2}, {"b", 3}, {"c", 4}, {"d", 5}, {"e", 6}}}}, {});
  const std::string body = encodeBody("e");
  device.add({.attributedBody = body, .summaryInfo = five, .dateEdited = kFriday});
  device.add({.summaryInfo = once, .dateEdited = kFriday});
  device.add({.text = "No history", .dateEdited = kFriday});
  EXPECT_EQ(device.texts(),
            (Texts{"Hello [edited 2024-05-03 18:05; before: “Helo”]",
                   "e [edited 2024-05-03 18:05; before: “a”; “b”; “c”; “d”]",
                   "Hello [edited 2024-05-03 18:05; before: “Helo”]", "No history [edited 2024-05-03 18:05]"}));
}

TEST(MessageWords, TakeEditTimesInSecondsAndWithoutADate) {
  WordsFixture device;
  const std::string info = messageHistory({{0, {{"Helo", kFridaySeconds}, {"Hello", kFridaySeconds + 60}}}}, {});
  const auto first = device.add({.text = "Hello", .summaryInfo = info, .dateEdited = kFriday});
  device.execute("UPDATE message SET date_edited = 736452300 WHERE ROWID = " + std::to_string(first));
  EXPECT_EQ(device.text(), "Hello [edited 2024-05-03 18:05; before: “Helo”]");
}

TEST(MessageWords, TellWhatWasUnsent) {
  WordsFixture device;
  const std::string all = messageHistory({}, {0}), part = messageHistory({}, {1}), two = messageHistory({}, {1, 3, 1});
  const std::string edited = messageHistory({{0, {{"Secret", 1}, {"Secret!", 2}}}}, {0});
  device.add({.summaryInfo = all, .dateEdited = kFriday});
  device.add({.text = "Left", .summaryInfo = part, .dateEdited = kFriday});
  device.add({.text = "Left", .summaryInfo = two, .dateEdited = kFriday});
  device.add({.summaryInfo = all});  // not even a date says so
  device.add({.summaryInfo = edited, .dateEdited = kFriday});
  device.add({.dateRetracted = kFriday});
  EXPECT_EQ(device.texts(),
            (Texts{"[unsent message]", "Left [a part was unsent]", "Left [2 parts were unsent]", "[unsent message]",
                   "[unsent message; before: “Secret”; “Secret!”]", "[unsent message]"}));
}

TEST(MessageWords, TellEffectsErrorsSubjectsAndSchedules) {
  WordsFixture device;
  device.add({.text = "Bang", .effect = "com.apple.MobileSMS.expressivesend.impact"});
  device.add({.text = "Hooray", .effect = "com.apple.messages.effect.CKHappyBirthdayEffect"});
  device.add({.text = "What", .effect = "com.example.new[thing"});
  device.add({.text = "Lost", .fromMe = true, .error = 22});
  device.add({.text = "Odd", .error = 3});
  device.add({.text = "The text", .subject = "Lunch"});
  device.add({.text = "Later", .fromMe = true, .scheduleType = 2, .scheduleState = 1});
  device.add({.text = "Now", .fromMe = true, .scheduleType = 2});
  EXPECT_EQ(device.texts(), (Texts{"Bang [sent with slam]", "Hooray [sent with balloons]",
                                   "What [sent with the effect new(thing]", "Lost [not sent, error 22]",
                                   "Odd [error 3]", "[subject: “Lunch”] The text", "Later [scheduled]", "Now"}));
}

TEST(MessageWords, TellCardsAndLinkPreviews) {
  WordsFixture device;
  const std::string link = linkPreview("https://example.com/harbour", "The harbour");
  const std::string untitled = linkPreview("https://example.com/other", "");
  const std::string poll = appCard("Polls", "Which day?", "");
  const std::string silent = appCard("", "", "https://example.com/game");
  device.add({.text = "https://example.com/harbour", .balloonBundle = kLinkBundle, .payload = link});
  device.add({.text = "\uFFFD", .balloonBundle = kLinkBundle, .payload = link});
  device.add({.text = "https://example.com/short", .balloonBundle = kLinkBundle, .payload = untitled});
  device.add({.text = "https://example.com/x", .balloonBundle = kLinkBundle});
  device.add({.text = "\uFFFD",
              .balloonBundle = "com.apple.messages.MSMessageExtensionBalloonPlugin:TEAM:com.example.polls",
              .payload = poll});
  device.add({.text = "\uFFFD",
              .balloonBundle = "com.apple.messages.MSMessageExtensionBalloonPlugin:TEAM:com.example.game",
              .payload = silent});
  device.add({.balloonBundle = "com.apple.PassbookUIService.PeerPaymentMessagesExtension", .payload = poll});
  device.add({.balloonBundle = "com.apple.Handwriting.HandwritingProvider"});
  device.add({.text = "\uFFFD", .balloonBundle = "x", .payload = "no list"});
  EXPECT_EQ(
      device.texts(),
      (Texts{"https://example.com/harbour [link: “The harbour”]", "[link: “The harbour” https://example.com/harbour]",
             "https://example.com/short [link: https://example.com/other]", "https://example.com/x",
             "[app card of Polls: “Which day?”]", "[app card of com.example.game: https://example.com/game]",
             "[Apple Cash: “Which day?”]", "[handwritten message]", "[app card of x]"}));
}

TEST(MessageWords, TellWhatIsSaidInAVoiceMessage) {
  WordsFixture device;
  const std::int64_t file = device.addFile("Audio Message.caf");
  const std::string body = encodeBody("\uFFFC", {{1, 0, "at_0_A1", "See you at eight"}});
  device.add({.text = "\uFFFC", .attributedBody = body, .attachments = std::span(&file, 1)});
  EXPECT_EQ(device.texts(), (Texts{"[Audio Message.caf] [said: “See you at eight”]",
                                   "User/Library/SMS/Attachments/ab/12/A1/Audio Message.caf"}));
}

TEST(MessageWords, CountPicturesOfLinkPreviewsButDoNotShowThem) {
  WordsFixture device;
  const std::int64_t files[] = {
      device.writer->addAttachment(
          {.guid = "P1", .filename = "~/Library/SMS/Attachments/P1/A.pluginPayloadAttachment"}),
      device.writer->addAttachment({.guid = "P2", .filename = "~/Library/SMS/Attachments/P2/x.png", .hidden = true})};
  const std::string link = linkPreview("https://example.com/harbour", "The harbour");
  device.add(
      {.text = "https://example.com/harbour", .attachments = files, .balloonBundle = kLinkBundle, .payload = link});
  device.add({.attachments = files});
  const Reading reading = device.read();
  EXPECT_EQ(WordsFixture::textsOf(reading),
            (Texts{"https://example.com/harbour [link: “The harbour”]", "[link preview]"}));
  EXPECT_EQ(reading.balance.sentence(),
            "Rows: 4 in the store + 2 for words beside files = 2 written + 4 left out (4 link-preview files).");
}

TEST(MessageWords, LeaveOutWhatHasNoContent) {
  WordsFixture device;
  device.add({.text = "Hello"});
  device.add({});
  device.add({.attributedBody = "no body"});
  const Reading reading = device.read();
  EXPECT_EQ(WordsFixture::textsOf(reading), Texts{"Hello"});
  EXPECT_EQ(reading.balance.sentence(),
            "Rows: 3 in the store = 1 written + 2 left out (1 without text, 1 with an unreadable body).");
}

TEST(MessageWords, KeepWhatFollowsANul) {
  WordsFixture device;
  const std::string text("be\0hind\x01", 8);
  device.add({.text = text, .fromMe = true, .error = 1});
  EXPECT_EQ(device.text(), "be␀hind\x01 [not sent, error 1]");
}

TEST(MessageWords, TakeALongText) {
  WordsFixture device;
  const std::string text(1'000'000, 'x');
  device.add({.text = text, .fromMe = true, .error = 1});
  device.add({.text = "y", .threadOriginatorGuid = "M1"});
  const Texts texts = device.texts();
  EXPECT_EQ(texts[0], text + " [not sent, error 1]");
  EXPECT_LT(texts[1].size(), 200U);
}

TEST(MessageWords, PutNamesOnOneLine) {
  WordsFixture device;
  const std::int64_t ann = device.writer->addHandle({.id = "+15550100120"});
  device.add({.text = "Hello", .handle = ann});
  device.add({.text = "Yes", .threadOriginatorGuid = "M1"});
  EXPECT_EQ(device.texts()[1], "[reply to Ann \"A\" Two Lines: “Hello”] Yes");
}

TEST(MessageWords, NameSendersWithoutACardByTheirHandles) {
  for (const std::string id : {"urn:biz:1234", "55501", "PARCELPOINT"}) {
    WordsFixture device;
    const std::int64_t sender = device.writer->addHandle({.id = id, .service = "SMS"});
    device.add({.text = "Hello", .handle = sender});
    device.add({.text = "Yes", .fromMe = true, .threadOriginatorGuid = "M1"});
    EXPECT_EQ(device.texts()[1], "[reply to " + id + ": “Hello”] Yes");
  }
}

TEST(MessageWords, PrintAMessageOfTwoChatsOnce) {
  WordsFixture device;
  const std::int64_t sms = device.writer->addHandle({.id = "+15550100142", .service = "SMS"});
  const std::int64_t other = device.writer->addChat(
      {.guid = "sms", .identifier = "+15550100142", .service = "SMS", .handles = std::span(&sms, 1)});
  const std::int64_t both[] = {device.chat, other};
  device.add({.text = "Hello", .fromMe = true, .chats = both});
  device.add({.text = "Loved",
              .handle = sms,
              .chats = std::span(&other, 1),
              .associatedMessageGuid = "M1",
              .associatedMessageType = 2000});
  EXPECT_EQ(device.text(), "Hello [loved by Maya Lindqvist]");
}

TEST(MessageWords, ServeStoresOfEveryGeneration) {
  for (const Generation generation : allGenerations()) {
    WordsFixture device(generation);
    const std::int64_t file = device.addFile("boat.jpeg");
    device.add({.text = "\uFFFCLook", .attachments = std::span(&file, 1)});
    device.add({.text = "Lost", .fromMe = true, .error = 22});
    EXPECT_EQ(device.texts(), (Texts{"[boat.jpeg] Look", "User/Library/SMS/Attachments/ab/12/A1/boat.jpeg",
                                     "Lost [not sent, error 22]"}))
        << generationName(generation);
  }
}

TEST(MessageWords, SurviveHostileLists) {
  WordsFixture device;
  const std::string link = linkPreview("https://example.com/harbour", "The harbour");
  const std::string info = messageHistory({{0, {{"Helo", 1}, {"Hello", 2}}}}, {0});
  std::vector<std::string> lists;
  for (std::size_t at = 8; at < link.size(); at += 3) {
    lists.push_back(link);
    lists.back()[at] = static_cast<char>(0xFF);
  }
  for (std::size_t at = 8; at < info.size(); at += 3) {
    lists.push_back(info);
    lists.back()[at] = static_cast<char>(0xD1);
  }
  for (const std::string& list : lists) {
    device.add(
        {.text = "x", .balloonBundle = kLinkBundle, .payload = list, .summaryInfo = list, .dateEdited = kFriday});
  }
  const Texts texts = device.texts();
  ASSERT_EQ(texts.size(), lists.size());
  for (const std::string& text : texts) EXPECT_TRUE(text.starts_with("x")) << text;
}

}  // namespace
}  // namespace chatsum::device
