#include "platform/system/images/SystemPDFPage.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/system/images/ChildProgram.h"
#include "platform/system/images/PictureLimits.h"

namespace chatsum::platform::system {
namespace {

/// Readers look for the mark of a document this far.
constexpr std::size_t kMarkBytes = 1024;

template <typename Number>
std::optional<Number> takeNumber(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \n"), text.size()));
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

/// What follows the label in the facts of the page, which stand behind those of the document.
std::string_view fact(std::string_view facts, std::string_view label) {
  const auto at = facts.rfind(label);
  if (at == std::string_view::npos) return {};
  facts.remove_prefix(at + label.size());
  return facts.substr(0, facts.find('\n'));
}

std::optional<Rect> boxOf(std::string_view facts) {
  std::string_view text = fact(facts, " CropBox:");
  std::array<double, 4> edges{};
  for (double& edge : edges) {
    const auto number = takeNumber<double>(text);
    if (!number || !std::isfinite(*number)) return std::nullopt;
    edge = *number;
  }
  const Rect box{{edges[0], edges[1]}, {edges[2] - edges[0], edges[3] - edges[1]}};
  const auto isSide = [](double side) { return side > 0 && side <= limits::kSurfaceSide; };
  if (!isSide(box.size.width) || !isSide(box.size.height)) return std::nullopt;
  return box;
}

/// A picture that turned by `degrees` clockwise lies as a picture of this orientation does that is turned back.
Orientation turnedBack(int degrees) {
  constexpr unsigned kUpright = 1, kHalfTurn = 3, kQuarterTurn = 6, kThreeQuarterTurn = 8;
  switch (((degrees % 360) + 360) % 360) {
    case 90:
      return Orientation::ofTag(kThreeQuarterTurn);
    case 180:
      return Orientation::ofTag(kHalfTurn);
    case 270:
      return Orientation::ofTag(kQuarterTurn);
    default:
      return Orientation::ofTag(kUpright);
  }
}

/// A portable pixmap of that size ("P6", width, height, 255, pixels of three bytes).
std::optional<Bitmap> readPixmap(std::string_view bytes, PixelSize size) {
  if (!bytes.starts_with("P6")) return std::nullopt;
  bytes.remove_prefix(2);
  const auto width = takeNumber<int>(bytes), height = takeNumber<int>(bytes), most = takeNumber<int>(bytes);
  const std::size_t count = static_cast<std::size_t>(size.pixels());
  if (width != size.width || height != size.height || most != 255 || bytes.size() != count * 3 + 1) {
    return std::nullopt;
  }
  Bitmap bitmap{size.width, size.height, std::vector<std::uint8_t>(count * 4, 255)};
  const char* in = bytes.data() + 1;
  for (std::size_t i = 0; i < count * 4; i += 4, in += 3) {
    for (std::size_t channel = 0; channel < 3; ++channel) {
      bitmap.rgba[i + channel] = static_cast<std::uint8_t>(in[channel]);
    }
  }
  return bitmap;
}

/// A path that no program takes for an option.
std::string argumentOf(const std::string& path) { return path.starts_with('-') ? "./" + path : path; }

}  // namespace

std::shared_ptr<const SystemPDFPage> SystemPDFPage::open(const std::string& path, PictureBytes& bytes, int number) {
  if (number < 1 || bytes.part(0, kMarkBytes).find("%PDF-") == std::string::npos) return nullptr;
  const std::string page = std::to_string(number);
  const auto facts = outputOf("pdfinfo", {"-box", "-f", page, "-l", page, argumentOf(path)}, limits::kPageFactsBytes);
  if (!facts) return nullptr;
  const auto box = boxOf(*facts);
  if (!box) return nullptr;
  std::string_view turn = fact(*facts, " rot:");
  const int degrees = takeNumber<int>(turn).value_or(0);
  return std::shared_ptr<const SystemPDFPage>(new SystemPDFPage(path, bytes.identity(), number, *box, degrees));
}

BitmapRef SystemPDFPage::pixels(PixelSize wanted) const {
  const std::lock_guard lock(mutex_);
  if (keptWanted_ != wanted) {
    kept_ = draw(wanted);
    keptWanted_ = wanted;
  }
  return kept_;
}

BitmapRef SystemPDFPage::draw(PixelSize wanted) const {
  if (!wanted.isAllowed()) return nullptr;
  const auto bytes = PictureBytes::open(path_);
  if (!bytes || bytes->identity() != identity_) return nullptr;
  const Orientation orientation = turnedBack(turn_);
  const PixelSize drawn = orientation.turned(wanted);
  const std::string page = std::to_string(number_);
  const auto output = outputOf(
      "pdftoppm",
      {"-q", "-f", page, "-l", page, "-singlefile", "-cropbox",
       // The sides that the page has before it is turned.
       "-scale-to-x", std::to_string(wanted.width), "-scale-to-y", std::to_string(wanted.height), argumentOf(path_)},
      static_cast<std::size_t>(drawn.pixels()) * 3 + 64);
  if (!output) return nullptr;
  auto bitmap = readPixmap(*output, drawn);
  if (!bitmap) return nullptr;
  return std::make_shared<const Bitmap>(orientation.upright(std::move(*bitmap)));
}

std::size_t SystemPDFPage::keptBytes() const {
  const std::unique_lock lock(mutex_, std::try_to_lock);
  return lock && kept_ ? kept_->rgba.size() : 0;
}

}  // namespace chatsum::platform::system
