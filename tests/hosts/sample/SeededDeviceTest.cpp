#include "hosts/device/sample/SeededDevice.h"

#include <gtest/gtest.h>

#include "hosts/device/sample/DevicePaths.h"
#include "hosts/device/sample/SeededRandom.h"
#include "tests/hosts/sample/StoreReading.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

// The store of a device made by these options, open.
class Device {
 public:
  explicit Device(const SeededDeviceOptions& options) {
    EXPECT_EQ(writeSeededDevice(folder_.path(), options), std::nullopt);
    store_ = openStore(path());
  }
  [[nodiscard]] fs::path path() const { return messageStorePath(folder_.path()); }
  [[nodiscard]] std::string dump() const { return dumpOf(path()) + dumpOf(addressBookPath(folder_.path())); }
  [[nodiscard]] std::int64_t number(std::string_view sql) const { return numberOf(store_, sql); }
  [[nodiscard]] std::string rows(std::string_view sql) const { return rowsOf(store_, sql); }
  [[nodiscard]] fs::path root() const { return folder_.path(); }

 private:
  TemporaryFolder folder_;
  sqlite::Connection store_;
};

std::int64_t messagesOf(const Device& device, std::string_view chat) {
  return device.number("SELECT count(*) FROM chat_message_join WHERE chat_id = (SELECT ROWID FROM chat WHERE guid = '" +
                       std::string(chat) + "')");
}

constexpr std::string_view kBackwardSteps =
    "SELECT count(*) FROM message a JOIN message b ON b.ROWID = a.ROWID + 1 WHERE b.date < a.date";

TEST(SeededDevice, TheSameSeedGivesTheSameRows) {
  SeededDeviceOptions options;
  options.bodyOnlyShare = 0.1;
  EXPECT_EQ(Device(options).dump(), Device(options).dump());
}

TEST(SeededDevice, AnotherSeedGivesOtherRows) {
  SeededDeviceOptions options;
  SeededDeviceOptions other;
  other.seed = 2;
  EXPECT_NE(Device(options).rows("SELECT guid, text, date FROM message"),
            Device(other).rows("SELECT guid, text, date FROM message"));
}

TEST(SeededDevice, NumbersAreTheSameOnEveryMachine) {
  SeededRandom random(1);
  EXPECT_EQ(random.next(), 0x910a2dec89025cc1U);
  EXPECT_EQ(SeededRandom(7).guid().size(), 36U);
  EXPECT_EQ(SeededRandom(7).guid(), SeededRandom(7).guid());
  for (int round = 0; round < 1000; ++round) EXPECT_LT(random.below(3), 3U);
  EXPECT_FALSE(random.chance(0.0));
  EXPECT_TRUE(random.chance(1.0));
}

TEST(SeededDevice, HoldsAsManyMessagesAsAskedMostInTheBigConversation) {
  SeededDeviceOptions options;
  options.messages = 5000;
  const Device device(options);
  EXPECT_EQ(device.number("SELECT count(*) FROM message"), 5000);
  EXPECT_EQ(device.number("SELECT count(*) FROM chat_message_join"), 5000);
  EXPECT_EQ(device.number("SELECT count(*) FROM chat"), 10);
  EXPECT_EQ(seededMainChat(options), "iMessage;-;+15550100001");
  EXPECT_NEAR(static_cast<double>(messagesOf(device, seededMainChat(options))), 3500.0, 150.0);
  EXPECT_EQ(device.rows("PRAGMA integrity_check"), "ok\n");
  EXPECT_EQ(device.rows("PRAGMA foreign_key_check"), "");
}

TEST(SeededDevice, OneConversationTakesEverything) {
  SeededDeviceOptions options;
  options.messages = 300;
  options.conversations = 1;
  EXPECT_EQ(messagesOf(Device(options), seededMainChat(options)), 300);
}

TEST(SeededDevice, TheBigConversationCanBeAGroup) {
  SeededDeviceOptions options;
  options.groupHandles = 12;
  const Device device(options);
  EXPECT_EQ(device.number("SELECT count(*) FROM chat_handle_join WHERE chat_id = 1"), 12);
  EXPECT_EQ(device.rows("SELECT guid, style FROM chat WHERE ROWID = 1"),
            std::string(seededMainChat(options)) + "|43\n");
  EXPECT_EQ(device.number("SELECT count(DISTINCT handle_id) FROM message JOIN chat_message_join ON message_id = "
                          "message.ROWID WHERE chat_id = 1 AND is_from_me = 0"),
            12);
}

TEST(SeededDevice, RestoredRowsStandBetweenNewerOnes) {
  SeededDeviceOptions options;
  options.messages = 12'000;
  const Device device(options);
  EXPECT_EQ(device.number(kBackwardSteps), 100);
  options.outOfOrderShare = 0.0;
  EXPECT_EQ(Device(options).number(kBackwardSteps), 0);
}

