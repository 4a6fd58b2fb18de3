// A line of text on the screen. Main queue only.
#pragma once

#include <string>
#include <utility>

#include "platform/interfaces/Graphics.h"
#include "platform/uikit/UIView.h"

namespace chatsum::platform {

inline constexpr Color kGrayColor{0.5, 0.5, 0.5};
inline constexpr Color kLightGrayColor{2.0 / 3, 2.0 / 3, 2.0 / 3};

class UILabel final : public UIView {
 public:
  /// UTF-8; empty shows nothing.
  [[nodiscard]] const std::string& text() const { return text_; }
  void setText(std::string text) { text_ = std::move(text); }
  [[nodiscard]] TextAlignment textAlignment() const { return textAlignment_; }
  void setTextAlignment(TextAlignment alignment) { textAlignment_ = alignment; }
  [[nodiscard]] const Color& textColor() const { return textColor_; }
  void setTextColor(const Color& color) { textColor_ = color; }
  [[nodiscard]] const UIFont& font() const { return font_; }
  void setFont(UIFont font) { font_ = std::move(font); }

 private:
  std::string text_;
  TextAlignment textAlignment_ = TextAlignment::kLeft;
  Color textColor_ = kBlackColor;
  UIFont font_{"", 17};
};

}  // namespace chatsum::platform
