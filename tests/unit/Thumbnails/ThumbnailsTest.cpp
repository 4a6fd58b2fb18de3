#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"
#include "tests/support/LogLine.h"

namespace chatsum::test {
namespace {

using platform::fake::FakeImage;
using platform::fake::FakePDFPage;

const std::string kFolder = "/System/Library/PreferenceBundles/ChatsumSettings.bundle/";
const std::string kNoImage =
    error("+[ChatsumUtils thumbnail:ratio:]", 849, "Image is nil, hence unable to generate thumbnail.");

class Thumbnails : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};

  /// The path that a name is looked up under.
  std::string pathOf(const std::string& name) {
    fake.artwork.asked.clear();
    (void)ChatsumUtils::imageWithFileName(name);
    return fake.artwork.asked.size() == 1 ? fake.artwork.asked.front() : std::string("asked several times");
  }
  /// The rectangle that a thumbnail cuts out of a picture.
  Rect cropOf(const platform::UIImageRef& image) {
    fake.graphics.images.clear();
    (void)ChatsumUtils::thumbnail(image);
    const auto* part = dynamic_cast<const FakeImage*>(fake.graphics.images.at(0).image.get());
    return part && part->crop() ? *part->crop() : Rect();
  }
};

TEST_F(Thumbnails, OfAFileAreThoseOfItsPicture) {
  const auto image = std::make_shared<FakeImage>(Size{200, 100});
  fake.artwork.files["/a.jpeg"] = image;
  EXPECT_EQ(ChatsumUtils::imageFromContentOfFile("/a.jpeg"), image);
  EXPECT_EQ(ChatsumUtils::imageFromContentOfFile("/b.jpeg"), nullptr);
  EXPECT_EQ(ChatsumUtils::thumbnailFromFile("/a.jpeg")->size(), (Size{64, 64}));
  EXPECT_EQ(ChatsumUtils::thumbnailFromFile("/a.jpeg", 20.5)->size(), (Size{20.5, 20.5}));
  EXPECT_TRUE(fake.log.lines().empty());
}

TEST_F(Thumbnails, ShowTheMiddleSquare) {
  EXPECT_EQ(cropOf(std::make_shared<FakeImage>(Size{200, 100})), (Rect{{50, 0}, {100, 100}}));
  EXPECT_EQ(cropOf(std::make_shared<FakeImage>(Size{100, 250})), (Rect{{0, 75}, {100, 100}}));
  EXPECT_EQ(cropOf(std::make_shared<FakeImage>(Size{80, 80})), (Rect{{0, 0}, {80, 80}}));
  EXPECT_EQ(cropOf(std::make_shared<FakeImage>(Size{101, 100})), (Rect{{0.5, 0}, {100, 100}}));
}

TEST_F(Thumbnails, CutTheSquareOfPointsOutOfThePixels) {
  // 200 x 100 points at scale 2 are 400 x 200 pixels; the square is that of the points all the same.
  EXPECT_EQ(cropOf(std::make_shared<FakeImage>(Size{200, 100}, 2)), (Rect{{50, 0}, {100, 100}}));
}

TEST_F(Thumbnails, AreDrawnOntoASurfaceOfTheirOwn) {
  const auto image = std::make_shared<FakeImage>(Size{200, 100});
  EXPECT_EQ(ChatsumUtils::thumbnail(image, 40)->size(), (Size{40, 40}));
  EXPECT_EQ(fake.graphics.surfaceSteps, (std::vector<std::string>{"begin 40x40@1", "image 0,0 40x40", "end"}));
  EXPECT_EQ(fake.graphics.currentContext(), nullptr);
  fake.graphics.surfaceSteps.clear();
  EXPECT_EQ(ChatsumUtils::thumbnail(image)->size(), (Size{64, 64}));
  EXPECT_EQ(fake.graphics.surfaceSteps, (std::vector<std::string>{"begin 64x64@1", "image 0,0 64x64", "end"}));
}

TEST_F(Thumbnails, AreMadeAnewAtEveryCall) {
  fake.artwork.files["/a.jpeg"] = std::make_shared<FakeImage>(Size{200, 100});
  EXPECT_NE(ChatsumUtils::thumbnailFromFile("/a.jpeg"), ChatsumUtils::thumbnailFromFile("/a.jpeg"));
  EXPECT_EQ(fake.artwork.asked, (std::vector<std::string>{"/a.jpeg", "/a.jpeg"}));
}

