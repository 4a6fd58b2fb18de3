#include "platform/system/images/PixelGeometry.h"

#include <cstring>
#include <utility>

namespace chatsum::platform::system {

Orientation Orientation::ofTag(unsigned tag) {
  if (tag < 1 || tag > 8) tag = 1;
  return {.swapsAxes = tag >= 5,
          .mirrorsColumns = tag == 2 || tag == 3 || tag == 7 || tag == 8,
          .mirrorsRows = tag == 3 || tag == 4 || tag == 6 || tag == 7};
}

PixelRect Orientation::toStored(const PixelRect& upright, PixelSize stored) const {
  PixelRect rect = swapsAxes ? PixelRect{upright.y, upright.x, upright.height, upright.width} : upright;
  if (mirrorsColumns) rect.x = stored.width - rect.x - rect.width;
  if (mirrorsRows) rect.y = stored.height - rect.y - rect.height;
  return rect;
}

Bitmap Orientation::upright(Bitmap stored) const {
  if (*this == Orientation()) return stored;
  Bitmap turned;
  turned.width = swapsAxes ? stored.height : stored.width;
  turned.height = swapsAxes ? stored.width : stored.height;
  turned.rgba.resize(stored.rgba.size());
  turned.wholeness = stored.wholeness;
  std::uint8_t* out = turned.rgba.data();
  for (int y = 0; y < turned.height; ++y) {
    for (int x = 0; x < turned.width; ++x) {
      int column = swapsAxes ? y : x;
      int row = swapsAxes ? x : y;
      if (mirrorsColumns) column = stored.width - 1 - column;
      if (mirrorsRows) row = stored.height - 1 - row;
      std::memcpy(out, stored.at(column, row), 4);
      out += 4;
    }
  }
  return turned;
}

}  // namespace chatsum::platform::system
