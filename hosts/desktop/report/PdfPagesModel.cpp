#include "hosts/desktop/report/PdfPagesModel.h"

#include <QPdfDocument>
#include <QQuickAsyncImageProvider>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <utility>

#include "hosts/desktop/engine/PictureResponse.h"
#include "hosts/desktop/engine/Worker.h"

namespace chatsum::desktop {

/// The document, which only the thread of this object touches. Made and destroyed on the main thread.
class PdfDrawing {
 public:
  PdfDrawing() = default;
  ~PdfDrawing() { worker_.stop(); }
  PdfDrawing(const PdfDrawing&) = delete;
  PdfDrawing& operator=(const PdfDrawing&) = delete;

  /// Answers the sizes of the pages in `done`, on the main thread; none of a file that is no PDF.
  template <class Done>
  Cancellation open(QObject* receiver, int number, const QString& path, Done done) {
    return worker_.run(
        receiver,
        [this, number, path](const Cancellation& cancellation) -> device::StoreResult<std::vector<QSizeF>> {
          document_ = std::make_unique<QPdfDocument>();
          number_ = number;
          std::vector<QSizeF> sizes;
          if (document_->load(path) != QPdfDocument::Error::None) return sizes;
          for (int page = 0; page < document_->pageCount() && !cancellation.isCancelled(); ++page) {
            sizes.push_back(document_->pagePointSize(page));
          }
          return sizes;
        },
        std::move(done));
  }
  void close() {
    worker_.post([this] { document_.reset(); });
  }
  /// Any thread.
  void draw(int number, int page, QSize box, const Cancellation& cancellation,
            std::shared_ptr<PictureHandover> handover) {
    worker_.post([this, number, page, box, cancellation, handover = std::move(handover)] {
      const bool isWanted = document_ && number == number_ && !cancellation.isCancelled();
      Q_EMIT handover->drawn(isWanted ? pictureOf(page, box) : QImage());
    });
  }

 private:
  static constexpr int kMostSide = 6000;  // pixels; a page at four times the width of a large window

  [[nodiscard]] QImage pictureOf(int page, QSize box) {
    const QSizeF points = document_->pagePointSize(page);
    if (!(points.width() > 0) || !(points.height() > 0)) return {};
    const double width = box.width() > 0 ? box.width() : points.width();
    const double factor = std::min({width / points.width(), kMostSide / points.width(), kMostSide / points.height()});
    const auto pixels = [factor](double side) { return std::max(1, static_cast<int>(std::lround(side * factor))); };
    return document_->render(page, {pixels(points.width()), pixels(points.height())});
  }

  std::unique_ptr<QPdfDocument> document_;
  int number_ = 0;
  Worker worker_;  // last: its jobs use what stands above
};

namespace {

class PageProvider final : public QQuickAsyncImageProvider {
 public:
  explicit PageProvider(std::shared_ptr<PdfDrawing> drawing) : drawing_(std::move(drawing)) {}

  /// The id is DOCUMENT/PAGE, the page counted from 0.
  [[nodiscard]] QQuickImageResponse* requestImageResponse(const QString& id, const QSize& requestedSize) override {
    const Cancellation cancellation;
    auto* const response = new PictureResponse(cancellation);
    const QStringList numbers = id.split(QLatin1Char('/'));
    drawing_->draw(numbers.value(0).toInt(), numbers.value(1).toInt(), requestedSize, cancellation,
                   response->handover());
    return response;
  }

 private:
  std::shared_ptr<PdfDrawing> drawing_;
};

}  // namespace

PdfPagesModel::PdfPagesModel(QObject* parent)
    : QAbstractListModel(parent), drawing_(std::make_shared<PdfDrawing>()) {}

PdfPagesModel::~PdfPagesModel() { opening_.cancel(); }

void PdfPagesModel::open(const QString& path) {
  close();
  opening_ = drawing_->open(this, document_, path, [this](device::StoreResult<std::vector<QSizeF>> sizes) {
    take(sizes ? std::move(sizes.value()) : std::vector<QSizeF>());
  });
}

void PdfPagesModel::close() {
  opening_.cancel();
  drawing_->close();
  ++document_;
  setBroken(false);
  if (sizes_.empty()) return;
  beginResetModel();
  sizes_.clear();
  endResetModel();
}

void PdfPagesModel::take(std::vector<QSizeF> sizes) {
  setBroken(sizes.empty());
  beginResetModel();
  sizes_ = std::move(sizes);
  endResetModel();
}

void PdfPagesModel::setBroken(bool isBroken) {
  if (isBroken == isBroken_) return;
  isBroken_ = isBroken;
  Q_EMIT isBrokenChanged();
}

int PdfPagesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(sizes_.size());
}

QVariant PdfPagesModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
  switch (role) {
    case kSizeRole:
      return sizes_[static_cast<std::size_t>(index.row())];
    case kPictureRole:
      return QStringLiteral("image://%1/%2/%3").arg(QLatin1String(kProvider)).arg(document_).arg(index.row());
    default:
      return {};
  }
}

QHash<int, QByteArray> PdfPagesModel::roleNames() const {
  return {{kSizeRole, "pageSize"}, {kPictureRole, "picture"}};
}

QQmlImageProviderBase* PdfPagesModel::newProvider() const { return new PageProvider(drawing_); }

}  // namespace chatsum::desktop
