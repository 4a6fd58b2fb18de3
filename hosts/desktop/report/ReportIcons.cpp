#include "hosts/desktop/report/ReportIcons.h"

#include <QQuickImageProvider>
#include <QSize>
#include <utility>

#include "platform/system/images/SystemImage.h"

namespace chatsum::desktop {
namespace {

QImage pixelsOf(const platform::UIImageRef& picture) {
  const auto* image = platform::system::SystemImage::of(picture);
  const auto bitmap = image ? image->pixels() : nullptr;
  if (!bitmap || bitmap->isEmpty()) return {};
  constexpr int kBytesPerPixel = 4;
  // A deep copy: the bitmap goes with its owner.
  return QImage(bitmap->rgba.data(), bitmap->width, bitmap->height, bitmap->width * kBytesPerPixel,
                QImage::Format_RGBA8888)
      .copy();
}

class Provider final : public QQuickImageProvider {
 public:
  explicit Provider(std::shared_ptr<const ReportIcons> icons)
      : QQuickImageProvider(QQuickImageProvider::Image), icons_(std::move(icons)) {}

  QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override {
    QImage image = icons_->image(id);
    if (size) *size = image.size();
    if (image.isNull() || requestedSize.width() <= 0 || requestedSize.height() <= 0) return image;
    return image.scaled(requestedSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  }

 private:
  std::shared_ptr<const ReportIcons> icons_;
};

}  // namespace

QString ReportIcons::keep(const QString& key, const platform::UIImageRef& picture) {
  if (!picture) return {};
  const std::lock_guard lock(mutex_);
  if (!images_.contains(key)) {
    const QImage image = pixelsOf(picture);
    if (image.isNull()) return {};
    images_.insert(key, image);
  }
  return QStringLiteral("image://%1/%2").arg(QLatin1String(kProvider), key);
}

QImage ReportIcons::image(const QString& key) const {
  const std::lock_guard lock(mutex_);
  return images_.value(key);
}

QQmlImageProviderBase* ReportIcons::newProvider(std::shared_ptr<const ReportIcons> icons) {
  return new Provider(std::move(icons));
}

}  // namespace chatsum::desktop
