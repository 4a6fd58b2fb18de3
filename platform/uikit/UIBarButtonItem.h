// A button of the navigation bar. The listener is not owned. Main queue only.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/uikit/ChangeListener.h"

namespace chatsum::platform {

enum class UIBarButtonItemStyle { kPlain = 0, kDone = 2 };

class UIBarButtonItem {
 public:
  UIBarButtonItem(std::string title, UIBarButtonItemStyle style, std::function<void(UIBarButtonItem&)> action)
      : title_(std::move(title)), style_(style), action_(std::move(action)) {}

  [[nodiscard]] const std::string& title() const { return title_; }
  [[nodiscard]] UIBarButtonItemStyle style() const { return style_; }
  [[nodiscard]] bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled) {
    if (enabled_ == enabled) return;
    enabled_ = enabled;
    if (listener_) listener_->changed();
  }

  /// The user pressed it; nothing happens while it is disabled.
  void tap() {
    if (enabled_ && action_) action_(*this);
  }

  void setListener(ChangeListener* listener) { listener_ = listener; }

 private:
  std::string title_;
  UIBarButtonItemStyle style_;
  std::function<void(UIBarButtonItem&)> action_;
  bool enabled_ = true;
  ChangeListener* listener_ = nullptr;
};

}  // namespace chatsum::platform
