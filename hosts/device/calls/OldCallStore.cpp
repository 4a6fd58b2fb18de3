#include <array>
#include <string>
#include <string_view>

#include "hosts/device/calls/CallStore.h"
#include "hosts/device/calls/CallTables.h"
#include "hosts/device/calls/StoredNumber.h"
#include "hosts/device/calls/StoredText.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/stores/StoreCheck.h"

namespace chatsum::device {
namespace {

constexpr std::array<std::string_view, 7> kColumns = {"address",         "date",     "duration", "flags",
                                                      "originalAddress", "answered", "name"};
enum Column : int { cAddress, cDate, cDuration, cFlags, cOriginalAddress, cAnswered, cName };

// Bits of `flags`. The list's own triggers test the first.
constexpr std::int64_t kOutgoing = 1, kBlockedOrFailed = 8, kFaceTime = 16;

const StoreKind& oldCallStoreKind() {
  static const StoreKind kKind = {toSay("a call list"), {{"call", {"date", "flags"}}}};
  return kKind;
}

Call callOf(const sqlite::Statement& row) {
  Call call;
  if (const auto since1970 = storedReal(row, cDate); since1970 && *since1970 != 0) call.date = sensibleDate(*since1970);
  const auto duration = storedReal(row, cDuration);
  call.duration = duration ? sensibleDuration(*duration) : std::nullopt;
  const std::int64_t flags = storedInteger(row, cFlags).value_or(0);
  call.direction = (flags & kOutgoing) != 0 ? CallDirection::kOutgoing : CallDirection::kIncoming;
  // The list does not say whether a FaceTime call had pictures.
  const bool isFaceTime = (flags & kFaceTime) != 0;
  call.service = isFaceTime ? kFaceTimeService : kPhoneService;
  call.medium = isFaceTime ? CallMedium::kUnknown : CallMedium::kAudio;
  StoredText address = storedText(row, cAddress);
  if (address.text.empty() && !address.isEncrypted) address = storedText(row, cOriginalAddress);
  const StoredText name = storedText(row, cName);
  if (address.isEncrypted || !address.text.empty()) {
    call.people.push_back({.address = address.text, .isEncrypted = address.isEncrypted});
  }
  call.cachedName = name.text;
  call.isEncrypted = address.isEncrypted || name.isEncrypted;
  const bool isConnected = duration.value_or(0) > 0;
  const bool isRefused = storedInteger(row, cAnswered) == 0;
  call.status = statusOf({.direction = call.direction,
                          .isAnswered = isConnected && !isRefused,
                          .isConnected = isConnected,
                          .isBlocked = (flags & kBlockedOrFailed) != 0});
  return call;
}

}  // namespace

StoreResult<StoredCalls> readOldCallStore(const StoreSnapshot& snapshot) {
  return readCallTable(snapshot, oldCallStoreKind(),
                       {.name = "call", .columns = kColumns, .prepare = {}, .callOf = &callOf});
}

}  // namespace chatsum::device
