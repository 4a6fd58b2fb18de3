// A message with one button that takes it away: the older generation. Main queue only.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/uikit/UIView.h"

namespace chatsum::platform {

enum class UIAlertViewStyle { kDefault = 0 };

/// Held by a shared_ptr. It has no delegate: nobody is told of the button.
class UIAlertView final : public UIView, public std::enable_shared_from_this<UIAlertView> {
 public:
  UIAlertView(std::string title, std::string message, std::string cancelButtonTitle)
      : title_(std::move(title)), message_(std::move(message)), cancelButtonTitle_(std::move(cancelButtonTitle)) {}

  [[nodiscard]] const std::string& title() const { return title_; }
  [[nodiscard]] const std::string& message() const { return message_; }
  [[nodiscard]] const std::string& cancelButtonTitle() const { return cancelButtonTitle_; }
  [[nodiscard]] UIAlertViewStyle alertViewStyle() const { return alertViewStyle_; }
  void setAlertViewStyle(UIAlertViewStyle style) { alertViewStyle_ = style; }

  void show();

 private:
  std::string title_;
  std::string message_;
  std::string cancelButtonTitle_;
  UIAlertViewStyle alertViewStyle_ = UIAlertViewStyle::kDefault;
};

}  // namespace chatsum::platform
