#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/fake/TemporaryFolder.h"
#include "tests/unit/images/Pictures.h"

namespace chatsum::platform::system {
namespace {

const std::string kFolder(kArtworkFolder);

TEST(Artwork, IsFoundBesideTheProgram) {
  const SystemArtwork artwork({});
  const BundleRef bundle = artwork.bundleForClass("RootListController");
  ASSERT_NE(bundle, nullptr);
  for (const char* name : {"Chatsum", "pdf", "csv", "txt", "nav"}) {
    SCOPED_TRACE(name);
    const double side = name == std::string("Chatsum") ? 48 : name == std::string("nav") ? 20 : 32;
    EXPECT_EQ(bundle->pathForResource(name, "png"), kFolder + "/" + name + ".png");
    for (const char* suffix : {"", "@2x", "@3x"}) {
      const UIImageRef image = artwork.imageWithContentsOfFile(kFolder + "/" + name + suffix + ".png");
      ASSERT_NE(image, nullptr) << suffix;
      EXPECT_EQ(image->size(), (Size{side, side})) << suffix;
      EXPECT_FALSE(drawsNothing(image)) << suffix;
    }
  }
}

TEST(Artwork, IsTakenFromTheFolderThatIsGiven) {
  const fake::TemporaryFolder folder;
  writeFile(folder.path() + "/nav.png", readFile(picturePath("plain.png")));
  const SystemArtwork artwork(
      {.mapPath = [](const std::string&) { return std::string("/nowhere"); }, .folder = folder.path()});
  EXPECT_EQ(artwork.imageWithContentsOfFile(kFolder + "/nav.png")->size(), (Size{96, 64}));
  EXPECT_EQ(artwork.imageWithContentsOfFile(kFolder + "/Chatsum.png"), nullptr);
  EXPECT_EQ(artwork.imageWithContentsOfFile(folder.path() + "/nav.png"), nullptr);  // mapped elsewhere
}

TEST(Artwork, OfABundleIsTheScreensVariantOrTheNextBest) {
  const fake::TemporaryFolder folder;
  const auto sizeNamed = [&](double screenScale) {
    const SystemArtwork artwork({.mapPath = {}, .folder = folder.path(), .screenScale = screenScale});
    const UIImageRef image = artwork.bundleForClass("")->imageNamed("a");
    return image ? image->size().width : 0;
  };
  EXPECT_EQ(sizeNamed(2), 0);
  writeFile(folder.path() + "/a.png", readFile(picturePath("plain.png")));
  EXPECT_EQ(sizeNamed(3), 96);
  writeFile(folder.path() + "/a@2x.png", readFile(picturePath("plain.png")));
  EXPECT_EQ(sizeNamed(1), 96);
  EXPECT_EQ(sizeNamed(2), 48);
  EXPECT_EQ(sizeNamed(3), 48);
  writeFile(folder.path() + "/a@3x.png", readFile(picturePath("plain.png")));
  EXPECT_EQ(sizeNamed(3), 32);
  EXPECT_EQ(sizeNamed(2), 48);
}

TEST(Artwork, OfABundleStaysInsideIt) {
  const fake::TemporaryFolder folder;
  std::filesystem::create_directory(folder.path() + "/bundle");
  writeFile(folder.path() + "/a.png", readFile(picturePath("plain.png")));
  const SystemArtwork artwork({.mapPath = {}, .folder = folder.path() + "/bundle"});
  const BundleRef bundle = artwork.bundleForClass("");
  EXPECT_EQ(bundle->pathForResource("../a", "png"), std::nullopt);
  EXPECT_EQ(bundle->pathForResource("", "png"), std::nullopt);
  EXPECT_EQ(bundle->imageNamed("../a"), nullptr);
}

TEST(Artwork, IsNothingButTheFilesOfItsFolder) {
  const fake::TemporaryFolder folder;
  std::filesystem::create_directories(folder.path() + "/bundle/below");
  for (const char* place : {"/a.png", "/bundle/a.png", "/bundle/below/a.png"}) {
    writeFile(folder.path() + place, readFile(picturePath("plain.png")));
  }
  const SystemArtwork artwork({.mapPath = {}, .folder = folder.path() + "/bundle"});
  EXPECT_NE(artwork.imageWithContentsOfFile(kFolder + "/a.png"), nullptr);
  for (const char* path :
       {"/../a.png", "/./../a.png", "/below/a.png", "/below/../../a.png", "//a.png", "/..", "/.", "/"}) {
    EXPECT_EQ(artwork.imageWithContentsOfFile(kFolder + path), nullptr) << path;
    EXPECT_EQ(artwork.realPath(kFolder + path), "") << path;
  }
}

TEST(Artwork, MapsThePathsOfTheDevice) {
  const fake::TemporaryFolder folder;
  writeFile(folder.path() + "/a.jpg", readFile(picturePath("plain.jpg")));
  const SystemArtwork artwork(
      {.mapPath = [&](const std::string& path) { return path.empty() ? path : folder.path() + path; }, .folder = {}});
  EXPECT_NE(artwork.imageWithContentsOfFile("/a.jpg"), nullptr);
  EXPECT_EQ(artwork.imageWithContentsOfFile(folder.path() + "/a.jpg"), nullptr);
  EXPECT_EQ(artwork.imageWithContentsOfFile(""), nullptr);
}

/// Makes a picture file unreadable without changing what tells files apart.
class Memo : public ::testing::Test {
 protected:
  static BitmapRef thumbnail(const UIImageRef& image) {
    return image ? drawnOn({64, 64}, image->croppedTo(middleSquare(image->size()))) : nullptr;
  }
  /// Opens the picture as a report does.
  [[nodiscard]] std::shared_ptr<const SystemImage> open(const std::string& path) const {
    return std::dynamic_pointer_cast<const SystemImage>(artwork_.imageWithContentsOfFile(path));
  }
  /// The very pixels that were decoded.
  [[nodiscard]] const Bitmap* decodedPixels(const std::string& path) const {
    const auto image = open(path);
    const UIImageRef middle = image->croppedTo(middleSquare(image->size()));
    return SystemImage::of(middle)->pixels({64, 64}).get();
  }

