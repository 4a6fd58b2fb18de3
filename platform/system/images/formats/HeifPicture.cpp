#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "platform/system/images/PictureLimits.h"
#include "platform/system/images/formats/HeifLibrary.h"
#include "platform/system/images/formats/PictureCodec.h"

namespace chatsum::platform::system {
namespace {

bool recognizes(std::string_view first) {
  if (first.size() < 12 || first.substr(4, 4) != "ftyp") return false;
  static constexpr std::array<std::string_view, 10> kBrands = {"heic", "heix", "heim", "heis", "hevc",
                                                               "hevx", "mif1", "msf1", "avif", "avis"};
  const auto isKnown = [](std::string_view brand) {
    return std::find(kBrands.begin(), kBrands.end(), brand) != kBrands.end();
  };
  if (isKnown(first.substr(8, 4))) return true;
  for (std::size_t place = 16; place + 4 <= first.size(); place += 4) {
    if (isKnown(first.substr(place, 4))) return true;
  }
  return false;
}

/// A file as libheif reads it: only the parts it needs.
struct Reading {
  PictureBytes& bytes;
  std::uint64_t place = 0;

  static Reading& of(void* data) { return *static_cast<Reading*>(data); }
  static const heif_reader& functions() {
    static const heif_reader kFunctions = [] {
      heif_reader reader{};
      reader.reader_api_version = 1;
      reader.get_position = [](void* data) { return static_cast<std::int64_t>(of(data).place); };
      reader.read = [](void* out, std::size_t count, void* data) {
        const std::size_t got = of(data).bytes.read(of(data).place, out, count);
        of(data).place += got;
        return got == count ? 0 : 1;
      };
      reader.seek = [](std::int64_t place, void* data) {
        of(data).place = static_cast<std::uint64_t>(std::max<std::int64_t>(place, 0));
        return place < 0 ? 1 : 0;
      };
      reader.wait_for_file_size = [](std::int64_t size, void* data) {
        return size <= static_cast<std::int64_t>(of(data).bytes.size()) ? heif_reader_grow_status_size_reached
                                                                        : heif_reader_grow_status_size_beyond_eof;
      };
      return reader;
    }();
    return kFunctions;
  }
};

template <typename Handle>
using Owned = std::unique_ptr<Handle, void (*)(Handle*)>;
using Item = std::unique_ptr<heif_image_handle, void (*)(const heif_image_handle*)>;
using Pixels = std::unique_ptr<heif_image, void (*)(const heif_image*)>;

/// An open file. Without a primary picture it is not one.
class File {
 public:
  File(const HeifLibrary& library, PictureBytes& bytes)
      : library_(library),
        reading_{bytes},
        context_(library.contextAlloc(), library.contextFree),
        primary_(nullptr, library.handleRelease) {
    library.contextSetMaximumImageSizeLimit(context_.get(), limits::kPictureSide);
    // The pictures of a report are decoded side by side already.
    library.contextSetMaxDecodingThreads(context_.get(), 0);
    if (library.contextReadFromReader(context_.get(), &Reading::functions(), &reading_, nullptr).code !=
        heif_error_Ok) {
      return;
    }
    heif_image_handle* handle = nullptr;
    if (library.contextGetPrimaryImageHandle(context_.get(), &handle).code == heif_error_Ok) primary_.reset(handle);
  }

  [[nodiscard]] bool isOpen() const { return primary_ != nullptr; }
  [[nodiscard]] PixelSize size() const {
    return {library_.handleGetWidth(primary_.get()), library_.handleGetHeight(primary_.get())};
  }

  /// The whole picture: the library knows no smaller sizes. Previews inside the file may show something else.
  bool decode(PictureReducer& reducer) const {
    if (size().pixels() > limits::kWholePixels) return false;
    const heif_image_handle* item = primary_.get();
    const Owned<heif_decoding_options> options(library_.decodingOptionsAlloc(), library_.decodingOptionsFree);
    options->convert_hdr_to_8bit = 1;
    // Of the two decoders for AVIF, the faster one complains of damaged pictures on standard error.
    constexpr std::uint8_t kFirstVersionWithDecoder = 4;
    if (options->version >= kFirstVersionWithDecoder) options->decoder_id = "aom";
    const bool hasAlpha = library_.handleHasAlphaChannel(item) != 0;
    heif_image* decoded = nullptr;
    const heif_error error =
        library_.decodeImage(item, &decoded, heif_colorspace_RGB,
                             hasAlpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, options.get());
    const Pixels pixels(decoded, library_.imageRelease);
    if (error.code != heif_error_Ok || !pixels) return false;

    const PixelSize size{library_.imageGetPrimaryWidth(pixels.get()), library_.imageGetPrimaryHeight(pixels.get())};
    int stride = 0;
    const std::uint8_t* plane = library_.imageGetPlaneReadonly(pixels.get(), heif_channel_interleaved, &stride);
    const std::size_t channels = hasAlpha ? 4 : 3;
    if (!plane || size.isEmpty() ||
        static_cast<std::size_t>(stride) < static_cast<std::size_t>(size.width) * channels) {
      return false;
    }
    const bool isMultiplied = hasAlpha && library_.handleIsPremultipliedAlpha(item) != 0;
    std::vector<std::uint8_t> row(static_cast<std::size_t>(size.width) * 4, 255);
    reducer.begin(size);
    for (int y = 0; y < size.height; ++y) {
      expandRow(plane + static_cast<std::ptrdiff_t>(y) * stride, channels, isMultiplied, row);
      reducer.addRow(row.data());
    }
    return true;
  }

 private:
  static void expandRow(const std::uint8_t* in, std::size_t channels, bool isMultiplied,
                        std::vector<std::uint8_t>& row) {
    for (std::size_t i = 0; i < row.size(); i += 4, in += channels) {
      std::copy_n(in, channels, row.data() + i);
      const unsigned alpha = row[i + 3];
      if (!isMultiplied || alpha == 0 || alpha == 255) continue;
      for (std::size_t color = i; color < i + 3; ++color) {
        row[color] = static_cast<std::uint8_t>(std::min(row[color] * 255U / alpha, 255U));
      }
    }
  }

  const HeifLibrary& library_;
  Reading reading_;
  Owned<heif_context> context_;
  Item primary_;
};

// The library sets pictures upright itself, so what it calls stored is upright.
std::optional<PictureHeader> readHeader(PictureBytes& bytes) {
  const HeifLibrary* library = HeifLibrary::get();
  if (!library) return std::nullopt;
  const File file(*library, bytes);
  if (!file.isOpen()) return std::nullopt;
  return PictureHeader{.size = file.size(), .orientation = {}};
}

bool decode(PictureBytes& bytes, const PictureHeader& header, PictureReducer& reducer) {
  const HeifLibrary* library = HeifLibrary::get();
  if (!library) return false;
  const File file(*library, bytes);
  if (!file.isOpen() || file.size() != header.size) return false;
  return file.decode(reducer);
}

}  // namespace

const PictureCodec kHeifCodec = {recognizes, readHeader, decode};

}  // namespace chatsum::platform::system
