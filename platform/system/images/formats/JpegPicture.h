// Decodes a JPEG that lies anywhere in a file. Any thread.
#pragma once

#include "platform/system/images/PictureBytes.h"
#include "platform/system/images/PictureReducer.h"

namespace chatsum::platform::system {

/// Decodes the stream at an eighth, a quarter, half or full size: the smallest that is enough for the reducer. With
/// `shape`, a picture of another shape than that is refused. False when it is damaged or ends early.
[[nodiscard]] bool decodeJpeg(PictureStream stream, PictureReducer& reducer, const PixelSize* shape = nullptr);

}  // namespace chatsum::platform::system
