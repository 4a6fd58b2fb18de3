#include "platform/fake/FakeScreen.h"

#include <utility>

namespace chatsum::platform::fake {

void FakeScreen::presentAlert(UIViewController& presenter, const std::shared_ptr<UIAlertController>& alert,
                              bool animated, std::function<void()> completion) {
  alerts.push_back({&presenter, alert, animated, completion != nullptr});
  if (completion) completion();
}

void FakeScreen::dismissAlert(UIAlertController& alert, bool animated, std::function<void()> completion) {
  dismissed.push_back({&alert, animated, completion != nullptr});
  if (completion) completion();
}

void FakeScreen::presentPreview(UIViewController& presenter, const std::shared_ptr<QLPreviewController>& preview,
                                bool animated, std::function<void()> completion) {
  previews.push_back({&presenter, preview, animated, keepCompletions ? std::move(completion) : nullptr});
  if (!keepCompletions && completion) completion();
}

void FakeScreen::showActionSheet(const std::shared_ptr<UIActionSheet>& sheet, UIView& inView) {
  sheets.push_back({sheet, &inView});
}

void FakeScreen::showAlertView(const std::shared_ptr<UIAlertView>& alert) { alertViews.push_back(alert); }

}  // namespace chatsum::platform::fake
