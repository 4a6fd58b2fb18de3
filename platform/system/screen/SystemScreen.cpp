#include "platform/system/screen/SystemScreen.h"

#include <utility>

namespace chatsum::platform::system {

void SystemScreen::presentAlert(UIViewController& /*presenter*/, const std::shared_ptr<UIAlertController>& /*alert*/,
                                bool /*animated*/, std::function<void()> completion) {
  end(std::move(completion));
}

void SystemScreen::dismissAlert(UIAlertController& /*alert*/, bool /*animated*/, std::function<void()> completion) {
  end(std::move(completion));
}

void SystemScreen::presentPreview(UIViewController& /*presenter*/,
                                  const std::shared_ptr<QLPreviewController>& /*preview*/, bool /*animated*/,
                                  std::function<void()> completion) {
  end(std::move(completion));
}

void SystemScreen::showActionSheet(const std::shared_ptr<UIActionSheet>& /*sheet*/, UIView& /*inView*/) {}

void SystemScreen::showAlertView(const std::shared_ptr<UIAlertView>& /*alert*/) {}

void SystemScreen::end(std::function<void()> completion) {
  if (completion) dispatch_.asyncOnMain(std::move(completion));
}

}  // namespace chatsum::platform::system
