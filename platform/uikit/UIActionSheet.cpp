#include "platform/uikit/UIActionSheet.h"

#include <utility>

#include "platform/interfaces/Platform.h"

namespace chatsum::platform {

UIActionSheet::UIActionSheet(const std::optional<std::string>& title, std::weak_ptr<UIActionSheetDelegate> delegate,
                             const std::optional<std::string>& cancelButtonTitle,
                             const std::optional<std::string>& destructiveButtonTitle,
                             const std::vector<std::string>& otherButtonTitles)
    : title_(title), delegate_(std::move(delegate)) {
  if (destructiveButtonTitle) destructiveButtonIndex_ = addButtonWithTitle(*destructiveButtonTitle);
  for (const std::string& other : otherButtonTitles) addButtonWithTitle(other);
  if (cancelButtonTitle) cancelButtonIndex_ = addButtonWithTitle(*cancelButtonTitle);
}

std::int64_t UIActionSheet::addButtonWithTitle(const std::string& title) {
  buttonTitles_.push_back(title);
  return static_cast<std::int64_t>(buttonTitles_.size()) - 1;
}

void UIActionSheet::showInView(UIView& view) { current().screen.showActionSheet(shared_from_this(), view); }

void UIActionSheet::clickButton(std::int64_t index) {
  if (index < 0 || static_cast<std::uint64_t>(index) >= buttonTitles_.size()) return;
  if (const auto delegate = delegate_.lock()) delegate->clickedButtonAtIndex(*this, index);
}

}  // namespace chatsum::platform
