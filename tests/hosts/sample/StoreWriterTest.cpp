#include "hosts/device/sample/StoreWriter.h"

#include <gtest/gtest.h>

#include <array>

#include "hosts/device/sample/ContactWriter.h"
#include "tests/hosts/sample/StoreReading.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kDate = 600'000'000'123'456'789;

// One person, one message with an attachment.
std::optional<std::string> writeSmallStore(const fs::path& path, Generation generation,
                                           Placement placement = Placement::mainFile) {
  StoreWriter store(path, generation, placement);
  const std::array handles = {store.addHandle({"+15550100142", "iMessage"})};
  ChatRow chatRow;
  chatRow.guid = "iMessage;-;+15550100142";
  chatRow.identifier = "+15550100142";
  chatRow.handles = handles;
  const std::array chats = {store.addChat(chatRow)};
  AttachmentRow attachment;
  attachment.guid = "A-1";
  attachment.filename = "~/Library/SMS/Attachments/ab/01/A-1/IMG_0001.jpeg";
  const std::array attachments = {store.addAttachment(attachment)};
  MessageRow message;
  message.guid = "M-1";
  message.text = "it's \"here\", look";
  message.date = kDate;
  message.handle = handles[0];
  message.chats = chats;
  message.attachments = attachments;
  store.addMessage(message);
  return store.finish();
}

TEST(StoreWriter, WritesRowsThatEveryGenerationCanHold) {
  for (Generation generation : allGenerations()) {
    const TemporaryFolder folder;
    const fs::path path = folder.path() / "sms.db";
    ASSERT_EQ(writeSmallStore(path, generation), std::nullopt) << generationName(generation);
    const sqlite::Connection store = openStore(path);
    EXPECT_EQ(rowsOf(store, "PRAGMA integrity_check"), "ok\n");
    EXPECT_EQ(rowsOf(store,
                     "SELECT m.guid, m.text, h.id, c.guid, a.filename, cache_has_attachments FROM message m "
                     "JOIN chat_message_join j ON j.message_id = m.ROWID JOIN chat c ON c.ROWID = j.chat_id "
                     "JOIN handle h ON h.ROWID = m.handle_id "
                     "JOIN chat_handle_join ch ON ch.chat_id = c.ROWID AND ch.handle_id = h.ROWID "
                     "JOIN message_attachment_join ma ON ma.message_id = m.ROWID "
                     "JOIN attachment a ON a.ROWID = ma.attachment_id"),
              "M-1|it's \"here\", look|+15550100142|iMessage;-;+15550100142|"
              "~/Library/SMS/Attachments/ab/01/A-1/IMG_0001.jpeg|1\n")
        << generationName(generation);
  }
}

TEST(StoreWriter, DatesAreSecondsBeforeIos11AndNanosecondsFromThereOn) {
  const TemporaryFolder folder;
  ASSERT_EQ(writeSmallStore(folder.path() / "old.db", Generation::ios10), std::nullopt);
  ASSERT_EQ(writeSmallStore(folder.path() / "new.db", Generation::ios11), std::nullopt);
  EXPECT_EQ(numberOf(openStore(folder.path() / "old.db"), "SELECT date FROM message"), 600'000'000);
  EXPECT_EQ(numberOf(openStore(folder.path() / "new.db"), "SELECT date FROM message"), kDate);
  EXPECT_EQ(numberOf(openStore(folder.path() / "new.db"), "SELECT message_date FROM chat_message_join"), kDate);
}

TEST(StoreWriter, KeepsADateAsItIsWhenAsked) {
  const TemporaryFolder folder;
  StoreWriter store(folder.path() / "sms.db", Generation::ios17);
  MessageRow message;
  message.guid = "M-1";
  message.date = 500'000'000;
  message.dateAsIs = true;
  EXPECT_EQ(store.addMessage(message), 1);
  ASSERT_EQ(store.finish(), std::nullopt);
  EXPECT_EQ(numberOf(openStore(folder.path() / "sms.db"), "SELECT date FROM message"), 500'000'000);
}

TEST(StoreWriter, TellsAbsentTextFromEmptyText) {
  const TemporaryFolder folder;
  StoreWriter store(folder.path() / "sms.db", Generation::ios17);
  MessageRow message;
  message.guid = "absent";
  store.addMessage(message);
  message.guid = "empty";
  message.text = "";
  store.addMessage(message);
  message.guid = "body";
  message.text = std::nullopt;
  message.attributedBody = std::string_view("\x04\x0b\0", 3);
  store.addMessage(message);
  ASSERT_EQ(store.finish(), std::nullopt);
  EXPECT_EQ(rowsOf(openStore(folder.path() / "sms.db"), "SELECT guid, text, hex(attributedBody) FROM message"),
            "absent|NULL|\nempty||\nbody|NULL|040B00\n");
}

