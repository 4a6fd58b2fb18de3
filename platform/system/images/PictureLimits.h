// What a picture or document may cost. A file beyond one of these is no picture.
#pragma once

#include <cstddef>
#include <cstdint>

namespace chatsum::platform::system::limits {

inline constexpr std::uint64_t kPictureFileBytes = 256ULL << 20;
inline constexpr int kPictureSide = 32767;
inline constexpr std::int64_t kPicturePixels = 100'000'000;
/// Of a kind of file that has to stand in memory as a whole before its first row is known: interlaced, progressive, or
/// made of blocks of any order.
inline constexpr std::int64_t kWholePixels = 64'000'000;
inline constexpr long kDecoderBytes = 256L << 20;
/// A progressive JPEG may go over all its blocks in every scan.
inline constexpr int kJpegScans = 100;
/// Chunks, segments or directories in front of the pixels.
inline constexpr int kParts = 10'000;
/// Beyond this, a surface holds fewer pixels than it was asked for.
inline constexpr double kSurfacePixels = 4 << 20;
/// Of a surface or page, in pixels or points: what is beyond is not drawn at all.
inline constexpr double kSurfaceSide = 1'000'000;
/// Of the pixels that one drawing of a picture asks for.
inline constexpr int kDrawnSide = 4096;

inline constexpr std::size_t kRememberedPictures = 256;
inline constexpr std::size_t kRememberedBytes = 24U << 20;

/// Of the programs that read PDF documents.
inline constexpr std::uint64_t kChildMemory = 1ULL << 30;
inline constexpr unsigned kChildCpuSeconds = 5;
inline constexpr int kChildMilliseconds = 10'000;
inline constexpr std::size_t kPageFactsBytes = 256U << 10;

}  // namespace chatsum::platform::system::limits
