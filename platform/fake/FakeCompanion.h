// Busy indicators that tell a test what was done with them. Main queue only.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/interfaces/Companion.h"

namespace chatsum::platform::fake {

/// What is known of one indicator.
struct FakeIndicator {
  bool isController = false;  ///< else the older alert view
  std::string title;
  std::string message;
  int preferredStyle = 0;
  int shown = 0;
  int hidden = 0;
  UIViewController* presenter = nullptr;
  bool animated = false;
  std::function<void()> completion;  ///< of the last dismissal, while it is kept back
};

class FakeCompanion final : public Companion {
 public:
  /// In the order they were made.
  std::vector<std::shared_ptr<FakeIndicator>> indicators;
  /// True: dismissals do not end by themselves; the test runs the indicator's completion.
  bool keepCompletions = false;

  [[nodiscard]] std::shared_ptr<OBActivityAlertController> activityAlertController(const std::string& title,
                                                                                   const std::string& message,
                                                                                   int preferredStyle) override;
  [[nodiscard]] std::shared_ptr<OBActivityAlertView> activityAlertView(const std::string& title,
                                                                       const std::string& message) override;
};

}  // namespace chatsum::platform::fake
