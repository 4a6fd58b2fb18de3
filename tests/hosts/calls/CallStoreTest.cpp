#include "hosts/device/calls/CallStore.h"

#include <cmath>

#include "tests/hosts/calls/CallFixture.h"

namespace chatsum::device {
namespace {

using testing::addressesOf;
using testing::kNoon;
using testing::kNoonSince1970;
using Addresses = std::vector<std::string>;

constexpr std::string_view kFaceTime = "com.apple.FaceTime";

class CallStore : public testing::CallFixture {};

TEST_F(CallStore, KeepsWhatARowSays) {
  const Call call = onlyCall({.date = kNoon + 0.625,
                              .duration = 192.75,
                              .address = "+15550100142",
                              .answered = true,
                              .uniqueId = "U-1",
                              .name = "Maya",
                              .place = "Lakeview",
                              .country = "us"});
  ASSERT_TRUE(call.date.has_value());
  EXPECT_DOUBLE_EQ(call.date->secondsSince1970, kNoonSince1970 + 0.625);
  EXPECT_EQ(call.duration, 192.75);
  EXPECT_EQ(addressesOf(call), Addresses{"+15550100142"});
  EXPECT_EQ(call.service, "phone");
  EXPECT_EQ(call.medium, CallMedium::kAudio);
  EXPECT_EQ(call.direction, CallDirection::kIncoming);
  EXPECT_EQ(call.status, CallStatus::kAnswered);
  EXPECT_EQ(call.uniqueId, "U-1");
  EXPECT_EQ(call.cachedName, "Maya");
  EXPECT_EQ(call.place, "Lakeview");
  EXPECT_EQ(call.country, "us");
  EXPECT_FALSE(call.isJunk || call.hasMessage || call.isEmergency || call.isEncrypted);
}

TEST_F(CallStore, TellsEveryStatus) {
  const auto statusOfRow = [this](CallRow row) {
    row.address = "+15550100142";
    return onlyCall(row).status;
  };
  EXPECT_EQ(statusOfRow({.duration = 3, .answered = true}), CallStatus::kAnswered);
  EXPECT_EQ(statusOfRow({.answered = true}), CallStatus::kAnswered);
  EXPECT_EQ(statusOfRow({}), CallStatus::kMissed);
  EXPECT_EQ(statusOfRow({.disconnectedCause = 2}), CallStatus::kMissed);
  EXPECT_EQ(statusOfRow({.disconnectedCause = 6}), CallStatus::kDeclined);
  EXPECT_EQ(statusOfRow({.filteredReason = 1}), CallStatus::kBlocked);
  EXPECT_EQ(statusOfRow({.blockedBy = "com.example.quiet"}), CallStatus::kBlocked);
  EXPECT_EQ(statusOfRow({.duration = 3, .outgoing = true}), CallStatus::kConnected);
  EXPECT_EQ(statusOfRow({.outgoing = true}), CallStatus::kNoAnswer);
  // Whether it was answered counts for incoming calls only.
  EXPECT_EQ(statusOfRow({.outgoing = true, .answered = true}), CallStatus::kNoAnswer);
  EXPECT_EQ(statusOfRow({.outgoing = true, .disconnectedCause = 6}), CallStatus::kNoAnswer);
  // Causes of other apps have meanings of their own.
  EXPECT_EQ(statusOfRow({.type = 0, .provider = "com.example.chatter", .disconnectedCause = 6}), CallStatus::kMissed);
}

TEST_F(CallStore, TellsVideoFromAudio) {
  const auto mediumOfRow = [this](int type, std::string_view provider) {
    return onlyCall({.address = "a@example.com", .type = type, .provider = provider}).medium;
  };
  EXPECT_EQ(mediumOfRow(8, kFaceTime), CallMedium::kVideo);
  EXPECT_EQ(mediumOfRow(16, kFaceTime), CallMedium::kAudio);
  EXPECT_EQ(mediumOfRow(1, "com.apple.Telephony"), CallMedium::kAudio);
  EXPECT_EQ(mediumOfRow(0, "com.example.chatter"), CallMedium::kUnknown);
}

TEST_F(CallStore, NamesTheServiceByItsProviderElseByTheTypeOfTheCall) {
  const auto serviceOfRow = [this](int type, std::string_view provider) {
    return onlyCall({.type = type, .provider = provider}).service;
  };
  EXPECT_EQ(serviceOfRow(1, "com.apple.Telephony"), "phone");
  EXPECT_EQ(serviceOfRow(8, kFaceTime), "facetime");
  EXPECT_EQ(serviceOfRow(0, "ABCDE12345.com.example.chatter"), "ABCDE12345.com.example.chatter");
  EXPECT_EQ(serviceOfRow(1, ""), "phone");
  EXPECT_EQ(serviceOfRow(8, ""), "facetime");
  EXPECT_EQ(serviceOfRow(16, ""), "facetime");
  EXPECT_EQ(serviceOfRow(7, ""), "an app of type 7");
}

TEST_F(CallStore, ReadsListsOfEveryGeneration) {
  for (const CallGeneration generation : {CallGeneration::ios9, CallGeneration::ios10, CallGeneration::ios13,
                                          CallGeneration::ios17, CallGeneration::ios27}) {
    const std::string name = "generation " + std::to_string(static_cast<int>(generation));
    const Call call = onlyCall({.duration = 12,
                                .address = "maya@example.com",
                                .outgoing = true,
                                .type = 8,
                                .provider = kFaceTime,
                                .uniqueId = "U-1",
                                .name = "Maya"},
                               generation);
    EXPECT_EQ(addressesOf(call), Addresses{"maya@example.com"}) << name;
    EXPECT_EQ(call.service, "facetime") << name;
    EXPECT_EQ(call.medium, CallMedium::kVideo) << name;
    EXPECT_EQ(call.status, CallStatus::kConnected) << name;
    EXPECT_EQ(call.cachedName, "Maya") << name;
    EXPECT_EQ(call.uniqueId, "U-1") << name;
    EXPECT_EQ(call.date, Date{kNoonSince1970}) << name;
  }
}

TEST_F(CallStore, ReadsHintsWhereTheListHasThem) {
  const CallRow row = {.address = "+15550100190", .junkConfidence = 2, .hasMessage = true, .emergency = true};
  const Call call = onlyCall(row);
  EXPECT_TRUE(call.isJunk && call.hasMessage && call.isEmergency);
  const Call older = onlyCall(row, CallGeneration::ios13);
  EXPECT_FALSE(older.isJunk || older.hasMessage || older.isEmergency);
}

TEST_F(CallStore, PassesOverThePlaceThatIsNone) {
  EXPECT_EQ(onlyCall({.place = "<<RecentsNumberLocationNotFound>>"}).place, "");
}

TEST_F(CallStore, HasNobodyForAWithheldNumber) {
  EXPECT_TRUE(onlyCall({}).people.empty());
  CallWriter writer(path());
  writer.addCall({.date = kNoon, .address = "x"});
  writer.file().execute("UPDATE ZCALLRECORD SET ZADDRESS = ''");
  finish(writer);
  EXPECT_TRUE(read().calls.front().people.empty());
}

TEST_F(CallStore, UnwrapsAddressesThatAreBytes) {
  EXPECT_EQ(addressesOf(onlyCall({.address = "+15550100142", .isAddressBytes = true})), Addresses{"+15550100142"});
  const std::string_view ended("+15550100142\0", 13);
  EXPECT_EQ(addressesOf(onlyCall({.address = ended, .isAddressBytes = true})), Addresses{"+15550100142"});
}

TEST_F(CallStore, CountsBytesThatAreNoTextAsEncrypted) {
  // As long as a number of twelve digits with its tag and its vector.
  std::string bytes;
  for (int i = 0; i < 44; ++i) bytes += static_cast<char>(0x91 + 37 * i);
  const Call call = onlyCall({.address = bytes, .isAddressBytes = true});
  EXPECT_TRUE(call.isEncrypted);
  ASSERT_EQ(call.people.size(), 1U);
  EXPECT_EQ(call.people.front().address, "");
  EXPECT_TRUE(call.people.front().isEncrypted);

  CallWriter writer(path());
  writer.addCall({.date = kNoon, .address = "+15550100142"});
  writer.file().execute("UPDATE ZCALLRECORD SET ZNAME = x'00FF9A0102'");
  finish(writer);
  const Call named = read().calls.front();
  EXPECT_TRUE(named.isEncrypted);
  EXPECT_EQ(named.cachedName, "");
  EXPECT_EQ(addressesOf(named), Addresses{"+15550100142"});
}

TEST_F(CallStore, FindsEverybodyOfAGroup) {
  for (const CallGeneration generation : {CallGeneration::ios13, CallGeneration::ios17}) {
    CallWriter writer(path(), generation);
    const std::int64_t maya = writer.addHandle("+15550100142"), priya = writer.addHandle("priya@example.com"),
                       tom = writer.addHandle("+15550100126");
    writer.addCall({.date = kNoon, .type = 8, .provider = kFaceTime, .people = {maya, priya, tom}, .initiator = priya});
    // One of the group stands in the row as well, written in another way.
    writer.addCall({.date = kNoon, .address = "+1 (555) 010-0142", .people = {maya, tom}});
    writer.addCall({.date = kNoon, .address = "+15550100199", .people = {maya, tom}});
    finish(writer);
    const std::vector<Call> calls = read().calls;
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_EQ(addressesOf(calls[0]), (Addresses{"+15550100142", "priya@example.com", "+15550100126"}));
    EXPECT_TRUE(calls[0].isGroup());
    EXPECT_EQ(calls[0].initiator, generation == CallGeneration::ios17 ? "priya@example.com" : "");
    EXPECT_EQ(addressesOf(calls[1]), (Addresses{"+15550100142", "+15550100126"}));
    EXPECT_EQ(addressesOf(calls[2]), (Addresses{"+15550100142", "+15550100126", "+15550100199"}));
  }
}

TEST_F(CallStore, TakesTheOnePersonBesideTheRowForTheRowsOwn) {
  CallWriter writer(path());
  const std::int64_t maya = writer.addHandle("(555) 010-0142");
  writer.addCall({.date = kNoon, .address = "+15550100142", .people = {maya}});
  writer.addCall({.date = kNoon, .people = {maya}});
  finish(writer);
  const std::vector<Call> calls = read().calls;
  EXPECT_EQ(addressesOf(calls[0]), Addresses{"+15550100142"});
  EXPECT_EQ(addressesOf(calls[1]), Addresses{"(555) 010-0142"});
  EXPECT_FALSE(calls[0].isGroup() || calls[1].isGroup());
}

TEST_F(CallStore, CountsPeopleWhoseAddressIsGone) {
  CallWriter writer(path());
  const std::int64_t maya = writer.addHandle("+15550100142");
  writer.addCall({.date = kNoon, .people = {maya, 77, 78}});
  writer.addCall({.date = kNoon, .people = {79}});
  writer.addCall({.date = kNoon, .address = "+15550100126", .people = {80}, .initiator = 81});
  finish(writer);
  const std::vector<Call> calls = read().calls;
  EXPECT_EQ(addressesOf(calls[0]), Addresses{"+15550100142"});
  EXPECT_EQ(calls[0].unknownPeople, 2U);
  EXPECT_TRUE(calls[1].people.empty());
  EXPECT_EQ(calls[1].unknownPeople, 1U);
  EXPECT_EQ(addressesOf(calls[2]), Addresses{"+15550100126"});
  EXPECT_EQ(calls[2].unknownPeople, 0U);
  EXPECT_EQ(calls[2].initiator, "");
}

TEST_F(CallStore, FindsTheTablesOfPeopleByTheirEndings) {
  CallWriter writer(path());
  const std::int64_t maya = writer.addHandle("+15550100142"), tom = writer.addHandle("+15550100126");
  writer.addCall({.date = kNoon});
  writer.file().execute(
      "DROP TABLE Z_2REMOTEPARTICIPANTHANDLES;"
      "CREATE TABLE \"Z_9\"\"; DROP TABLE ZCALLRECORD; --REMOTEPARTICIPANTHANDLES\" "
      "(\"Z_9\"\"REMOTEPARTICIPANTCALLS\" INTEGER, z_12remoteparticipanthandles INTEGER);"
      "INSERT INTO \"Z_9\"\"; DROP TABLE ZCALLRECORD; --REMOTEPARTICIPANTHANDLES\" VALUES (1, " +
      std::to_string(tom) + "), (1, " + std::to_string(maya) + "), (1, NULL), (NULL, 1);");
  finish(writer);
  EXPECT_EQ(addressesOf(read().calls.front()), (Addresses{"+15550100126", "+15550100142"}));
}

TEST_F(CallStore, BoundsThePeopleOfACall) {
  CallWriter writer(path());
  std::vector<std::int64_t> people;
  for (int i = 0; i < 300; ++i) people.push_back(writer.addHandle("p" + std::to_string(i) + "@example.com"));
  writer.addCall({.date = kNoon, .people = people});
  finish(writer);
  EXPECT_EQ(read().calls.front().people.size(), 100U);
}

TEST_F(CallStore, HasNoDateOrDurationThatMakesNoSense) {
  CallWriter writer(path());
  const char* const kAbsurd[] = {"NULL", "0", "1e300", "-1e300", "9e999", "-9e999", "'soon'", "x'00'", "-1e12", "1e12"};
  for (const char* date : kAbsurd) {
    const std::int64_t call = writer.addCall({.date = kNoon, .duration = 1});
    writer.file().execute(std::string("UPDATE ZCALLRECORD SET ZDATE = ") + date +
                          " WHERE Z_PK = " + std::to_string(call));
  }
  const std::size_t dates = std::size(kAbsurd);
  for (const char* duration : {"NULL", "-1", "1e300", "9e999", "'long'", "x'00'"}) {
    const std::int64_t call = writer.addCall({.date = kNoon});
    writer.file().execute(std::string("UPDATE ZCALLRECORD SET ZDURATION = ") + duration +
                          " WHERE Z_PK = " + std::to_string(call));
  }
  finish(writer);
  const std::vector<Call> calls = read().calls;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (i < dates) {
      EXPECT_FALSE(calls[i].date.has_value()) << kAbsurd[i];
      EXPECT_EQ(calls[i].duration, 1.0);
    } else {
      EXPECT_TRUE(calls[i].date.has_value());
      EXPECT_FALSE(calls[i].duration.has_value()) << i - dates;
    }
  }
}

TEST_F(CallStore, KeepsDatesBefore2001AndFarAhead) {
  EXPECT_EQ(onlyCall({.date = -978'307'200}).date, Date{0});
  EXPECT_EQ(onlyCall({.date = 5e9}).date, Date{5'978'307'200});
}

TEST_F(CallStore, TakesTextsAsTheyAre) {
  const std::string name = "Robert'); DROP TABLE ZCALLRECORD;--";
  const Call call = onlyCall({.address = "o'brien@example.com", .uniqueId = name, .name = name});
  EXPECT_EQ(call.cachedName, name);
  EXPECT_EQ(call.uniqueId, name);
  EXPECT_EQ(addressesOf(call), Addresses{"o'brien@example.com"});
}

TEST_F(CallStore, ClearsControlCharactersAndBytesThatAreNoText) {
  EXPECT_EQ(onlyCall({.name = "  A\x1b[2J\nB\x7f "}).cachedName, "A [2J B");
  EXPECT_EQ(onlyCall({.name = std::string_view("A\0B", 3)}).cachedName, "A B");
  EXPECT_EQ(onlyCall({.name = "caf\xE9"}).cachedName, "caf\uFFFD");
  EXPECT_LE(onlyCall({.name = std::string(900'000, 'x')}).cachedName.size(), 1024U);
}

TEST_F(CallStore, ReadsNumbersThatStandAsNumbers) {
  CallWriter writer(path());
  writer.addCall({.date = kNoon, .address = "x", .isAddressBytes = true});
  writer.file().execute("UPDATE ZCALLRECORD SET ZADDRESS = 15550100142, ZORIGINATED = 1.0");
  finish(writer);
  const Call call = read().calls.front();
  EXPECT_EQ(addressesOf(call), Addresses{"15550100142"});
  EXPECT_EQ(call.direction, CallDirection::kOutgoing);
}

TEST_F(CallStore, ReadsRowsThatStandOnlyInTheWalAndLeavesTheSourceAlone) {
  {
    CallWriter writer(path(), CallGeneration::ios17, Placement::wal);
    for (int i = 0; i < 5; ++i) writer.addCall({.date = kNoon + i, .address = "+15550100142"});
    finish(writer);
  }
  const std::filesystem::path wal = path().string() + "-wal";
  ASSERT_TRUE(std::filesystem::exists(wal));
  EXPECT_EQ(std::filesystem::file_size(path()), 4096U);
  const std::string before = testing::bytesOf(path()), walBefore = testing::bytesOf(wal);
  const StoredCalls stored = read();
  EXPECT_EQ(stored.calls.size(), 5U);
  EXPECT_EQ(stored.rows, 5U);
  EXPECT_EQ(testing::bytesOf(path()), before);
  EXPECT_EQ(testing::bytesOf(wal), walBefore);
}

TEST_F(CallStore, SaysWhatIsNoCallList) {
  const auto problemAfter = [this](const std::string& sql) {
    CallWriter writer(path());
    finish(writer);
    change(sql);
    return problem();
  };
  EXPECT_NE(problemAfter("ALTER TABLE ZCALLRECORD RENAME TO ZOTHER").find("not a call list: it has no table"),
            std::string::npos)
      << problem();
  EXPECT_NE(problemAfter("ALTER TABLE ZCALLRECORD RENAME COLUMN ZORIGINATED TO ZOTHER").find("no column 'ZORIGINATED'"),
            std::string::npos)
      << problem();
  // What is called so must be a table: a view might never end.
  EXPECT_NE(
      problemAfter("DROP TABLE ZCALLRECORD; CREATE VIEW ZCALLRECORD AS WITH RECURSIVE n(Z_PK, ZDATE, ZORIGINATED) "
                   "AS (SELECT 1, 1, 1 UNION ALL SELECT Z_PK + 1, 1, 1 FROM n) SELECT * FROM n")
          .find("no table 'ZCALLRECORD'"),
      std::string::npos)
      << problem();
}

TEST_F(CallStore, SaysThatAFileIsDamaged) {
  {
    CallWriter writer(path());
    for (int i = 0; i < 2000; ++i) writer.addCall({.date = kNoon + i, .address = "+15550100142", .uniqueId = "U"});
    finish(writer);
  }
  std::fstream file(path(), std::ios::binary | std::ios::in | std::ios::out);
  const auto size = static_cast<std::streamoff>(std::filesystem::file_size(path()));
  for (std::streamoff page = 20 * 4096; page + 4096 < size; page += 8192) {
    file.seekp(page);
    file << std::string(200, '\xA5');
  }
  file.close();
  EXPECT_NE(problem().find("is damaged: not all calls can be read"), std::string::npos) << problem();
}

}  // namespace
}  // namespace chatsum::device
