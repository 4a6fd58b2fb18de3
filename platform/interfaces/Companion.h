// The maker's companion library: busy indicators of both generations of the screen.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/foundation/RefCounted.h"

namespace chatsum::platform {

/// A screen that can present others; known to its host only.
class UIViewController {
 public:
  virtual ~UIViewController() = default;
};

/// An alert without buttons that shows a spinning indicator under its message. Main queue only.
class OBActivityAlertController {
 public:
  virtual ~OBActivityAlertController() = default;
  /// Presents itself modally from the presenter.
  virtual void show(UIViewController* presenter) = 0;
  /// Goes away; the completion, if any, runs on the main queue when the dismissal ends.
  virtual void dismissViewController(bool animated, std::function<void()> completion) = 0;
};

/// The same indicator in the older alert-view style. Main queue only.
class OBActivityAlertView {
 public:
  virtual ~OBActivityAlertView() = default;
  virtual void show() = 0;
  /// Goes away at once.
  virtual void close() = 0;
};

/// UIAlertControllerStyleAlert.
inline constexpr int kAlertStyle = 1;

class Companion {
 public:
  virtual ~Companion() = default;
  /// Never null.
  [[nodiscard]] virtual std::shared_ptr<OBActivityAlertController> activityAlertController(const std::string& title,
                                                                                          const std::string& message,
                                                                                          int preferredStyle) = 0;
  /// No delegate and no buttons. Never null.
  [[nodiscard]] virtual std::shared_ptr<OBActivityAlertView> activityAlertView(const std::string& title,
                                                                              const std::string& message) = 0;
};

}  // namespace chatsum::platform
