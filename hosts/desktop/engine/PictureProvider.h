// Small pictures of the files that messages carry, for "image://attachment/…". They are decoded on threads of its
// own, never on the main thread; those made last are kept. Qt asks on threads of its own.
#pragma once

#include <QImage>
#include <QQuickAsyncImageProvider>
#include <QSize>
#include <QThreadPool>
#include <memory>

#include "hosts/desktop/engine/OpenDevice.h"

namespace chatsum::desktop {

/// The file as a picture that fits into `box` (pixels) in its own shape and is never enlarged; of a PDF document the
/// first page. Null when there is no such file on an open device, or when it shows nothing. `id`: see `idOf`. Blocks
/// the caller; any thread.
[[nodiscard]] QImage pictureOf(const OpenDevice& device, const QString& id, QSize box);

class PictureProvider : public QQuickAsyncImageProvider {
 public:
  /// Qt destroys it with its engine.
  explicit PictureProvider(std::shared_ptr<const OpenDevice> device);
  ~PictureProvider() override;

  [[nodiscard]] QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override;

  class Memory;

 private:
  std::shared_ptr<const OpenDevice> device_;
  std::shared_ptr<Memory> memory_;
  QThreadPool threads_;
};

}  // namespace chatsum::desktop
