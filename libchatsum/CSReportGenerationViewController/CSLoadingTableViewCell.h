// A cell with a centred "Loading" and a spinner left of it, for a list that is still being read. Main queue only.
#pragma once

#include <cstdint>
#include <string>

#include "libchatsum/Export.h"
#include "platform/uikit/UITableViewCell.h"

namespace chatsum {

class CHATSUM_EXPORT CSLoadingTableViewCell final : public platform::UITableViewCell {
 public:
  /// The tags of the two sub-views: a UILabel and a UIActivityIndicatorView.
  static constexpr std::int64_t kLabelTag = 4545;
  static constexpr std::int64_t kSpinnerTag = 4546;

  CSLoadingTableViewCell(platform::UITableViewCellStyle style, std::string reuseIdentifier);

  /// Centres both in the cell's frame and lets the spinner spin.
  void layoutSubviews() override;
};

}  // namespace chatsum
