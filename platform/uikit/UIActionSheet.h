// A chooser that tells a delegate the index of the button: the older generation. Main queue only.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/uikit/UIView.h"

namespace chatsum::platform {

class UIActionSheet;

class UIActionSheetDelegate {
 public:
  virtual ~UIActionSheetDelegate() = default;
  virtual void clickedButtonAtIndex(UIActionSheet& actionSheet, std::int64_t buttonIndex) = 0;
};

/// Held by a shared_ptr.
class UIActionSheet final : public UIView, public std::enable_shared_from_this<UIActionSheet> {
 public:
  /// Buttons get their index in this order: the destructive one, the others, the cancel button.
  UIActionSheet(const std::optional<std::string>& title, std::weak_ptr<UIActionSheetDelegate> delegate,
                const std::optional<std::string>& cancelButtonTitle,
                const std::optional<std::string>& destructiveButtonTitle,
                const std::vector<std::string>& otherButtonTitles);

  /// Puts a button behind the others and answers its index.
  std::int64_t addButtonWithTitle(const std::string& title);

  [[nodiscard]] const std::optional<std::string>& title() const { return title_; }
  /// By index.
  [[nodiscard]] const std::vector<std::string>& buttonTitles() const { return buttonTitles_; }
  /// -1 when there is none.
  [[nodiscard]] std::int64_t cancelButtonIndex() const { return cancelButtonIndex_; }
  [[nodiscard]] std::int64_t destructiveButtonIndex() const { return destructiveButtonIndex_; }

  void showInView(UIView& view);

  /// The user clicked a button, and the screen takes the sheet away by itself.
  void clickButton(std::int64_t index);

 private:
  std::optional<std::string> title_;
  std::weak_ptr<UIActionSheetDelegate> delegate_;
  std::vector<std::string> buttonTitles_;
  std::int64_t cancelButtonIndex_ = -1;
  std::int64_t destructiveButtonIndex_ = -1;
};

}  // namespace chatsum::platform
