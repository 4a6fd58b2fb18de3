// One question or message as the window shows it: words and buttons, nothing of how it is answered. Main thread only.
#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>
#include <vector>

namespace chatsum::desktop {

class DesktopAlert final : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(QString message READ message CONSTANT)
  Q_PROPERTY(bool isSheet READ isSheet CONSTANT)
  Q_PROPERTY(QVariantList buttons READ buttons CONSTANT)
  Q_PROPERTY(int cancelIndex READ cancelIndex CONSTANT)

 public:
  enum class Style { kDefault, kCancel, kDestructive };
  struct Button {
    QString title;
    Style style = Style::kDefault;
  };

  /// A sheet offers a choice, everything else tells or asks something.
  DesktopAlert(QString title, QString message, bool isSheet, std::vector<Button> buttons);

  [[nodiscard]] const QString& title() const { return title_; }
  [[nodiscard]] const QString& message() const { return message_; }
  [[nodiscard]] bool isSheet() const { return isSheet_; }
  /// Of {title, style}, the style being "default", "cancel" or "destructive".
  [[nodiscard]] QVariantList buttons() const;
  [[nodiscard]] int buttonCount() const { return static_cast<int>(buttons_.size()); }
  /// The button that changes nothing, which Escape stands for; -1 when there is none.
  [[nodiscard]] int cancelIndex() const;

 private:
  QString title_;
  QString message_;
  bool isSheet_;
  std::vector<Button> buttons_;
};

}  // namespace chatsum::desktop
