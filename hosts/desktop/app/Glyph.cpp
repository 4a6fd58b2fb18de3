#include "hosts/desktop/app/Glyph.h"

#include <QPainter>
#include <QPen>
#include <algorithm>

#include "hosts/desktop/app/GlyphPaths.h"

namespace chatsum::desktop {

Glyph::Glyph(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
  setImplicitSize(20, 20);
}

void Glyph::setName(const QString& name) {
  if (name == name_) return;
  name_ = name;
  update();
  Q_EMIT nameChanged();
}

void Glyph::setColor(const QColor& color) {
  if (color == color_) return;
  color_ = color;
  update();
  Q_EMIT colorChanged();
}

void Glyph::paint(QPainter* painter) {
  const double side = std::min(width(), height());
  painter->setRenderHint(QPainter::Antialiasing);
  painter->translate((width() - side) / 2, (height() - side) / 2);
  painter->scale(side / kGlyphSide, side / kGlyphSide);
  painter->setPen(QPen(color_, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter->drawPath(glyphPath(name_.toStdString()));
}

}  // namespace chatsum::desktop
