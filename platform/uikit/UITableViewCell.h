// A row of a table: a title, a detail, a picture, and what else its class puts into it. Main queue only.
#pragma once

#include <string>
#include <utility>

#include "platform/interfaces/Artwork.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIView.h"

namespace chatsum::platform {

/// Where the detail stands: nowhere, at the right end of the row (value 1, 2), or under the title.
enum class UITableViewCellStyle { kDefault = 0, kValue1 = 1, kValue2 = 2, kSubtitle = 3 };
enum class UITableViewCellAccessoryType { kNone = 0, kDisclosureIndicator = 1 };
enum class UITableViewCellSelectionStyle { kNone = 0, kBlue = 1, kGray = 2, kDefault = 3 };

class UITableViewCell : public UIView {
 public:
  UITableViewCell(UITableViewCellStyle style, std::string reuseIdentifier)
      : style_(style), reuseIdentifier_(std::move(reuseIdentifier)) {}

  [[nodiscard]] UITableViewCellStyle style() const { return style_; }
  /// The name under which the table keeps cells that can take each other's place.
  [[nodiscard]] const std::string& reuseIdentifier() const { return reuseIdentifier_; }
  [[nodiscard]] UILabel& textLabel() { return textLabel_; }
  [[nodiscard]] UILabel& detailTextLabel() { return detailTextLabel_; }
  /// nullptr when there is none.
  [[nodiscard]] const UIImageRef& image() const { return image_; }
  void setImage(UIImageRef image) { image_ = std::move(image); }
  [[nodiscard]] UITableViewCellAccessoryType accessoryType() const { return accessoryType_; }
  void setAccessoryType(UITableViewCellAccessoryType type) { accessoryType_ = type; }
  [[nodiscard]] UITableViewCellSelectionStyle selectionStyle() const { return selectionStyle_; }
  void setSelectionStyle(UITableViewCellSelectionStyle style) { selectionStyle_ = style; }

 private:
  UITableViewCellStyle style_;
  std::string reuseIdentifier_;
  UILabel textLabel_;
  UILabel detailTextLabel_;
  UIImageRef image_;
  UITableViewCellAccessoryType accessoryType_ = UITableViewCellAccessoryType::kNone;
  UITableViewCellSelectionStyle selectionStyle_ = UITableViewCellSelectionStyle::kDefault;
};

}  // namespace chatsum::platform
