// What kind of file a message carries, told by its name, and how the window asks for its picture. One thread at a time.
#pragma once

#include <QString>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/system/types/SystemUniformTypes.h"

namespace chatsum::desktop {

enum class AttachmentKind : std::uint8_t { kImage, kPdf, kMovie, kAudio, kFile };

/// "image", "pdf", "movie", "audio" or "file".
[[nodiscard]] QString wordOf(AttachmentKind kind);

/// Remembers the kinds of the extensions it has seen.
class AttachmentKinds {
 public:
  [[nodiscard]] AttachmentKind of(std::string_view devicePath);

 private:
  platform::system::SystemUniformTypes types_;
  std::map<std::string, AttachmentKind, std::less<>> known_;
};

/// A file of an open device.
struct AttachmentPlace {
  std::uint64_t device = 0;  ///< the number of the device (see OpenDevice)
  std::string path;          ///< as the message names it
};

/// The part of a picture's address behind "image://attachment/"; the path is in it in a form that no part of an address
/// can spoil.
[[nodiscard]] QString idOf(const AttachmentPlace& place);
/// None for what is no such text.
[[nodiscard]] std::optional<AttachmentPlace> placeOfId(const QString& id);

}  // namespace chatsum::desktop