  fake::TemporaryFolder folder_;
  SystemArtwork artwork_{{}};
};

TEST_F(Memo, DecodesAFileOnceWhileItRemembers) {
  const std::string path = picturePath("large.jpg");
  const ImageMemo::Scope scope(artwork_.memo());
  EXPECT_TRUE(artwork_.prepare(path, 64));
  const Bitmap* prepared = decodedPixels(path);
  EXPECT_EQ(decodedPixels(path), prepared);
  expectQuarters(thumbnail(open(path)));
}

TEST_F(Memo, ForgetsEverythingAtItsEnd) {
  const std::string path = writeFile(folder_.path() + "/a.jpg", readFile(picturePath("large.jpg")));
  std::weak_ptr<const FilePixels> kept;
  const auto find = [&] {
    return artwork_.memo()
        .find({path, 0, PictureBytes::open(path)->identity()},
              [&] {
                return ImageMemo::Opened{FilePixels::open(path, *PictureBytes::open(path)), nullptr};
              })
        .picture;
  };
  {
    const ImageMemo::Scope outer(artwork_.memo());
    { ImageMemo::Scope inner(artwork_.memo()); }
    kept = find();
    EXPECT_FALSE(kept.expired());
    EXPECT_EQ(find(), kept.lock());
  }
  EXPECT_TRUE(kept.expired());
  kept = find();
  EXPECT_TRUE(kept.expired());
}

TEST_F(Memo, TakesAChangedFileForAnother) {
  const std::string path = writeFile(folder_.path() + "/a.jpg", readFile(picturePath("plain.jpg")));
  const ImageMemo::Scope scope(artwork_.memo());
  EXPECT_TRUE(artwork_.prepare(path, 64));
  expectQuarters(thumbnail(open(path)));
  std::filesystem::copy_file(picturePath("large.jpg"), folder_.path() + "/new.jpg");
  std::filesystem::rename(folder_.path() + "/new.jpg", path);
  EXPECT_EQ(open(path)->size(), (Size{480, 320}));
  expectQuarters(thumbnail(open(path)));
}

TEST_F(Memo, RemembersWhatIsNoPicture) {
  const std::string path = writeFile(folder_.path() + "/a.jpg", "no picture at all, but long enough");
  const ImageMemo::Scope scope(artwork_.memo());
  EXPECT_FALSE(artwork_.prepare(path, 64));
  EXPECT_FALSE(artwork_.prepare(path, 64));
  EXPECT_EQ(open(path), nullptr);
  EXPECT_FALSE(artwork_.prepare(folder_.path() + "/missing.jpg", 64));
}

TEST_F(Memo, KeepsABoundedNumberOfPictures) {
  const ImageMemo::Scope scope(artwork_.memo());
  const std::string png = readFile(picturePath("plain.png"));
  std::vector<std::weak_ptr<const FilePixels>> kept;
  for (int i = 0; i < 300; ++i) {
    const std::string path = writeFile(folder_.path() + "/" + std::to_string(i) + ".png", png);
    EXPECT_TRUE(artwork_.prepare(path, 64));
    const auto bytes = PictureBytes::open(path);
    kept.push_back(artwork_.memo().find({path, 0, bytes->identity()}, [] { return ImageMemo::Opened(); }).picture);
  }
  std::size_t alive = 0;
  for (const auto& one : kept) alive += one.expired() ? 0 : 1;
  EXPECT_EQ(alive, 256U);
  EXPECT_TRUE(kept.front().expired());
  EXPECT_FALSE(kept.back().expired());
}

TEST_F(Memo, KeepsABoundedNumberOfPixels) {
  const ImageMemo::Scope scope(artwork_.memo());
  const std::string jpeg = readFile(picturePath("large.jpg"));
  std::vector<std::weak_ptr<const FilePixels>> kept;
  for (int i = 0; i < 100; ++i) {
    const std::string path = writeFile(folder_.path() + "/" + std::to_string(i) + ".jpg", jpeg);
    EXPECT_TRUE(artwork_.prepare(path, 320));  // 400 KB each
    const auto bytes = PictureBytes::open(path);
    kept.push_back(artwork_.memo().find({path, 0, bytes->identity()}, [] { return ImageMemo::Opened(); }).picture);
  }
  std::size_t pixels = 0;
  for (const auto& one : kept) {
    if (const auto picture = one.lock()) pixels += picture->keptBytes();
  }
  EXPECT_GT(pixels, 15U << 20);
  EXPECT_LE(pixels, 25U << 20);
}

TEST_F(Memo, PreparesTheFirstPageOfADocument) {
  const std::string path = writeFile(
      folder_.path() + "/a.pdf",
      "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
      "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 90 60]>>endobj\ntrailer<</Root 1 0 R>>\n");
  const ImageMemo::Scope scope(artwork_.memo());
  EXPECT_TRUE(artwork_.prepare(path, 64));
  const auto page = std::dynamic_pointer_cast<const SystemPDFPage>(artwork_.pageOfDocument(path, 1));
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(page->keptBytes(), 90U * 60 * 4);
  EXPECT_EQ(page->pixels({90, 60})->width, 90);
}

TEST_F(Memo, ServesManyThreads) {
  const std::vector<std::string> names = {"large.jpg", "small-inside.jpg", "plain.heic", "plain.png",
                                          "tiled.tif", "plain.webp",       "turned.heic"};
  const ImageMemo::Scope scope(artwork_.memo());
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < 8; ++i) {
      threads.emplace_back([&, i] {
        for (std::size_t k = 0; k < names.size(); ++k) {
          EXPECT_TRUE(artwork_.prepare(picturePath(names[(i + k) % names.size()]), 64));
        }
      });
    }
  }
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    if (name == "small-inside.jpg") continue;
    expectQuarters(thumbnail(open(picturePath(name))), kQuarters, 25);
  }
}

}  // namespace
}  // namespace chatsum::platform::system
