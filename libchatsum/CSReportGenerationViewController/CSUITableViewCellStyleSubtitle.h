// A cell with the detail under the title, whatever style its maker asks for. Main queue only.
#pragma once

#include <string>
#include <utility>

#include "libchatsum/Export.h"
#include "platform/uikit/UITableViewCell.h"

namespace chatsum {

class CHATSUM_EXPORT CSUITableViewCellStyleSubtitle final : public platform::UITableViewCell {
 public:
  /// A table makes cells of registered classes with the default style, so the style is not taken from it.
  CSUITableViewCellStyleSubtitle(platform::UITableViewCellStyle /*style*/, std::string reuseIdentifier)
      : UITableViewCell(platform::UITableViewCellStyle::kSubtitle, std::move(reuseIdentifier)) {}
};

}  // namespace chatsum
