// Busy indicators that tell a test what was done with them. Main queue only.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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
  std::map<std::string, std::string, std::less<>> labels;      ///< word → text; another word is its own text
  std::map<std::string, std::string, std::less<>> containers;  ///< bundle identifier → device path; others are not there

  [[nodiscard]] std::shared_ptr<OBActivityAlertController> activityAlertController(const std::string& title,
                                                                                   const std::string& message,
                                                                                   int preferredStyle) override;
  [[nodiscard]] std::shared_ptr<OBActivityAlertView> activityAlertView(const std::string& title,
                                                                       const std::string& message) override;
  [[nodiscard]] std::string localizedLabelFromUIKit(std::string_view word) const override;
  [[nodiscard]] std::optional<std::string> applicationDataContainerDirectory(
      std::string_view bundleIdentifier) const override;
};

}  // namespace chatsum::platform::fake
