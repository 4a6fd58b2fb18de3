#include "platform/uikit/UINavigationController.h"

#include <utility>

#include "platform/interfaces/Platform.h"

namespace chatsum::platform {

UINavigationController::~UINavigationController() {
  for (const auto& controller : stack_) controller->navigationController_ = nullptr;
}

void UINavigationController::pushViewController(const std::shared_ptr<UITableViewController>& controller,
                                                bool /*animated*/) {
  stack_.push_back(controller);
  controller->navigationController_ = this;
  controller->loadViewIfNeeded();
}

std::shared_ptr<UITableViewController> UINavigationController::popViewController(bool /*animated*/) {
  if (stack_.empty()) return nullptr;
  auto controller = std::move(stack_.back());
  stack_.pop_back();
  controller->navigationController_ = nullptr;
  return controller;
}

void UINavigationController::presentViewController(const std::shared_ptr<QLPreviewController>& preview, bool animated,
                                                   std::function<void()> completion) {
  current().screen.presentPreview(*this, preview, animated, std::move(completion));
}

}  // namespace chatsum::platform
