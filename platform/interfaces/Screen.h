// What shows the modal things that a screen asks for: alerts, choosers, previews. A host with a screen draws them from
// the classes of the screen kit, and gives the user's answers back to those objects. Main queue only.
#pragma once

#include <functional>
#include <memory>

namespace chatsum::platform {

class QLPreviewController;
class UIActionSheet;
class UIAlertController;
class UIAlertView;
class UIView;
class UIViewController;

class Screen {
 public:
  virtual ~Screen() = default;

  // What is handed over is kept by the screen as long as it is shown. A completion may be empty; it runs once, on the
  // main queue, when the movement on the screen has ended.

  /// Presents an alert or a chooser, as its preferred style says, over the presenter.
  virtual void presentAlert(UIViewController& presenter, const std::shared_ptr<UIAlertController>& alert, bool animated,
                            std::function<void()> completion) = 0;
  /// Takes it away; nothing happens when it is not shown (any more).
  virtual void dismissAlert(UIAlertController& alert, bool animated, std::function<void()> completion) = 0;
  /// Presents the preview of a file over the presenter. Closing it is the user's: the screen tells the controller.
  virtual void presentPreview(UIViewController& presenter, const std::shared_ptr<QLPreviewController>& preview,
                              bool animated, std::function<void()> completion) = 0;

  // The older generation. It goes away by itself when a button is clicked.

  /// Shows a chooser out of the view.
  virtual void showActionSheet(const std::shared_ptr<UIActionSheet>& sheet, UIView& inView) = 0;
  virtual void showAlertView(const std::shared_ptr<UIAlertView>& alert) = 0;
};

}  // namespace chatsum::platform
