#include "hosts/device/calls/Call.h"

#include <fmt/format.h>

#include <cmath>

namespace chatsum::device {
namespace {

std::string serviceInWords(const Call& call) {
  std::string words;
  if (call.service == kPhoneService) words = "phone";
  if (call.service == kFaceTimeService) words = "FaceTime";
  // Phones speak; only what is unusual for a service is said.
  const bool isUsual = call.service == kPhoneService && call.medium == CallMedium::kAudio;
  if (!isUsual && call.medium != CallMedium::kUnknown) {
    words.append(words.empty() ? "" : " ").append(wordOf(call.medium));
  }
  return words.empty() ? words : words + " ";
}

}  // namespace

std::string_view wordOf(CallMedium medium) {
  switch (medium) {
    case CallMedium::kAudio:
      return "audio";
    case CallMedium::kVideo:
      return "video";
    case CallMedium::kUnknown:
      break;
  }
  return "";
}

std::string_view wordOf(CallDirection direction) {
  return direction == CallDirection::kOutgoing ? "outgoing" : "incoming";
}

std::string_view wordOf(CallStatus status) {
  switch (status) {
    case CallStatus::kAnswered:
      return "answered";
    case CallStatus::kDeclined:
      return "declined";
    case CallStatus::kBlocked:
      return "blocked";
    case CallStatus::kConnected:
      return "connected";
    case CallStatus::kNoAnswer:
      return "no answer";
    case CallStatus::kMissed:
      break;
  }
  return "missed";
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
  std::string words = call.direction == CallDirection::kOutgoing ? "Outgoing " : "Incoming ";
  words += serviceInWords(call) + "call";
  if (call.service != kPhoneService && call.service != kFaceTimeService) words += " by " + call.service;
  if (call.isGroup()) words += fmt::format(" with {} people", call.people.size() + call.unknownPeople);
  return words;
}

std::string callInWords(const Call& call) {
  std::string words = kindInWords(call);
  words.append(", ").append(wordOf(call.status));
  if (call.duration) words += ", " + durationText(call.duration);
  if (call.isEmergency) words += ", emergency";
  if (call.isJunk) words += ", marked as junk";
  if (call.hasMessage) words += ", left a message";
  return words;
}

std::string peopleInWords(const Call& call) {
  std::string words;
  for (const CallPerson& person : call.people) {
    words.append(words.empty() ? "" : ", ").append(person.name);
    if (person.isNamed && !person.address.empty()) words += " (" + person.address + ")";
  }
  if (call.unknownPeople == 0) return words;
  if (words.empty()) return call.unknownPeople == 1 ? "Unknown" : fmt::format("{} unknown people", call.unknownPeople);
  return words + fmt::format(", {} unknown", call.unknownPeople);
}

}  // namespace chatsum::device
