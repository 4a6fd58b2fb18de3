#include "platform/system/images/PictureReducer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace chatsum::platform::system {
namespace {

constexpr std::uint8_t kOpaque = 255;
constexpr double kHair = 1e-6;  // less than any share of a pixel that would show

int clampedTo(double value, int low, int high) {
  return static_cast<int>(std::clamp(value, static_cast<double>(low), static_cast<double>(high)));
}

}  // namespace

PictureReducer::PictureReducer(PixelSize full, const PixelRect& crop, PixelSize wanted)
    : full_(full), crop_(crop), wanted_(wanted) {}

bool PictureReducer::isEnough(PixelSize decoded) const {
  const auto across = static_cast<double>(crop_.width) * decoded.width / full_.width;
  const auto along = static_cast<double>(crop_.height) * decoded.height / full_.height;
  return across + kHair >= std::min(wanted_.width, crop_.width) &&
         along + kHair >= std::min(wanted_.height, crop_.height);
}

void PictureReducer::begin(PixelSize decoded) {
  const double scaleX = static_cast<double>(decoded.width) / full_.width;
  const double scaleY = static_cast<double>(decoded.height) / full_.height;
  const double left = crop_.x * scaleX, width = crop_.width * scaleX, height = crop_.height * scaleY;
  top_ = crop_.y * scaleY;

  result_ = Bitmap();
  result_.width = clampedTo(width + kHair, 1, wanted_.width);
  result_.height = clampedTo(height + kHair, 1, wanted_.height);
  result_.rgba.assign(static_cast<std::size_t>(result_.width) * static_cast<std::size_t>(result_.height) * 4, 0);
  rowsPerWanted_ = height / result_.height;
  row_ = wantedRow_ = 0;
  weight_ = 0;
  hasEndedEarly_ = false;

  isCopied_ = decoded == full_ && result_.width == crop_.width && result_.height == crop_.height;
  left_ = static_cast<std::size_t>(crop_.x);
  if (isCopied_) return;
  left_ = static_cast<std::size_t>(clampedTo(std::floor(left + kHair), 0, decoded.width - 1));
  spans_.clear();
  const double columnsPerWanted = width / result_.width;
  for (int x = 0; x < result_.width; ++x) {
    const double begin = left + x * columnsPerWanted, end = begin + columnsPerWanted;
    const int first = clampedTo(std::floor(begin + kHair), 0, decoded.width - 1);
    const int last = clampedTo(std::ceil(end - kHair) - 1, first, decoded.width - 1);
    spans_.push_back({.first = static_cast<std::size_t>(first) - left_,
                      .last = static_cast<std::size_t>(last) - left_,
                      .firstShare = static_cast<float>(std::clamp(first + 1 - begin, kHair, 1.0)),
                      .lastShare = static_cast<float>(std::clamp(end - last, kHair, 1.0))});
  }
  sum_.assign((spans_.back().last + 1) * 4, 0);
}

void PictureReducer::addRow(const std::uint8_t* rgba) {
  const double begin = row_++, end = begin + 1;
  if (wantedRow_ >= result_.height || end <= top_ + kHair) return;
  if (isCopied_) {
    copyRow(rgba);
    return;
  }
  while (wantedRow_ < result_.height) {
    const double from = top_ + wantedRow_ * rowsPerWanted_, to = from + rowsPerWanted_;
    const double share = std::min(end, to) - std::max(begin, from);
    if (share > kHair) sumRow(rgba, static_cast<float>(share));
    if (to > end + kHair) break;
    finishRow();
  }
}

void PictureReducer::copyRow(const std::uint8_t* rgba) {
  const auto bytes = static_cast<std::size_t>(result_.width) * 4;
  std::memcpy(result_.rgba.data() + static_cast<std::size_t>(wantedRow_++) * bytes, rgba + left_ * 4, bytes);
}

// Columns are added up first and only then averaged: a plain loop that the compiler makes fast.
void PictureReducer::sumRow(const std::uint8_t* rgba, float share) {
  weight_ += share;
  const std::uint8_t* in = rgba + left_ * 4;
  float* const sum = sum_.data();
  const std::size_t count = sum_.size();
  unsigned alpha = kOpaque;
  for (std::size_t i = 0; i < count; i += 4) alpha &= in[i + 3];
  if (alpha == kOpaque) {
    for (std::size_t i = 0; i < count; ++i) sum[i] += share * static_cast<float>(in[i]);
    return;
  }
  for (std::size_t i = 0; i < count; i += 4) {
    const float part = share * static_cast<float>(in[i + 3]);
    for (std::size_t k = 0; k < 3; ++k) sum[i + k] += part / kOpaque * static_cast<float>(in[i + k]);
    sum[i + 3] += part;
  }
}

void PictureReducer::finishRow() {
  std::uint8_t* out = result_.rgba.data() + static_cast<std::size_t>(wantedRow_++) * spans_.size() * 4;
  const auto byteOf = [](float value) { return static_cast<std::uint8_t>(std::min(value + 0.5F, 255.0F)); };
  for (const Span& span : spans_) {
    float sum[4] = {0, 0, 0, 0}, columns = 0;
    for (std::size_t x = span.first; x <= span.last; ++x) {
      float share = x == span.first ? span.firstShare : 1;
      if (x == span.last) share = std::min(share, span.lastShare);
      for (std::size_t i = 0; i < 4; ++i) sum[i] += share * sum_[x * 4 + i];
      columns += share;
    }
    const float alpha = sum[3] / kOpaque;
    if (alpha > 0) {
      for (std::size_t i = 0; i < 3; ++i) out[i] = byteOf(sum[i] / alpha);
      out[3] = byteOf(sum[3] / (columns * weight_));
    }
    out += 4;
  }
  std::fill(sum_.begin(), sum_.end(), 0.0F);
  weight_ = 0;
}

Bitmap PictureReducer::take() {
  // A last row that rounding left a hair short of its end has all its pixels.
  if (!isCopied_ && wantedRow_ + 1 == result_.height && weight_ > rowsPerWanted_ * 0.99) finishRow();
  if (result_.isEmpty() || wantedRow_ == 0 || (wantedRow_ < result_.height && !hasEndedEarly_)) return {};
  if (hasEndedEarly_) result_.wholeness = Wholeness::kPart;
  return std::exchange(result_, Bitmap());
}

}  // namespace chatsum::platform::system
