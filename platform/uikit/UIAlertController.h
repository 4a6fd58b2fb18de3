// An alert or a chooser with one block per button: the newer generation. Main queue only.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/interfaces/Companion.h"

namespace chatsum::platform {

enum class UIAlertControllerStyle { kActionSheet = 0, kAlert = 1 };
enum class UIAlertActionStyle { kDefault = 0, kCancel = 1, kDestructive = 2 };

struct UIAlertAction {
  std::string title;
  UIAlertActionStyle style = UIAlertActionStyle::kDefault;
  std::function<void()> handler = nullptr;  ///< may be empty
};

class UIAlertController final : public UIViewController {
 public:
  UIAlertController(const std::optional<std::string>& title, const std::optional<std::string>& message,
                    UIAlertControllerStyle preferredStyle);

  [[nodiscard]] const std::optional<std::string>& title() const { return title_; }
  [[nodiscard]] const std::optional<std::string>& message() const { return message_; }
  [[nodiscard]] UIAlertControllerStyle preferredStyle() const { return preferredStyle_; }

  void addAction(UIAlertAction action) { actions_.push_back(std::move(action)); }
  /// In the order they were added.
  [[nodiscard]] const std::vector<UIAlertAction>& actions() const { return actions_; }

  /// The user chose an action, and the screen takes the alert away by itself.
  void choose(std::size_t index);

  /// Takes the alert away without a choice; the completion may be empty.
  void dismissViewController(bool animated, std::function<void()> completion);

 private:
  std::optional<std::string> title_;
  std::optional<std::string> message_;
  UIAlertControllerStyle preferredStyle_;
  std::vector<UIAlertAction> actions_;
};

}  // namespace chatsum::platform
