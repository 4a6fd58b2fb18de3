// Rows whose text is the file name of a picture: the library's writers take them for the picture, so a report of text or
// CSV has nothing there. Values; any thread.
#pragma once

#include <cstdint>

#include "platform/foundation/Value.h"

namespace chatsum::device {

/// How many rows are pictures: those of attachments, and messages that are just such a name.
struct Pictures {
  std::uint64_t attached = 0, written = 0;
};
[[nodiscard]] Pictures countPictures(const Array& records);

/// The records with the names of attached pictures, in brackets, where a report of text would have nothing. Without
/// such a row the array is the very same; one that nobody else holds is changed in place.
[[nodiscard]] Array withPicturesNamed(Array records);

}  // namespace chatsum::device
