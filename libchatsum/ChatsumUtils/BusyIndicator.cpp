// The modal busy indicator, in both generations of the screen.

#include <variant>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

using Controller = std::shared_ptr<platform::OBActivityAlertController>;
using View = std::shared_ptr<platform::OBActivityAlertView>;

/// The indicator that is shown, if any. Touched only by blocks on the main queue.
std::variant<std::monostate, Controller, View>& indicatorSlot() {
  static std::variant<std::monostate, Controller, View> slot;
  return slot;
}

}  // namespace

void ChatsumUtils::showHud(const std::string& title, const std::string& message,
                           const std::shared_ptr<platform::UIViewController>& presenter) {
  platform::current().dispatch.asyncOnMain([title, message, presenter] {
    auto& system = platform::current();
    if (system.runtime.hasClass("UIAlertController")) {
      // The line breaks leave room for the spinner under the message.
      const Controller controller =
          system.companion.activityAlertController(title, message + "\n\n\n", platform::kAlertStyle);
      indicatorSlot() = controller;
      controller->show(presenter.get());
    } else {
      const View view = system.companion.activityAlertView(title, message);
      indicatorSlot() = view;
      view->show();
    }
  });
}

void ChatsumUtils::hideHud(std::function<void()> completion) {
  platform::current().dispatch.asyncOnMain([completion = std::move(completion)]() mutable {
    // A reference of its own: what runs meanwhile may show another indicator in the slot.
    const auto shown = indicatorSlot();
    if (const auto* controller = std::get_if<Controller>(&shown)) {
      (*controller)->dismissViewController(true, std::move(completion));
    } else if (const auto* view = std::get_if<View>(&shown)) {
      (*view)->close();
      if (completion) completion();
    }
    indicatorSlot() = std::monostate();
  });
}

void ChatsumUtils::hideHud() { hideHud(nullptr); }

}  // namespace chatsum
