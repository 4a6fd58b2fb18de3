// Thumbnails of real files, drawn by the real services.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/system/SystemPlatform.h"
#include "platform/system/images/SystemImage.h"

namespace chatsum::test {
namespace {

using platform::system::BitmapRef;
using platform::system::SystemImage;

class DrawnThumbnails : public ::testing::Test {
 protected:
  platform::fake::TemporaryFolder folder;
  platform::system::SystemPlatform system{options()};
  platform::fake::ScopedPlatform scope{system.platform()};

  platform::system::SystemOptions options() {
    platform::system::SystemOptions made;
    made.homeDirectory = "/var/mobile";
    made.mapPath = [this](const std::string& path) { return folder.path() + "/" + path; };
    return made;
  }
  void put(const std::string& name, const std::string& bytes) const {
    std::ofstream(folder.path() + "/" + name, std::ios::binary) << bytes;
  }
  /// Makes a picture of the tests the file of that name.
  void copy(const std::string& picture, const std::string& name) const {
    std::filesystem::copy_file(std::string(CHATSUM_TEST_GOLDEN) + "/../data/pictures/" + picture,
                               folder.path() + "/" + name);
  }
  static BitmapRef pixels(const platform::UIImageRef& image) {
    const SystemImage* picture = SystemImage::of(image);
    return picture ? picture->pixels() : nullptr;
  }
  /// "red", "green", "blue", "yellow", "white", "clear" or else "other".
  static std::string colorAt(const BitmapRef& bitmap, int x, int y) {
    const std::uint8_t* pixel = bitmap->at(x, y);
    const bool red = pixel[0] > 150, green = pixel[1] > 130, blue = pixel[2] > 150;
    if (pixel[3] == 0) return "clear";
    if (pixel[3] < 250) return "other";
    if (red && green) return blue ? "white" : "yellow";
    if (red) return blue ? "other" : "red";
    return green ? "green" : blue ? "blue" : "other";
  }
  static std::string quarters(const BitmapRef& bitmap) {
    if (!bitmap) return "none";
    const int near = bitmap->width / 4, far = bitmap->width * 3 / 4;
    return colorAt(bitmap, near, near) + " " + colorAt(bitmap, far, near) + " " + colorAt(bitmap, near, far) + " " +
           colorAt(bitmap, far, far);
  }
};

TEST_F(DrawnThumbnails, ShowTheMiddleOfAPicture) {
  copy("plain.jpg", "a.jpeg");
  const platform::UIImageRef thumbnail = ChatsumUtils::thumbnailFromFile("a.jpeg");
  ASSERT_NE(thumbnail, nullptr);
  EXPECT_EQ(thumbnail->size(), (Size{64, 64}));
  EXPECT_EQ(pixels(thumbnail)->width, 64);
  EXPECT_EQ(quarters(pixels(thumbnail)), "red green blue yellow");
  // The sides of the picture, beyond its middle square, are not squeezed in.
  EXPECT_EQ(colorAt(pixels(thumbnail), 30, 10), "red");
  EXPECT_EQ(colorAt(pixels(thumbnail), 33, 10), "green");
}

TEST_F(DrawnThumbnails, StandUpright) {
  for (int tag = 1; tag <= 8; ++tag) {
    const std::string name = "turned-" + std::to_string(tag) + ".jpg";
    copy(name, name);
    EXPECT_EQ(quarters(pixels(ChatsumUtils::thumbnailFromFile(name))), "red green blue yellow") << tag;
  }
}

TEST_F(DrawnThumbnails, OfAPictureAtScaleTwoShowAQuarterOfIt) {
  copy("plain.png", "a@2x.png");  // 96 x 64 pixels are 48 x 32 points: the square is 32 wide at 8, 0
  EXPECT_EQ(ChatsumUtils::imageFromContentOfFile("a@2x.png")->size(), (Size{48, 32}));
  EXPECT_EQ(quarters(pixels(ChatsumUtils::thumbnailFromFile("a@2x.png"))), "red red red red");
}

TEST_F(DrawnThumbnails, AreEnlargedWhenThePictureIsSmall) {
  copy("plain.png", "a.png");
  const BitmapRef large = pixels(ChatsumUtils::thumbnailFromFile("a.png", 200));
  ASSERT_NE(large, nullptr);
  EXPECT_EQ(large->width, 200);
  EXPECT_EQ(quarters(large), "red green blue yellow");
}

TEST_F(DrawnThumbnails, OfADamagedPictureAreEmpty) {
  std::ifstream stream(std::string(CHATSUM_TEST_GOLDEN) + "/../data/pictures/plain.jpg", std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  bytes.resize(bytes.size() * 3 / 4);
  put("a.jpeg", bytes);
  const BitmapRef drawn = pixels(ChatsumUtils::thumbnailFromFile("a.jpeg"));
  EXPECT_EQ(quarters(drawn), "clear clear clear clear");
  put("b.jpeg", "no picture");
  EXPECT_EQ(ChatsumUtils::thumbnailFromFile("b.jpeg"), nullptr);
}

TEST_F(DrawnThumbnails, OfADocumentShowItsFirstPage) {
  put("a.pdf",
      "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
      "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 90 60]/Contents 4 0 R>>endobj\n"
      "4 0 obj<</Length 51>>stream\n1 0 0 rg 0 30 45 30 re f .9 .8 .1 rg 45 0 45 30 re f\nendstream endobj\n"
      "trailer<</Root 1 0 R>>\n");
  EXPECT_EQ(quarters(pixels(ChatsumUtils::thumbnailForPDF("a.pdf"))), "red white white yellow");
  put("b.pdf", "no document");
  EXPECT_EQ(ChatsumUtils::thumbnailForPDF("b.pdf"), nullptr);
}

TEST_F(DrawnThumbnails, ArtworkIsThereForTheScreen) {
  EXPECT_EQ(platform::current().device.screenScale(), 3);
  for (const char* name : {"Chatsum", "pdf", "csv", "txt", "nav"}) {
    const platform::UIImageRef image = ChatsumUtils::imageWithFileName(name);
    ASSERT_NE(image, nullptr) << name;
    EXPECT_EQ(pixels(image)->width, static_cast<int>(image->size().width * 3)) << name;
  }
  EXPECT_EQ(ChatsumUtils::imageWithFileName("Chatsum")->size(), (Size{48, 48}));
  EXPECT_EQ(ChatsumUtils::imageWithFileName("missing"), nullptr);
  EXPECT_NE(ChatsumUtils::navigationBarColor("RootListController").pattern, nullptr);
}

}  // namespace
}  // namespace chatsum::test
