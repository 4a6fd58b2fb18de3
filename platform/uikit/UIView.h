// A rectangle in a tree of views: place, tag and sub-views, nothing drawn. Whoever adds a view shares it with the view
// it stands in. Main queue only.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/foundation/Geometry.h"

namespace chatsum::platform {

class UIView {
 public:
  UIView() = default;
  UIView(const UIView&) = delete;
  UIView& operator=(const UIView&) = delete;
  virtual ~UIView();

  /// Points, in the coordinates of the view it stands in.
  [[nodiscard]] const Rect& frame() const { return frame_; }
  void setFrame(const Rect& frame) { frame_ = frame; }
  [[nodiscard]] std::int64_t tag() const { return tag_; }
  void setTag(std::int64_t tag) { tag_ = tag; }

  /// The view it stands in, nullptr when there is none.
  [[nodiscard]] UIView* superview() const { return superview_; }
  [[nodiscard]] const std::vector<std::shared_ptr<UIView>>& subviews() const { return subviews_; }
  /// Puts a view in front of the others in this one, out of the view it stood in.
  void addSubview(const std::shared_ptr<UIView>& view);
  void removeFromSuperview();

  /// The first view with the tag, this one before its sub-views, each with its own sub-views; nullptr when there is
  /// none.
  [[nodiscard]] UIView* viewWithTag(std::int64_t tag);

  /// Places the sub-views; run on every layout pass.
  virtual void layoutSubviews() {}

 private:
  Rect frame_;
  std::int64_t tag_ = 0;
  UIView* superview_ = nullptr;
  std::vector<std::shared_ptr<UIView>> subviews_;
};

}  // namespace chatsum::platform
