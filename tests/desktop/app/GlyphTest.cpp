#include "hosts/desktop/app/Glyph.h"

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <set>
#include <string>

#include "hosts/desktop/app/GlyphPaths.h"

namespace chatsum::desktop {
namespace {

/// The names that the window's files give to `glyph`.
std::set<std::string> namesInTheWindow() {
  std::set<std::string> names;
  static const QRegularExpression kGiven(QStringLiteral("\\bglyph: ([^,}\\n]*)"));
  static const QRegularExpression kWord(QStringLiteral("(=== )?\"([a-z-]+)\""));
  QDirIterator files(QStringLiteral(":/chatsum/qml"));
  while (files.hasNext()) {
    QFile file(files.next());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    auto given = kGiven.globalMatch(QString::fromUtf8(file.readAll()));
    while (given.hasNext()) {
      auto words = kWord.globalMatch(given.next().captured(1));
      while (words.hasNext()) {
        const auto word = words.next();
        // What something is compared with is no name.
        if (word.captured(1).isEmpty()) names.insert(word.captured(2).toStdString());
      }
    }
  }
  return names;
}

TEST(GlyphPaths, EveryGlyphThatIsAskedForIsThere) {
  const auto names = namesInTheWindow();
  EXPECT_GE(names.size(), 15U);
  for (const std::string& name : names) EXPECT_FALSE(glyphPath(name).isEmpty()) << name;
}

TEST(GlyphPaths, GlyphsStayOnTheirSquare) {
  for (const char* name : {"search", "settings", "phone", "folder", "attachment", "people", "trash", "lock"}) {
    const QRectF box = glyphPath(name).boundingRect();
    EXPECT_TRUE(QRectF(1, 1, kGlyphSide - 2, kGlyphSide - 2).contains(box)) << name;
    EXPECT_GT(box.width() + box.height(), 20) << name;
  }
}

TEST(GlyphPaths, AnUnknownNameIsEmpty) { EXPECT_TRUE(glyphPath("unicorn").isEmpty()); }

TEST(Glyph, DrawsItsLinesInItsColour) {
  Glyph glyph;
  glyph.setSize(QSizeF(48, 48));
  glyph.setName(QStringLiteral("close"));
  glyph.setColor(Qt::red);
  QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::white);
  QPainter painter(&image);
  glyph.paint(&painter);
  painter.end();
  EXPECT_EQ(image.pixelColor(24, 24), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(2, 24), QColor(Qt::white));
}

}  // namespace
}  // namespace chatsum::desktop
