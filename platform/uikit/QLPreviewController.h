// The preview of a file. Data source and delegate are not owned; one that is gone is not asked. Main queue only.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/interfaces/Companion.h"

namespace chatsum::platform {

class QLPreviewController;

/// The URL of a file, kept as the file's path.
struct QLPreviewItem {
  std::string path;
};

class QLPreviewControllerDataSource {
 public:
  virtual ~QLPreviewControllerDataSource() = default;
  virtual std::int64_t numberOfPreviewItemsInPreviewController(QLPreviewController& controller) = 0;
  virtual QLPreviewItem previewItemAtIndex(QLPreviewController& controller, std::int64_t index) = 0;
};

class QLPreviewControllerDelegate {
 public:
  virtual ~QLPreviewControllerDelegate() = default;
  virtual void previewControllerDidDismiss(QLPreviewController& controller) = 0;
};

class QLPreviewController final : public UIViewController {
 public:
  void setDataSource(std::weak_ptr<QLPreviewControllerDataSource> dataSource) { dataSource_ = std::move(dataSource); }
  void setDelegate(std::weak_ptr<QLPreviewControllerDelegate> delegate) { delegate_ = std::move(delegate); }

  [[nodiscard]] std::int64_t numberOfPreviewItems();
  /// None for an index that is not there.
  [[nodiscard]] std::optional<QLPreviewItem> previewItemAtIndex(std::int64_t index);

  /// The user closed the preview.
  void dismiss();

 private:
  std::weak_ptr<QLPreviewControllerDataSource> dataSource_;
  std::weak_ptr<QLPreviewControllerDelegate> delegate_;
};

}  // namespace chatsum::platform
