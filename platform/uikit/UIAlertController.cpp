#include "platform/uikit/UIAlertController.h"

#include "platform/interfaces/Platform.h"

namespace chatsum::platform {

UIAlertController::UIAlertController(const std::optional<std::string>& title, const std::optional<std::string>& message,
                                     UIAlertControllerStyle preferredStyle)
    : title_(title), message_(message), preferredStyle_(preferredStyle) {}

void UIAlertController::choose(std::size_t index) {
  if (index >= actions_.size()) return;
  // A copy: what the block does may end the alert.
  if (const auto handler = actions_[index].handler) handler();
}

void UIAlertController::dismissViewController(bool animated, std::function<void()> completion) {
  current().screen.dismissAlert(*this, animated, std::move(completion));
}

}  // namespace chatsum::platform
