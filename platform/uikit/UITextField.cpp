#include "platform/uikit/UITextField.h"

#include <utility>

namespace chatsum::platform {

void UITextField::setText(const std::string& text) {
  if (text_ == text) return;
  text_ = text;
  tellListener();
}

void UITextField::addTargetForEditingChanged(const void* target, std::function<void(UITextField&)> action) {
  editingChanged_.insert_or_assign(target, std::move(action));
}

void UITextField::becomeFirstResponder() { setFirstResponder(true); }

bool UITextField::resignFirstResponder() {
  if (!firstResponder_) return true;
  const auto delegate = delegate_.lock();
  if (delegate && !delegate->textFieldShouldEndEditing(*this)) return false;
  setFirstResponder(false);
  if (delegate) delegate->textFieldDidEndEditing(*this);
  return true;
}

void UITextField::edit(const std::string& text) {
  becomeFirstResponder();
  setText(text);
  // Copies: an action may add targets.
  for (const auto& [target, action] : std::map(editingChanged_)) action(*this);
}

void UITextField::pressReturn() {
  if (const auto delegate = delegate_.lock()) delegate->textFieldShouldReturn(*this);
}

void UITextField::setFirstResponder(bool value) {
  if (firstResponder_ == value) return;
  firstResponder_ = value;
  tellListener();
}

void UITextField::tellListener() {
  if (listener_) listener_->changed();
}

}  // namespace chatsum::platform
