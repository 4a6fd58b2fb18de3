// The operators that draw one page (ISO 32000-1, 7.8.2). Points counting from the page's top left corner come in, what
// the page already has set (font, colour, line) is not set again. One thread at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Geometry.h"
#include "platform/interfaces/Graphics.h"
#include "platform/system/pdf/ContentBytes.h"
#include "platform/system/pdf/PieceTexts.h"
#include "platform/system/text/TextLayout.h"

namespace chatsum::platform::system {

class PageContent {
 public:
  /// `height` is that of the page. Fonts and texts must outlive the content.
  PageContent(double height, const PdfFonts& fonts, PieceTexts& texts);

  void showText(const TextLayout& layout, Point at, double width, double shift, const Color& color);
  void strokeLine(Point from, Point to, double lineWidth, const Color& color);
  /// An image object, named "/I" and its number.
  void drawImage(int object, const Rect& rect);

  /// The operators. Nothing may be drawn after it.
  [[nodiscard]] std::string take();
  /// The image objects that were drawn, ascending, each once.
  [[nodiscard]] std::vector<int> images() const;

 private:
  void showLine(const TextLayout& layout, const TextLine& line, double left, double baseline, bool isNext);
  void showPiece(const PieceText& text, double size);
  void showSpaces(std::uint32_t count);
  /// Begins a line of text. `isNext` says it belongs to the text of the line before.
  void beginLine(std::int64_t x, std::int64_t y, bool isNext);
  /// Goes on in the string that is open, if any. `asArray` makes it one of an array.
  void openString(bool asArray);
  void closeString();
  void move(double points);
  void setFont(std::uint16_t number, double size);
  void setFill(const Color& color);
  void beginText();
  void endText();
  /// A number of hundredths, and a space.
  void append(std::int64_t hundredths);
  void appendInteger(std::int64_t value);

  const double height_;
  const PdfFonts& fonts_;
  PieceTexts& texts_;
  ContentBytes content_;
  std::vector<int> images_;

  bool isInText_ = false;
  std::int64_t lineX_ = 0, lineY_ = 0;         ///< where the line of text began, hundredths
  std::optional<std::int64_t> leading_;        ///< what "T*" goes down
  std::size_t stringBegin_ = 0;                ///< of the string that is open
  bool isInString_ = false, isArray_ = false;  ///< a string is open; it is one of an array
  int font_ = -1;                              ///< -1: none yet
  double fontSize_ = 0;
  std::optional<Color> fill_, stroke_;
  std::int64_t lineWidth_ = 100;

};

}  // namespace chatsum::platform::system
