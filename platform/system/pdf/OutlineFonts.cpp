#include "platform/system/pdf/OutlineFonts.h"

#include <algorithm>

#include "platform/system/pdf/PdfSyntax.h"

namespace chatsum::platform::system {
namespace {

constexpr char kFirst = 0x20, kLast = 0x7E;

}  // namespace

SimpleFont::SimpleFont(std::uint16_t number, int object, FontProgram& program)
    : PdfFont(number, object), program_(program) {
  for (char c = kFirst; c <= kLast; ++c) {
    widths_[static_cast<std::size_t>(c)] = program.widthOf(program.face().asciiGlyph(c));
  }
  if (program.face().asciiGlyph(' ') == 0) {
    setSpaceOfWidth(widthOf(' '));
  } else {
    use(' ');
    setSpace(' ');
  }
}

void SimpleFont::use(char character) {
  used_.set(static_cast<unsigned char>(character) & 0x7F);
  program_.useAscii(character);
}

void SimpleFont::appendCode(std::string& to, std::uint16_t code) const {
  const char c = static_cast<char>(code);
  pdf::appendLiteral(to, {&c, 1});
}

void SimpleFont::write(PdfFile& file, int descriptor, int asciiMap) const {
  std::string widths;
  for (std::size_t c = kFirst; c <= kLast; ++c) {
    pdf::appendHundredths(widths, used_[c] ? widths_[c] : 0);
    widths += ' ';
  }
  widths.back() = ']';
  file.writeObject(object(), "<</Type/Font/Subtype/TrueType/BaseFont/" + program_.name() +
                                 "/Encoding/WinAnsiEncoding/FirstChar 32/LastChar 126/FontDescriptor " +
                                 pdf::reference(descriptor) + "/ToUnicode " + pdf::reference(asciiMap) + "/Widths[" +
                                 widths + ">>");
}

CompositeFont::CompositeFont(std::uint16_t number, int object, FontProgram& program)
    : PdfFont(number, object), program_(program) {
  const std::uint32_t space = program.face().asciiGlyph(' ');
  if (space == 0) {
    setSpaceOfWidth(program.widthOf(space));
  } else {
    setSpace(use(space));
  }
}

std::uint16_t CompositeFont::use(std::uint32_t glyph) {
  const std::uint16_t code = program_.codeOf(glyph);
  if (widths_.try_emplace(code, program_.widthOf(glyph)).second) program_.use(glyph);
  return code;
}

void CompositeFont::appendCode(std::string& to, std::uint16_t code) const {
  const char both[] = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
  pdf::appendLiteral(to, {both, 2});
}

std::string CompositeFont::widths() const {
  // The width that most glyphs have is not named with each of them; in a font of ideographs that is nearly all.
  std::map<int, std::size_t> counts;
  for (const auto& [code, width] : widths_) ++counts[width];
  const auto most =
      std::max_element(counts.begin(), counts.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  // It must be a whole number.
  const int usual = most != counts.end() && most->first % 100 == 0 ? most->first : 100000;

  std::string made = "/DW ";
  pdf::appendHundredths(made, usual);
  made += "/W[";
  int next = -1;  // the code that would go on with the list
  for (const auto& [code, width] : widths_) {
    if (width == usual) continue;
    if (code == next) {
      made += ' ';
    } else {
      if (next >= 0) made += ']';
      pdf::appendInteger(made, code);
      made += '[';
    }
    pdf::appendHundredths(made, width);
    next = code + 1;
  }
  return made + (next >= 0 ? "]]" : "]");
}

void CompositeFont::write(PdfFile& file, int descriptor) const {
  const std::string name = program_.name();
  const bool isTrueType = program_.face().hasTrueTypeOutlines();
  const int descendant = file.newObject(), map = file.newObject();
  file.writeObject(object(), "<</Type/Font/Subtype/Type0/BaseFont/" + name + "/Encoding/Identity-H/DescendantFonts[" +
                                 pdf::reference(descendant) + "]/ToUnicode " + pdf::reference(map) + ">>");
  file.writeObject(descendant,
                   "<</Type/Font/Subtype/CIDFontType" + std::string(isTrueType ? "2" : "0") + "/BaseFont/" + name +
                       (isTrueType ? "/CIDToGIDMap/Identity" : "") +
                       "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor " +
                       pdf::reference(descriptor) + widths() + ">>");
  file.writeCompressed(map, "", texts().characterMap(2));
}

}  // namespace chatsum::platform::system
