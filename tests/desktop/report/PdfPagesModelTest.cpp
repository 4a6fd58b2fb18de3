// The pages of a PDF file, and their pictures as QML asks for them.
#include "hosts/desktop/report/PdfPagesModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QQuickAsyncImageProvider>
#include <QQuickTextureFactory>
#include <QSignalSpy>
#include <memory>
#include <vector>

#include "tests/desktop/report/PreviewFiles.h"

namespace chatsum::desktop {
namespace {

constexpr auto kFatal = QAbstractItemModelTester::FailureReportingMode::Fatal;

QQuickAsyncImageProvider* providerOf(const PdfPagesModel& model) {
  return static_cast<QQuickAsyncImageProvider*>(model.newProvider());
}

class PdfPagesTest : public ::testing::Test {
 protected:
  PdfPagesTest() : provider_(providerOf(model_)) {}

  /// A file with a page of each size, in points, all of one colour.
  [[nodiscard]] QString put(const std::string& name, const std::vector<QSizeF>& sizes, QColor color = Qt::red) {
    const QString path = files_.path(name);
    QPdfWriter writer(path);
    writer.setPageMargins({});
    QPainter painter;
    for (const QSizeF& size : sizes) {
      writer.setPageSize(QPageSize(size, QPageSize::Point, "page", QPageSize::ExactMatch));
      if (painter.isActive()) {
        writer.newPage();
      } else {
        EXPECT_TRUE(painter.begin(&writer));
      }
      painter.fillRect(QRect(0, 0, writer.width(), writer.height()), color);
    }
    return path;
  }
  void open(const QString& path) {
    model_.open(path);
    test::waitUntil([&] { return model_.rowCount() > 0 || model_.isBroken(); }, "the pages");
  }
  /// The picture's name for the provider.
  [[nodiscard]] QString idOf(int page) const {
    const QString url = model_.index(page).data(PdfPagesModel::kPictureRole).toString(), start = "image://page/";
    EXPECT_TRUE(url.startsWith(start)) << url.toStdString();
    return url.mid(start.size());
  }
  [[nodiscard]] std::unique_ptr<QQuickImageResponse> ask(const QString& id, QSize size) {
    return std::unique_ptr<QQuickImageResponse>(provider_->requestImageResponse(id, size));
  }
  [[nodiscard]] QImage picture(const QString& id, QSize size) {
    const auto response = ask(id, size);
    const QSignalSpy finished(response.get(), &QQuickImageResponse::finished);
    test::waitUntil([&] { return finished.size() == 1; }, "the picture");
    const std::unique_ptr<QQuickTextureFactory> factory(response->textureFactory());
    return factory ? factory->image() : QImage();
  }

