#include "platform/uikit/UIView.h"

#include <utility>

namespace chatsum::platform {

UIView::~UIView() {
  for (const auto& view : subviews_) view->superview_ = nullptr;
}

void UIView::addSubview(const std::shared_ptr<UIView>& view) {
  const auto kept = view;  // the caller's reference may be the one in the old view's list
  kept->removeFromSuperview();
  kept->superview_ = this;
  subviews_.push_back(kept);
}

void UIView::removeFromSuperview() {
  UIView* const from = std::exchange(superview_, nullptr);
  if (from) std::erase_if(from->subviews_, [this](const auto& view) { return view.get() == this; });
}

UIView* UIView::viewWithTag(std::int64_t tag) {
  if (tag_ == tag) return this;
  for (const auto& view : subviews_) {
    if (UIView* const found = view->viewWithTag(tag)) return found;
  }
  return nullptr;
}

}  // namespace chatsum::platform
