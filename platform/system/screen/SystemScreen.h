// The screen of a host that has none: nothing is shown and no question is ever answered. Main queue only.
#pragma once

#include "platform/interfaces/Dispatch.h"
#include "platform/interfaces/Screen.h"

namespace chatsum::platform::system {

/// Presentations and dismissals end on the main queue, after the blocks that already wait there.
class SystemScreen final : public Screen {
 public:
  /// The dispatch must outlive the screen.
  explicit SystemScreen(Dispatch& dispatch) : dispatch_(dispatch) {}
  void presentAlert(UIViewController& presenter, const std::shared_ptr<UIAlertController>& alert, bool animated,
                    std::function<void()> completion) override;
  void dismissAlert(UIAlertController& alert, bool animated, std::function<void()> completion) override;
  void presentPreview(UIViewController& presenter, const std::shared_ptr<QLPreviewController>& preview, bool animated,
                      std::function<void()> completion) override;
  void showActionSheet(const std::shared_ptr<UIActionSheet>& sheet, UIView& inView) override;
  void showAlertView(const std::shared_ptr<UIAlertView>& alert) override;

 private:
  void end(std::function<void()> completion);

  Dispatch& dispatch_;
};

}  // namespace chatsum::platform::system
