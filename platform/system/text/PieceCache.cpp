#include "platform/system/text/PieceCache.h"

#include <algorithm>
#include <limits>

namespace chatsum::platform::system {
namespace {

std::uint64_t hashOf(const PieceStyle& style, std::string_view text) {
  std::uint64_t hash = system::hashOf(text);
  hash = mixHash(hash, reinterpret_cast<std::uintptr_t>(style.face) + style.script);
  return mixHash(hash, reinterpret_cast<std::uintptr_t>(style.language) + (style.isRightToLeft ? 1U : 0U));
}

bool isAscii(const FontFace& face, std::string_view text, std::span<const Glyph> glyphs) {
  if (glyphs.size() != text.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const Glyph& glyph = glyphs[i];
    const bool isPrintable = text[i] >= 0x20 && text[i] < 0x7F;
    if (!isPrintable || glyph.cluster != i || glyph.id == 0 || glyph.id != face.asciiGlyph(text[i]) ||
        glyph.xOffset != 0 || glyph.yOffset != 0) {
      return false;
    }
  }
  return true;
}

}  // namespace

const KeptPiece* PieceCache::keep(std::uint64_t hash, const PieceStyle& style, std::string_view key,
                                  std::string_view text, std::span<const Glyph> glyphs) {
  return table_.keep(hash, KeptPiece::Key{style, key}, [&](TextArena& arena) {
    KeptPiece piece;
    piece.face = style.face;
    piece.number = count_.fetch_add(1, std::memory_order_relaxed);
    piece.isRightToLeft = style.isRightToLeft;
    piece.isAscii = !style.isRightToLeft && isAscii(*style.face, text, glyphs);
    piece.lacksGlyphs = std::any_of(glyphs.begin(), glyphs.end(), [](const Glyph& glyph) { return glyph.id == 0; });
    piece.width =
        static_cast<std::int32_t>(std::min<std::int64_t>(widthOf(glyphs), std::numeric_limits<std::int32_t>::max()));
    piece.key = arena.copy(key);
    piece.text = piece.key.substr(0, text.size());
    piece.glyphs = arena.copy(glyphs);
    piece.style = style;
    piece.hash = hash;
    return arena.make(piece);
  });
}

void PieceCache::append(const PieceStyle& style, std::string_view text, Shaper& shaper,
                        std::vector<const KeptPiece*>& pieces) {
  const std::uint64_t hash = hashOf(style, text);
  const KeptPiece* piece = table_.find(hash, KeptPiece::Key{style, text});
  if (!piece) {
    const std::span<const Glyph> glyphs = shaper.shape(style, text);
    if (isFull()) return appendClusters(style, text, glyphs, pieces);
    piece = keep(hash, style, text, text, glyphs);
  }
  pieces.push_back(piece);
}

void PieceCache::appendClusters(const PieceStyle& style, std::string_view text, std::span<const Glyph> glyphs,
                                std::vector<const KeptPiece*>& pieces) {
  // Clusters count up from the left, or down when the text runs to the left; the walk is in logical order.
  const auto logical = [&](std::size_t place) { return style.isRightToLeft ? glyphs.size() - 1 - place : place; };
  std::vector<Glyph> own;
  std::string key;
  for (std::size_t first = 0, last = 0; first < glyphs.size(); first = last) {
    const std::uint32_t begin = glyphs[logical(first)].cluster;
    own.clear();
    for (last = first; last < glyphs.size() && glyphs[logical(last)].cluster == begin; ++last) {
      own.push_back(glyphs[logical(last)]);
      own.back().cluster = 0;
    }
    if (style.isRightToLeft) std::reverse(own.begin(), own.end());
    const std::size_t end = last < glyphs.size() ? glyphs[logical(last)].cluster : text.size();
    const std::string_view clusterText = text.substr(begin, end - begin);
    // The same characters may look different in other words. 0xFF never stands in UTF-8.
    key.assign(clusterText);
    key += '\xFF';
    key.append(reinterpret_cast<const char*>(own.data()), own.size() * sizeof(Glyph));
    pieces.push_back(keep(hashOf(style, key), style, key, clusterText, own));
  }
}

}  // namespace chatsum::platform::system
