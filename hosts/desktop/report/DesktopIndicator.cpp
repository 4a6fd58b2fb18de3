#include "hosts/desktop/report/DesktopIndicator.h"

#include <algorithm>
#include <utility>

#include "platform/interfaces/Platform.h"

namespace chatsum::desktop {

void BusyState::add(const void* indicator, const QString& title, const QString& text) {
  std::erase_if(shown_, [&](const Shown& shown) { return shown.indicator == indicator; });
  shown_.push_back({indicator, title, text});
  Q_EMIT changed();
}

void BusyState::remove(const void* indicator) {
  const auto found = std::find_if(shown_.begin(), shown_.end(),
                                  [&](const Shown& shown) { return shown.indicator == indicator; });
  if (found == shown_.end()) return;
  const QString title = found->title;
  shown_.erase(found);
  Q_EMIT changed();
  Q_EMIT ended(title);
}

void BusyState::clear() {
  if (std::exchange(shown_, {}).empty()) return;
  Q_EMIT changed();
}

DesktopIndicator::DesktopIndicator(BusyState& state, const std::string& title, const std::string& message)
    : state_(state),
      title_(QString::fromStdString(title)),
      // The message ends with line breaks that leave room for a spinner of the phone's kind.
      text_(QString::fromStdString(message).trimmed()) {}

void DesktopIndicator::show(platform::UIViewController* /*presenter*/) { state_.add(this, title_, text_); }

void DesktopIndicator::dismissViewController(bool /*animated*/, std::function<void()> completion) {
  state_.remove(this);
  if (completion) platform::current().dispatch.asyncOnMain(std::move(completion));
}

}  // namespace chatsum::desktop
