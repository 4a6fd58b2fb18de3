// Calls as the rows of a report. One thread; the library has to be started for it to know what names a picture.
#pragma once

#include <vector>

#include "hosts/device/calls/CallList.h"
#include "hosts/device/report/ReportRequest.h"
#include "platform/foundation/Value.h"

namespace chatsum::device {

/// What the rows of a report of calls are. Their keys: "Name" (who and number), "Text" (the call in words, titled
/// "Call"), "Date", and "Address", "Duration" ("0:03:12"), "Direction", "Status", "Service", "Medium".
[[nodiscard]] const ReportContent& callsContent(CallApp app);

/// One record for each call, in their order. Every value is a text but "Date", which is missing where the call has
/// none.
[[nodiscard]] Array recordsOf(const std::vector<Call>& calls);

}  // namespace chatsum::device
