// What a screen puts into the navigation bar while it is on top. Main queue only.
#pragma once

#include <memory>
#include <utility>

#include "platform/uikit/UIBarButtonItem.h"

namespace chatsum::platform {

class UINavigationItem {
 public:
  /// nullptr when there is none.
  [[nodiscard]] const std::shared_ptr<UIBarButtonItem>& rightBarButtonItem() const { return rightBarButtonItem_; }
  /// Whether the button that stands there came with animation.
  [[nodiscard]] bool rightBarButtonItemWasAnimated() const { return animated_; }
  void setRightBarButtonItem(std::shared_ptr<UIBarButtonItem> item, bool animated) {
    rightBarButtonItem_ = std::move(item);
    animated_ = animated;
  }

 private:
  std::shared_ptr<UIBarButtonItem> rightBarButtonItem_;
  bool animated_ = false;
};

}  // namespace chatsum::platform
