#include "hosts/desktop/app/Theme.h"

#include <QEvent>
#include <QFontInfo>
#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <cmath>

namespace chatsum::desktop {
namespace {

// Long lists are read from further away than a form is: what some systems set as their font is too small for them.
constexpr int kSmallestFont = 14;

int scaled(int size, double factor) { return static_cast<int>(std::lround(size * factor)); }

}  // namespace

Theme::Theme(QObject* parent) : QObject(parent) {
  read();
  QGuiApplication::instance()->installEventFilter(this);
}

void Theme::setScheme(Scheme scheme) {
  if (scheme == scheme_) return;
  scheme_ = scheme;
  read();
  Q_EMIT schemeChanged();
}

void Theme::setMoves(bool moves) {
  moves_ = moves;
  Q_EMIT changed();
}

int Theme::smallSize() const { return scaled(fontSize_, 0.86); }
int Theme::largeSize() const { return scaled(fontSize_, 1.15); }
int Theme::titleSize() const { return scaled(fontSize_, 1.6); }
int Theme::control() const { return scaled(fontSize_, 2.5); }

bool Theme::eventFilter(QObject* watched, QEvent* event) {
  if (watched == QGuiApplication::instance() &&
      (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ApplicationFontChange)) {
    read();
  }
  return QObject::eventFilter(watched, event);
}

void Theme::read() {
  const QPalette palette = QGuiApplication::palette();
  const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
  switch (scheme_) {
    case System:
      colors_ = ThemeColors::from(palette.color(QPalette::Active, QPalette::Base),
                                  palette.color(QPalette::Active, QPalette::Text), accent);
      break;
    case Light:
      colors_ = ThemeColors::from(QColor(0xff, 0xff, 0xff), QColor(0x1c, 0x1e, 0x21), accent);
      break;
    case Dark:
      colors_ = ThemeColors::from(QColor(0x1b, 0x1c, 0x1f), QColor(0xec, 0xee, 0xf1), accent);
      break;
  }
  fontSize_ = std::max(QFontInfo(QGuiApplication::font()).pixelSize(), kSmallestFont);
  Q_EMIT changed();
}

}  // namespace chatsum::desktop
