#include "platform/system/images/PixelSource.h"

#include <utility>

#include "platform/system/images/PictureReducer.h"

namespace chatsum::platform::system {

BitmapRef BitmapPixels::pixels(const PixelRect& crop, PixelSize wanted) const {
  const PixelSize held{bitmap_->width, bitmap_->height};
  const bool isWhole = crop == PixelRect{0, 0, size_.width, size_.height};
  if (isWhole && wanted.width >= held.width && wanted.height >= held.height) return bitmap_;
  PictureReducer reducer(size_, crop, wanted);
  reducer.begin(held);
  for (int y = 0; y < held.height; ++y) reducer.addRow(bitmap_->at(0, y));
  auto reduced = std::make_shared<Bitmap>(reducer.take());
  reduced->wholeness = bitmap_->wholeness;
  return reduced->isEmpty() ? nullptr : std::move(reduced);
}

std::shared_ptr<const FilePixels> FilePixels::open(const std::string& path, PictureBytes& bytes) {
  const PictureCodec* codec = codecFor(bytes);
  if (!codec) return nullptr;
  const auto header = codec->readHeader(bytes);
  if (!header || !header->size.isAllowed()) return nullptr;
  return std::shared_ptr<const FilePixels>(new FilePixels(path, bytes.identity(), *codec, *header));
}

BitmapRef FilePixels::pixels(const PixelRect& crop, PixelSize wanted) const {
  const std::lock_guard lock(mutex_);
  if (keptCrop_ != crop || keptWanted_ != wanted) {
    kept_ = decode(crop, wanted);
    keptCrop_ = crop;
    keptWanted_ = wanted;
  }
  return kept_;
}

BitmapRef FilePixels::decode(const PixelRect& crop, PixelSize wanted) const {
  const auto bytes = PictureBytes::open(path_);
  if (!bytes || bytes->identity() != identity_) return nullptr;
  const Orientation& orientation = header_.orientation;
  PictureReducer reducer(header_.size, orientation.toStored(crop, header_.size), orientation.turned(wanted));
  if (!codec_.decode(*bytes, header_, reducer)) return nullptr;
  Bitmap stored = reducer.take();
  if (stored.isEmpty()) return nullptr;
  return std::make_shared<Bitmap>(orientation.upright(std::move(stored)));
}

std::size_t FilePixels::keptBytes() const {
  // Who decodes has not kept anything yet.
  const std::unique_lock lock(mutex_, std::try_to_lock);
  return lock && kept_ ? kept_->rgba.size() : 0;
}

}  // namespace chatsum::platform::system
