// The kinds of picture files that can be read. A codec is a set of functions without a state: any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/system/images/PictureBytes.h"
#include "platform/system/images/PictureReducer.h"
#include "platform/system/images/PixelGeometry.h"

namespace chatsum::platform::system {

/// What the first bytes of a picture file tell.
struct PictureHeader {
  PixelSize size;  ///< as stored, before it is set upright
  Orientation orientation;
};

struct PictureCodec {
  /// Whether the first bytes of a file (kSignatureBytes, or fewer) are those of this kind.
  bool (*recognizes)(std::string_view first);
  /// Reads no pixels. None when the file is damaged; the caller holds the size against the limits.
  std::optional<PictureHeader> (*readHeader)(PictureBytes& bytes);
  /// Hands the stored picture to the reducer, decoded small where the kind of file allows it, colours as they stand in
  /// the file (profiles are not applied). Never a preview that a file has inside: it may show what was cut off or made
  /// unrecognizable in the picture. False when anything is missing or damaged; a codec that can tell how far the
  /// picture is sound hands that over, ends the reducer early, and answers true.
  bool (*decode)(PictureBytes& bytes, const PictureHeader& header, PictureReducer& reducer);
};

inline constexpr std::size_t kSignatureBytes = 32;

extern const PictureCodec kJpegCodec;  ///< ITU-T T.81, with Exif (CIPA DC-008)
extern const PictureCodec kPngCodec;   ///< ISO/IEC 15948, with the eXIf chunk
extern const PictureCodec kGifCodec;   ///< GIF89a; the first frame on its screen
extern const PictureCodec kTiffCodec;  ///< TIFF 6.0; the first directory
extern const PictureCodec kWebPCodec;  ///< RFC 9649; the first frame on its canvas
extern const PictureCodec kBmpCodec;   ///< Windows bitmaps that are not run-length encoded
extern const PictureCodec kHeifCodec;  ///< ISO/IEC 23008-12 and AVIF, if libheif is installed

/// The codec for a file, told by its first bytes, whatever its name is; nullptr when it is none of these.
[[nodiscard]] const PictureCodec* codecFor(PictureBytes& bytes);

}  // namespace chatsum::platform::system