  test::PreviewFiles files_;
  PdfPagesModel model_;
  std::unique_ptr<QQuickAsyncImageProvider> provider_;
};

TEST_F(PdfPagesTest, AreRowsWithTheirSizes) {
  const QAbstractItemModelTester tester(&model_, kFatal);
  open(put("a.pdf", {{200, 300}, {400, 100}}));
  ASSERT_EQ(model_.rowCount(), 2);
  EXPECT_EQ(model_.index(0).data(PdfPagesModel::kSizeRole).toSizeF(), QSizeF(200, 300));
  EXPECT_EQ(model_.index(1).data(PdfPagesModel::kSizeRole).toSizeF(), QSizeF(400, 100));
  EXPECT_FALSE(model_.index(0).data(Qt::DecorationRole).isValid());
  EXPECT_FALSE(model_.isBroken());
  EXPECT_EQ(model_.roleNames().value(PdfPagesModel::kPictureRole), "picture");
  model_.close();
  EXPECT_EQ(model_.rowCount(), 0);
}

TEST_F(PdfPagesTest, OfAnotherFileTakeTheirPlace) {
  const QAbstractItemModelTester tester(&model_, kFatal);
  open(put("a.pdf", {{200, 300}, {200, 300}}, Qt::red));
  const QString old = idOf(0);
  EXPECT_FALSE(picture(old, {20, 0}).isNull());
  model_.open(put("b.pdf", {{100, 100}}, Qt::blue));
  EXPECT_EQ(model_.rowCount(), 0);  // those of the first one are gone at once
  test::waitUntil([&] { return model_.rowCount() == 1; }, "the pages");
  EXPECT_NE(idOf(0), old);
  EXPECT_TRUE(picture(old, {20, 0}).isNull());
  EXPECT_EQ(picture(idOf(0), {20, 0}).pixelColor(10, 10), QColor(Qt::blue));
}

TEST_F(PdfPagesTest, AreNoneInAFileThatIsBroken) {
  const QAbstractItemModelTester tester(&model_, kFatal);
  const QSignalSpy told(&model_, &PdfPagesModel::isBrokenChanged);
  open(files_.put("a.pdf", "no pages at all"));
  EXPECT_TRUE(model_.isBroken());
  EXPECT_EQ(model_.rowCount(), 0);
  EXPECT_EQ(told.size(), 1);
  model_.close();
  EXPECT_FALSE(model_.isBroken());
  open(files_.path("missing.pdf"));
  EXPECT_TRUE(model_.isBroken());
  const std::string whole = test::PreviewFiles::read(put("c.pdf", {{200, 300}}));
  open(files_.put("half.pdf", std::string_view(whole).substr(0, whole.size() / 2)));
  EXPECT_TRUE(model_.isBroken());
  open(files_.path("c.pdf"));
  EXPECT_FALSE(model_.isBroken());
  EXPECT_EQ(model_.rowCount(), 1);
}

TEST_F(PdfPagesTest, AreDrawnAsWideAsTheyAreWanted) {
  open(put("a.pdf", {{200, 300}}));
  const QImage page = picture(idOf(0), {100, 0});
  EXPECT_EQ(page.size(), QSize(100, 150));
  EXPECT_EQ(page.pixelColor(50, 75), QColor(Qt::red));
  EXPECT_EQ(picture(idOf(0), {}).size(), QSize(200, 300));
  EXPECT_LE(picture(idOf(0), {1'000'000, 0}).height(), 6000);  // nobody has a screen for more
}

TEST_F(PdfPagesTest, ThatAreNotThereHaveNoPicture) {
  open(put("a.pdf", {{200, 300}}));
  const QString document = idOf(0).section('/', 0, 0);
  for (const QString& id : {document + "/1", document + "/-1", QString("77/0"), QString("nonsense"), QString()}) {
    EXPECT_TRUE(picture(id, {20, 0}).isNull()) << id.toStdString();
  }
}

TEST_F(PdfPagesTest, MayBeClosedWhileTheyAreDrawn) {
  open(put("a.pdf", std::vector<QSizeF>(30, QSizeF(600, 800))));
  std::vector<std::unique_ptr<QQuickImageResponse>> responses;
  int finished = 0;
  for (int page = 0; page < 30; ++page) {
    responses.push_back(ask(idOf(page), {900, 0}));
    QObject::connect(responses.back().get(), &QQuickImageResponse::finished, [&finished] { ++finished; });
  }
  responses[20]->cancel();
  responses[29].reset();  // nobody waits for that one any more
  model_.close();
  test::waitUntil([&] { return finished == 29; }, "the pictures");
  open(files_.path("a.pdf"));
  EXPECT_EQ(model_.rowCount(), 30);
  model_.open(files_.path("a.pdf"));
  model_.close();  // while it is read
  EXPECT_EQ(model_.rowCount(), 0);
}

TEST(PdfPages, GoWhileTheyAreDrawnAndTheProviderAfterThem) {
  const test::PreviewFiles files;
  auto model = std::make_unique<PdfPagesModel>();
  const std::unique_ptr<QQuickAsyncImageProvider> provider(providerOf(*model));
  model->open(files.put("a.pdf", "no pages at all"));
  const std::unique_ptr<QQuickImageResponse> response(provider->requestImageResponse("1/0", {20, 0}));
  const QSignalSpy finished(response.get(), &QQuickImageResponse::finished);
  model.reset();
  test::waitUntil([&] { return finished.size() == 1; }, "the answer");
}

}  // namespace
}  // namespace chatsum::desktop
