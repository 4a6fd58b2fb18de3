// Makes the small real files that the sample device's messages carry. Pure functions, the same bytes every time.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::device {

/// A JPEG file with an EXIF block that tells a viewer how to turn it (1 to 8; 6 is a quarter turn clockwise).
std::string withOrientation(std::string_view jpeg, int orientation);

/// A sunset as PNG, 120 x 80 pixels, 8-bit RGB.
std::string sunsetPng();

/// A heart on nothing as PNG, 64 x 64 pixels, 8-bit RGBA with smooth transparent edges.
std::string heartPng();

/// Two blinking frames as GIF, 48 x 48 pixels.
std::string blinkingGif();

/// A receipt as BMP, 40 x 60 pixels, 24 bits.
std::string receiptBmp();

/// A one-page PDF (A4 width 595 x 842 points) with a heading and lines of ASCII text.
std::string onePagePdf(std::string_view heading, std::string_view lines);

/// A QuickTime film of one second whose two frames are JPEG pictures of the given size.
std::string filmOf(std::string_view firstJpeg, std::string_view secondJpeg, int width, int height);

/// A voice message: half a second of a falling tone in a Core Audio file (16-bit, one channel, 8,000 Hz).
std::string voiceCaf();

/// A card with one number.
std::string contactVcf(std::string_view name, std::string_view number);

}  // namespace chatsum::device
