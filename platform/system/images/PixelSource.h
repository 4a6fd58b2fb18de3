// Where the pixels of a picture come from: a file that is decoded when it is drawn, or memory. Any thread.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>

#include "platform/system/images/Bitmap.h"
#include "platform/system/images/PictureBytes.h"
#include "platform/system/images/PixelGeometry.h"
#include "platform/system/images/formats/PictureCodec.h"

namespace chatsum::platform::system {

using BitmapRef = std::shared_ptr<const Bitmap>;

class PixelSource {
 public:
  virtual ~PixelSource() = default;
  /// Of the upright picture.
  [[nodiscard]] virtual PixelSize size() const = 0;
  /// A part of the picture (inside its size), reduced to `wanted`; a part that has fewer pixels is not enlarged. Each
  /// axis is reduced on its own. What is sound of a damaged picture when that can be told; nullptr when nothing is, or
  /// the picture is too costly.
  [[nodiscard]] virtual BitmapRef pixels(const PixelRect& crop, PixelSize wanted) const = 0;
};
using PixelSourceRef = std::shared_ptr<const PixelSource>;

/// Pixels in memory.
class BitmapPixels final : public PixelSource {
 public:
  /// `size` is what the picture counts as; the bitmap may hold fewer pixels, for all of it.
  BitmapPixels(BitmapRef bitmap, PixelSize size) : bitmap_(std::move(bitmap)), size_(size) {}
  [[nodiscard]] PixelSize size() const override { return size_; }
  [[nodiscard]] BitmapRef pixels(const PixelRect& crop, PixelSize wanted) const override;

 private:
  BitmapRef bitmap_;
  PixelSize size_;
};

/// A picture file. Keeps the last pixels it was asked for and no byte of the file.
class FilePixels final : public PixelSource {
 public:
  /// Reads the header; nullptr when the file is no picture or beyond the limits. `bytes` is the open file at the path.
  [[nodiscard]] static std::shared_ptr<const FilePixels> open(const std::string& path, PictureBytes& bytes);

  [[nodiscard]] PixelSize size() const override { return header_.orientation.turned(header_.size); }
  /// nullptr also when the file is not the one any more that was opened.
  [[nodiscard]] BitmapRef pixels(const PixelRect& crop, PixelSize wanted) const override;
  /// Bytes of the pixels that are kept.
  [[nodiscard]] std::size_t keptBytes() const;

 private:
  FilePixels(std::string path, FileIdentity identity, const PictureCodec& codec, PictureHeader header)
      : path_(std::move(path)), identity_(identity), codec_(codec), header_(header) {}
  [[nodiscard]] BitmapRef decode(const PixelRect& crop, PixelSize wanted) const;

  const std::string path_;
  const FileIdentity identity_;
  const PictureCodec& codec_;
  const PictureHeader header_;

  mutable std::mutex mutex_;  // held while decoding: who asks for the same pixels waits for them
  mutable PixelRect keptCrop_;
  mutable PixelSize keptWanted_;
  mutable BitmapRef kept_;
};

}  // namespace chatsum::platform::system
