// Made-up photographs of 12 megapixels, as files of a camera. No state, any thread.
#pragma once

#include <optional>
#include <string>

namespace chatsum::bench {

/// A baseline JPEG of 4032 x 3024 pixels.
[[nodiscard]] std::string jpegPhotograph();
/// The same with a JPEG of 160 x 120 pixels in its Exif data (Exif 2.32, 4.5.8).
[[nodiscard]] std::string jpegPhotographWithThumbnail();
/// The same picture as HEIC, with a thumbnail of 320 x 240 pixels; none when libheif has no encoder here.
[[nodiscard]] std::optional<std::string> heicPhotographWithThumbnail();

// The same picture in another file: a comment that says the number, which changes no pixel.
[[nodiscard]] std::string numberedJpeg(const std::string& jpeg, int number);
[[nodiscard]] std::string numberedHeic(const std::string& heic, int number);

}  // namespace chatsum::bench
