// The maker's companion library: busy indicators of both generations of the screen, the system's own words, and where
// other applications keep their data.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

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
  /// An English word of the system's buttons and titles ("Error", "Close") as the system shows it in the user's
  /// language; the word itself when it has no translation. UTF-8, any thread.
  [[nodiscard]] virtual std::string localizedLabelFromUIKit(std::string_view word) const = 0;
  /// The folder of an installed application's data, by its bundle identifier, no trailing "/"; none when it is not
  /// installed or cannot be found. Any thread.
  [[nodiscard]] virtual std::optional<std::string> applicationDataContainerDirectory(
      std::string_view bundleIdentifier) const = 0;
};

}  // namespace chatsum::platform
