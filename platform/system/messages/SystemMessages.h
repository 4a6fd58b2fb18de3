// What the Messages frameworks would tell, as far as a machine without them knows it. Any thread.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/interfaces/Messages.h"

namespace chatsum::platform::system {

class SystemMessages final : public Messages {
 public:
  explicit SystemMessages(std::optional<std::string> ownerFullName) : ownerFullName_(std::move(ownerFullName)) {}
  [[nodiscard]] std::optional<std::string> ownerFullName() const override { return ownerFullName_; }
  /// A fixed list of the picture types that conversations carry.
  [[nodiscard]] const std::vector<std::string>& imageMediaTypes() const override;

 private:
  std::optional<std::string> ownerFullName_;
};

}  // namespace chatsum::platform::system
