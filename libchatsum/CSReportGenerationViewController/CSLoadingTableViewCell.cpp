#include "libchatsum/CSReportGenerationViewController/CSLoadingTableViewCell.h"

#include <memory>
#include <utility>

#include "platform/interfaces/Platform.h"
#include "platform/uikit/UIActivityIndicatorView.h"
#include "platform/uikit/UILabel.h"

namespace chatsum {

CSLoadingTableViewCell::CSLoadingTableViewCell(platform::UITableViewCellStyle style, std::string reuseIdentifier)
    : UITableViewCell(style, std::move(reuseIdentifier)) {
  const auto label = std::make_shared<platform::UILabel>();
  label->setTag(kLabelTag);
  label->setTextAlignment(platform::TextAlignment::kCenter);
  label->setTextColor(platform::kLightGrayColor);
  label->setFont({"", 15});
  addSubview(label);

  const auto spinner =
      std::make_shared<platform::UIActivityIndicatorView>(platform::UIActivityIndicatorViewStyle::kGray);
  spinner->setTag(kSpinnerTag);
  addSubview(spinner);
}

void CSLoadingTableViewCell::layoutSubviews() {
  constexpr Size kLabelSize{100, 25};
  constexpr Size kSpinnerSize{25, 25};
  constexpr double kFromLabelToSpinner = 30;

  UITableViewCell::layoutSubviews();
  const Size size = frame().size;
  const Point corner{(size.width - kLabelSize.width) / 2, (size.height - kLabelSize.height) / 2};
  if (auto* label = dynamic_cast<platform::UILabel*>(viewWithTag(kLabelTag))) {
    label->setFrame({corner, kLabelSize});
    label->setText(platform::current().mainBundle.localizedString("Loading"));
  }
  if (auto* spinner = dynamic_cast<platform::UIActivityIndicatorView*>(viewWithTag(kSpinnerTag))) {
    spinner->setFrame({{corner.x - kFromLabelToSpinner, corner.y}, kSpinnerSize});
    spinner->startAnimating();
  }
}

}  // namespace chatsum
