// A picture on its way to QML, whichever thread draws it.
#pragma once

#include <QImage>
#include <QObject>
#include <QQuickImageProvider>
#include <memory>
#include <utility>

#include "hosts/desktop/engine/Cancellation.h"

namespace chatsum::desktop {

/// Hands the picture over from the thread that draws it. The response may be gone by then, which a signal knows.
class PictureHandover final : public QObject {
  Q_OBJECT

 Q_SIGNALS:
  /// Any thread; once. A null image when there is nothing to see.
  void drawn(const QImage& image);
};

/// Qt takes it away once it has been told that it is finished.
class PictureResponse final : public QQuickImageResponse {
  Q_OBJECT

 public:
  explicit PictureResponse(Cancellation cancellation) : cancellation_(std::move(cancellation)) {}

  /// What whoever draws the picture has to keep, and to tell.
  [[nodiscard]] std::shared_ptr<PictureHandover> handover() {
    auto handover = std::make_shared<PictureHandover>();
    // Told on the thread that asked, whichever thread draws.
    connect(handover.get(), &PictureHandover::drawn, this, &PictureResponse::finish, Qt::QueuedConnection);
    return handover;
  }

  [[nodiscard]] QQuickTextureFactory* textureFactory() const override {
    return QQuickTextureFactory::textureFactoryForImage(image_);
  }
  [[nodiscard]] QString errorString() const override {
    return image_.isNull() ? QStringLiteral("There is no picture of this file.") : QString();
  }
  void cancel() override { cancellation_.cancel(); }

 private:
  void finish(const QImage& image) {
    image_ = image;
    Q_EMIT finished();
  }

  Cancellation cancellation_;
  QImage image_;
};

}  // namespace chatsum::desktop
