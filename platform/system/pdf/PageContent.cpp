#include "platform/system/pdf/PageContent.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/system/pdf/PdfSyntax.h"

namespace chatsum::platform::system {
namespace {

/// About what a page full of text takes.
constexpr std::size_t kUsualSize = 8 * 1024;

std::string colorOperator(const Color& color, const char* gray, const char* rgb) {
  std::string to;
  pdf::appendShare(to, color.red);
  if (color.red != color.green || color.green != color.blue) {
    for (const double share : {color.green, color.blue}) {
      to += ' ';
      pdf::appendShare(to, share);
    }
    gray = rgb;
  }
  return to + gray;
}

}  // namespace

PageContent::PageContent(double height, const PdfFonts& fonts, PieceTexts& texts)
    : height_(height), fonts_(fonts), texts_(texts), content_(kUsualSize) {
  fill_ = stroke_ = kBlackColor;  // as every page begins
}

// Text.

void PageContent::showText(const TextLayout& layout, Point at, double width, double shift, const Color& color) {
  if (layout.pieces.empty()) return;
  beginText();
  setFill(color);
  double top = at.y;
  bool isNext = false;
  for (const TextLine& line : layout.lines) {
    if (line.begin < line.end) {
      // A width without end has no other side to shift to.
      const double left = shift == 0 ? at.x : at.x + (width - static_cast<double>(line.width)) * shift;
      showLine(layout, line, left, top + static_cast<double>(line.baseline), isNext);
      isNext = true;
    }
    top += static_cast<double>(line.height);
  }
}

void PageContent::showLine(const TextLayout& layout, const TextLine& line, double left, double baseline, bool isNext) {
  const std::span<const PlacedPiece> pieces = layout.pieces.subspan(line.begin, line.end - line.begin);
  beginLine(pdf::hundredths(left + static_cast<double>(pieces.front().gap)), pdf::hundredths(height_ - baseline),
            isNext);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const PlacedPiece& placed = pieces[i];
    if (placed.gap != 0 && i > 0) move(static_cast<double>(placed.gap));
    const PieceText& text = texts_.of(*placed.piece, layout.fontSize);
    if (text.isShort && isInString_ && font_ == text.firstFont) {
      content_.append(text.head, text.bytes.size());  // what nearly all words come to
    } else {
      showPiece(text, layout.fontSize);
    }
    // Nobody sees the spaces at the end of a line.
    if (placed.spaces > 0 && i + 1 < pieces.size()) showSpaces(placed.spaces);
  }
  closeString();
}

void PageContent::beginLine(std::int64_t x, std::int64_t y, bool isNext) {
  const std::int64_t down = lineY_ - y;
  if (isNext && x == lineX_) {
    // The first text of several lines says how far down its lines are for the whole page. Lengths that were rounded
    // differ by a hundredth.
    if (!leading_ && down > 0) {
      leading_ = down;
      append(down);
      content_.append("TL ");
    }
    if (leading_ && std::abs(down - *leading_) <= 1) {
      lineY_ -= *leading_;
      content_.append("T*");
      return;
    }
  }
  append(x - lineX_);
  append(y - lineY_);
  content_.append("Td");
  lineX_ = x;
  lineY_ = y;
}

void PageContent::showPiece(const PieceText& text, double size) {
  setFont(text.firstFont, size);
  if (text.beginsInString) {
    openString(text.isAdjusted);
  } else {
    closeString();
  }
  content_.append(text.bytes);
  font_ = text.lastFont;
  if (text.endsInString != isInString_) {
    isInString_ = text.endsInString;
    isArray_ = true;
  }
}

void PageContent::showSpaces(std::uint32_t count) {
  const FontSpace& space = fonts_[static_cast<std::uint16_t>(font_)].space();
  openString(space.isAdjusted);
  for (; count > 0; --count) {
    if (space.bytes.size() == 1) {
      content_.append(space.bytes[0]);
    } else {
      content_.append(space.bytes);
    }
  }
}

void PageContent::openString(bool asArray) {
  if (!isInString_) {
    stringBegin_ = content_.size();
    content_.append(" (");  // the space makes room for "["
    isInString_ = true;
    isArray_ = false;
  }
  if (asArray && !isArray_) {
    content_.put(stringBegin_, '[');
    isArray_ = true;
  }
}

void PageContent::closeString() {
  if (!isInString_) return;
  content_.append(isArray_ ? ")]TJ\n" : ")Tj\n");
  isInString_ = false;
}

void PageContent::move(double points) {
  const double thousandths = fontSize_ > 0 ? points * 1000 / fontSize_ : 0;
  openString(true);
  content_.append(')');
  appendInteger(-pdf::hundredths(thousandths) / 100);
  content_.append('(');
}

void PageContent::setFont(std::uint16_t number, double size) {
  if (font_ == number && fontSize_ == size) return;
  closeString();
  content_.append("/F");
  appendInteger(number);
  content_.append(' ');
  append(pdf::hundredths(size));
  content_.append("Tf");
  font_ = number;
  fontSize_ = size;
}

void PageContent::beginText() {
  if (isInText_) return;
  content_.append("BT\n");
  isInText_ = true;
  lineX_ = lineY_ = 0;
}

void PageContent::endText() {
  if (isInText_) content_.append("ET\n");
  isInText_ = false;
}

// Lines and pictures.

void PageContent::strokeLine(Point from, Point to, double lineWidth, const Color& color) {
  endText();
  if (stroke_ != color) {
    content_.append(colorOperator(color, " G\n", " RG\n"));
    stroke_ = color;
  }
  if (const std::int64_t width = std::max<std::int64_t>(pdf::hundredths(lineWidth), 0); width != lineWidth_) {
    append(width);
    content_.append("w\n");
    lineWidth_ = width;
  }
  append(pdf::hundredths(from.x));
  append(pdf::hundredths(height_ - from.y));
  content_.append("m ");
  append(pdf::hundredths(to.x));
  append(pdf::hundredths(height_ - to.y));
  content_.append("l S\n");
}

void PageContent::drawImage(int object, const Rect& rect) {
  endText();
  images_.push_back(object);
  content_.append("q ");
  append(pdf::hundredths(rect.size.width));
  content_.append("0 0 ");
  append(pdf::hundredths(rect.size.height));
  append(pdf::hundredths(rect.origin.x));
  append(pdf::hundredths(height_ - rect.origin.y - rect.size.height));
  content_.append("cm/I");
  appendInteger(object);
  content_.append(" Do Q\n");
}

// All of it.

void PageContent::setFill(const Color& color) {
  if (fill_ == color) return;
  content_.append(colorOperator(color, " g\n", " rg\n"));
  fill_ = color;
}

void PageContent::append(std::int64_t hundredths) {
  std::string number;  // short enough to need no memory of its own
  pdf::appendHundredths(number, hundredths);
  number += ' ';
  content_.append(number);
}

void PageContent::appendInteger(std::int64_t value) {
  std::string number;
  pdf::appendInteger(number, value);
  content_.append(number);
}

std::string PageContent::take() {
  endText();
  return content_.string();
}

std::vector<int> PageContent::images() const {
  std::vector<int> images = images_;
  std::sort(images.begin(), images.end());
  images.erase(std::unique(images.begin(), images.end()), images.end());
  return images;
}

}  // namespace chatsum::platform::system
