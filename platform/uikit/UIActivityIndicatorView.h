// A spinner. Main queue only.
#pragma once

#include "platform/uikit/UIView.h"

namespace chatsum::platform {

enum class UIActivityIndicatorViewStyle { kWhiteLarge = 0, kWhite = 1, kGray = 2 };

class UIActivityIndicatorView final : public UIView {
 public:
  explicit UIActivityIndicatorView(UIActivityIndicatorViewStyle style) : style_(style) {}
  [[nodiscard]] UIActivityIndicatorViewStyle style() const { return style_; }
  /// Does nothing when it spins already.
  void startAnimating() { animating_ = true; }
  void stopAnimating() { animating_ = false; }
  [[nodiscard]] bool isAnimating() const { return animating_; }

 private:
  UIActivityIndicatorViewStyle style_;
  bool animating_ = false;
};

}  // namespace chatsum::platform
