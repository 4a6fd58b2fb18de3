#include "hosts/device/sample/SampleDevice.h"

#include <gtest/gtest.h>

#include <set>

#include "hosts/device/sample/DevicePaths.h"
#include "hosts/device/sample/StoreWriter.h"
#include "tests/hosts/sample/StoreReading.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class SampleDevice : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(writeSampleDevice(root()), std::nullopt);
    store_ = openStore(messageStorePath(root()));
  }

  [[nodiscard]] fs::path root() const { return folder_.path() / "device"; }
  [[nodiscard]] std::string rows(std::string_view sql) const { return rowsOf(store_, sql); }
  [[nodiscard]] std::int64_t number(std::string_view sql) const { return numberOf(store_, sql); }

  TemporaryFolder folder_;
  sqlite::Connection store_;
};

TEST_F(SampleDevice, IsTheSameEveryTime) {
  const fs::path other = folder_.path() / "other";
  ASSERT_EQ(writeSampleDevice(other), std::nullopt);
  EXPECT_EQ(dumpOf(messageStorePath(root())), dumpOf(messageStorePath(other)));
  EXPECT_EQ(dumpOf(addressBookPath(root())), dumpOf(addressBookPath(other)));
  EXPECT_EQ(filesBelow(root()), filesBelow(other));
  EXPECT_FALSE(filesBelow(root()).empty());
}

TEST_F(SampleDevice, StoresAreSound) {
  EXPECT_EQ(rows("PRAGMA integrity_check"), "ok\n");
  EXPECT_EQ(rows("PRAGMA foreign_key_check"), "");
  EXPECT_EQ(rowsOf(openStore(addressBookPath(root())), "PRAGMA integrity_check"), "ok\n");
  EXPECT_EQ(number("SELECT count(*) FROM pragma_table_info('message')"), 88);
}

TEST_F(SampleDevice, HasTheUserFolderAsARelativeLink) {
  EXPECT_EQ(fs::read_symlink(root() / "User"), "var/mobile");
  EXPECT_TRUE(fs::exists(root() / "User" / "Library" / "SMS" / "sms.db"));
}

TEST_F(SampleDevice, LeavesNoSideFiles) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(messageStorePath(root()).parent_path())) {
    names.insert(entry.path().filename().string());
  }
  EXPECT_EQ(names, (std::set<std::string>{"Attachments", "sms.db"}));
}

TEST_F(SampleDevice, IsAsLargeAsAFewYearsOfSmallTalk) {
  EXPECT_GE(number("SELECT count(*) FROM message"), 300);
  EXPECT_LE(number("SELECT count(*) FROM message"), 600);
  EXPECT_EQ(rows("SELECT DISTINCT strftime('%Y', date / 1000000000 + 978307200, 'unixepoch') FROM message ORDER BY 1"),
            "2019\n2020\n2021\n2022\n2023\n2024\n");
  EXPECT_GT(number("SELECT count(*) FROM message WHERE "
                   "strftime('%m-%d', date / 1000000000 + 978307200, 'unixepoch') IN ('12-30', '12-31', '01-01')"),
            10);
  EXPECT_EQ(number("SELECT count(*) FROM message m JOIN chat_message_join j ON j.message_id = m.ROWID "
                   "WHERE j.message_date <> m.date"),
            0);
}

TEST_F(SampleDevice, RowsDoNotFollowDates) {
  EXPECT_GT(number("SELECT count(*) FROM message a JOIN message b ON b.ROWID = a.ROWID + 1 WHERE b.date < a.date"), 0);
  // The newest row of all belongs to the part that was restored.
  EXPECT_LT(number("SELECT date FROM message ORDER BY ROWID DESC LIMIT 1"),
            number("SELECT date FROM message ORDER BY ROWID LIMIT 1"));
  EXPECT_GE(number("SELECT count(*) FROM message a JOIN message b ON a.date = b.date AND a.ROWID < b.ROWID"), 4);
}

