// Shows what a screen of the library asks for: alerts and choosers of both generations one after the other, and one
// preview. The window shows `alert()` and gives the answer back. Main thread only; must outlive the platform it serves.
#pragma once

#include <QObject>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "hosts/desktop/report/DesktopAlert.h"
#include "platform/interfaces/Screen.h"

namespace chatsum::desktop {

class DesktopScreen final : public QObject, public platform::Screen {
  Q_OBJECT

 public:
  DesktopScreen();
  ~DesktopScreen() override;

  /// Asks a question of the host's own. `confirmed` runs when the user goes on, `cancel` changes nothing.
  void ask(const QString& question, const QString& goOn, const QString& cancel, std::function<void()> confirmed);
  /// What is shown now; nullptr for nothing.
  [[nodiscard]] DesktopAlert* alert() const;
  /// The user pressed a button of what is shown: it goes, then its answer has its effect. Nothing for no such button.
  void choose(int index);
  /// The user closed the preview.
  void closePreview();
  /// Takes away all that is shown or waits, unanswered.
  void clear();

  void presentAlert(platform::UIViewController& presenter, const std::shared_ptr<platform::UIAlertController>& alert,
                    bool animated, std::function<void()> completion) override;
  void dismissAlert(platform::UIAlertController& alert, bool animated, std::function<void()> completion) override;
  /// A preview that is shown already gives way.
  void presentPreview(platform::UIViewController& presenter,
                      const std::shared_ptr<platform::QLPreviewController>& preview, bool animated,
                      std::function<void()> completion) override;
  void showActionSheet(const std::shared_ptr<platform::UIActionSheet>& sheet, platform::UIView& inView) override;
  void showAlertView(const std::shared_ptr<platform::UIAlertView>& alert) override;

 Q_SIGNALS:
  void alertChanged();
  /// Before an answer has its effect, and after.
  void answering(bool isCancelled);
  void answered();
  /// A file is to be shown.
  void previewPresented(const QString& path);

 private:
  /// The face belongs to QML for a moment longer than to the queue.
  struct LaterDeleted {
    void operator()(QObject* object) const { object->deleteLater(); }
  };
  struct Shown {
    const void* origin;  // what the library handed over, null for a question of our own
    std::unique_ptr<DesktopAlert, LaterDeleted> face;
    std::function<void(int)> answer;
  };
  void show(const void* origin, const QString& title, const QString& message, bool isSheet,
            std::vector<DesktopAlert::Button> buttons, std::function<void(int)> answer);

  std::deque<Shown> alerts_;
  std::shared_ptr<platform::QLPreviewController> preview_;
};

}  // namespace chatsum::desktop
