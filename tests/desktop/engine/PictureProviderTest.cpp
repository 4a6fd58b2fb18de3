#include "hosts/desktop/engine/PictureProvider.h"

#include <QQuickTextureFactory>
#include <filesystem>
#include <memory>
#include <string>

#include "hosts/desktop/engine/AttachmentKind.h"
#include "platform/system/images/ChildProgram.h"
#include "tests/desktop/engine/EngineFixture.h"

namespace chatsum::desktop {
namespace {

using testing::happens;

class PictureProviderTest : public testing::EngineTest {
 protected:
  /// The address of a file of that name in a conversation, as QML gets it, without "image://attachment/".
  [[nodiscard]] QString idOf(const std::string& conversation, const char* name) {
    EXPECT_TRUE(openSample());
    EXPECT_TRUE(select(conversation));
    const MessageModel& messages = engine->messages();
    for (int row = 0; row < messages.rowCount(); ++row) {
      const QVariantMap file = messages.index(row).data(MessageModel::AttachmentRole).toMap();
      if (file["name"].toString() != name) continue;
      const QString start = "image://attachment/", url = file["url"].toString();
      EXPECT_TRUE(url.startsWith(start));
      return url.mid(start.size());
    }
    ADD_FAILURE() << "no file " << name;
    return {};
  }

  /// What the provider answers, as Qt would show it.
  [[nodiscard]] QImage answered(const QString& id, QSize size, bool isCancelled = false) {
    if (!provider) provider.reset(engine->makePictureProvider());
    const std::unique_ptr<QQuickImageResponse> response(provider->requestImageResponse(id, size));
    bool isFinished = false;
    QObject::connect(response.get(), &QQuickImageResponse::finished, response.get(), [&] { isFinished = true; });
    if (isCancelled) response->cancel();
    EXPECT_TRUE(happens([&] { return isFinished; }));
    const std::unique_ptr<QQuickTextureFactory> factory(response->textureFactory());
    const QImage image = factory ? factory->image() : QImage();
    EXPECT_EQ(image.isNull(), !response->errorString().isEmpty());
    return image;
  }

  std::unique_ptr<QQuickAsyncImageProvider> provider;
};

TEST(AttachmentIdTest, GivesEveryPathBack) {
  for (const std::string& path : {std::string("User/Library/SMS/Attachments/ab/a b.jpg"), std::string("%2F?#&\xff"),
                                  std::string("a\0b", 3), std::string()}) {
    const auto place = placeOfId(idOf({7, path}));
    ASSERT_TRUE(place.has_value());
    EXPECT_EQ(place->device, 7U);
    EXPECT_EQ(place->path, path);
  }
  for (const char* id : {"", "/", "x/YQ", "7", "7/!!", "-1/YQ", "7/Y Q"}) {
    EXPECT_FALSE(placeOfId(QString::fromLatin1(id)).has_value()) << id;
  }
}

TEST_F(PictureProviderTest, DrawsAPictureInItsOwnShapeIntoTheBox) {
  const QString id = idOf("Maya Lindqvist", "IMG_0233.jpeg");
  const QImage whole = answered(id, QSize(1000, 1000));
  ASSERT_FALSE(whole.isNull());
  EXPECT_LT(whole.width(), 1000);  // it is never enlarged
  const int side = whole.width() / 2;
  const QImage small = answered(id, QSize(side, 1000));
  EXPECT_EQ(small.width(), side);
  EXPECT_NEAR(small.height(), whole.height() / 2, 1);
  EXPECT_EQ(answered(id, QSize(side, 0)).size(), small.size());
  EXPECT_EQ(answered(id, QSize(side, 1000)), small);  // from memory
}

TEST_F(PictureProviderTest, DrawsTheFirstPageOfADocument) {
  if (!platform::system::outputOf("pdftoppm", {"-v"}, 1000)) GTEST_SKIP() << "needs poppler-utils";
  const QImage page = answered(idOf("Maya Lindqvist", "Booking.pdf"), QSize(200, 200));
  ASSERT_FALSE(page.isNull());
  EXPECT_EQ(page.height(), 200);
  EXPECT_LT(page.width(), 200);
}

TEST_F(PictureProviderTest, HasNothingForFilesOutsideAndForWhatIsNoFile) {
  const QString id = idOf("Maya Lindqvist", "IMG_0233.jpeg");
  const std::uint64_t device = placeOfId(id)->device;
  ASSERT_FALSE(answered(id, QSize()).isNull());
  for (const std::string path : {"/etc/passwd", "User/Library/../../../../etc/hostname", "User/Library/SMS/sms.db",
                                 "User/Library/SMS/Attachments", "", "nothing"}) {
    EXPECT_TRUE(answered(desktop::idOf({device, path}), QSize()).isNull()) << path;
  }
  EXPECT_TRUE(answered("nonsense", QSize()).isNull());
}

TEST_F(PictureProviderTest, HasNothingForADeviceThatIsNoLongerOpen) {
  const QString id = idOf("Maya Lindqvist", "IMG_0233.jpeg");
  library().close();
  library().openSample();
  ASSERT_TRUE(becomes(State::Open));
  EXPECT_TRUE(answered(id, QSize()).isNull());
  engine.reset();
  EXPECT_TRUE(answered(id, QSize()).isNull());
}

TEST_F(PictureProviderTest, FinishesAlsoWhatIsCancelledOrOutlived) {
  const QString id = idOf("Maya Lindqvist", "IMG_0233.jpeg");
  (void)answered(id, QSize(10, 10), true);
  for (int side = 20; side < 60; ++side) delete provider->requestImageResponse(id, QSize(side, side));
  provider.reset();
}

TEST_F(PictureProviderTest, DrawsPicturesOfEncryptedBackups) {
  library().open(shownText(writeBackup("secret")));
  ASSERT_TRUE(becomes(State::NeedsPassword));
  library().givePassword("secret");
  ASSERT_TRUE(becomes(State::Open));
  ASSERT_TRUE(select("Maya Lindqvist"));
  const MessageModel& messages = engine->messages();
  int pictures = 0;
  for (int row = 0; row < messages.rowCount(); ++row) {
    const QVariantMap file = messages.index(row).data(MessageModel::AttachmentRole).toMap();
    if (file["kind"].toString() != "image") continue;
    ++pictures;
    EXPECT_FALSE(answered(file["url"].toString().mid(QString("image://attachment/").size()), QSize()).isNull())
        << file["name"].toString().toStdString();
  }
  EXPECT_GT(pictures, 2);
}

}  // namespace
}  // namespace chatsum::desktop
