// The files that the sample device's messages carry, by name. Pure functions: any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace chatsum::device {

struct SampleAttachment {
  std::string_view uti;
  std::string_view mimeType;
  std::optional<std::string> bytes;  // absent: the file is missing on the device
  bool downloaded = true;            // false: the store knows no path either
};

/// What the attachment of that name is; a name that no message uses gives a file of no known kind.
SampleAttachment sampleAttachment(std::string_view name);

}  // namespace chatsum::device
