#include "platform/uikit/UIAlertView.h"

#include "platform/interfaces/Platform.h"

namespace chatsum::platform {

void UIAlertView::show() { current().screen.showAlertView(shared_from_this()); }

}  // namespace chatsum::platform
