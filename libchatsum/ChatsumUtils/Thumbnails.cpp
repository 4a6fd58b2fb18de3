// Artwork at the screen's scale, and square thumbnails of pictures and of the first page of a PDF document.

#include <string>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

constexpr std::string_view kArtworkFolder = "/System/Library/PreferenceBundles/ChatsumSettings.bundle/";
constexpr double kDefaultSide = 64;

/// What the file of an artwork ends with on this screen.
std::string artworkSuffix(const platform::Device& device) {
  constexpr double kFirstNamedScale = 2;
  if (!device.screenHasDisplayLink() || device.screenScale() < kFirstNamedScale) return ".png";
  return "@" + std::to_string(static_cast<int>(device.screenScale())) + "x.png";
}

Rect middleSquare(Size size) {
  if (size.width > size.height) return {{(size.width - size.height) / 2, 0}, {size.height, size.height}};
  return {{0, (size.height - size.width) / 2}, {size.width, size.width}};
}

}  // namespace

platform::UIImageRef ChatsumUtils::imageFromContentOfFile(const std::string& path) {
  return platform::current().artwork.imageWithContentsOfFile(path);
}

platform::UIImageRef ChatsumUtils::imageWithFileName(std::string_view name) {
  std::string path = path::appending(kArtworkFolder, name);
  if (path::extensionView(path).empty()) path += artworkSuffix(platform::current().device);
  return imageFromContentOfFile(path);
}

platform::UIImageRef ChatsumUtils::thumbnail(const platform::UIImageRef& image, double side) {
  if (!image) {
    constexpr int kNoImageLine = 849;
    logging::error("+[ChatsumUtils thumbnail:ratio:]", kNoImageLine,
                   "Image is nil, hence unable to generate thumbnail.");
    return nullptr;
  }
  const platform::UIImageRef middle = image->croppedTo(middleSquare(image->size()));
  platform::Graphics& graphics = platform::current().graphics;
  graphics.beginImageContext({side, side}, 1);
  graphics.drawImage(middle, {{0, 0}, {side, side}});
  platform::UIImageRef thumbnail = graphics.imageFromCurrentContext();
  graphics.endImageContext();
  return thumbnail;
}

platform::UIImageRef ChatsumUtils::thumbnail(const platform::UIImageRef& image) {
  return thumbnail(image, kDefaultSide);
}

platform::UIImageRef ChatsumUtils::thumbnailFromFile(const std::string& path) {
  return thumbnailFromFile(path, kDefaultSide);
}

platform::UIImageRef ChatsumUtils::thumbnailFromFile(const std::string& path, double side) {
  return thumbnail(imageFromContentOfFile(path), side);
}

platform::UIImageRef ChatsumUtils::thumbnailForPDF(const std::string& path) {
  const platform::PDFPageRef page = platform::current().artwork.pageOfDocument(path, 1);
  if (!page) return thumbnail(nullptr);
  const Rect box = page->cropBox();
  platform::Graphics& graphics = platform::current().graphics;
  graphics.beginImageContext(box.size, 1);
  if (platform::GraphicsContext* context = graphics.currentContext()) {
    context->translate(box.origin.x, box.origin.y + box.size.height);
    context->scale(1, -1);
    context->translate(-box.origin.x, -box.origin.y);
    context->drawPDFPage(*page);
  }
  const platform::UIImageRef drawn = graphics.imageFromCurrentContext();
  graphics.endImageContext();
  return thumbnail(drawn);
}

}  // namespace chatsum