TEST_F(Thumbnails, OfNothingAreNothingAndLogged) {
  EXPECT_EQ(ChatsumUtils::thumbnail(nullptr, 20), nullptr);
  EXPECT_EQ(ChatsumUtils::thumbnail(nullptr), nullptr);
  EXPECT_EQ(ChatsumUtils::thumbnailFromFile("/missing.jpeg"), nullptr);
  EXPECT_EQ(ChatsumUtils::thumbnailFromFile("/missing.jpeg", 20), nullptr);
  EXPECT_EQ(fake.log.lines(), (std::vector<std::string>{kNoImage, kNoImage, kNoImage, kNoImage}));
  EXPECT_TRUE(fake.graphics.surfaceSteps.empty());
}

TEST_F(Thumbnails, OfAPictureWithoutPixelsStayEmpty) {
  EXPECT_EQ(ChatsumUtils::thumbnail(std::make_shared<FakeImage>(Size{0, 0}))->size(), (Size{64, 64}));
  EXPECT_EQ(fake.graphics.images.at(0).image, nullptr);
  EXPECT_TRUE(fake.log.lines().empty());
}

TEST_F(Thumbnails, OfADocumentShowItsFirstPageUpright) {
  fake.artwork.documents["/a.pdf"] = std::make_shared<FakePDFPage>(Rect{{10, 20}, {300, 400}});
  const auto thumbnail = ChatsumUtils::thumbnailForPDF("/a.pdf");
  ASSERT_NE(thumbnail, nullptr);
  EXPECT_EQ(thumbnail->size(), (Size{64, 64}));
  EXPECT_EQ(fake.graphics.surfaceSteps,
            (std::vector<std::string>{"begin 300x400@1", "translate 10,420", "scale 1,-1", "translate -10,-20", "page",
                                      "end", "begin 64x64@1", "image 0,0 64x64", "end"}));
  EXPECT_TRUE(fake.log.lines().empty());
}

TEST_F(Thumbnails, OfNoDocumentAreNothing) {
  EXPECT_EQ(ChatsumUtils::thumbnailForPDF("/missing.pdf"), nullptr);
  EXPECT_TRUE(fake.graphics.surfaceSteps.empty());
  EXPECT_EQ(fake.log.lines(), std::vector<std::string>{kNoImage});
}

TEST_F(Thumbnails, LeaveThePageThatIsDrawnOnAlone) {
  fake.artwork.files["/a.jpeg"] = std::make_shared<FakeImage>(Size{200, 100});
  fake.graphics.beginPDFContextToFile("/report.pdf", {});
  auto* document = fake.graphics.currentContext();
  (void)ChatsumUtils::thumbnailFromFile("/a.jpeg");
  EXPECT_EQ(fake.graphics.currentContext(), document);
}

TEST_F(Thumbnails, ArtworkIsLoadedAtTheScaleOfTheScreen) {
  fake.device.scale = 3;
  EXPECT_EQ(pathOf("icon"), kFolder + "icon@3x.png");
  fake.device.scale = 2;
  EXPECT_EQ(pathOf("icon"), kFolder + "icon@2x.png");
  fake.device.scale = 1;
  EXPECT_EQ(pathOf("icon"), kFolder + "icon.png");
}

TEST_F(Thumbnails, ArtworkTakesTheWholePartOfTheScale) {
  fake.device.scale = 2.9;
  EXPECT_EQ(pathOf("icon"), kFolder + "icon@2x.png");
  fake.device.scale = 1.99;
  EXPECT_EQ(pathOf("icon"), kFolder + "icon.png");
}

TEST_F(Thumbnails, ArtworkIsPlainOnScreensWithoutADisplayLink) {
  fake.device.hasDisplayLink = false;
  fake.device.scale = 3;
  EXPECT_EQ(pathOf("icon"), kFolder + "icon.png");
}

TEST_F(Thumbnails, ArtworkWithAnExtensionIsLoadedAsItIsNamed) {
  fake.device.scale = 3;
  EXPECT_EQ(pathOf("icon.jpg"), kFolder + "icon.jpg");
  EXPECT_EQ(pathOf("icon@2x.png"), kFolder + "icon@2x.png");
}

TEST_F(Thumbnails, ArtworkThatIsMissingAtTheScaleIsNothing) {
  fake.device.scale = 3;
  fake.artwork.files[kFolder + "icon.png"] = std::make_shared<FakeImage>(Size{32, 32});
  EXPECT_EQ(ChatsumUtils::imageWithFileName("icon"), nullptr);
  EXPECT_TRUE(fake.log.lines().empty());
  fake.artwork.files[kFolder + "icon@3x.png"] = std::make_shared<FakeImage>(Size{32, 32});
  EXPECT_EQ(ChatsumUtils::imageWithFileName("icon"), fake.artwork.files[kFolder + "icon@3x.png"]);
}

}  // namespace
}  // namespace chatsum::test
