#include <gtest/gtest.h>

#include "hosts/device/calls/CallStore.h"
#include "tests/hosts/calls/CallFixture.h"

namespace chatsum::device {
namespace {

using testing::addressesOf;
using Addresses = std::vector<std::string>;

constexpr std::int64_t kMorning = 1'380'000'000;  // 2013-09-24T05:20:00Z

class OldCallStore : public testing::CallFixture {
 protected:
  [[nodiscard]] std::vector<Call> readOld() const {
    const auto snapshot = StoreSnapshot::take(path().string());
    EXPECT_TRUE(snapshot);
    auto calls = readOldCallStore(snapshot.value());
    if (!calls) ADD_FAILURE() << calls.problem().sentence;
    return calls ? std::move(calls.value().calls) : std::vector<Call>();
  }
  [[nodiscard]] Call onlyOldCall(OldCallRow row) const {
    if (row.date == 0) row.date = kMorning;
    OldCallWriter writer(path());
    writer.addCall(row);
    EXPECT_EQ(writer.finish(), std::nullopt);
    return readOld().front();
  }
};

TEST_F(OldCallStore, CountsSecondsSince1970) {
  const Call call = onlyOldCall({.duration = 61, .address = "5550142", .name = "Maya"});
  EXPECT_EQ(call.date, Date{kMorning});
  EXPECT_EQ(call.duration, 61.0);
  EXPECT_EQ(addressesOf(call), Addresses{"5550142"});
  EXPECT_EQ(call.cachedName, "Maya");
  EXPECT_EQ(call.uniqueId, "");
}

TEST_F(OldCallStore, TellsServiceDirectionAndStatusByTheFlags) {
  const auto wordsOf = [this](std::int64_t flags, std::int64_t duration) {
    const Call call = onlyOldCall({.duration = duration, .address = "5550142", .flags = flags});
    return call.service + " " + std::string(wordOf(call.direction)) + " " + std::string(wordOf(call.status));
  };
  EXPECT_EQ(wordsOf(4, 10), "phone incoming answered");
  EXPECT_EQ(wordsOf(4, 0), "phone incoming missed");
  EXPECT_EQ(wordsOf(5, 10), "phone outgoing connected");
  EXPECT_EQ(wordsOf(5, 0), "phone outgoing no answer");
  EXPECT_EQ(wordsOf(8, 0), "phone incoming blocked");
  EXPECT_EQ(wordsOf(9, 0), "phone outgoing no answer");
  EXPECT_EQ(wordsOf(16, 10), "facetime incoming answered");
  EXPECT_EQ(wordsOf(17, 0), "facetime outgoing no answer");
  EXPECT_EQ(wordsOf(0, 10), "phone incoming answered");
}

TEST_F(OldCallStore, KnowsNoMediumOfFaceTime) {
  EXPECT_EQ(onlyOldCall({.flags = 16}).medium, CallMedium::kUnknown);
  EXPECT_EQ(onlyOldCall({.flags = 4}).medium, CallMedium::kAudio);
}

TEST_F(OldCallStore, ReadsListsThatTellWhetherTheyWereAnswered) {
  OldCallWriter writer(path());
  writer.file().execute("ALTER TABLE call ADD COLUMN answered INTEGER DEFAULT '1'");
  writer.addCall({.date = kMorning, .duration = 9, .address = "5550142"});
  writer.addCall({.date = kMorning, .duration = 9, .address = "5550143"});
  writer.addCall({.date = kMorning, .address = "5550144"});
  writer.file().execute("UPDATE call SET answered = 0 WHERE address = '5550143'");
  ASSERT_EQ(writer.finish(), std::nullopt);
  const std::vector<Call> calls = readOld();
  EXPECT_EQ(calls[0].status, CallStatus::kAnswered);
  EXPECT_EQ(calls[1].status, CallStatus::kMissed);
  EXPECT_EQ(calls[2].status, CallStatus::kMissed);
}

TEST_F(OldCallStore, FallsBackToTheAddressAsItCame) {
  OldCallWriter writer(path());
  writer.addCall({.date = kMorning});
  writer.addCall({.date = kMorning});
  writer.file().execute("UPDATE call SET originalAddress = '555-0142' WHERE ROWID = 1");
  ASSERT_EQ(writer.finish(), std::nullopt);
  const std::vector<Call> calls = readOld();
  EXPECT_EQ(addressesOf(calls[0]), Addresses{"555-0142"});
  EXPECT_TRUE(calls[1].people.empty());
}

TEST_F(OldCallStore, RefusesAbsurdNumbers) {
  OldCallWriter writer(path());
  writer.addCall({.date = kMorning});
  writer.file().execute("UPDATE call SET date = 9e300, duration = -5, flags = 'many'");
  ASSERT_EQ(writer.finish(), std::nullopt);
  const Call call = readOld().front();
  EXPECT_FALSE(call.date.has_value());
  EXPECT_FALSE(call.duration.has_value());
  EXPECT_EQ(call.service, "phone");
}

TEST_F(OldCallStore, IsToldFromOtherDatabases) {
  CallWriter writer(path());
  finish(writer);
  const auto snapshot = StoreSnapshot::take(path().string());
  ASSERT_TRUE(snapshot);
  const auto calls = readOldCallStore(snapshot.value());
  ASSERT_FALSE(calls);
  EXPECT_NE(calls.problem().sentence.find("no table 'call'"), std::string::npos) << calls.problem().sentence;
}

}  // namespace
}  // namespace chatsum::device
