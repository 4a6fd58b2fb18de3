// A field for one line of text, with the answers its delegate gives while the user edits. Delegate and listener are not
// owned; a delegate that is gone is not asked. Main queue only.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "platform/interfaces/Graphics.h"
#include "platform/uikit/ChangeListener.h"
#include "platform/uikit/UIView.h"

namespace chatsum::platform {

class UITextField;

class UITextFieldDelegate {
 public:
  virtual ~UITextFieldDelegate() = default;
  /// Whether the field may give up the keyboard.
  virtual bool textFieldShouldEndEditing(UITextField& field) = 0;
  virtual void textFieldDidEndEditing(UITextField& field) = 0;
  /// The user pressed the return key.
  virtual bool textFieldShouldReturn(UITextField& field) = 0;
};

enum class UITextAutocorrectionType { kDefault = 0, kNo = 1, kYes = 2 };
enum class UIReturnKeyType { kDefault = 0, kDone = 9 };
enum class UITextFieldViewMode { kNever = 0, kWhileEditing = 1 };

class UITextField final : public UIView {
 public:
  /// UTF-8.
  [[nodiscard]] const std::string& text() const { return text_; }
  /// Shows another text; no action is sent.
  void setText(const std::string& text);
  [[nodiscard]] const Color& textColor() const { return textColor_; }
  void setTextColor(const Color& color) { textColor_ = color; }
  [[nodiscard]] TextAlignment textAlignment() const { return textAlignment_; }
  void setTextAlignment(TextAlignment alignment) { textAlignment_ = alignment; }
  [[nodiscard]] UITextAutocorrectionType autocorrectionType() const { return autocorrectionType_; }
  void setAutocorrectionType(UITextAutocorrectionType type) { autocorrectionType_ = type; }
  [[nodiscard]] UIReturnKeyType returnKeyType() const { return returnKeyType_; }
  void setReturnKeyType(UIReturnKeyType type) { returnKeyType_ = type; }
  [[nodiscard]] UITextFieldViewMode clearButtonMode() const { return clearButtonMode_; }
  void setClearButtonMode(UITextFieldViewMode mode) { clearButtonMode_ = mode; }

  void setDelegate(std::weak_ptr<UITextFieldDelegate> delegate) { delegate_ = std::move(delegate); }
  /// Runs the action whenever the user changed the text. A target has one action: adding it again replaces it.
  void addTargetForEditingChanged(const void* target, std::function<void(UITextField&)> action);

  [[nodiscard]] bool isFirstResponder() const { return firstResponder_; }
  void becomeFirstResponder();
  /// Ends editing unless the delegate objects; answers whether the field is not being edited now.
  bool resignFirstResponder();

  // What the user does.

  /// The user changed the text, and this is all of it now. The field is being edited.
  void edit(const std::string& text);
  void pressReturn();

  void setListener(ChangeListener* listener) { listener_ = listener; }

 private:
  void setFirstResponder(bool value);
  void tellListener();

  std::string text_;
  Color textColor_ = kBlackColor;
  TextAlignment textAlignment_ = TextAlignment::kLeft;
  UITextAutocorrectionType autocorrectionType_ = UITextAutocorrectionType::kDefault;
  UIReturnKeyType returnKeyType_ = UIReturnKeyType::kDefault;
  UITextFieldViewMode clearButtonMode_ = UITextFieldViewMode::kNever;
  std::weak_ptr<UITextFieldDelegate> delegate_;
  std::map<const void*, std::function<void(UITextField&)>> editingChanged_;
  bool firstResponder_ = false;
  ChangeListener* listener_ = nullptr;
};

}  // namespace chatsum::platform
