// What a PDF report could not show as it should. Made before the report is drawn; one report at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace chatsum::platform::system {
class SystemGraphics;
}

namespace chatsum::device {

/// What to say of that many attached files whose names stand on the pages, because they cannot be drawn.
[[nodiscard]] std::string describeUndrawn(std::uint64_t files);

class DrawingNotes {
 public:
  /// `graphics` outlives it.
  explicit DrawingNotes(platform::system::SystemGraphics& graphics);

  /// Why the report could not be begun, one sentence; none when that was not for the want of fonts.
  [[nodiscard]] std::optional<std::string> failure() const;
  /// One sentence each for pictures that are missing or incomplete and for characters that no font has, to be asked
  /// once when the report is drawn; empty when all is well.
  [[nodiscard]] std::vector<std::string> sentences();

 private:
  platform::system::SystemGraphics& graphics_;
  std::size_t missingBefore_, partialBefore_;
};

}  // namespace chatsum::device
