#include "hosts/device/calls/Call.h"

#include <fmt/format.h>

#include <cmath>

#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

/// Languages put these together in different ways, so each is written out. Phones speak; only what is unusual for a
/// service is said.
std::string phoneCallInWords(bool isOutgoing, bool isVideo) {
  if (isVideo) return isOutgoing ? say("Outgoing phone video call") : say("Incoming phone video call");
  return isOutgoing ? say("Outgoing phone call") : say("Incoming phone call");
}

std::string faceTimeCallInWords(bool isOutgoing, CallMedium medium) {
  switch (medium) {
    case CallMedium::kAudio:
      return isOutgoing ? say("Outgoing FaceTime audio call") : say("Incoming FaceTime audio call");
    case CallMedium::kVideo:
      return isOutgoing ? say("Outgoing FaceTime video call") : say("Incoming FaceTime video call");
    case CallMedium::kUnknown:
      break;
  }
  return isOutgoing ? say("Outgoing FaceTime call") : say("Incoming FaceTime call");
}

std::string appCallInWords(bool isOutgoing, CallMedium medium, const std::string& app) {
  switch (medium) {
    case CallMedium::kAudio:
      return isOutgoing ? say("Outgoing audio call by {0}", app) : say("Incoming audio call by {0}", app);
    case CallMedium::kVideo:
      return isOutgoing ? say("Outgoing video call by {0}", app) : say("Incoming video call by {0}", app);
    case CallMedium::kUnknown:
      break;
  }
  return isOutgoing ? say("Outgoing call by {0}", app) : say("Incoming call by {0}", app);
}

}  // namespace

std::string_view wordOf(CallMedium medium) {
  switch (medium) {
    case CallMedium::kAudio:
      return toSay("audio");
    case CallMedium::kVideo:
      return toSay("video");
    case CallMedium::kUnknown:
      break;
  }
  return "";
}

std::string_view wordOf(CallDirection direction) {
  return direction == CallDirection::kOutgoing ? toSay("outgoing") : toSay("incoming");
}

std::string_view wordOf(CallStatus status) {
  switch (status) {
    case CallStatus::kAnswered:
      return toSay("answered");
    case CallStatus::kDeclined:
      return toSay("declined");
    case CallStatus::kBlocked:
      return toSay("blocked");
    case CallStatus::kConnected:
      return toSay("connected");
    case CallStatus::kNoAnswer:
      return toSay("no answer");
    case CallStatus::kMissed:
      break;
  }
  return toSay("missed");
}

CallStatus statusOf(const CallOutcome& outcome) {
  if (outcome.direction == CallDirection::kOutgoing) {
    return outcome.isConnected ? CallStatus::kConnected : CallStatus::kNoAnswer;
  }
  if (outcome.isAnswered) return CallStatus::kAnswered;
  if (outcome.isBlocked) return CallStatus::kBlocked;
  return outcome.isDeclined ? CallStatus::kDeclined : CallStatus::kMissed;
}

std::optional<Date> sensibleDate(double secondsSince1970) {
  constexpr double kYear1 = -62135596800.0, kYear10000 = 253402300800.0;
  const bool isSensible = secondsSince1970 >= kYear1 && secondsSince1970 < kYear10000;  // false for NaN, too
  return isSensible ? std::optional(Date{secondsSince1970}) : std::nullopt;
}

std::optional<double> sensibleDuration(double seconds) {
  constexpr double kTenYears = 10 * 366 * 86400.0;
  return seconds >= 0 && seconds <= kTenYears ? std::optional(seconds) : std::nullopt;
}

std::string durationText(const std::optional<double>& seconds) {
  constexpr std::int64_t kMinute = 60, kHour = 3600;
  if (!seconds) return "";
  const auto whole = static_cast<std::int64_t>(std::floor(*seconds));
  return fmt::format("{}:{:02}:{:02}", whole / kHour, whole % kHour / kMinute, whole % kMinute);
}

std::string kindInWords(const Call& call) {
  const bool isOutgoing = call.direction == CallDirection::kOutgoing;
  std::string words;
  if (call.service == kPhoneService) {
    words = phoneCallInWords(isOutgoing, call.medium == CallMedium::kVideo);
  } else if (call.service == kFaceTimeService) {
    words = faceTimeCallInWords(isOutgoing, call.medium);
  } else {
    words = appCallInWords(isOutgoing, call.medium, call.service);
  }
  if (!call.isGroup()) return words;
  return sayCounted(call.people.size() + call.unknownPeople, "{1} with {0} person", "{1} with {0} people", words);
}

std::string callInWords(const Call& call) {
  std::string words = kindInWords(call);
  words.append(", ").append(said(wordOf(call.status)));
  if (call.duration) words += ", " + durationText(call.duration);
  if (call.isEmergency) words += ", " + say("emergency");
  if (call.isJunk) words += ", " + say("marked as junk");
  if (call.hasMessage) words += ", " + say("left a message");
  return words;
}

std::string peopleInWords(const Call& call) {
  std::string words;
  for (const CallPerson& person : call.people) {
    words.append(words.empty() ? "" : ", ").append(person.name);
    if (person.isNamed && !person.address.empty()) words += " (" + person.address + ")";
  }
  if (call.unknownPeople == 0) return words;
  if (!words.empty()) return say("{0}, {1} unknown", words, call.unknownPeople);
  if (call.unknownPeople == 1) return say("Unknown");
  return sayCounted(call.unknownPeople, "{0} unknown person", "{0} unknown people");
}

}  // namespace chatsum::device
