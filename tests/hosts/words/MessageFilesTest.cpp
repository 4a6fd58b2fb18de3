#include "hosts/device/words/MessageFiles.h"

#include <gtest/gtest.h>

#include "hosts/device/body/TypedStreamWriter.h"
#include "tests/hosts/words/WordsFixture.h"

namespace chatsum::device {
namespace {

using testing::Texts;
using testing::WordsFixture;

std::string pathOf(int file, const std::string& name) {
  return "User/Library/SMS/Attachments/ab/12/A" + std::to_string(file) + "/" + name;
}

TEST(MessageFiles, StandBehindTheWordsOfTheirMessage) {
  WordsFixture device;
  const std::int64_t files[] = {device.addFile("one.png"), device.addFile("one.png"), device.addFile("two.pdf")};
  device.add({.text = "\uFFFC\uFFFC Look\uFFFC!", .attachments = files});
  const Reading reading = device.read();
  EXPECT_EQ(WordsFixture::textsOf(reading), (Texts{"[one.png] [one.png] Look [two.pdf] !", pathOf(1, "one.png"),
                                                   pathOf(2, "one.png"), pathOf(3, "two.pdf")}));
  EXPECT_EQ(reading.balance.sentence(), "Rows: 3 in the store + 1 for words beside files = 4 written + 0 left out.");
  // The row of words has no file, those of the files have theirs.
  EXPECT_EQ((*reading.records[0].asRecord())["attachment_location"].asString(), nullptr);
  EXPECT_NE((*reading.records[1].asRecord())["attachment_location"].asString(), nullptr);
}

TEST(MessageFiles, AloneStayAsTheyAre) {
  WordsFixture device;
  const std::int64_t files[] = {device.addFile("one.png"), device.addFile("two.png")};
  device.add({.text = "\uFFFC\uFFFC", .attachments = files});
  device.add({.attachments = files});  // without text and body
  const Reading reading = device.read();
  EXPECT_EQ(WordsFixture::textsOf(reading),
            (Texts{pathOf(1, "one.png"), pathOf(2, "two.png"), pathOf(1, "one.png"), pathOf(2, "two.png")}));
  EXPECT_EQ(reading.balance.sentence(), "Rows: 4 in the store = 4 written + 0 left out.");
}

TEST(MessageFiles, ThatAreMissingAreTold) {
  WordsFixture device;
  const std::int64_t missing = device.addFile("photo.heic", false), there = device.addFile("boat.jpeg");
  const std::int64_t both[] = {there, missing};
  device.execute("UPDATE attachment SET ck_sync_state = 1 WHERE ROWID = 3");
  device.add({.text = "\uFFFC", .attachments = std::span(&missing, 1)});
  device.add({.text = "\uFFFC\uFFFC", .attachments = both});
  const std::int64_t elsewhere = device.addFile("film.mov", false);
  device.execute("UPDATE attachment SET ck_sync_state = 1 WHERE ROWID = " + std::to_string(elsewhere));
  device.add({.text = "\uFFFC", .attachments = std::span(&elsewhere, 1)});
  const Reading reading = device.read();
  EXPECT_EQ(WordsFixture::textsOf(reading),
            (Texts{"[attachment photo.heic: not on this device, never downloaded]",
                   "[boat.jpeg] [attachment photo.heic: not on this device, never downloaded]", pathOf(2, "boat.jpeg"),
                   "[attachment film.mov: not on this device, kept in iCloud]"}));
  EXPECT_EQ(reading.balance.sentence(),
            "Rows: 4 in the store + 3 for words beside files = 4 written + 3 left out (3 files not on the device, told "
            "in words).");
}

TEST(MessageFiles, OfFoldersAreShownByTheirPaths) {
  WordsFixture device;
  const std::int64_t folder = device.addFile("IMG_1.pvt");
  std::filesystem::create_directories(device.root() / "var/mobile/Library/SMS/Attachments/ab/12/A1/IMG_1.pvt");
  device.add({.text = "\uFFFC", .attachments = std::span(&folder, 1)});
  EXPECT_EQ(device.text(), pathOf(1, "IMG_1.pvt"));
}

TEST(MessageFiles, HaveNamesOnOneLine) {
  WordsFixture device;
  const std::int64_t file = device.addFile("a \"b\"\n[c],=d.png");
  device.add({.text = "\uFFFC Look", .attachments = std::span(&file, 1)});
  EXPECT_EQ(device.texts()[0], "[a \"b\" (c),=d.png] Look");
}

TEST(MessageFiles, StandInTheOrderOfTheBody) {
  WordsFixture device;
  const std::int64_t files[] = {device.addFile("one.png"), device.addFile("two.png")};
  const std::string text = "\uFFFC then \uFFFC";
  const std::string body = encodeBody(text, {{1, 0, "at_0_A2"}, {6, 1, std::nullopt}, {1, 2, "at_2_A1"}});
  device.add({.text = text, .attributedBody = body, .attachments = files});
  EXPECT_EQ(device.texts(), (Texts{"[two.png] then [one.png]", pathOf(2, "two.png"), pathOf(1, "one.png")}));
}

TEST(MessageFiles, ThatAreStickersAreTold) {
  WordsFixture device;
  const std::int64_t sticker =
      device.writer->addAttachment({.guid = "S", .filename = "~/s.heic", .transferName = "s.heic", .sticker = true});
  device.execute("UPDATE attachment SET emoji_image_short_description = 'a waving cat'");
  device.add({.text = "\uFFFC", .attachments = std::span(&sticker, 1)});
  const Reading reading = device.read();
  EXPECT_EQ(WordsFixture::textsOf(reading), Texts{"[sticker: a waving cat]"});
  EXPECT_EQ(reading.balance.stickers, 1U);
}

TEST(MessageFiles, WithoutARowOfTheirOwnAreMissing) {
  WordsFixture device;
  const std::int64_t nowhere = 77;
  device.add({.text = "\uFFFC", .attachments = std::span(&nowhere, 1)});
  device.add({.text = "\uFFFC marked only"});
  device.execute("UPDATE message SET cache_has_attachments = 1");
  EXPECT_EQ(device.texts(), (Texts{"[attachment: not on this device, never downloaded]", "[attachment] marked only"}));
}

TEST(MessageFiles, OfStoresWithoutTheirTablesAreNone) {
  for (const std::string drop : {"DROP TABLE message_attachment_join", "DROP TABLE attachment",
                                 "ALTER TABLE attachment RENAME COLUMN filename TO other"}) {
    WordsFixture device;
    const std::int64_t file = device.addFile("boat.jpeg");
    device.add({.text = "Hello", .attachments = std::span(&file, 1)});
    device.finish();
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open_v2(messageStorePath(device.root()).c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr),
              SQLITE_OK);
    const sqlite::Connection store(handle);
    if (!store.execute(drop)) GTEST_SKIP() << store.lastError();
    const Texts texts = device.texts();
    ASSERT_EQ(texts.size(), 1U) << drop;
    EXPECT_TRUE(texts[0].starts_with("Hello")) << texts[0];
  }
}

TEST(MessageFiles, ByTheThousandStayBounded) {
  WordsFixture device;
  std::vector<std::int64_t> files;
  for (int i = 0; i < 3000; ++i) files.push_back(device.addFile("x.png"));
  device.add({.text = "Look", .attachments = files});
  const Reading reading = device.read();
  EXPECT_EQ(reading.records.size(), 3001U);
  EXPECT_EQ(WordsFixture::textsOf(reading).front(), "Look");
}

}  // namespace
}  // namespace chatsum::device
