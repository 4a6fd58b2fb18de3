// Writes made-up devices of any size for tests and benches. No state; two threads may write to two folders.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/device/sample/StoreFile.h"
#include "hosts/device/sample/StoreSchema.h"

namespace chatsum::device {

/// What the device holds. Two devices of equal options have equal rows, on every machine.
struct SeededDeviceOptions {
  std::uint64_t seed = 1;
  std::int64_t messages = 1000;
  std::int64_t conversations = 10;  // at least 1; the first is the big one
  double mainShare = 0.7;           // of the messages, in the big conversation (all when it is the only one)
  std::int64_t groupHandles = 0;    // members of the big conversation; 0 or 1: one person, no group
  std::int64_t contacts = 20;       // cards; the people of the big conversation come first
  double attachmentShare = 0.02;    // of the messages; the files themselves are not written
  double bodyOnlyShare = 0.0;       // of the messages: NULL text, the words stand only in the body
  bool bodies = false;              // every message has its body beside the text, as on a device
  double outOfOrderShare = 0.05;    // the oldest part, whose rows were put between newer ones
  Generation generation = Generation::ios17;
  Placement placement = Placement::mainFile;  // of the rows of both stores
};

/// The guid of the chat of the big conversation, one person (+15550100001) or a group.
std::string_view seededMainChat(const SeededDeviceOptions& options);

/// Writes the stores below `root` (made when it is missing), as `writeSampleDevice` does but without attached files.
/// Messages are dated 2014 to 2023. A folder that holds a store already is refused. Answers nothing when all is well,
/// else one sentence, and then no new store is left.
[[nodiscard]] std::optional<std::string> writeSeededDevice(const std::filesystem::path& root,
                                                           const SeededDeviceOptions& options);

}  // namespace chatsum::device
