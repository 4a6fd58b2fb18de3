// Records as the library's writers show them whole. Left to themselves, these take a text that ends like the file name
// of a picture (on pages also of a PDF) for that file and show no text, have nothing where a picture cannot be shown,
// and let a text that is taller than a page run over its end. The library has to be started: its platform knows what
// names a picture, and how tall a text is. Any thread, one at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "hosts/device/report/ReportRequest.h"
#include "platform/foundation/Value.h"

namespace chatsum::device {

struct ShownRows {
  Array records;
  std::uint64_t continued = 0;  ///< rows added for texts that go on
  std::uint64_t undrawn = 0;    ///< attached files that cannot be drawn; their names stand there
};

/// Whether a page can show the picture or PDF of that device path.
using CanDraw = std::function<bool(const std::string& path)>;
/// Whether the file is there and begins like what it is called.
[[nodiscard]] bool beginsLikeAPicture(const std::string& path);
/// Whether the picture comes out; takes as long as drawing it.
[[nodiscard]] bool comesOut(const std::string& path);

/// The records as a report of that layout shows them whole: attached pictures have their names in brackets where the
/// format or `canDraw` has no picture for them, and on pages what is too tall for one goes on in further rows that say
/// so. Where nothing needs that the array is the very same; one that nobody else holds is changed in place.
[[nodiscard]] ShownRows showWhole(Array records, const ReportLayout& layout, const CanDraw& canDraw);

/// What a writer would not show of records that are handed to it as they are.
struct HiddenRows {
  std::uint64_t pictures = 0;  ///< rows that are attached pictures, where the format has none
  std::uint64_t texts = 0;     ///< texts that are taken for files
  std::uint64_t cutOff = 0;    ///< texts that run over the end of a page
};
[[nodiscard]] HiddenRows countHidden(const Array& records, const ReportLayout& layout);

/// The text with a blank behind it where a writer would take it for a file: what is no attachment names none.
[[nodiscard]] std::string keptAsText(std::string text);

}  // namespace chatsum::device
