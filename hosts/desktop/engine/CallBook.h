// The calls of a source, by the app that made them, read on the worker. Unchanged once made: any thread.
#pragma once

#include <memory>
#include <string>

#include "hosts/desktop/engine/ReportRows.h"
#include "hosts/device/calls/CallList.h"
#include "hosts/device/session/DeviceSession.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::desktop {

/// The calls of one app, the newest first, and the same as rows of a report.
struct CallPart {
  device::CallList list;
  ReportRows rows;
};

struct CallBook {
  CallPart phone, facetime;
};

/// Reads them. The session's library has to be started.
[[nodiscard]] device::StoreResult<std::shared_ptr<const CallBook>> readCallBook(const device::DeviceSession& session,
                                                                                const std::string& region);

}  // namespace chatsum::desktop
