#include "platform/system/graphics/SystemGraphics.h"

namespace chatsum::platform::system {

Size SystemGraphics::sizeOfText(std::string_view, const UIFont&, Size, LineBreakMode) { return {}; }
Size SystemGraphics::sizeOfLine(std::string_view, const UIFont&, double, LineBreakMode) { return {}; }
Size SystemGraphics::drawLine(std::string_view, Point, double, const UIFont&, LineBreakMode) { return {}; }
Size SystemGraphics::drawText(std::string_view, const Rect&, const UIFont&, LineBreakMode, TextAlignment) { return {}; }
bool SystemGraphics::beginPDFContext(const std::string&) { return false; }

}  // namespace chatsum::platform::system
