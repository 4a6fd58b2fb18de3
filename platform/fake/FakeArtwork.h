// Bundles, pictures and pages filled by a test. A test fills them while no other thread reads.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/interfaces/Artwork.h"

namespace chatsum::platform::fake {

/// A picture of which only sizes are known.
class FakeImage final : public UIImage {
 public:
  explicit FakeImage(Size size, double scale = 1) : size_(size), scale_(scale) {}
  [[nodiscard]] Size size() const override { return size_; }
  /// A picture of the clipped size that remembers the rectangle.
  [[nodiscard]] UIImageRef croppedTo(const Rect& pixels) const override {
    const double left = std::max(pixels.origin.x, 0.0), top = std::max(pixels.origin.y, 0.0);
    const Size clipped{std::min(pixels.origin.x + pixels.size.width, size_.width * scale_) - left,
                       std::min(pixels.origin.y + pixels.size.height, size_.height * scale_) - top};
    if (!(clipped.width > 0 && clipped.height > 0)) return nullptr;
    auto part = std::make_shared<FakeImage>(clipped);
    part->crop_ = pixels;
    return part;
  }
  /// The rectangle that cut it out of another picture; none for a picture of its own.
  [[nodiscard]] const std::optional<Rect>& crop() const { return crop_; }

 private:
  Size size_;
  double scale_;
  std::optional<Rect> crop_;
};

/// A page of which only the box is known.
class FakePDFPage final : public PDFPage {
 public:
  explicit FakePDFPage(Rect box) : box_(box) {}
  [[nodiscard]] Rect cropBox() const override { return box_; }

 private:
  Rect box_;
};

class FakeBundle final : public Bundle {
 public:
  std::map<std::string, std::string, std::less<>> resources;  ///< "nav.png" → path
  std::map<std::string, UIImageRef, std::less<>> images;      ///< "nav" → picture
  [[nodiscard]] std::optional<std::string> pathForResource(std::string_view name,
                                                           std::string_view type) const override {
    const auto found = resources.find(std::string(name) + "." + std::string(type));
    return found == resources.end() ? std::nullopt : std::optional(found->second);
  }
  [[nodiscard]] UIImageRef imageNamed(std::string_view name) const override {
    const auto found = images.find(name);
    return found == images.end() ? nullptr : found->second;
  }
};

class FakeArtwork final : public Artwork {
 public:
  std::map<std::string, std::shared_ptr<FakeBundle>, std::less<>> bundles;  ///< class name → bundle
  std::shared_ptr<FakeBundle> mainBundle = std::make_shared<FakeBundle>();  ///< of every other class
  std::map<std::string, UIImageRef, std::less<>> files;                     ///< path → picture
  std::map<std::string, PDFPageRef, std::less<>> documents;                 ///< path → first and only page
  mutable std::vector<std::string> asked;                                   ///< paths of pictures that were asked for
  [[nodiscard]] BundleRef bundleForClass(std::string_view className) const override {
    const auto found = bundles.find(className);
    return found == bundles.end() ? mainBundle : found->second;
  }
  [[nodiscard]] UIImageRef imageWithContentsOfFile(const std::string& path) const override {
    asked.push_back(path);
    const auto found = files.find(path);
    return found == files.end() ? nullptr : found->second;
  }
  [[nodiscard]] PDFPageRef pageOfDocument(const std::string& path, int number) const override {
    const auto found = documents.find(path);
    return found == documents.end() || number != 1 ? nullptr : found->second;
  }
};

}  // namespace chatsum::platform::fake
