// What a list of calls tells of each, in the language of the window. Main thread.
#pragma once

#include <QString>

#include "hosts/device/calls/Call.h"

namespace chatsum::desktop {

/// "Incoming FaceTime video call", "Incoming phone call with 3 people"; in English for the calls of other apps.
[[nodiscard]] QString shownKind(const device::Call& call);

/// Who the other side is: "Maya Lindqvist (+15550100142)", "No caller ID"; several people with ", " between them.
[[nodiscard]] QString shownPeople(const device::Call& call);

}  // namespace chatsum::desktop
