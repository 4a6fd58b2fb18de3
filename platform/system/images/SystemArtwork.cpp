#include "platform/system/images/SystemArtwork.h"

#include <sys/stat.h>

#include <array>
#include <cmath>
#include <memory>
#include <utility>

#include "platform/foundation/PathComponents.h"
#include "platform/system/bundle/SharedFolder.h"
#include "platform/system/images/ImageSurface.h"
#include "platform/system/images/PictureBytes.h"
#include "platform/system/images/SystemImage.h"

namespace chatsum::platform::system {
namespace {

std::string installedFolder() {
  const std::string shared = sharedFolder();
  return shared.empty() ? shared : shared + "/chatsum/ChatsumSettings.bundle";
}

double scaleOfName(const std::string& path) {
  const std::string name = path::deletingExtension(path);
  if (name.ends_with("@2x")) return 2;
  return name.ends_with("@3x") ? 3 : 1;
}

bool isFile(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Answers device paths, so that what it names is found like everything else.
class ArtworkBundle final : public Bundle {
 public:
  ArtworkBundle(const SystemArtwork& artwork, double screenScale) : artwork_(artwork), screenScale_(screenScale) {}

  [[nodiscard]] std::optional<std::string> pathForResource(std::string_view name,
                                                           std::string_view type) const override {
    if (name.empty() || name.find('/') != std::string_view::npos) return std::nullopt;
    std::string path = std::string(kArtworkFolder).append("/").append(name);
    if (!type.empty()) path.append(".").append(type);
    return isFile(artwork_.realPath(path)) ? std::optional(path) : std::nullopt;
  }

  // The screen's own variant is best, then a finer one, then a coarser one.
  [[nodiscard]] UIImageRef imageNamed(std::string_view name) const override {
    static constexpr std::array<std::array<std::string_view, 3>, 3> kSuffixes = {
        {{"", "@2x", "@3x"}, {"@2x", "@3x", ""}, {"@3x", "@2x", ""}}};
    const std::size_t row = screenScale_ >= 3 ? 2 : screenScale_ >= 2 ? 1 : 0;
    for (const std::string_view suffix : kSuffixes[row]) {
      const auto path = pathForResource(std::string(name).append(suffix), "png");
      if (!path) continue;
      if (auto image = artwork_.imageWithContentsOfFile(*path)) return image;
    }
    return nullptr;
  }

 private:
  const SystemArtwork& artwork_;
  double screenScale_;
};

}  // namespace

BundleRef SystemArtwork::bundleForClass(std::string_view) const {
  return std::make_shared<const ArtworkBundle>(*this, options_.screenScale);
}

UIImageRef SystemArtwork::imageWithContentsOfFile(const std::string& path) const {
  const std::string file = realPath(path);
  const auto bytes = PictureBytes::open(file);
  if (!bytes) return nullptr;
  const auto opened = memo_.find({file, 0, bytes->identity()}, [&] {
    return ImageMemo::Opened{FilePixels::open(file, *bytes), nullptr};
  });
  if (!opened.picture) return nullptr;
  return std::make_shared<const SystemImage>(opened.picture, scaleOfName(file));
}

PDFPageRef SystemArtwork::pageOfDocument(const std::string& path, int number) const {
  const std::string file = realPath(path);
  const auto bytes = PictureBytes::open(file);
  if (!bytes || number < 1) return nullptr;
  return memo_
      .find({file, number, bytes->identity()},
            [&] {
              return ImageMemo::Opened{nullptr, SystemPDFPage::open(file, *bytes, number)};
            })
      .page;
}

bool SystemArtwork::prepare(const std::string& path, double side) const {
  if (const UIImageRef image = imageWithContentsOfFile(path)) {
    const Rect whole{{0, 0}, {side, side}};
    const UIImageRef middle = image->croppedTo(middleSquare(image->size()));
    const SystemImage* picture = SystemImage::of(middle);
    return picture && picture->pixels(ImageSurface(whole.size, 1).pixelsIn(whole)) != nullptr;
  }
  const auto page = std::dynamic_pointer_cast<const SystemPDFPage>(pageOfDocument(path, 1));
  if (!page) return false;
  const Rect box = page->cropBox();
  return page->pixels(ImageSurface(box.size, 1).pixelsIn(box)) != nullptr;
}

std::string SystemArtwork::realPath(const std::string& path) const {
  // The system would read a path only up to a zero byte.
  if (path.find('\0') != std::string::npos) return {};
  if (path.starts_with(kArtworkFolder) && path.substr(kArtworkFolder.size()).starts_with('/')) {
    const std::string name = path.substr(kArtworkFolder.size() + 1);
    // Messages can name any path: there is nothing for them outside of the folder.
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) return {};
    const std::string folder = options_.folder.empty() ? installedFolder() : options_.folder;
    return folder.empty() ? folder : folder + "/" + name;
  }
  return options_.mapPath ? options_.mapPath(path) : path;
}

}  // namespace chatsum::platform::system
