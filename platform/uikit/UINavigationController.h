// A stack of screens, the last one shown. It owns its screens. Main queue only.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/interfaces/Companion.h"
#include "platform/uikit/QLPreviewController.h"
#include "platform/uikit/UITableViewController.h"

namespace chatsum::platform {

class UINavigationController final : public UIViewController {
 public:
  UINavigationController() = default;
  UINavigationController(const UINavigationController&) = delete;
  UINavigationController& operator=(const UINavigationController&) = delete;
  ~UINavigationController() override;

  [[nodiscard]] const std::vector<std::shared_ptr<UITableViewController>>& viewControllers() const { return stack_; }
  /// Puts a screen on top and loads its view.
  void pushViewController(const std::shared_ptr<UITableViewController>& controller, bool animated);
  /// Takes the top screen off and answers it; nullptr when there is none.
  std::shared_ptr<UITableViewController> popViewController(bool animated);

  /// Shows a preview over the whole stack; the completion may be empty.
  void presentViewController(const std::shared_ptr<QLPreviewController>& preview, bool animated,
                             std::function<void()> completion);

 private:
  std::vector<std::shared_ptr<UITableViewController>> stack_;
};

}  // namespace chatsum::platform
