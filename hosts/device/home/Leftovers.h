// What a process that was killed left in the reports folder of a home. Any thread.
#pragma once

#include <string>

namespace chatsum::device {

/// Removes half-written reports, unless a living process writes there. `home` is absolute; none for an empty one.
void removeLeftovers(const std::string& home);

}  // namespace chatsum::device