TEST(SeededDevice, EvenASmallDeviceIsOutOfOrder) {
  SeededDeviceOptions options;
  options.messages = 40;
  EXPECT_EQ(Device(options).number(kBackwardSteps), 1);
}

TEST(SeededDevice, DatesStayInsideTheirYearsAndSomeAreEqual) {
  SeededDeviceOptions options;
  options.messages = 5000;
  const Device device(options);
  EXPECT_EQ(device.rows("SELECT strftime('%Y', min(date) / 1000000000 + 978307200, 'unixepoch'), "
                        "strftime('%Y', max(date) / 1000000000 + 978307200, 'unixepoch') FROM message"),
            "2014|2023\n");
  EXPECT_LT(device.number("SELECT count(DISTINCT date) FROM message"), 5000);
}

TEST(SeededDevice, TextsAreAsLongAsMessagesAre) {
  SeededDeviceOptions options;
  options.messages = 5000;
  const Device device(options);
  const std::int64_t mean = device.number("SELECT avg(length(CAST(text AS BLOB))) FROM message");
  EXPECT_GE(mean, 50);
  EXPECT_LE(mean, 70);
  EXPECT_EQ(device.number("SELECT count(*) FROM message WHERE text = ''"), 0);
}

TEST(SeededDevice, SharesOfAttachmentsAndBodiesAreKept) {
  SeededDeviceOptions options;
  options.messages = 4000;
  options.attachmentShare = 0.25;
  options.bodyOnlyShare = 0.5;
  const Device device(options);
  EXPECT_NEAR(static_cast<double>(device.number("SELECT sum(cache_has_attachments) FROM message")), 1000.0, 120.0);
  EXPECT_NEAR(static_cast<double>(device.number("SELECT count(*) FROM message WHERE text IS NULL")), 2000.0, 150.0);
  EXPECT_EQ(device.number("SELECT count(*) FROM message WHERE (text IS NULL) = (attributedBody IS NULL)"), 0);
  EXPECT_EQ(device.number("SELECT count(*) FROM message m WHERE text IS NOT NULL AND "
                          "(length(text) - length(replace(text, char(0xfffc), ''))) <> "
                          "(SELECT count(*) FROM message_attachment_join WHERE message_id = m.ROWID)"),
            0);
}

TEST(SeededDevice, EveryGenerationCanBeMade) {
  for (Generation generation : allGenerations()) {
    SeededDeviceOptions options;
    options.messages = 100;
    options.generation = generation;
    const Device device(options);
    EXPECT_EQ(device.number("SELECT count(*) FROM message"), 100) << generationName(generation);
    EXPECT_EQ(device.number("SELECT min(date) > 100000000000 FROM message"), hasNanosecondDates(generation));
  }
}

TEST(SeededDevice, ContactsKnowThePeopleOfTheBigConversationFirst) {
  SeededDeviceOptions options;
  options.groupHandles = 5;
  options.contacts = 3;
  const Device device(options);
  const sqlite::Connection contacts = openStore(addressBookPath(device.root()));
  EXPECT_EQ(numberOf(contacts, "SELECT count(*) FROM ABPerson"), 3);
  EXPECT_EQ(rowsOf(contacts, "SELECT value FROM ABPhoneLastFour ORDER BY value"), "0001\n0002\n0003\n");
}

TEST(SeededDevice, WalOnlyDevicesKeepTheirRowsInTheLog) {
  const TemporaryFolder folder;
  SeededDeviceOptions options;
  options.placement = Placement::wal;
  ASSERT_EQ(writeSeededDevice(folder.path(), options), std::nullopt);
  const fs::path store = messageStorePath(folder.path());
  EXPECT_EQ(fs::file_size(store), 4096U);
  EXPECT_EQ(fs::file_size(addressBookPath(folder.path())), 4096U);
  EXPECT_EQ(numberOf(openStore(store), "SELECT count(*) FROM message"), 1000);
}

TEST(SeededDevice, NothingToWriteIsADeviceWithoutMessages) {
  SeededDeviceOptions options;
  options.messages = 0;
  options.contacts = 0;
  const Device device(options);
  EXPECT_EQ(device.number("SELECT count(*) FROM message"), 0);
  EXPECT_EQ(device.number("SELECT count(*) FROM chat"), 10);
}

TEST(SeededDevice, RefusesAFolderThatHoldsADevice) {
  const Device device{SeededDeviceOptions()};
  const auto failure = writeSeededDevice(device.root(), {});
  ASSERT_TRUE(failure);
  EXPECT_NE(failure->find("choose an empty folder"), std::string::npos) << *failure;
}

}  // namespace
}  // namespace chatsum::device
