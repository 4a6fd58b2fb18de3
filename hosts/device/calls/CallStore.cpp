#include "hosts/device/calls/CallStore.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "hosts/device/calls/CallHandles.h"
#include "hosts/device/calls/CallTables.h"
#include "hosts/device/calls/StoredNumber.h"
#include "hosts/device/calls/StoredText.h"
#include "hosts/device/conversations/ComparableAddress.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/stores/StoreCheck.h"

namespace chatsum::device {
namespace {

constexpr std::array<std::string_view, 20> kColumns = {"Z_PK",
                                                       "ZDATE",
                                                       "ZDURATION",
                                                       "ZORIGINATED",
                                                       "ZANSWERED",
                                                       "ZCALLTYPE",
                                                       "ZSERVICE_PROVIDER",
                                                       "ZADDRESS",
                                                       "ZNAME",
                                                       "ZLOCATION",
                                                       "ZISO_COUNTRY_CODE",
                                                       "ZDISCONNECTED_CAUSE",
                                                       "ZUNIQUE_ID",
                                                       "ZJUNKCONFIDENCE",
                                                       "ZJUNKIDENTIFICATIONCATEGORY",
                                                       "ZFILTERED_OUT_REASON",
                                                       "ZHASMESSAGE",
                                                       "ZWASEMERGENCYCALL",
                                                       "ZBLOCKEDBYEXTENSION",
                                                       "ZINITIATOR"};
enum Column : int {
  cKey,
  cDate,
  cDuration,
  cOriginated,
  cAnswered,
  cType,
  cProvider,
  cAddress,
  cName,
  cPlace,
  cCountry,
  cCause,
  cUniqueId,
  cJunk,
  cJunkCategory,
  cFiltered,
  cMessage,
  cEmergency,
  cBlocked,
  cInitiator
};

// Codes of ZCALLTYPE and, as far as it is known, of ZDISCONNECTED_CAUSE.
constexpr std::int64_t kPhoneCall = 1, kFaceTimeVideo = 8, kFaceTimeAudio = 16;
constexpr std::int64_t kDeclinedHere = 6;

constexpr std::string_view kPhoneProvider = "com.apple.Telephony", kFaceTimeProvider = "com.apple.FaceTime";
constexpr std::string_view kNoPlace = "<<RecentsNumberLocationNotFound>>";

const StoreKind& callStoreKind() {
  static const StoreKind kKind = {toSay("a call list"), {{"ZCALLRECORD", {"Z_PK", "ZDATE", "ZORIGINATED"}}}};
  return kKind;
}

/// Lists before iOS 10 do not name the service, so the type of the call stands in for it.
std::string serviceOf(std::string provider, const std::optional<std::int64_t>& type) {
  if (provider == kPhoneProvider) return std::string(kPhoneService);
  if (provider == kFaceTimeProvider) return std::string(kFaceTimeService);
  if (!provider.empty()) return provider;
  if (type == kPhoneCall) return std::string(kPhoneService);
  if (type == kFaceTimeVideo || type == kFaceTimeAudio) return std::string(kFaceTimeService);
  return type ? say("an app of type {0}", *type) : say("an unknown app");
}

CallMedium mediumOf(const std::string& service, const std::optional<std::int64_t>& type) {
  if (type == kFaceTimeVideo) return CallMedium::kVideo;
  return type == kFaceTimeAudio || service == kPhoneService ? CallMedium::kAudio : CallMedium::kUnknown;
}

bool isOn(const sqlite::Statement& row, int column) { return storedInteger(row, column).value_or(0) != 0; }

void addPerson(const StoredText& address, Call& call) {
  if (address.isEncrypted) {
    call.isEncrypted = true;
    call.people.push_back({.isEncrypted = true});
    return;
  }
  const bool isKnown = std::any_of(call.people.begin(), call.people.end(),
                                   [&](const CallPerson& person) { return person.address == address.text; });
  if (!isKnown && !address.text.empty()) call.people.push_back({.address = address.text});
}

bool holds(const Call& call, const std::string& address) {
  const ComparableAddress wanted(address, "");
  return std::any_of(call.people.begin(), call.people.end(),
                     [&](const CallPerson& person) { return wanted.isSameAs(person.address); });
}

/// The row has one address at most; all people of a group stand in tables of their own, where newer lists have the one
/// person of a call as well.
void addPeople(const sqlite::Statement& row, const CallHandles& handles, Call& call) {
  const StoredText address = storedText(row, cAddress);
  const std::vector<std::int64_t>& people = handles.ofCall(row.integer(cKey));
  if (people.size() > 1 || address.text.empty()) {
    for (const std::int64_t handle : people) {
      const StoredText* const known = handles.address(handle);
      if (known) {
        addPerson(*known, call);
      } else if (people.size() > 1 || !address.isEncrypted) {
        ++call.unknownPeople;
      }
    }
  }
  if (!address.text.empty() && !holds(call, address.text)) addPerson(address, call);
  if (address.isEncrypted && call.people.empty()) addPerson(address, call);
  if (const auto initiator = storedInteger(row, cInitiator)) {
    if (const StoredText* known = handles.address(*initiator)) call.initiator = known->text;
  }
}

Call callOf(const sqlite::Statement& row, const CallHandles& handles) {
  Call call;
  if (const auto since2001 = storedReal(row, cDate); since2001 && *since2001 != 0) {
    call.date = sensibleDate(*since2001 + static_cast<double>(kSecondsFrom1970To2001));
  }
  const auto duration = storedReal(row, cDuration);
  call.duration = duration ? sensibleDuration(*duration) : std::nullopt;
  call.direction = isOn(row, cOriginated) ? CallDirection::kOutgoing : CallDirection::kIncoming;
  const auto type = storedInteger(row, cType);
  call.service = serviceOf(storedText(row, cProvider).text, type);
  call.medium = mediumOf(call.service, type);
  addPeople(row, handles, call);
  const StoredText name = storedText(row, cName);
  call.cachedName = name.text;
  call.isEncrypted = call.isEncrypted || name.isEncrypted;
  call.place = storedText(row, cPlace).text;
  if (call.place == kNoPlace) call.place.clear();
  call.country = storedText(row, cCountry).text;
  call.uniqueId = storedText(row, cUniqueId).text;
  call.isJunk = storedInteger(row, cJunk).value_or(0) > 0 || !storedText(row, cJunkCategory).text.empty();
  call.hasMessage = isOn(row, cMessage);
  call.isEmergency = isOn(row, cEmergency);

  const bool isConnected = duration.value_or(0) > 0;
  const bool isOfApp = call.service != kPhoneService && call.service != kFaceTimeService;
  call.status = statusOf({.direction = call.direction,
                          .isAnswered = row.isNull(cAnswered) ? isConnected : isOn(row, cAnswered),
                          .isConnected = isConnected,
                          .isBlocked = isOn(row, cFiltered) || !storedText(row, cBlocked).text.empty(),
                          .isDeclined = !isOfApp && storedInteger(row, cCause) == kDeclinedHere});
  return call;
}

}  // namespace

StoreResult<StoredCalls> readCallStore(const StoreSnapshot& snapshot) {
  CallHandles handles;
  return readCallTable(snapshot, callStoreKind(),
                       {.name = "ZCALLRECORD",
                        .columns = kColumns,
                        .prepare = [&](CallTables& tables) { return handles.read(tables); },
                        .callOf = [&](const sqlite::Statement& row) { return callOf(row, handles); }});
}

}  // namespace chatsum::device
