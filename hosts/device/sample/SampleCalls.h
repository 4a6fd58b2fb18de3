// The calls of the people of the sample device: every way a call can end, every app, groups and strangers. Invented
// throughout. No state, any thread.
#pragma once

#include "hosts/device/sample/CallWriter.h"

namespace chatsum::device {

void writeSampleCalls(CallWriter& writer);

/// The list that a device keeps for calls it has not sorted in yet: one that the main list has already, and a new one.
void writeTemporarySampleCalls(CallWriter& writer);

}  // namespace chatsum::device
