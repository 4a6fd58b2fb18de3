#include "hosts/desktop/report/DesktopScreen.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "platform/interfaces/Platform.h"
#include "platform/uikit/QLPreviewController.h"
#include "platform/uikit/UIActionSheet.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIAlertView.h"

namespace chatsum::desktop {
namespace {

QString shown(const std::optional<std::string>& text) { return text ? QString::fromStdString(*text) : QString(); }

/// Nothing moves on this screen, so movements end at once, but never before what already waits on the main queue: the
/// library counts on that order.
void end(std::function<void()> completion) {
  if (completion) platform::current().dispatch.asyncOnMain(std::move(completion));
}

DesktopAlert::Style styleOf(platform::UIAlertActionStyle style) {
  switch (style) {
    case platform::UIAlertActionStyle::kCancel:
      return DesktopAlert::Style::kCancel;
    case platform::UIAlertActionStyle::kDestructive:
      return DesktopAlert::Style::kDestructive;
    case platform::UIAlertActionStyle::kDefault:
      break;
  }
  return DesktopAlert::Style::kDefault;
}

}  // namespace

DesktopScreen::DesktopScreen() = default;
DesktopScreen::~DesktopScreen() = default;

DesktopAlert* DesktopScreen::alert() const { return alerts_.empty() ? nullptr : alerts_.front().face.get(); }

void DesktopScreen::choose(int index) {
  if (alerts_.empty() || index < 0 || index >= alerts_.front().face->buttonCount()) return;
  const Shown chosen = std::move(alerts_.front());
  alerts_.pop_front();
  Q_EMIT alertChanged();
  Q_EMIT answering(index == chosen.face->cancelIndex());
  chosen.answer(index);
  Q_EMIT answered();
}

void DesktopScreen::closePreview() {
  if (const auto closed = std::exchange(preview_, nullptr)) closed->dismiss();
}

void DesktopScreen::clear() {
  preview_.reset();
  if (std::exchange(alerts_, {}).empty()) return;
  Q_EMIT alertChanged();
}

void DesktopScreen::ask(const QString& question, const QString& goOn, const QString& cancel,
                        std::function<void()> confirmed) {
  show(nullptr, question, {}, true, {{goOn, DesktopAlert::Style::kDestructive}, {cancel, DesktopAlert::Style::kCancel}},
       [confirmed = std::move(confirmed)](int index) {
         if (index == 0) confirmed();
       });
}

void DesktopScreen::show(const void* origin, const QString& title, const QString& message, bool isSheet,
                         std::vector<DesktopAlert::Button> buttons, std::function<void(int)> answer) {
  std::unique_ptr<DesktopAlert, LaterDeleted> face(new DesktopAlert(title, message, isSheet, std::move(buttons)));
  alerts_.push_back({origin, std::move(face), std::move(answer)});
  if (alerts_.size() == 1) Q_EMIT alertChanged();
}

void DesktopScreen::presentAlert(platform::UIViewController& /*presenter*/,
                                 const std::shared_ptr<platform::UIAlertController>& alert, bool /*animated*/,
                                 std::function<void()> completion) {
  std::vector<DesktopAlert::Button> buttons;
  for (const auto& action : alert->actions()) {
    buttons.push_back({QString::fromStdString(action.title), styleOf(action.style)});
  }
  show(alert.get(), shown(alert->title()), shown(alert->message()),
       alert->preferredStyle() == platform::UIAlertControllerStyle::kActionSheet, std::move(buttons),
       [alert](int index) { alert->choose(static_cast<std::size_t>(index)); });
  end(std::move(completion));
}

void DesktopScreen::dismissAlert(platform::UIAlertController& alert, bool /*animated*/,
                                 std::function<void()> completion) {
  const auto found =
      std::find_if(alerts_.begin(), alerts_.end(), [&](const Shown& candidate) { return candidate.origin == &alert; });
  if (found != alerts_.end()) {
    const bool wasShown = found == alerts_.begin();
    alerts_.erase(found);
    if (wasShown) Q_EMIT alertChanged();
  }
  end(std::move(completion));
}

void DesktopScreen::presentPreview(platform::UIViewController& /*presenter*/,
                                   const std::shared_ptr<platform::QLPreviewController>& preview, bool /*animated*/,
                                   std::function<void()> completion) {
  // Asked first: what the library shows is forgotten when an earlier preview goes.
  const auto item = preview->numberOfPreviewItems() > 0 ? preview->previewItemAtIndex(0) : std::nullopt;
  closePreview();
  if (item) {
    preview_ = preview;
    Q_EMIT previewPresented(QString::fromStdString(item->path));
  }
  end(std::move(completion));
}

void DesktopScreen::showActionSheet(const std::shared_ptr<platform::UIActionSheet>& sheet,
                                    platform::UIView& /*inView*/) {
  std::vector<DesktopAlert::Button> buttons;
  for (const std::string& title : sheet->buttonTitles()) {
    const auto index = static_cast<std::int64_t>(buttons.size());
    const auto style = index == sheet->cancelButtonIndex()        ? DesktopAlert::Style::kCancel
                       : index == sheet->destructiveButtonIndex() ? DesktopAlert::Style::kDestructive
                                                                  : DesktopAlert::Style::kDefault;
    buttons.push_back({QString::fromStdString(title), style});
  }
  show(sheet.get(), shown(sheet->title()), QString(), true, std::move(buttons),
       [sheet](int index) { sheet->clickButton(index); });
}

void DesktopScreen::showAlertView(const std::shared_ptr<platform::UIAlertView>& alert) {
  // Nobody is told of its button, but it has to live as long as it is shown.
  show(alert.get(), QString::fromStdString(alert->title()), QString::fromStdString(alert->message()), false,
       {{QString::fromStdString(alert->cancelButtonTitle()), DesktopAlert::Style::kCancel}}, [alert](int) {});
}

}  // namespace chatsum::desktop
