// A cell with the title on the left and the detail on the right, whatever style its maker asks for. Main queue only.
#pragma once

#include <string>
#include <utility>

#include "libchatsum/Export.h"
#include "platform/uikit/UITableViewCell.h"

namespace chatsum {

class CHATSUM_EXPORT CSUITableViewCellStyleValue1 final : public platform::UITableViewCell {
 public:
  /// A table makes cells of registered classes with the default style, so the style is not taken from it.
  CSUITableViewCellStyleValue1(platform::UITableViewCellStyle /*style*/, std::string reuseIdentifier)
      : UITableViewCell(platform::UITableViewCellStyle::kValue1, std::move(reuseIdentifier)) {}
};

}  // namespace chatsum
