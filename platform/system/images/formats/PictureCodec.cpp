#include "platform/system/images/formats/PictureCodec.h"

#include <string>

namespace chatsum::platform::system {

const PictureCodec* codecFor(PictureBytes& bytes) {
  const std::string first = bytes.part(0, kSignatureBytes);
  for (const PictureCodec* codec :
       {&kJpegCodec, &kHeifCodec, &kPngCodec, &kGifCodec, &kTiffCodec, &kWebPCodec, &kBmpCodec}) {
    if (codec->recognizes(first)) return codec;
  }
  return nullptr;
}

}  // namespace chatsum::platform::system
