#include "hosts/desktop/app/GlyphPaths.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string>

namespace chatsum::desktop {
namespace {

/// `lines` are steps: M x y goes there, L x y draws to there, C x y x y x y a curve, Z closes, O x y r a circle,
/// R x y width height radius a rectangle with round corners.
struct Drawing {
  std::string_view name, lines;
};

constexpr std::array<Drawing, 35> kDrawings = {{
    {"search", "O 10.5 10.5 6.5 M 15.5 15.5 L 20.5 20.5"},
    {"close", "M 6 6 L 18 18 M 18 6 L 6 18"},
    {"back", "M 14.5 5 L 7.5 12 L 14.5 19"},
    {"forward", "M 9.5 5 L 16.5 12 L 9.5 19"},
    {"up", "M 5 14.5 L 12 7.5 L 19 14.5"},
    {"down", "M 5 9.5 L 12 16.5 L 19 9.5"},
    {"settings", "M 4 7 L 13 7 M 19 7 L 20 7 O 16 7 2.6 M 4 17 L 5 17 M 11 17 L 20 17 O 8 17 2.6"},
    {"check", "M 5 12.5 L 10 17.5 L 19 7"},
    {"tick-list", "M 3.5 7 L 5.5 9 L 9 5 M 12.5 7 L 20.5 7 M 3.5 16 L 5.5 18 L 9 14 M 12.5 16.5 L 20.5 16.5"},
    {"calendar", "R 4 5.5 16 15 2.5 M 4 10.5 L 20 10.5 M 8.5 3 L 8.5 7.5 M 15.5 3 L 15.5 7.5"},
    {"all", "M 4 6.5 L 20 6.5 M 4 12 L 20 12 M 4 17.5 L 20 17.5"},
    {"device", "R 6.5 2.5 11 19 2.5 M 10.5 18.5 L 13.5 18.5"},
    {"backup", "R 3.5 13 17 7.5 2 M 4 14 L 7 5 L 17 5 L 20 14 M 16.5 16.8 L 17 16.8"},
    {"mac", "R 4.5 4.5 15 11 1.8 M 2 19.5 L 22 19.5"},
    {"file", "M 6 2.5 L 14 2.5 L 19 7.5 L 19 21.5 L 6 21.5 Z M 14 2.5 L 14 7.5 L 19 7.5"},
    {"folder",
     "M 3 6.5 C 3 5.4 3.4 5 4.5 5 L 9 5 L 11.5 7.5 L 19.5 7.5 C 20.6 7.5 21 7.9 21 9 L 21 17.5 "
     "C 21 18.6 20.6 19 19.5 19 L 4.5 19 C 3.4 19 3 18.6 3 17.5 Z"},
    {"report", "R 5 2.5 14 19 2 M 8.5 8 L 15.5 8 M 8.5 12 L 15.5 12 M 8.5 16 L 12.5 16"},
    {"lock", "R 5 10.5 14 10 2 M 8 10.5 L 8 7.5 C 8 5 9.6 3.5 12 3.5 C 14.4 3.5 16 5 16 7.5 L 16 10.5"},
    {"messages",
     "M 4 11 C 4 6.5 7.5 4 12 4 C 16.5 4 20 6.5 20 11 C 20 15.5 16.5 18 12 18 C 10.8 18 9.8 17.8 8.8 "
     "17.5 L 4.5 20 L 5.8 15.6 C 4.6 14.3 4 12.8 4 11 Z"},
    {"phone",
     "M 5 3.5 L 8.5 3.5 L 10.2 8 L 8 9.8 C 9.2 12.6 11.3 14.7 14.2 16 L 16 13.8 L 20.5 15.5 L 20.5 19 "
     "C 20.5 20 19.7 20.6 18.8 20.5 C 10.5 19.8 4.2 13.4 3.5 5.2 C 3.4 4.3 4 3.5 5 3.5 Z"},
    {"video", "R 2.5 6 13 12 2.5 M 15.5 10.8 L 21.5 7.5 L 21.5 16.5 L 15.5 13.2"},
    {"in", "M 18 6 L 7 17 M 7 9 L 7 17 L 15 17"},
    {"out", "M 6 18 L 17 7 M 9 7 L 17 7 L 17 15"},
    {"missed", "M 5 8 L 12 15 L 20 7 M 5 13.5 L 5 8 L 10.5 8"},
    {"info", "O 12 12 9 M 12 11 L 12 16.5 M 12 7.6 L 12 7.8"},
    {"warning", "M 12 3.5 L 21.5 20 L 2.5 20 Z M 12 10 L 12 14.5 M 12 17.2 L 12 17.3"},
    {"add", "M 12 5 L 12 19 M 5 12 L 19 12"},
    {"trash",
     "M 4 6.5 L 20 6.5 M 9 6.5 L 9.5 3.5 L 14.5 3.5 L 15 6.5 M 6 6.5 L 7 20.5 L 17 20.5 L 18 6.5 "
     "M 10 10.5 L 10.3 16.5 M 14 10.5 L 13.7 16.5"},
    {"export", "M 12 15 L 12 3.5 M 7.5 8 L 12 3.5 L 16.5 8 M 5 12.5 L 5 20.5 L 19 20.5 L 19 12.5"},
    {"picture", "R 3 4.5 18 15 2.5 O 8.5 9.5 1.7 M 3.5 17 L 9 12.5 L 12.5 15.5 L 16.5 11 L 20.5 15"},
    {"play", "M 8 5 L 19 12 L 8 19 Z"},
    {"sound",
     "M 4 9.5 L 8 9.5 L 12.5 5.5 L 12.5 18.5 L 8 14.5 L 4 14.5 Z M 16 9 C 17.5 10.8 17.5 13.2 16 15 "
     "M 18.5 6.5 C 21.5 9.8 21.5 14.2 18.5 17.5"},
    {"attachment",
     "M 19 11 L 12 18 C 10 20 7 20 5.3 18.2 C 3.5 16.5 3.5 13.7 5.5 11.8 L 12.8 4.6 C 14.1 3.3 16.1 3.3 "
     "17.4 4.6 C 18.7 5.9 18.7 7.9 17.4 9.2 L 10.4 16.1 C 9.8 16.7 8.8 16.7 8.2 16.1 C 7.6 15.5 7.6 14.5 "
     "8.2 13.9 L 14.5 7.6"},
    {"refresh",
     "M 19.5 12 C 19.5 16.2 16.2 19.5 12 19.5 C 7.8 19.5 4.5 16.2 4.5 12 C 4.5 7.8 7.8 4.5 12 4.5 C 14.6 4.5 "
     "16.8 5.7 18.2 7.6 M 18.8 3.5 L 18.6 7.9 L 14.2 7.7"},
    {"people",
     "O 9 8.5 3.5 M 2.5 19.5 C 2.5 15.8 5.3 13.8 9 13.8 C 12.7 13.8 15.5 15.8 15.5 19.5 M 15.5 5.2 C 18.6 5 "
     "19.8 9.3 17 11.2 M 17.8 14.2 C 20.2 15 21.5 16.9 21.5 19.5"},
}};

}  // namespace

QPainterPath glyphPath(std::string_view name) {
  QPainterPath path;
  const auto* drawing =
      std::find_if(kDrawings.begin(), kDrawings.end(), [name](const Drawing& known) { return known.name == name; });
  if (drawing == kDrawings.end()) return path;
  std::istringstream steps{std::string(drawing->lines)};
  char step = 0;
  const auto number = [&steps] {
    double value = 0;
    steps >> value;
    return value;
  };
  const auto point = [&number] {
    const double x = number();
    return QPointF(x, number());
  };
  while (steps >> step) {
    if (step == 'M') path.moveTo(point());
    if (step == 'L') path.lineTo(point());
    if (step == 'Z') path.closeSubpath();
    if (step == 'C') {
      const QPointF one = point(), two = point();
      path.cubicTo(one, two, point());
    }
    if (step == 'O') {
      const QPointF center = point();
      const double radius = number();
      path.addEllipse(center, radius, radius);
    }
    if (step == 'R') {
      const QPointF corner = point(), size = point();
      const double radius = number();
      path.addRoundedRect(QRectF(corner, QSizeF(size.x(), size.y())), radius, radius);
    }
  }
  return path;
}

}  // namespace chatsum::desktop
