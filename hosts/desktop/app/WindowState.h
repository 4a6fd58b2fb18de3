// What the window remembers from one run to the next: its place and size, the width of the left pane, the colours.
// Main thread.
#pragma once

#include <QObject>
#include <QRect>

class QSettings;
class QWindow;

namespace chatsum::desktop {

class WindowState : public QObject {
  Q_OBJECT
  Q_PROPERTY(int paneWidth READ paneWidth WRITE setPaneWidth NOTIFY paneWidthChanged)  ///< pixels; kept within bounds

 public:
  static constexpr int kNarrowestPane = 240, kWidestPane = 520;

  /// The settings must outlive it.
  explicit WindowState(QSettings& settings, QObject* parent = nullptr);

  [[nodiscard]] int paneWidth() const { return paneWidth_; }
  void setPaneWidth(int width);

  /// Puts the window where it stood when it was saved, as far as there is a screen, and keeps following it. A window
  /// that was never saved stays as it is.
  void restore(QWindow& window);
  /// The part of `wanted` that may be used on a screen: not larger, not outside.
  [[nodiscard]] static QRect fitted(const QRect& wanted, const QRect& screen);

 Q_SIGNALS:
  void paneWidthChanged();

 private:
  void save(const QWindow& window);

  QSettings& settings_;
  int paneWidth_;
};

}  // namespace chatsum::desktop
