#include "platform/system/graphics/LayoutMemo.h"

#include <algorithm>

namespace chatsum::platform::system {

LayoutMemo::Entry& LayoutMemo::entryFor(std::string_view text, const UIFont& font, double width, LineBreakMode mode,
                                        bool isSingleLine, TextEngine& engine) {
  ++uses_;
  for (Entry& entry : entries_) {
    if (entry.store.count() == 0 || entry.text != text || entry.width != width || entry.mode != mode ||
        entry.isSingleLine != isSingleLine || entry.font != font) {
      continue;
    }
    entry.lastUse = uses_;
    return entry;
  }
  Entry& oldest = *std::min_element(entries_.begin(), entries_.end(),
                                    [](const Entry& a, const Entry& b) { return a.lastUse < b.lastUse; });
  oldest.text = text;
  oldest.font = font;
  oldest.width = width;
  oldest.mode = mode;
  oldest.isSingleLine = isSingleLine;
  oldest.lastDrawing = {};
  oldest.lastUse = uses_;
  oldest.store.clear();
  if (isSingleLine) {
    engine.layOutLine(text, font, width, mode, oldest.store);
  } else {
    engine.layOut(text, font, width, mode, oldest.store);
  }
  return oldest;
}

void LayoutMemo::forgetDrawingsIn(const Rect& area) {
  const auto overlap = [](double a, double aSize, double b, double bSize) { return a <= b + bSize && b <= a + aSize; };
  for (Entry& entry : entries_) {
    const Rect& rect = entry.lastDrawing.rect;
    if (overlap(rect.origin.x, rect.size.width, area.origin.x, area.size.width) &&
        overlap(rect.origin.y, rect.size.height, area.origin.y, area.size.height)) {
      entry.lastDrawing = {};
    }
  }
}

}  // namespace chatsum::platform::system
