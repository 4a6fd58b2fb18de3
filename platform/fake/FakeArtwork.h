// Bundles and pictures filled by a test. A test fills them while no other thread reads.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "platform/interfaces/Artwork.h"

namespace chatsum::platform::fake {

/// A picture of which only the size is known.
class FakeImage final : public UIImage {
 public:
  explicit FakeImage(Size size) : size_(size) {}
  [[nodiscard]] Size size() const override { return size_; }

 private:
  Size size_;
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
  [[nodiscard]] BundleRef bundleForClass(std::string_view className) const override {
    const auto found = bundles.find(className);
    return found == bundles.end() ? mainBundle : found->second;
  }
  [[nodiscard]] UIImageRef imageWithContentsOfFile(const std::string& path) const override {
    const auto found = files.find(path);
    return found == files.end() ? nullptr : found->second;
  }
};

}  // namespace chatsum::platform::fake
