// A call as a device's call list has it, whatever app it went through, and the words for what it was. Plain values and
// pure functions: any thread, one at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/language/Say.h"
#include "platform/foundation/Date.h"

namespace chatsum::device {

inline constexpr std::string_view kPhoneService = "phone";
inline constexpr std::string_view kFaceTimeService = "facetime";

enum class CallMedium : std::uint8_t { kUnknown, kAudio, kVideo };
enum class CallDirection : std::uint8_t { kIncoming, kOutgoing };
/// The first four are of incoming calls, the others of outgoing ones.
enum class CallStatus : std::uint8_t { kAnswered, kMissed, kDeclined, kBlocked, kConnected, kNoAnswer };

/// One on the other side of a call.
struct CallPerson {
  std::string address = {};  ///< a number or an e-mail address as it is stored; empty: withheld, encrypted or not known
  std::string name = {};     ///< who that is in words, without anybody's name the address as a phone prints it
  bool isNamed = false;      ///< the name says more than the address
  bool isEncrypted = false;  ///< the store holds the address, but encrypted
};

struct Call {
  std::optional<Date> date;        ///< the start, fraction kept; none when the store has none that makes sense
  std::optional<double> duration;  ///< seconds, never negative; none when the store has none that makes sense
  std::vector<CallPerson> people;  ///< each once; a withheld caller is one without an address
  std::string cachedName;          ///< the other person's name as the call list remembers it; often empty
  std::string service;             ///< kPhoneService, kFaceTimeService, or an app's bundle identifier
  CallMedium medium = CallMedium::kUnknown;
  CallDirection direction = CallDirection::kIncoming;
  CallStatus status = CallStatus::kMissed;
  std::string uniqueId;             ///< the same for the same call in every list; empty in old lists
  std::string initiator;            ///< the address of who began a group call, as far as it is known
  std::string place;                ///< where the number is at home, in words of the device's language
  std::string country;              ///< of the number, ISO 3166 alpha-2, any case
  std::uint32_t unknownPeople = 0;  ///< that took part but whose addresses are not in the store
  bool isEncrypted = false;         ///< an address or the name is there but encrypted
  bool isJunk = false;              ///< the system or an app took it for junk
  bool hasMessage = false;          ///< the caller left a voicemail or video message
  bool isEmergency = false;

  [[nodiscard]] bool isGroup() const { return people.size() + unknownPeople > 1; }
};

/// "audio" or "video"; empty when it is not known. Words such as this one are English; said() translates them.
[[nodiscard]] std::string_view wordOf(CallMedium medium);
/// "incoming" or "outgoing".
[[nodiscard]] std::string_view wordOf(CallDirection direction);
/// "answered", "missed", "declined", "blocked", "connected" or "no answer".
[[nodiscard]] std::string_view wordOf(CallStatus status);

/// What tells the status of a call.
struct CallOutcome {
  CallDirection direction = CallDirection::kIncoming;
  bool isAnswered = false;   ///< counts for incoming calls
  bool isConnected = false;  ///< counts for outgoing ones: it lasted
  bool isBlocked = false, isDeclined = false;
};
[[nodiscard]] CallStatus statusOf(const CallOutcome& outcome);

/// A stored number of seconds since 1970 as a date; none when it is no date of a calendar (years 1 to 9999).
[[nodiscard]] std::optional<Date> sensibleDate(double secondsSince1970);
/// A stored number of seconds as a duration; none when it is negative or longer than anybody speaks (ten years).
[[nodiscard]] std::optional<double> sensibleDuration(double seconds);

/// "0:03:12", whole seconds; "" for none.
[[nodiscard]] std::string durationText(const std::optional<double>& seconds);

/// What kind of call it was: "Incoming FaceTime video call", "Outgoing phone call", "Incoming FaceTime audio call with
/// 3 people", "Incoming call by com.example.app".
[[nodiscard]] std::string kindInWords(const Call& call);

/// Everything about a call but who and when: "Incoming FaceTime video call, answered, 0:03:12, left a message".
[[nodiscard]] std::string callInWords(const Call& call);

/// Who the other side is, with the address beside the name where that is something else: "Maya Lindqvist
/// (+15550100142)",
/// "+1 (555) 010-0163", "No caller ID"; several people with ", " between them.
[[nodiscard]] std::string peopleInWords(const Call& call);

}  // namespace chatsum::device