TEST(StoreWriter, WalOnlyStoresHaveAMainFileWithoutTables) {
  const TemporaryFolder folder;
  const fs::path path = folder.path() / "sms.db";
  ASSERT_EQ(writeSmallStore(path, Generation::ios17, Placement::wal), std::nullopt);
  EXPECT_EQ(fs::file_size(path), 4096U);
  EXPECT_GT(fs::file_size(path.string() + "-wal"), 4096U);

  fs::create_directory(folder.path() / "alone");
  fs::copy_file(path, folder.path() / "alone" / "sms.db");
  EXPECT_EQ(numberOf(openStore(folder.path() / "alone" / "sms.db"), "SELECT count(*) FROM sqlite_master"), 0);

  fs::create_directory(folder.path() / "together");
  fs::copy_file(path, folder.path() / "together" / "sms.db");
  fs::copy_file(path.string() + "-wal", folder.path() / "together" / "sms.db-wal");
  const sqlite::Connection store = openStore(folder.path() / "together" / "sms.db");
  EXPECT_EQ(rowsOf(store, "SELECT guid FROM message"), "M-1\n");
  EXPECT_EQ(rowsOf(store, "PRAGMA integrity_check"), "ok\n");
}

TEST(StoreWriter, LeavesNothingBehindWhenItIsDropped) {
  const TemporaryFolder folder;
  {
    StoreWriter store(folder.path() / "sms.db", Generation::ios17);
    store.addHandle({"+15550100142", "iMessage"});
  }
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST(StoreWriter, SaysWhatWentWrongAndKeepsTheOlderStore) {
  const TemporaryFolder folder;
  const fs::path path = folder.path() / "sms.db";
  ASSERT_EQ(writeSmallStore(path, Generation::ios17), std::nullopt);
  const std::string before = bytesOf(path);
  StoreWriter store(path, Generation::ios17);
  MessageRow message;
  message.guid = "twice";
  EXPECT_EQ(store.addMessage(message), 1);
  EXPECT_EQ(store.addMessage(message), 0);
  message.guid = "after the failure";
  EXPECT_EQ(store.addMessage(message), 0);
  const auto failure = store.finish();
  ASSERT_TRUE(failure);
  EXPECT_NE(failure->find("UNIQUE constraint failed: message.guid"), std::string::npos) << *failure;
  EXPECT_EQ(bytesOf(path), before);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

TEST(StoreWriter, AFileInPlaceOfTheFolderIsOneSentence) {
  const TemporaryFolder folder;
  std::ofstream(folder.path() / "file") << "text";
  const auto failure = writeSmallStore(folder.path() / "file" / "sms.db", Generation::ios17);
  ASSERT_TRUE(failure);
  EXPECT_NE(failure->find("could not be written"), std::string::npos) << *failure;
}

TEST(ContactWriter, WritesCardsWithLabelsAndLinks) {
  const TemporaryFolder folder;
  const fs::path path = folder.path() / "AddressBook.sqlitedb";
  ContactWriter contacts(path);
  const std::int64_t link = contacts.addLink();
  contacts.addContact({.first = "Ada",
                       .last = "Example",
                       .phones = {{"_$!<Mobile>!$_", "(555) 010-0142"}, {"", "12"}},
                       .emails = {{"_$!<Mobile>!$_", "ada@example.com"}},
                       .link = link});
  contacts.addContact(
      {.organization = "Firm", .isOrganization = true, .city = "Town", .link = link, .preferredName = false});
  ASSERT_EQ(contacts.finish(), std::nullopt);
  const sqlite::Connection store = openStore(path);
  EXPECT_EQ(rowsOf(store,
                   "SELECT v.record_id, property, l.value, v.value, f.value FROM ABMultiValue v "
                   "LEFT JOIN ABMultiValueLabel l ON l.rowid = v.label "
                   "LEFT JOIN ABPhoneLastFour f ON f.multivalue_id = v.UID ORDER BY UID"),
            "1|3|_$!<Mobile>!$_|(555) 010-0142|0142\n1|3|NULL|12|12\n1|4|_$!<Mobile>!$_|ada@example.com|NULL\n"
            "2|5|_$!<Home>!$_|NULL|NULL\n");
  EXPECT_EQ(rowsOf(store, "SELECT First, Organization, Kind, PersonLink, IsPreferredName FROM ABPerson"),
            "Ada|NULL|0|1|1\nNULL|Firm|1|1|0\n");
  EXPECT_EQ(numberOf(store, "SELECT PreferredNamePersonID FROM ABPersonLink"), 1);
  EXPECT_EQ(
      rowsOf(store, "SELECT k.value, e.value FROM ABMultiValueEntry e JOIN ABMultiValueEntryKey k ON k.rowid = e.key"),
      "City|Town\n");
  EXPECT_EQ(rowsOf(store, "PRAGMA integrity_check"), "ok\n");
}

}  // namespace
}  // namespace chatsum::device
