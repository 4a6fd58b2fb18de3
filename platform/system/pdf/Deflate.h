// Compression of whole blocks in the zlib format (RFC 1950), which PDF names FlateDecode. Any thread: each keeps
// compressors of its own.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::platform::system {

[[nodiscard]] std::string deflated(std::string_view bytes);

}  // namespace chatsum::platform::system
