#include "platform/system/pdf/PdfFonts.h"

#include "platform/system/pdf/PdfSyntax.h"
#include "platform/system/pdf/PictureGlyph.h"

namespace chatsum::platform::system {
namespace {

bool hasOutlines(const FontFace& face) {
  // A face of pictures alone has no other way to show anything.
  return face.hasTrueTypeOutlines() || !face.hasColorPictures();
}

/// What the codes of a font of ASCII characters stand for.
std::string asciiMap() {
  ToUnicode texts;
  for (char c = 0x20; c < 0x7F; ++c) texts.means(static_cast<std::uint16_t>(c), {&c, 1});
  return texts.characterMap(1);
}

}  // namespace

template <typename Font, typename Source>
Font* PdfFonts::make(Source& source) {
  auto made = std::make_unique<Font>(static_cast<std::uint16_t>(fonts_.size()), file_.newObject(), source);
  Font* font = made.get();
  fonts_.push_back(std::move(made));
  return font;
}

PdfFonts::OfFace& PdfFonts::of(const FontFace& face) {
  OfFace*& found = known_[&face];
  if (!found) {
    faces_.push_back(std::make_unique<OfFace>(OfFace{std::make_unique<FontProgram>(face), nullptr, nullptr, {}}));
    found = faces_.back().get();
  }
  return *found;
}

SimpleFont* PdfFonts::simple(const FontFace& face) {
  if (!face.hasTrueTypeOutlines() || face.hasColorPictures()) return nullptr;
  OfFace& ours = of(face);
  if (!ours.simple) ours.simple = make<SimpleFont>(*ours.program);
  return ours.simple;
}

CompositeFont& PdfFonts::composite(const FontFace& face) {
  OfFace& ours = of(face);
  if (!ours.composite) ours.composite = make<CompositeFont>(*ours.program);
  return *ours.composite;
}

GlyphCode PdfFonts::glyph(const FontFace& face, std::uint32_t glyph) {
  if (face.hasColorPictures() && (!hasOutlines(face) || hasPicture(face, glyph))) return picture(face, glyph);
  CompositeFont& font = composite(face);
  return {&font, font.use(glyph), of(face).program->widthOf(glyph)};
}

GlyphCode PdfFonts::picture(const FontFace& face, std::uint32_t glyph) {
  OfFace& ours = of(face);
  const int width = ours.program->widthOf(glyph);
  for (PictureFont* font : ours.pictures) {
    if (const auto code = font->use(glyph, file_, queue_)) return {font, *code, width};
  }
  ours.pictures.push_back(make<PictureFont>(face));
  return {ours.pictures.back(), ours.pictures.back()->use(glyph, file_, queue_).value_or(0), width};
}

const PdfFont& PdfFonts::forSpaces(const FontFace& face) {
  if (const SimpleFont* font = simple(face)) return *font;
  return *glyph(face, face.asciiGlyph(' ')).font;
}

std::string PdfFonts::write() {
  queue_.finish();
  int ascii = 0;
  for (const auto& face : faces_) {
    if (face->simple || face->composite) {
      const int descriptor = face->program->write(file_, queue_);
      if (face->simple && ascii == 0) {
        ascii = file_.newObject();
        file_.writeCompressed(ascii, "", asciiMap());
      }
      if (face->simple) face->simple->write(file_, descriptor, ascii);
      if (face->composite) face->composite->write(file_, descriptor);
    }
    for (const PictureFont* font : face->pictures) font->write(file_);
  }
  queue_.finish();
  std::string named;
  for (const auto& font : fonts_) {
    named += "/F" + std::to_string(font->number()) + " " + pdf::reference(font->object());
  }
  return named;
}

}  // namespace chatsum::platform::system
