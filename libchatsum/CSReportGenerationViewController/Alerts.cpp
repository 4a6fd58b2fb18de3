// Messages to the user, in both generations of the screen.

#include <memory>

#include "libchatsum/CSReportGenerationViewController/CSReportGenerationViewController.h"
#include "libchatsum/CSReportGenerationViewController/ScreenWords.h"
#include "platform/interfaces/Platform.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIAlertView.h"

namespace chatsum {

void CSReportGenerationViewController::showMessage(const std::string& title, const std::string& withMessage) {
  const auto& companion = platform::current().companion;
  const std::string close = companion.localizedLabelFromUIKit("Close");
  if (!usesAlertControllers()) {
    const auto alertView = std::make_shared<platform::UIAlertView>(title, withMessage, close);
    alertView->setAlertViewStyle(platform::UIAlertViewStyle::kDefault);
    alertView->setTag(kAlertViewTag);
    alertView->show();
    return;
  }
  const auto alert = std::make_shared<platform::UIAlertController>(
      companion.localizedLabelFromUIKit("Error"), withMessage, platform::UIAlertControllerStyle::kAlert);
  alert->addAction({close, platform::UIAlertActionStyle::kCancel, [weak = std::weak_ptr(alert)] {
                      if (const auto shown = weak.lock()) shown->dismissViewController(true, nullptr);
                    }});
  presentViewController(alert, true, nullptr);
}

void CSReportGenerationViewController::showError(const std::string& message) {
  showMessage(screen_words::localized("Error"), message);
}

}  // namespace chatsum
