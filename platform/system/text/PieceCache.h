// All pieces of an engine. Each distinct one is made once and stays until the cache goes. Any thread.
//
// A piece costs about thirty times its text. When they have grown to `kLimit` bytes, further words are put together
// from pieces of one grapheme cluster each, which look the same and of which there are few: memory ends to grow with
// the number of distinct words. (Only where such a word is cut in the middle the kerning stays that would have been
// between the lines.)
#pragma once

#include <atomic>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/text/Shaper.h"
#include "platform/system/text/SharedTable.h"
#include "platform/system/text/TextLayout.h"

namespace chatsum::platform::system {

/// A piece that can be shaped again in parts.
struct KeptPiece : Piece {
  PieceStyle style;
  std::uint64_t hash = 0;
  /// Of which texts with what glyphs it is the piece.
  std::string_view key;

  struct Key {
    const PieceStyle& style;
    std::string_view text;
  };
  [[nodiscard]] bool is(const Key& other) const { return key == other.text && style == other.style; }
};

class PieceCache {
 public:
  static constexpr std::size_t kLimit = 64 << 20;
  explicit PieceCache(std::size_t limit = kLimit) : limit_(limit), table_(bytes_) {}

  /// Appends the pieces of a text, in logical order; one, as long as the cache is not full.
  void append(const PieceStyle& style, std::string_view text, Shaper& shaper, std::vector<const KeptPiece*>& pieces);

  [[nodiscard]] bool isFull() const { return bytes_.load(std::memory_order_relaxed) >= limit_; }
  /// Where others may count what they keep beside the pieces.
  [[nodiscard]] std::atomic<std::size_t>& bytes() { return bytes_; }

 private:
  const KeptPiece* keep(std::uint64_t hash, const PieceStyle& style, std::string_view key, std::string_view text,
                        std::span<const Glyph> glyphs);
  void appendClusters(const PieceStyle& style, std::string_view text, std::span<const Glyph> glyphs,
                      std::vector<const KeptPiece*>& pieces);

  const std::size_t limit_;
  std::atomic<std::size_t> bytes_{0};
  std::atomic<std::uint32_t> count_{0};
  SharedTable<KeptPiece> table_;
};

}  // namespace chatsum::platform::system
