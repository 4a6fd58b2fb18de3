#include "hosts/device/calls/Call.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace chatsum::device {
namespace {

Call faceTimeCall() {
  Call call;
  call.service = kFaceTimeService;
  call.medium = CallMedium::kVideo;
  call.status = CallStatus::kAnswered;
  call.duration = 192.9;
  call.people = {{.address = "a@example.com"}};
  return call;
}

TEST(Call, SaysWhatItWas) {
  Call call = faceTimeCall();
  EXPECT_EQ(callInWords(call), "Incoming FaceTime video call, answered, 0:03:12");
  call.medium = CallMedium::kAudio;
  call.direction = CallDirection::kOutgoing;
  call.status = CallStatus::kNoAnswer;
  call.duration = 0;
  EXPECT_EQ(callInWords(call), "Outgoing FaceTime audio call, no answer, 0:00:00");
  call.medium = CallMedium::kUnknown;
  call.duration.reset();
  EXPECT_EQ(callInWords(call), "Outgoing FaceTime call, no answer");
  call.service = kPhoneService;
  call.medium = CallMedium::kAudio;
  EXPECT_EQ(kindInWords(call), "Outgoing phone call");
  call.service = "com.example.chatter";
  EXPECT_EQ(kindInWords(call), "Outgoing audio call by com.example.chatter");
  call.medium = CallMedium::kUnknown;
  EXPECT_EQ(kindInWords(call), "Outgoing call by com.example.chatter");
}

TEST(Call, SaysHowManyTookPart) {
  Call call = faceTimeCall();
  call.unknownPeople = 1;
  EXPECT_EQ(kindInWords(call), "Incoming FaceTime video call with 2 people");
  call.people.push_back({.address = "b@example.com"});
  EXPECT_EQ(kindInWords(call), "Incoming FaceTime video call with 3 people");
}

TEST(Call, AddsWhatIsSpecial) {
  Call call = faceTimeCall();
  call.isEmergency = call.isJunk = call.hasMessage = true;
  EXPECT_EQ(callInWords(call),
            "Incoming FaceTime video call, answered, 0:03:12, emergency, marked as junk, left a message");
}

TEST(Call, WritesDurationsInWholeSeconds) {
  EXPECT_EQ(durationText(0.0), "0:00:00");
  EXPECT_EQ(durationText(59.99), "0:00:59");
  EXPECT_EQ(durationText(3600.0), "1:00:00");
  EXPECT_EQ(durationText(360'061.0), "100:01:01");
  EXPECT_EQ(durationText(std::nullopt), "");
}

TEST(Call, KnowsWhatIsNoDuration) {
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double seconds : {-0.001, -1e300, 1e300, infinite, -infinite, std::nan("")}) {
    EXPECT_FALSE(sensibleDuration(seconds).has_value()) << seconds;
  }
  EXPECT_EQ(sensibleDuration(86'400), 86'400.0);
}

TEST(Call, KnowsWhatIsNoDate) {
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double seconds : {-1e300, 1e300, infinite, -infinite, std::nan(""), -62135596801.0, 253402300800.0}) {
    EXPECT_FALSE(sensibleDate(seconds).has_value()) << seconds;
  }
  EXPECT_EQ(sensibleDate(253402300799.0), Date{253402300799.0});
  EXPECT_EQ(sensibleDate(-1), Date{-1});
}

}  // namespace
}  // namespace chatsum::device
