#include "platform/system/images/formats/HeifTransforms.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/system/images/PictureLimits.h"

namespace chatsum::platform::system {
namespace {

constexpr std::uint64_t kMostMetaBytes = 4U << 20;

/// Reads numbers and boxes from the front. At the end everything is 0 or empty.
class Boxes {
 public:
  struct Box {
    std::string_view type, content;
  };

  explicit Boxes(std::string_view bytes) : rest_(bytes) {}

  [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }
  std::uint64_t number(std::size_t bytes) {
    std::uint64_t value = 0;
    for (const char byte : take(bytes)) value = value << 8 | static_cast<unsigned char>(byte);
    return value;
  }
  std::string_view take(std::size_t bytes) {
    if (bytes > rest_.size()) rest_ = {};
    const std::string_view taken = rest_.substr(0, bytes);
    rest_.remove_prefix(taken.size());
    return taken;
  }
  std::optional<Box> next() {
    const std::size_t before = rest_.size();
    std::uint64_t size = number(4);
    const std::string_view type = take(4);
    if (size == 1) size = number(8);
    const std::size_t header = before - rest_.size();
    if (size == 0) size = before;
    if (type.empty() || size < header || size > before) return std::nullopt;
    return Box{type, take(static_cast<std::size_t>(size) - header)};
  }
  [[nodiscard]] std::string_view find(std::string_view type) const {
    Boxes boxes(rest_);
    while (const auto box = boxes.next()) {
      if (box->type == type) return box->content;
    }
    return {};
  }

 private:
  std::string_view rest_;
};

/// The content of the file's "meta" box behind its version.
std::string readMeta(PictureBytes& bytes) {
  std::uint64_t place = 0;
  for (int parts = 0; parts < limits::kParts && place < bytes.size(); ++parts) {
    const std::string start = bytes.part(place, 16);
    Boxes header(start);
    std::uint64_t size = header.number(4);
    const std::string_view type = header.take(4);
    const std::uint64_t headerBytes = size == 1 ? 16 : 8;
    if (size == 1) size = header.number(8);
    if (size == 0 || size > bytes.size() - place) size = bytes.size() - place;
    if (size < headerBytes) break;
    if (type == "meta" && size <= kMostMetaBytes && size > headerBytes + 4) {
      return bytes.part(place + headerBytes + 4, static_cast<std::size_t>(size - headerBytes - 4));
    }
    place += size;
  }
  return {};
}

}  // namespace

HeifTransforms::HeifTransforms(PictureBytes& bytes) {
  const std::string meta = readMeta(bytes);
  const Boxes properties(Boxes(meta).find("iprp"));

  std::vector<std::string> transforms;  // by the property's number; empty for one that neither turns nor crops
  Boxes container(properties.find("ipco"));
  while (const auto box = container.next()) {
    const bool isTransform = box->type == "irot" || box->type == "imir" || box->type == "clap";
    transforms.emplace_back(isTransform ? std::string(box->type).append(box->content) : std::string());
  }

  Boxes boxes = properties;
  while (const auto box = boxes.next()) {
    if (box->type != "ipma") continue;
    Boxes associations(box->content);
    const bool hasLongItems = associations.number(1) >= 1;
    const bool hasLongNumbers = (associations.number(3) & 1) != 0;
    associations.take(4);  // how many follow; they end with the box
    while (!associations.isAtEnd()) {
      const auto item = static_cast<std::uint32_t>(associations.number(hasLongItems ? 4 : 2));
      const std::uint64_t count = associations.number(1);
      for (std::uint64_t i = 0; i < count && !associations.isAtEnd(); ++i) {
        // The highest bit tells whether a reader must know the property.
        const std::uint64_t number = associations.number(hasLongNumbers ? 2 : 1) & (hasLongNumbers ? 0x7FFF : 0x7F);
        if (number >= 1 && number <= transforms.size() && !transforms[number - 1].empty()) {
          ofItems_[item] += transforms[number - 1];
        }
      }
    }
  }
}

bool HeifTransforms::areEqual(std::uint32_t item, std::uint32_t other) const {
  const auto one = ofItems_.find(item), two = ofItems_.find(other);
  if (one == ofItems_.end() || two == ofItems_.end()) return one == two;
  return one->second == two->second;
}

}  // namespace chatsum::platform::system
