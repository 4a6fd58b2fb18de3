// Busy indicators, and what the window shows of them.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/interfaces/Companion.h"

namespace chatsum::desktop {

/// The indicators that are shown, the last one in front. Main thread only.
class BusyState final : public QObject {
  Q_OBJECT

 public:
  [[nodiscard]] bool isBusy() const { return !shown_.empty(); }
  /// Of the one in front; empty when there is none.
  [[nodiscard]] QString title() const { return shown_.empty() ? QString() : shown_.back().title; }
  [[nodiscard]] QString text() const { return shown_.empty() ? QString() : shown_.back().text; }

  void add(const void* indicator, const QString& title, const QString& text);
  /// Nothing happens for one that is not shown.
  void remove(const void* indicator);
  void clear();

 Q_SIGNALS:
  void changed();
  /// An indicator went, and `changed` was told.
  void ended(const QString& title);

 private:
  struct Shown {
    const void* indicator;
    QString title, text;
  };
  std::vector<Shown> shown_;
};

/// One indicator. Made on any thread, used on the main thread.
class DesktopIndicator final : public platform::OBActivityAlertController {
 public:
  /// The state must outlive the indicator's use.
  DesktopIndicator(BusyState& state, const std::string& title, const std::string& message);

  void show(platform::UIViewController* presenter) override;
  /// Goes at once; the completion runs behind the blocks that already wait on the main queue.
  void dismissViewController(bool animated, std::function<void()> completion) override;

 private:
  BusyState& state_;
  QString title_;
  QString text_;
};

}  // namespace chatsum::desktop
