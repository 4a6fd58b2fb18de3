#include "platform/uikit/QLPreviewController.h"

namespace chatsum::platform {

std::int64_t QLPreviewController::numberOfPreviewItems() {
  const auto dataSource = dataSource_.lock();
  return dataSource ? dataSource->numberOfPreviewItemsInPreviewController(*this) : 0;
}

std::optional<QLPreviewItem> QLPreviewController::previewItemAtIndex(std::int64_t index) {
  const auto dataSource = dataSource_.lock();
  if (!dataSource || index < 0 || index >= numberOfPreviewItems()) return std::nullopt;
  return dataSource->previewItemAtIndex(*this, index);
}

void QLPreviewController::dismiss() {
  if (const auto delegate = delegate_.lock()) delegate->previewControllerDidDismiss(*this);
}

}  // namespace chatsum::platform
