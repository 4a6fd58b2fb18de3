// A set of entries that many threads look up and add to; an entry stays where it is until the table goes. An entry has
// a `hash` and says with `is(key)` whether it is the one of a key.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <string_view>
#include <vector>

#include "platform/system/text/TextArena.h"

namespace chatsum::platform::system {

/// Good enough to spread words. Different hashes stay different when the same is mixed in.
[[nodiscard]] inline std::uint64_t mixHash(std::uint64_t hash, std::uint64_t more) {
  hash = (hash ^ more) * 0x9E3779B97F4A7C15ULL;
  return hash ^ (hash >> 29);
}
/// Texts of the same length up to this many bytes have different hashes.
inline constexpr std::size_t kDistinctHash = 8;
[[nodiscard]] inline std::uint64_t hashOf(std::string_view text) {
  std::uint64_t hash = text.size(), word = 0;
  std::size_t at = 0;
  for (; at + sizeof word <= text.size(); at += sizeof word) {
    std::memcpy(&word, text.data() + at, sizeof word);
    hash = mixHash(hash, word);
  }
  word = 0;
  for (; at < text.size(); ++at) word = (word << 8) | static_cast<unsigned char>(text[at]);
  return mixHash(hash, word);
}

template <class Entry>
class SharedTable {
 public:
  /// Bytes taken are counted in `total`.
  explicit SharedTable(std::atomic<std::size_t>& total) {
    for (auto& shard : shards_) shard = std::make_unique<Shard>(total);
  }

  template <class Key>
  [[nodiscard]] const Entry* find(std::uint64_t hash, const Key& key) {
    Shard& shard = shardOf(hash);
    const std::lock_guard lock(shard.mutex);
    return shard.slots[slotOf(shard, hash, key)];
  }

  /// The entry of the key; made by `make(arena)` when there is none yet.
  template <class Key, class Make>
  const Entry* keep(std::uint64_t hash, const Key& key, Make make) {
    Shard& shard = shardOf(hash);
    const std::lock_guard lock(shard.mutex);
    const std::size_t slot = slotOf(shard, hash, key);
    if (shard.slots[slot]) return shard.slots[slot];
    const Entry* entry = make(shard.arena);
    shard.slots[slot] = entry;
    if (++shard.count * 2 > shard.slots.size()) grow(shard);
    return entry;
  }

 private:
  struct Shard {
    explicit Shard(std::atomic<std::size_t>& total) : arena(total), slots(64, nullptr) {}
    std::mutex mutex;
    TextArena arena;
    std::vector<const Entry*> slots;  // a power of two
    std::size_t count = 0;
  };
  static constexpr std::size_t kShards = 16;

  // The upper bits choose the shard, the lower ones the slot.
  Shard& shardOf(std::uint64_t hash) { return *shards_[(hash >> 48) % kShards]; }

  /// Where the key's entry stands or would stand.
  template <class Key>
  static std::size_t slotOf(const Shard& shard, std::uint64_t hash, const Key& key) {
    const std::size_t mask = shard.slots.size() - 1;
    std::size_t slot = hash & mask;
    while (shard.slots[slot] && !(shard.slots[slot]->hash == hash && shard.slots[slot]->is(key))) {
      slot = (slot + 1) & mask;
    }
    return slot;
  }

  static void grow(Shard& shard) {
    std::vector<const Entry*> slots(shard.slots.size() * 2, nullptr);
    const std::size_t mask = slots.size() - 1;
    for (const Entry* entry : shard.slots) {
      if (!entry) continue;
      std::size_t slot = entry->hash & mask;
      while (slots[slot]) slot = (slot + 1) & mask;
      slots[slot] = entry;
    }
    shard.slots = std::move(slots);
  }

  std::array<std::unique_ptr<Shard>, kShards> shards_;
};

}  // namespace chatsum::platform::system