TEST_F(SampleDevice, OnePersonWritesFromSeveralChats) {
  EXPECT_EQ(rows("SELECT guid FROM chat WHERE guid LIKE '%5550100175' OR guid LIKE '%okafor%' ORDER BY guid"),
            "SMS;-;+15550100175\niMessage;-;+15550100175\niMessage;-;daniel.okafor@example.com\n");
  EXPECT_EQ(number("SELECT count(DISTINCT person_centric_id) FROM handle WHERE id = '+15550100175'"), 1);
  EXPECT_EQ(number("SELECT count(*) FROM handle WHERE id = '+15550100175' AND person_centric_id IS NOT NULL"), 2);
}

TEST_F(SampleDevice, GroupsAreAsDifferentAsRealOnes) {
  EXPECT_EQ(rows("SELECT count(*) FROM chat_handle_join j JOIN chat c ON c.ROWID = j.chat_id "
                 "WHERE display_name = 'Sunday Hikers'"),
            "4\n");
  EXPECT_EQ(rows("SELECT h.id FROM message m JOIN handle h ON h.ROWID = m.handle_id WHERE item_type = 3"),
            "+15550100131\n");
  EXPECT_EQ(number("SELECT count(*) FROM chat WHERE style = 43 AND display_name IS NULL"), 1);
  EXPECT_EQ(number("SELECT count(*) FROM chat WHERE display_name = 'Book club'"), 2);
  EXPECT_EQ(number("SELECT count(*) FROM chat WHERE display_name = 'Tom/Jerry''s trip'"), 1);
  EXPECT_EQ(number("SELECT count(*) FROM chat WHERE guid = 'iMessage;-;o''brien@example.com'"), 1);
  EXPECT_EQ(number("SELECT count(*) FROM chat WHERE chat_identifier = '55501'"), 1);
}

TEST_F(SampleDevice, HasTextsInEveryPlaceAndSomeInNone) {
  EXPECT_EQ(number("SELECT count(*) FROM message WHERE text IS NULL AND attributedBody IS NOT NULL"), 5);
  EXPECT_EQ(number("SELECT count(*) FROM message WHERE text IS NULL AND attributedBody IS NULL AND item_type = 0 AND "
                   "message_summary_info IS NULL"),
            1);
  EXPECT_EQ(number("SELECT count(*) FROM message WHERE text IS NULL AND attributedBody IS NULL AND item_type <> 0"), 4);
  EXPECT_EQ(number("SELECT count(*) FROM message WHERE text = '=SUM(A1:A9)'"), 1);
  EXPECT_GT(number("SELECT count(*) FROM message WHERE text LIKE '%' || char(10) || '%'"), 1);
  EXPECT_GT(number("SELECT count(*) FROM message WHERE text LIKE '%\"%,%'"), 1);
  EXPECT_EQ(number("SELECT count(*) FROM message WHERE error <> 0"), 1);
}

TEST_F(SampleDevice, SpeaksAllScripts) {
  for (const char* piece : {"é", "Καλημέρα", "Привіт", "مرحبا", "שלום", "नमस्ते", "สวัสดี", "大家好", "はじめまして",
                            "안녕", "👩‍👩‍👧‍👦", "🇵🇹", "e\u0301", "𠮷"}) {
    EXPECT_GT(number("SELECT count(*) FROM message WHERE text LIKE '%" + std::string(piece) + "%'"), 0) << piece;
  }
}

