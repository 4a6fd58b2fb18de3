// Busy indicators for hosts without a screen. Main queue only, but for making them.
#pragma once

#include "platform/interfaces/Companion.h"
#include "platform/interfaces/Dispatch.h"

namespace chatsum::platform::system {

/// The indicators show nothing; a dismissal ends on the main queue, after the blocks that already wait there.
class SystemCompanion final : public Companion {
 public:
  /// The dispatch must outlive the indicators.
  explicit SystemCompanion(Dispatch& dispatch) : dispatch_(dispatch) {}
  [[nodiscard]] std::shared_ptr<OBActivityAlertController> activityAlertController(const std::string& title,
                                                                                   const std::string& message,
                                                                                   int preferredStyle) override;
  [[nodiscard]] std::shared_ptr<OBActivityAlertView> activityAlertView(const std::string& title,
                                                                       const std::string& message) override;

 private:
  Dispatch& dispatch_;
};

}  // namespace chatsum::platform::system
