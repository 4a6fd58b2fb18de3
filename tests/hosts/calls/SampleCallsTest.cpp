#include "hosts/device/sample/SampleCalls.h"

#include <set>

#include "hosts/device/sample/DevicePaths.h"
#include "hosts/device/sample/SampleDevice.h"
#include "tests/hosts/calls/CallFixture.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;

class SampleCalls : public testing::CallFixture {
 protected:
  void SetUp() override { ASSERT_EQ(writeSampleDevice(device()), std::nullopt); }
  [[nodiscard]] fs::path device() const { return fs::path(folder_.path()) / "device"; }
  [[nodiscard]] static std::vector<Call> callsOf(const fs::path& list) {
    const auto snapshot = StoreSnapshot::take(list.string());
    EXPECT_TRUE(snapshot);
    auto calls = readCallStore(snapshot.value());
    EXPECT_TRUE(calls);
    return std::move(calls.value().calls);
  }
};

TEST_F(SampleCalls, AreOfEveryKind) {
  std::set<CallStatus> statuses;
  bool hasGroup = false, hasWithheld = false, hasApp = false, hasJunk = false, hasEmergency = false, hasMessage = false;
  for (const Call& call : callsOf(callListPath(device()))) {
    statuses.insert(call.status);
    hasGroup = hasGroup || call.people.size() > 2;
    hasWithheld = hasWithheld || call.people.empty();
    hasApp = hasApp || (call.service != kPhoneService && call.service != kFaceTimeService);
    hasJunk = hasJunk || call.isJunk;
    hasEmergency = hasEmergency || call.isEmergency;
    hasMessage = hasMessage || call.hasMessage;
  }
  EXPECT_EQ(statuses.size(), 6U);
  EXPECT_TRUE(hasGroup && hasWithheld && hasApp && hasJunk && hasEmergency && hasMessage);
}

TEST_F(SampleCalls, StandPartlyInBothLists) {
  std::set<std::string> identifiers;
  const auto calls = callsOf(callListPath(device()));
  for (const Call& call : calls) EXPECT_TRUE(identifiers.insert(call.uniqueId).second) << call.uniqueId;
  const auto temporary = callsOf(temporaryCallListPath(device()));
  ASSERT_EQ(temporary.size(), 2U);
  EXPECT_TRUE(identifiers.contains(temporary[0].uniqueId));
  EXPECT_FALSE(identifiers.contains(temporary[1].uniqueId));
}

TEST_F(SampleCalls, AreTheSameEveryTime) {
  const fs::path other = fs::path(folder_.path()) / "other";
  ASSERT_EQ(writeSampleDevice(other), std::nullopt);
  EXPECT_EQ(testing::bytesOf(callListPath(device())), testing::bytesOf(callListPath(other)));
  EXPECT_EQ(testing::bytesOf(temporaryCallListPath(device())), testing::bytesOf(temporaryCallListPath(other)));
}

TEST_F(SampleCalls, NeverReplaceSomebodysOwn) {
  const fs::path other = fs::path(folder_.path()) / "other";
  CallWriter writer(callListPath(other));
  finish(writer);
  const std::string before = testing::bytesOf(callListPath(other));
  EXPECT_TRUE(writeSampleDevice(other).has_value());
  EXPECT_EQ(testing::bytesOf(callListPath(other)), before);
  EXPECT_FALSE(fs::exists(messageStorePath(other)));
}

}  // namespace
}  // namespace chatsum::device
