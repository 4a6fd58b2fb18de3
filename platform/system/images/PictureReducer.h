// Takes the rows of a picture while they are decoded and averages what is wanted of them down to the wanted size, so
// that the picture never stands in memory as a whole. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/system/images/PixelGeometry.h"

namespace chatsum::platform::system {

class PictureReducer {
 public:
  /// `crop` is the wanted part of a picture of the size `full`; it is reduced to `wanted`, and never enlarged.
  PictureReducer(PixelSize full, const PixelRect& crop, PixelSize wanted);

  /// Whether the picture decoded at that size has enough pixels for what is wanted.
  [[nodiscard]] bool isEnough(PixelSize decoded) const;
  /// Rows follow from top to bottom, the whole picture scaled to `decoded`. May begin once more for another try.
  void begin(PixelSize decoded);
  /// decoded.width pixels of red, green, blue and alpha. Rows beyond the wanted part cost nothing.
  void addRow(const std::uint8_t* rgba);
  /// The picture is damaged behind the rows so far, or in ways that do not show: what is missing stays clear.
  void endEarly() { hasEndedEarly_ = true; }
  /// What was wanted, a part of it when the picture ended early; empty when rows are missing all the same, or all are.
  [[nodiscard]] Bitmap take();

 private:
  /// Which columns make one wanted column: those between count fully, the first and last by a share.
  struct Span {
    std::size_t first = 0, last = 0;
    float firstShare = 1, lastShare = 1;
  };

  void copyRow(const std::uint8_t* rgba);
  void sumRow(const std::uint8_t* rgba, float share);
  void finishRow();

  PixelSize full_;
  PixelRect crop_;
  PixelSize wanted_;

  double top_ = 0, rowsPerWanted_ = 1;  // in decoded rows
  std::size_t left_ = 0;                // the first column that counts
  bool isCopied_ = false;               // one decoded pixel for each wanted one
  bool hasEndedEarly_ = false;
  int row_ = 0, wantedRow_ = 0;
  std::vector<Span> spans_;  // counted from the left
  std::vector<float> sum_;   // of each column: red, green and blue multiplied by alpha (as a share of 255), and alpha
  float weight_ = 0;
  Bitmap result_;
};

}  // namespace chatsum::platform::system
