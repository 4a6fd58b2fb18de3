#include "platform/system/text/Paragraph.h"

#include <algorithm>
#include <new>

#include "platform/foundation/Utf8.h"

namespace chatsum::platform::system {

void Paragraph::assignUnmarked(std::string_view text) {
  text_ = text;
  units_.clear();
  bytes_.clear();
  marks_.clear();
  levels_.clear();
  isSimple_ = true;
  for (std::size_t at = 0; at < text.size();) {
    const auto begin = static_cast<std::uint32_t>(at);
    bytes_.push_back(begin);
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < 0x80) {
      units_ += static_cast<char16_t>(byte);
      ++at;
      continue;
    }
    const char32_t c = utf8::next(text, at);
    isSimple_ = isSimple_ && c < 0x300;
    if (c > 0xFFFF) {
      units_ += static_cast<char16_t>(0xD7C0 + (c >> 10));
      units_ += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
      bytes_.push_back(begin);
    } else {
      units_ += static_cast<char16_t>(c);
    }
  }
  bytes_.push_back(static_cast<std::uint32_t>(text.size()));
}

void Paragraph::assign(std::string_view text, BreakIterators& iterators) {
  assignUnmarked(text);
  marks_.assign(units_.size() + 1, isSimple_ ? kCluster : 0);
  iterators.eachLineBreak(units_, [&](std::size_t place) {
    marks_[place] = static_cast<std::uint8_t>(marks_[place] | kLineBreak);
    return true;
  });
  if (isSimple_) return;
  marks_[0] = kCluster;
  iterators.eachCluster(units_, [&](std::size_t place) {
    marks_[place] = static_cast<std::uint8_t>(marks_[place] | kCluster);
    return true;
  });
}

void Paragraph::shorten(std::uint32_t size) {
  units_.resize(size);
  bytes_.resize(size + 1);
  marks_.resize(size + 1);
  if (!levels_.empty()) levels_.resize(size);
}

UBiDiLevel Paragraph::findLevels(UBiDiLevel base) {
  levels_.clear();
  if (!bidi_) bidi_.reset(ubidi_open());
  if (!bidi_) throw std::bad_alloc();
  UErrorCode error = U_ZERO_ERROR;
  ubidi_setPara(bidi_.get(), units_.data(), static_cast<int>(units_.size()), base, nullptr, &error);
  const UBiDiLevel* levels = ubidi_getLevels(bidi_.get(), &error);
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (U_FAILURE(error) || !levels) return 0;
  levels_.assign(levels, levels + units_.size());
  return ubidi_getParaLevel(bidi_.get());
}

void Paragraph::setLevels(std::uint32_t place, UBiDiLevel level) {
  levels_.resize(units_.size());
  std::fill(levels_.begin() + place, levels_.end(), level);
}

void Paragraph::setLevels(std::uint32_t place, const Paragraph& other, std::uint32_t otherPlace) {
  levels_.resize(units_.size());
  for (; place < levels_.size(); ++place, ++otherPlace) levels_[place] = other.levelAt(otherPlace);
}

}  // namespace chatsum::platform::system
