#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/system/images/PictureLimits.h"
#include "platform/system/images/formats/PictureCodec.h"

namespace chatsum::platform::system {
namespace {

bool recognizes(std::string_view first) { return first.starts_with("GIF87a") || first.starts_with("GIF89a"); }

int readBytes(GifFileType* gif, GifByteType* bytes, int count) {
  if (count <= 0) return 0;
  return static_cast<int>(static_cast<PictureStream*>(gif->UserData)->read(bytes, static_cast<std::size_t>(count)));
}

struct CloseGif {
  void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, CloseGif>;

/// Reads to the first frame's pixels; nullptr when there is none. `transparent` is the frame's clear colour, or -1.
Gif openAtFirstFrame(PictureStream& stream, int& transparent) {
  int error = 0;
  Gif gif(DGifOpen(&stream, readBytes, &error));
  transparent = NO_TRANSPARENT_COLOR;
  for (int parts = 0; gif && parts < limits::kParts; ++parts) {
    GifRecordType type = UNDEFINED_RECORD_TYPE;
    if (DGifGetRecordType(gif.get(), &type) == GIF_ERROR) return nullptr;
    if (type == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(gif.get()) == GIF_ERROR ? nullptr : std::move(gif);
    if (type != EXTENSION_RECORD_TYPE) return nullptr;
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif.get(), &code, &block) == GIF_ERROR) return nullptr;
    if (code == GRAPHICS_EXT_FUNC_CODE && block) {
      GraphicsControlBlock control{};
      // The first byte is the block's length.
      if (DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) transparent = control.TransparentColor;
    }
    while (block) {
      if (DGifGetExtensionNext(gif.get(), &block) == GIF_ERROR) return nullptr;
    }
  }
  return nullptr;
}

/// The screen; a file that names none has that of its frame.
PixelSize screenOf(const GifFileType& gif) {
  const GifImageDesc& frame = gif.Image;
  return {gif.SWidth > 0 ? gif.SWidth : frame.Left + frame.Width,
          gif.SHeight > 0 ? gif.SHeight : frame.Top + frame.Height};
}

std::optional<PictureHeader> readHeader(PictureBytes& bytes) {
  PictureStream stream(bytes);
  int transparent = NO_TRANSPARENT_COLOR;
  const Gif gif = openAtFirstFrame(stream, transparent);
  if (!gif) return std::nullopt;
  return PictureHeader{.size = screenOf(*gif), .orientation = {}};
}

using Palette = std::array<std::array<std::uint8_t, 4>, 256>;

Palette paletteOf(const GifFileType& gif, int transparent) {
  Palette palette;
  palette.fill({0, 0, 0, 255});
  const ColorMapObject* colors = gif.Image.ColorMap ? gif.Image.ColorMap : gif.SColorMap;
  const int count = colors ? std::min(colors->ColorCount, 256) : 0;
  for (int i = 0; i < count; ++i) {
    const GifColorType& color = colors->Colors[i];
    palette[static_cast<std::size_t>(i)] = {color.Red, color.Green, color.Blue, 255};
  }
  if (transparent >= 0 && transparent < 256) palette[static_cast<std::size_t>(transparent)] = {0, 0, 0, 0};
  return palette;
}

/// Reads the frame's rows in the order of the file and hands each to `take` with its place in the frame.
template <typename Take>
bool readFrame(GifFileType& gif, std::vector<GifByteType>& row, Take take) {
  struct Pass {
    int first, step;
  };
  static constexpr Pass kInterlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
  static constexpr Pass kPlain[] = {{0, 1}};
  const auto readPass = [&](const Pass& pass) {
    for (int y = pass.first; y < gif.Image.Height; y += pass.step) {
      if (DGifGetLine(&gif, row.data(), gif.Image.Width) == GIF_ERROR) return false;
      take(y);
    }
    return true;
  };
  if (gif.Image.Interlace) return std::all_of(std::begin(kInterlaced), std::end(kInterlaced), readPass);
  return readPass(kPlain[0]);
}

bool decode(PictureBytes& bytes, const PictureHeader& header, PictureReducer& reducer) {
  PictureStream stream(bytes);
  int transparent = NO_TRANSPARENT_COLOR;
  const Gif gif = openAtFirstFrame(stream, transparent);
  if (!gif || screenOf(*gif) != header.size) return false;
  const GifImageDesc& frame = gif->Image;
  const PixelSize frameSize{frame.Width, frame.Height};
  if (!frameSize.isAllowed()) return false;
  const Palette palette = paletteOf(*gif, transparent);

  const auto frameWidth = static_cast<std::size_t>(frame.Width);
  std::vector<GifByteType> row(frameWidth);
  std::vector<std::uint8_t> screenRow(static_cast<std::size_t>(header.size.width) * 4);
  const int visible = std::clamp(header.size.width - frame.Left, 0, frame.Width);
  const auto show = [&](const GifByteType* colors) {
    std::uint8_t* pixel = screenRow.data() + static_cast<std::size_t>(visible > 0 ? frame.Left : 0) * 4;
    for (int x = 0; x < visible; ++x, pixel += 4) std::copy_n(palette[colors[x]].begin(), 4, pixel);
    reducer.addRow(screenRow.data());
  };
  const auto showEmpty = [&, empty = std::vector<std::uint8_t>(screenRow.size())](int from, int to) {
    for (int y = from; y < to; ++y) reducer.addRow(empty.data());
  };

  reducer.begin(header.size);
  showEmpty(0, std::min(frame.Top, header.size.height));
  std::vector<GifByteType> whole;
  if (frame.Interlace) whole.resize(frameWidth * static_cast<std::size_t>(frame.Height));
  const bool isComplete = readFrame(*gif, row, [&](int y) {
    if (frame.Interlace) {
      std::copy(row.begin(), row.end(), whole.begin() + static_cast<std::ptrdiff_t>(y) * frame.Width);
    } else if (frame.Top + y < header.size.height) {
      show(row.data());
    }
  });
  if (!isComplete) return false;
  for (int y = 0; frame.Interlace && y < frame.Height && frame.Top + y < header.size.height; ++y) {
    show(whole.data() + static_cast<std::size_t>(y) * frameWidth);
  }
  showEmpty(frame.Top + frame.Height, header.size.height);
  return true;
}

}  // namespace

const PictureCodec kGifCodec = {recognizes, readHeader, decode};

}  // namespace chatsum::platform::system
