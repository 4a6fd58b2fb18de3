#include "platform/system/pdf/PictureFont.h"

#include <hb.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

#include "platform/system/pdf/Deflate.h"
#include "platform/system/pdf/PdfImage.h"
#include "platform/system/pdf/PdfSyntax.h"
#include "platform/system/pdf/PictureGlyph.h"

namespace chatsum::platform::system {
namespace {

/// Every font has the space at its usual code.
constexpr std::uint16_t kSpaceCode = 32;
/// Some readers guess how large the text of such a font is from its glyph named "m", which they hold for 0.6 of the
/// font size wide. Without one they take the width of a picture for that of a letter, and emoji for text of 35 points
/// that belongs to no line. So there is one, which nobody shows, at the code that would be the last.
constexpr std::uint16_t kMeasureCode = kSpaceCode - 1;
constexpr int kMeasureWidth = 600'00;
constexpr std::size_t kMostGlyphs = 255;

/// Where the picture stands, in thousandths of the font size: the matrix of the unit square.
std::string placeOf(const FontFace& face, std::uint32_t glyph) {
  hb_glyph_extents_t extents{};
  hb_font_get_glyph_extents(face.font(), glyph, &extents);
  const auto append = [&face](std::string& to, int units) {
    pdf::appendHundredths(to, pdf::hundredths(units * 1000.0 / face.unitsPerEm()));
  };
  std::string matrix;
  append(matrix, extents.width);
  matrix += " 0 0 ";
  append(matrix, -extents.height);
  matrix += ' ';
  append(matrix, extents.x_bearing);
  matrix += ' ';
  append(matrix, extents.y_bearing + extents.height);
  return matrix + " cm";
}

std::string glyphName(std::uint16_t code) { return code == kMeasureCode ? "/m" : "/g" + std::to_string(code); }

}  // namespace

PictureFont::PictureFont(std::uint16_t number, int object, const FontFace& face)
    : PdfFont(number, object), face_(face) {
  const std::uint32_t space = face.asciiGlyph(' ');
  entries_.push_back(std::make_shared<Entry>(Entry{space, kSpaceCode}));
  codes_[space] = kSpaceCode;
  setSpace(kSpaceCode);
}

std::optional<std::uint16_t> PictureFont::use(std::uint32_t glyph, PdfFile& file, StreamQueue& queue) {
  if (const auto found = codes_.find(glyph); found != codes_.end()) return found->second;
  const std::size_t count = entries_.size();
  if (count == kMostGlyphs) return std::nullopt;
  // 33 upwards, then what is left below the space.
  const auto code = static_cast<std::uint16_t>((kSpaceCode + count) & 0xFF);
  codes_[glyph] = code;
  entries_.push_back(std::make_shared<Entry>(Entry{glyph, code}));
  if (hasPicture(face_, glyph)) queuePicture(entries_.back(), file, queue);
  return code;
}

void PictureFont::queuePicture(const std::shared_ptr<Entry>& entry, PdfFile& file, StreamQueue& queue) const {
  entry->procedure = file.newObject();
  entry->image = file.newObject();
  const int mask = file.newObject();
  constexpr std::size_t kAboutAPicture = 128 * 1024;
  queue.add(kAboutAPicture, [&face = face_, entry, mask, width = widthOf(entry->glyph)] {
    std::vector<PdfStream> made;
    const Bitmap bitmap = pictureOf(face, entry->glyph);
    entry->isDrawn = !bitmap.isEmpty();
    if (!entry->isDrawn) return made;
    made = imageStreams(bitmap, entry->image, mask);
    std::string procedure;
    pdf::appendHundredths(procedure, width);
    procedure += " 0 d0 " + placeOf(face, entry->glyph) + "/I" + std::to_string(entry->image) + " Do";
    made.push_back({entry->procedure, "", std::move(procedure)});
    return made;
  });
}

int PictureFont::writeEmpty(PdfFile& file, int width) {
  const int procedure = file.newObject();
  std::string operators;
  pdf::appendHundredths(operators, width);
  file.writeStream(procedure, "", operators + " 0 d0");
  return procedure;
}

int PictureFont::widthOf(std::uint32_t glyph) const {
  return static_cast<int>(std::lround(face_.advanceOf(glyph) * 100000.0 / face_.unitsPerEm()));
}

void PictureFont::appendCode(std::string& to, std::uint16_t code) const {
  const char c = static_cast<char>(code);
  pdf::appendLiteral(to, {&c, 1});
}

void PictureFont::write(PdfFile& file) const {
  const int map = file.newObject();
  file.writeCompressed(map, "", texts().characterMap(1));

  std::map<std::uint16_t, const Entry*> byCode;
  for (const auto& entry : entries_) byCode[entry->code] = entry.get();
  const int first = std::min<int>(byCode.begin()->first, kMeasureCode), last = byCode.rbegin()->first;
  std::string procedures, images, differences = std::to_string(first), widths;
  for (int code = first; code <= last; ++code) {
    // Codes that stand for no glyph are never shown.
    const auto found = byCode.find(static_cast<std::uint16_t>(code));
    const Entry* entry = found == byCode.end() ? nullptr : found->second;
    const std::string name = glyphName(static_cast<std::uint16_t>(code));
    const int width = entry ? widthOf(entry->glyph) : code == kMeasureCode ? kMeasureWidth : 0;
    const bool isDrawn = entry && entry->isDrawn;
    differences += name;
    pdf::appendHundredths(widths, width);
    widths += ' ';
    if (isDrawn) images += "/I" + std::to_string(entry->image) + " " + pdf::reference(entry->image);
    procedures += name + " " + pdf::reference(isDrawn ? entry->procedure : writeEmpty(file, width));
  }
  widths.pop_back();
  file.writeObject(object(), "<</Type/Font/Subtype/Type3/FontBBox[0 0 0 0]/FontMatrix[.001 0 0 .001 0 0]/FirstChar " +
                                 std::to_string(first) + "/LastChar " + std::to_string(last) +
                                 "/Encoding<</Type/Encoding/Differences[" + differences + "]>>/Widths[" + widths +
                                 "]/CharProcs<<" + procedures + ">>/Resources<</XObject<<" + images +
                                 ">>>>/ToUnicode " + pdf::reference(map) + ">>");
}

}  // namespace chatsum::platform::system
