// Property lists in the files of this machine. Any thread.
#pragma once

#include <optional>
#include <string>

#include "platform/interfaces/PropertyLists.h"

namespace chatsum::platform::system {

class SystemFiles;

/// Files beyond the limits of PropertyListFile count as unreadable.
class SystemPropertyLists final : public PropertyLists {
 public:
  /// The files must outlive it.
  explicit SystemPropertyLists(const SystemFiles& files) : files_(files) {}
  [[nodiscard]] std::optional<Record> dictionary(const std::string& path) const override;

 private:
  const SystemFiles& files_;
};

}  // namespace chatsum::platform::system
