#include "hosts/desktop/engine/PictureProvider.h"

#include <QCache>
#include <QMutex>
#include <QRunnable>
#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>

#include "hosts/desktop/engine/AttachmentKind.h"
#include "hosts/desktop/engine/PictureResponse.h"
#include "platform/system/images/PictureBytes.h"
#include "platform/system/images/PixelSource.h"
#include "platform/system/images/SystemPDFPage.h"

namespace chatsum::desktop {
namespace {

using platform::system::BitmapRef;
using platform::system::PixelRect;
using platform::system::PixelSize;

constexpr int kDefaultSide = 320, kMostSide = 1600;
constexpr int kThreads = 2;
constexpr qsizetype kMostBytes = 32 << 20;

QSize sensible(QSize box) {
  const auto side = [](int wanted) { return wanted > 0 ? std::min(wanted, kMostSide) : kDefaultSide; };
  // Qt leaves a side that nobody cares about at zero; the picture may be as long there as it is.
  if (box.width() <= 0 && box.height() > 0) return {kMostSide, side(box.height())};
  if (box.height() <= 0 && box.width() > 0) return {side(box.width()), kMostSide};
  return {side(box.width()), side(box.height())};
}

/// The largest size of that shape in the box, at least a pixel each way. Pictures are not enlarged.
PixelSize fitted(double width, double height, QSize box, bool isEnlarged) {
  double factor = std::min(box.width() / width, box.height() / height);
  if (!isEnlarged) factor = std::min(factor, 1.0);
  const auto pixels = [factor](double side, int most) {
    return std::clamp(static_cast<int>(std::lround(side * factor)), 1, most);
  };
  return {pixels(width, box.width()), pixels(height, box.height())};
}

QImage imageOf(const BitmapRef& bitmap) {
  if (!bitmap || bitmap->isEmpty()) return {};
  // The pixels belong to the bitmap, so the image takes a copy.
  return QImage(bitmap->rgba.data(), bitmap->width, bitmap->height, bitmap->width * 4, QImage::Format_RGBA8888).copy();
}

QImage drawn(const std::string& path, QSize box) {
  const auto bytes = platform::system::PictureBytes::open(path);
  if (!bytes) return {};
  if (const auto picture = platform::system::FilePixels::open(path, *bytes)) {
    const PixelSize size = picture->size();
    return imageOf(picture->pixels({0, 0, size.width, size.height}, fitted(size.width, size.height, box, false)));
  }
  const auto page = platform::system::SystemPDFPage::open(path, *bytes, 1);
  if (!page) return {};
  const Size size = page->cropBox().size;
  if (!(size.width > 0) || !(size.height > 0)) return {};
  return imageOf(page->pixels(fitted(size.width, size.height, box, true)));
}

}  // namespace

QImage pictureOf(const OpenDevice& device, const QString& id, QSize box) {
  const auto place = placeOfId(id);
  if (!place) return {};
  try {
    // The device stays open until the picture is drawn: a private copy of the file goes with it.
    const auto picture = device.withSource(place->device, [&](const device::DeviceSource& source) {
      const auto path = source.fileOfMessage(place->path);
      return path ? drawn(*path, sensible(box)) : QImage();
    });
    return picture.value_or(QImage());
  } catch (const std::exception&) {
    return {};  // of missing memory; a place without a picture is no harm
  }
}

/// The pictures made last. Any thread.
class PictureProvider::Memory {
 public:
  Memory() { kept_.setMaxCost(kMostBytes); }

  [[nodiscard]] QImage find(const QString& key) {
    const QMutexLocker lock(&mutex_);
    const QImage* kept = kept_.object(key);
    return kept ? *kept : QImage();
  }
  void keep(const QString& key, const QImage& image) {
    const QMutexLocker lock(&mutex_);
    kept_.insert(key, new QImage(image), std::max<qsizetype>(image.sizeInBytes(), 1));
  }

 private:
  QMutex mutex_;
  QCache<QString, QImage> kept_;
};

namespace {

/// Draws one picture on a thread of the pool.
class PictureTask final : public QRunnable {
 public:
  PictureTask(std::shared_ptr<const OpenDevice> device, std::shared_ptr<PictureProvider::Memory> memory, QString id,
              QSize box, Cancellation cancellation, std::shared_ptr<PictureHandover> handover)
      : device_(std::move(device)),
        memory_(std::move(memory)),
        id_(std::move(id)),
        box_(box),
        cancellation_(std::move(cancellation)),
        handover_(std::move(handover)) {}

  void run() override {
    QImage image;
    if (!cancellation_.isCancelled()) {
      const QString key = QStringLiteral("%1 %2 %3").arg(id_).arg(box_.width()).arg(box_.height());
      image = memory_->find(key);
      if (image.isNull()) {
        image = pictureOf(*device_, id_, box_);
        if (!image.isNull()) memory_->keep(key, image);
      }
    }
    Q_EMIT handover_->drawn(image);
  }

 private:
  std::shared_ptr<const OpenDevice> device_;
  std::shared_ptr<PictureProvider::Memory> memory_;
  QString id_;
  QSize box_;
  Cancellation cancellation_;
  std::shared_ptr<PictureHandover> handover_;
};

}  // namespace

PictureProvider::PictureProvider(std::shared_ptr<const OpenDevice> device)
    : device_(std::move(device)), memory_(std::make_shared<Memory>()) {
  threads_.setMaxThreadCount(kThreads);
}

PictureProvider::~PictureProvider() {
  threads_.clear();
  threads_.waitForDone();
}

QQuickImageResponse* PictureProvider::requestImageResponse(const QString& id, const QSize& requestedSize) {
  const Cancellation cancellation;
  auto* const response = new PictureResponse(cancellation);
  threads_.start(new PictureTask(device_, memory_, id, requestedSize, cancellation, response->handover()));
  return response;
}

}  // namespace chatsum::desktop
