// A screen that shows nothing and keeps what it was asked to show, in order. Main queue only.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/interfaces/Screen.h"

namespace chatsum::platform::fake {

class FakeScreen final : public Screen {
 public:
  struct ShownAlert {
    UIViewController* presenter;
    std::shared_ptr<UIAlertController> alert;
    bool animated;
    bool hasCompletion;
  };
  struct DismissedAlert {
    UIAlertController* alert;
    bool animated;
    bool hasCompletion;
  };
  struct ShownPreview {
    UIViewController* presenter;
    std::shared_ptr<QLPreviewController> preview;
    bool animated;
    std::function<void()> completion;  ///< kept back, while completions are kept
  };
  struct ShownSheet {
    std::shared_ptr<UIActionSheet> sheet;
    UIView* inView;
  };

  std::vector<ShownAlert> alerts;
  std::vector<DismissedAlert> dismissed;
  std::vector<ShownPreview> previews;
  std::vector<ShownSheet> sheets;
  std::vector<std::shared_ptr<UIAlertView>> alertViews;
  /// True: previews do not come up by themselves; the test runs the completion.
  bool keepCompletions = false;

  void presentAlert(UIViewController& presenter, const std::shared_ptr<UIAlertController>& alert, bool animated,
                    std::function<void()> completion) override;
  void dismissAlert(UIAlertController& alert, bool animated, std::function<void()> completion) override;
  void presentPreview(UIViewController& presenter, const std::shared_ptr<QLPreviewController>& preview, bool animated,
                      std::function<void()> completion) override;
  void showActionSheet(const std::shared_ptr<UIActionSheet>& sheet, UIView& inView) override;
  void showAlertView(const std::shared_ptr<UIAlertView>& alert) override;
};

}  // namespace chatsum::platform::fake
