// The tables of a device's call lists, as text, by generation of the system. Pure functions: any thread, any time.
#pragma once

#include <string>

#include "hosts/device/sample/CallWriter.h"

namespace chatsum::device {

/// Whether the list keeps people in tables of their own, and addresses as text.
[[nodiscard]] constexpr bool hasPeopleOfCalls(CallGeneration generation) { return generation >= CallGeneration::ios13; }

/// CREATE TABLE and INSERT statements of CallHistory.storedata.
[[nodiscard]] std::string callListTables(CallGeneration generation);
[[nodiscard]] std::string callListIndexes(CallGeneration generation);

/// The table that joins calls with people: two columns, the call first.
inline constexpr const char* kPeopleOfCallsTable = "Z_2REMOTEPARTICIPANTHANDLES";

/// Parameters of `callInsertion`. A generation that lacks a column has its parameter all the same.
enum CallParameter : int {
  cEntity = 1,
  cVersion,
  cDate,
  cDuration,
  cAddress,
  cOriginated,
  cAnswered,
  cType,
  cCause,
  cRead,
  cName,
  cPlace,
  cCountry,
  cUniqueId,
  cProvider,
  cJunk,
  cFiltered,
  cMessage,
  cEmergency,
  cBlockedBy,
  cInitiator
};
/// An INSERT of one call.
[[nodiscard]] std::string callInsertion(CallGeneration generation);

/// CREATE TABLE statements of call_history.db.
[[nodiscard]] std::string oldCallListTables();

}  // namespace chatsum::device
