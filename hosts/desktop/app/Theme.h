// The colours and sizes of the window, after the system's palette and font; light or dark can also be chosen. Main
// thread.
#pragma once

#include <QColor>
#include <QObject>

#include "hosts/desktop/app/ThemeColors.h"

namespace chatsum::desktop {

class Theme : public QObject {
  Q_OBJECT
  Q_PROPERTY(Scheme scheme READ scheme WRITE setScheme NOTIFY schemeChanged)
  Q_PROPERTY(bool dark READ isDark NOTIFY changed)

  Q_PROPERTY(QColor window READ window NOTIFY changed)          ///< behind everything
  Q_PROPERTY(QColor pane READ pane NOTIFY changed)              ///< behind what stands at the sides
  Q_PROPERTY(QColor raised READ raised NOTIFY changed)          ///< fields and cards
  Q_PROPERTY(QColor line READ line NOTIFY changed)              ///< between things
  Q_PROPERTY(QColor hover READ hover NOTIFY changed)            ///< behind what the mouse is on
  Q_PROPERTY(QColor text READ text NOTIFY changed)              ///< reads on all of these
  Q_PROPERTY(QColor softText READ softText NOTIFY changed)      ///< what is less important; reads as well
  Q_PROPERTY(QColor accent READ accent NOTIFY changed)          ///< words and lines of what can be done
  Q_PROPERTY(QColor accentSoft READ accentSoft NOTIFY changed)  ///< behind what is chosen
  Q_PROPERTY(QColor bubbleMine READ bubbleMine NOTIFY changed)  ///< also behind the main button
  Q_PROPERTY(QColor textOnAccent READ textOnAccent NOTIFY changed)
  Q_PROPERTY(QColor bubbleMineText READ bubbleMineText NOTIFY changed)
  Q_PROPERTY(QColor bubbleTheirs READ bubbleTheirs NOTIFY changed)
  Q_PROPERTY(QColor bubbleTheirsText READ bubbleTheirsText NOTIFY changed)
  Q_PROPERTY(QColor danger READ danger NOTIFY changed)
  Q_PROPERTY(QColor focus READ focus NOTIFY changed)  ///< around what has the keyboard
  Q_PROPERTY(QColor hit READ hit NOTIFY changed)      ///< behind what was searched for

  // Pixels, independent of the screen's density.
  Q_PROPERTY(int fontSize READ fontSize NOTIFY changed)
  Q_PROPERTY(int smallSize READ smallSize NOTIFY changed)
  Q_PROPERTY(int largeSize READ largeSize NOTIFY changed)
  Q_PROPERTY(int titleSize READ titleSize NOTIFY changed)
  Q_PROPERTY(int space READ space CONSTANT)            ///< between things that belong together
  Q_PROPERTY(int wide READ wide CONSTANT)              ///< between groups, and around them
  Q_PROPERTY(int radius READ radius CONSTANT)          ///< of corners
  Q_PROPERTY(int control READ control NOTIFY changed)  ///< the height of a button or field
  Q_PROPERTY(int moment READ moment NOTIFY changed)    ///< milliseconds of a movement; 0: nothing moves

 public:
  enum Scheme { System, Light, Dark };
  Q_ENUM(Scheme)

  explicit Theme(QObject* parent = nullptr);

  [[nodiscard]] Scheme scheme() const { return scheme_; }
  void setScheme(Scheme scheme);
  [[nodiscard]] bool isDark() const { return colors_.isDark; }

  [[nodiscard]] QColor window() const { return colors_.window; }
  [[nodiscard]] QColor pane() const { return colors_.pane; }
  [[nodiscard]] QColor raised() const { return colors_.raised; }
  [[nodiscard]] QColor line() const { return colors_.line; }
  [[nodiscard]] QColor hover() const { return colors_.hover; }
  [[nodiscard]] QColor text() const { return colors_.text; }
  [[nodiscard]] QColor softText() const { return colors_.softText; }
  [[nodiscard]] QColor accent() const { return colors_.accent; }
  [[nodiscard]] QColor accentSoft() const { return colors_.accentSoft; }
  [[nodiscard]] QColor textOnAccent() const { return colors_.textOnAccent; }
  [[nodiscard]] QColor bubbleMine() const { return colors_.bubbleMine; }
  [[nodiscard]] QColor bubbleMineText() const { return colors_.bubbleMineText; }
  [[nodiscard]] QColor bubbleTheirs() const { return colors_.bubbleTheirs; }
  [[nodiscard]] QColor bubbleTheirsText() const { return colors_.bubbleTheirsText; }
  [[nodiscard]] QColor danger() const { return colors_.danger; }
  [[nodiscard]] QColor focus() const { return colors_.focus; }
  [[nodiscard]] QColor hit() const { return colors_.hit; }

  [[nodiscard]] int fontSize() const { return fontSize_; }
  [[nodiscard]] int smallSize() const;
  [[nodiscard]] int largeSize() const;
  [[nodiscard]] int titleSize() const;
  [[nodiscard]] int space() const { return 8; }
  [[nodiscard]] int wide() const { return 16; }
  [[nodiscard]] int radius() const { return 8; }
  [[nodiscard]] int control() const;
  [[nodiscard]] int moment() const { return moves_ ? 160 : 0; }
  /// Whether anything moves; tests and pictures want the end at once.
  void setMoves(bool moves);

 Q_SIGNALS:
  void changed();
  void schemeChanged();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void read();

  Scheme scheme_ = System;
  ThemeColors colors_;
  int fontSize_ = 14;
  bool moves_ = true;
};

}  // namespace chatsum::desktop