TEST_F(SampleDevice, AttachedFilesStandWhereTheStoreSays) {
  const sqlite::Statement attachments(store_.get(), "SELECT filename, mime_type, total_bytes FROM attachment");
  const std::map<std::string, std::string> magics = {{"image/jpeg", "\xff\xd8\xff"}, {"image/png", "\x89PNG"},
                                                     {"image/gif", "GIF89a"},        {"image/bmp", "BM"},
                                                     {"application/pdf", "%PDF-"},   {"audio/x-caf", "caff"}};
  int missing = 0;
  std::set<std::string> kinds;
  while (attachments.step() == SQLITE_ROW) {
    const std::string name(attachments.text(0));
    if (attachments.isNull(0) || name.ends_with("Scores.pdf")) {
      ++missing;
      continue;
    }
    ASSERT_TRUE(name.starts_with("~/Library/SMS/Attachments/")) << name;
    const fs::path path = root() / "User" / name.substr(2);
    ASSERT_TRUE(fs::exists(path)) << path;
    EXPECT_EQ(fs::file_size(path), static_cast<std::uintmax_t>(attachments.integer(2)));
    const std::string bytes = bytesOf(path);
    const std::string kind(attachments.text(1));
    const auto magic = magics.find(kind);
    if (magic != magics.end()) {
      EXPECT_TRUE(bytes.starts_with(magic->second)) << path;
    }
    kinds.insert(kind);
  }
  EXPECT_EQ(missing, 2);
  EXPECT_EQ(kinds, (std::set<std::string>{"application/pdf", "audio/x-caf", "image/bmp", "image/gif", "image/jpeg",
                                          "image/png", "text/vcard", "video/quicktime"}));
  EXPECT_EQ(number("SELECT count(*) FROM attachment WHERE filename GLOB "
                   "'~/Library/SMS/Attachments/ab/01/*/IMG_0001.jpeg'"),
            1);
  EXPECT_EQ(number("SELECT max(n) FROM (SELECT count(*) AS n FROM message_attachment_join GROUP BY message_id)"), 3);
  EXPECT_GT(number("SELECT count(*) FROM message WHERE text = char(0xfffc)"), 0);
  EXPECT_EQ(number("SELECT count(*) FROM message m WHERE cache_has_attachments <> "
                   "EXISTS (SELECT 1 FROM message_attachment_join WHERE message_id = m.ROWID)"),
            0);
}

TEST_F(SampleDevice, PeopleStandInTheAddressBookAsTheyAreTyped) {
  const sqlite::Connection contacts = openStore(addressBookPath(root()));
  for (const char* value :
       {"+1 (555) 010-0142", "+1 555-010-0175", "(555) 010-0126", "+49 30 5550 1234", "joann@example.com"}) {
    EXPECT_EQ(numberOf(contacts, "SELECT count(*) FROM ABMultiValue WHERE value = '" + std::string(value) + "'"), 1)
        << value;
  }
  EXPECT_EQ(numberOf(contacts, "SELECT count(*) FROM ABMultiValue WHERE value = 'ann@example.com'"), 0);
  EXPECT_EQ(rowsOf(contacts, "SELECT Organization FROM ABPerson WHERE Kind = 1"), "Harbour Dental Clinic\n");
  EXPECT_EQ(numberOf(contacts, "SELECT count(*) FROM ABPerson WHERE First IS NULL AND Nickname = 'Gran'"), 1);
  EXPECT_EQ(rowsOf(contacts, "SELECT First, IsPreferredName FROM ABPerson WHERE PersonLink <> -1 ORDER BY ROWID"),
            "Priya|1\nP.|0\n");
}

TEST_F(SampleDevice, ReplacesAnEarlierSample) {
  const std::string before = dumpOf(messageStorePath(root()));
  store_ = sqlite::Connection();
  ASSERT_EQ(writeSampleDevice(root()), std::nullopt);
  EXPECT_EQ(dumpOf(messageStorePath(root())), before);
}

TEST(SampleDeviceRefusal, LeavesAnotherDeviceAlone) {
  const TemporaryFolder folder;
  StoreWriter store(messageStorePath(folder.path()), Generation::ios14);
  ASSERT_EQ(store.finish(), std::nullopt);
  const std::string before = bytesOf(messageStorePath(folder.path()));
  const auto failure = writeSampleDevice(folder.path());
  ASSERT_TRUE(failure);
  EXPECT_NE(failure->find("already holds another device's data"), std::string::npos) << *failure;
  EXPECT_EQ(bytesOf(messageStorePath(folder.path())), before);
  EXPECT_FALSE(fs::exists(addressBookPath(folder.path())));
}

TEST(SampleDeviceRefusal, LeavesNoFileWhenTheStoreCannotBeWritten) {
  const TemporaryFolder folder;
  fs::create_directories(folder.path() / "var" / "mobile" / "Library");
  std::ofstream(folder.path() / "var" / "mobile" / "Library" / "SMS") << "in the way";
  const auto failure = writeSampleDevice(folder.path());
  ASSERT_TRUE(failure);
  EXPECT_FALSE(fs::exists(addressBookPath(folder.path())));
  EXPECT_FALSE(fs::exists(fs::symlink_status(folder.path() / "User")));
}

}  // namespace
}  // namespace chatsum::device
