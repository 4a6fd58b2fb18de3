// Words that have been shaped: what stands between two spaces, with the places inside where a line may end. Each
// distinct word is kept for all threads until the engine goes; each thread finds those it met lately without a lock.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/system/text/PieceCache.h"
#include "platform/system/text/SharedTable.h"

namespace chatsum::platform::system {

/// What stands at the edge of a word; decides together with the next word's whether the space between may end a line
/// (UAX #14, rules LB13 to LB18).
enum class WordEdge : std::uint8_t {
  kPlain,    ///< a letter, a digit, and what else allows it
  kQuote,    ///< allows it, but for kOpening behind
  kOpening,  ///< the same, the other way round
  kSpecial,  ///< ICU has to be asked
};

struct WordPart {
  const KeptPiece* piece = nullptr;
  bool mayBreak = false;  ///< a line may end behind it, inside the word
};

struct Word {
  std::uint64_t hash = 0, context = 0;
  std::string_view text;
  std::span<const WordPart> parts;  ///< at least one
  WordEdge first = WordEdge::kPlain, last = WordEdge::kPlain;
  bool mayBreakBefore = true;  ///< a line may begin with it

  struct Key {
    std::uint64_t context;  ///< the font and whatever else changes the pieces
    std::string_view text;  ///< with what stands before, if that matters
  };
  /// Of a key with the same hash.
  [[nodiscard]] bool is(const Key& key) const {
    // Equal hashes of up to eight bytes have equal bytes: the text itself need not be fetched, and most words are
    // short.
    return context == key.context && text.size() == key.text.size() &&
           (text.size() <= kDistinctHash || text == key.text);
  }
};

using WordTable = SharedTable<Word>;

/// The words that one thread met lately.
class RecentWords {
 public:
  RecentWords() : slots_(kSlots) {}
  [[nodiscard]] const Word* find(std::uint64_t hash, const Word::Key& key) const {
    const Slot& slot = slots_[hash % kSlots];
    return slot.hash == hash && slot.word && slot.word->is(key) ? slot.word : nullptr;
  }
  void keep(const Word* word) { slots_[word->hash % kSlots] = {word->hash, word}; }

 private:
  static constexpr std::size_t kSlots = 16384;
  struct Slot {
    std::uint64_t hash = 0;
    const Word* word = nullptr;
  };
  std::vector<Slot> slots_;
};

[[nodiscard]] WordEdge firstEdgeOf(std::string_view word);
[[nodiscard]] WordEdge lastEdgeOf(std::string_view word);

}  // namespace chatsum::platform::system
