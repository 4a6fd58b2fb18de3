// A small drawing of lines, such as on a button, in any size and colour. Main thread, drawn by Qt's scene.
#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>

namespace chatsum::desktop {

class Glyph : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)  ///< see GlyphPaths.h; an unknown one is empty
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

 public:
  explicit Glyph(QQuickItem* parent = nullptr);

  [[nodiscard]] QString name() const { return name_; }
  void setName(const QString& name);
  [[nodiscard]] QColor color() const { return color_; }
  void setColor(const QColor& color);
  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void nameChanged();
  void colorChanged();

 private:
  QString name_;
  QColor color_ = Qt::black;
};

}  // namespace chatsum::desktop
