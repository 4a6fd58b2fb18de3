#include "platform/system/graphics/SystemArtwork.h"

namespace chatsum::platform::system {
namespace {

class EmptyBundle final : public Bundle {
 public:
  [[nodiscard]] std::optional<std::string> pathForResource(std::string_view, std::string_view) const override {
    return std::nullopt;
  }
  [[nodiscard]] UIImageRef imageNamed(std::string_view) const override { return nullptr; }
};

}  // namespace

BundleRef SystemArtwork::bundleForClass(std::string_view) const { return std::make_shared<EmptyBundle>(); }
UIImageRef SystemArtwork::imageWithContentsOfFile(const std::string&) const { return nullptr; }

}  // namespace chatsum::platform::system
