#include "tests/support/PdfTools.h"

#include <cstdlib>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "tests/support/Tool.h"

namespace chatsum::test {
namespace {

namespace fs = std::filesystem;

std::string outputOf(const std::vector<std::string>& command) {
  ToolRun run = runTool(command);
  if (run.code == 127) throw std::runtime_error(command[0] + " is not installed; tools/setup installs it");
  if (run.code != 0) throw std::runtime_error(command[0] + " ended with " + std::to_string(run.code) + ": " + run.err);
  return std::move(run.out);
}

/// The value of an attribute of an XML tag; none when the tag has no such attribute.
std::optional<std::string_view> attribute(std::string_view tag, const std::string& name) {
  const std::string begin = " " + name + "=\"";
  const std::size_t at = tag.find(begin);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view rest = tag.substr(at + begin.size());
  return rest.substr(0, rest.find('"'));
}

double number(std::string_view tag, const std::string& name) {
  return std::strtod(std::string(attribute(tag, name).value_or("nan")).c_str(), nullptr);
}

void appendUtf8(char32_t c, std::string& text) {
  const auto tail = [c](unsigned shift) { return static_cast<char>(0x80U | ((c >> shift) & 0x3FU)); };
  if (c < 0x80) {
    text += static_cast<char>(c);
  } else if (c < 0x800) {
    (text += static_cast<char>(0xC0U | (c >> 6U))) += tail(0);
  } else if (c < 0x10000) {
    ((text += static_cast<char>(0xE0U | (c >> 12U))) += tail(6)) += tail(0);
  } else {
    (((text += static_cast<char>(0xF0U | (c >> 18U))) += tail(12)) += tail(6)) += tail(0);
  }
}

/// The character that stands in an attribute, as itself or as an entity.
std::string character(std::string_view value) {
  static constexpr std::pair<std::string_view, char> kEntities[] = {
      {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}};
  for (const auto& [entity, meaning] : kEntities) {
    if (value == entity) return {meaning};
  }
  std::string text;
  if (!value.starts_with("&#x")) return std::string(value);
  appendUtf8(static_cast<char32_t>(std::strtoul(std::string(value.substr(3)).c_str(), nullptr, 16)), text);
  return text;
}

}  // namespace

std::vector<PdfCharacter> pdfCharacters(const fs::path& file) {
  // Page, font and character tags, one inside the other; colours and places are attributes of the characters.
  const std::string xml = outputOf({"mutool", "draw", "-q", "-F", "stext", file});
  std::vector<PdfCharacter> characters;
  std::size_t page = 0;
  double size = 0;
  for (std::size_t at = xml.find('<'); at != std::string::npos; at = xml.find('<', at + 1)) {
    const std::string_view rest = std::string_view(xml).substr(at);
    const std::string_view tag = rest.substr(0, rest.find('>'));
    if (tag.starts_with("<page ")) ++page;
    if (tag.starts_with("<font ")) size = number(tag, "size");
    if (!tag.starts_with("<char ")) continue;
    // Four corners: upper left, upper right, lower left, lower right.
    std::istringstream quad{std::string(attribute(tag, "quad").value_or(""))};
    double upperLeft = 0, upperTop = 0, upperRight = 0;
    quad >> upperLeft >> upperTop >> upperRight;
    characters.push_back({.page = page,
                          .left = number(tag, "x"),
                          .right = upperRight,
                          .baseline = number(tag, "y"),
                          .size = size,
                          .color = std::string(attribute(tag, "color").value_or("")),
                          .text = character(attribute(tag, "c").value_or(""))});
  }
  return characters;
}

std::string pdfRawText(const fs::path& file) { return outputOf({"pdftotext", "-raw", file, "-"}); }

std::vector<PdfFont> pdfFonts(const fs::path& file) {
  // Columns: name, type (of several words), encoding, then "yes" or "no" for embedded, subset and Unicode map, object.
  std::istringstream lines(outputOf({"pdffonts", file}));
  std::vector<PdfFont> fonts;
  std::string line;
  std::size_t typeAt = std::string::npos;
  std::size_t encodingAt = 0, flagsAt = 0;
  while (std::getline(lines, line)) {
    if (line.starts_with("name ")) {
      typeAt = line.find("type ");
      encodingAt = line.find("encoding ");
      flagsAt = line.find("emb ");
    }
    if (typeAt == std::string::npos || line.starts_with("name ") || line.starts_with("---")) continue;
    const auto cell = [&line](std::size_t begin, std::size_t end) {
      const std::string text = line.substr(begin, end - begin);
      return text.substr(0, text.find_last_not_of(' ') + 1);
    };
    std::istringstream flags(line.substr(flagsAt));
    std::string embedded, subset, unicode;
    flags >> embedded >> subset >> unicode;
    fonts.push_back({.name = cell(0, typeAt),
                     .type = cell(typeAt, encodingAt),
                     .isEmbedded = embedded == "yes",
                     .isSubset = subset == "yes",
                     .hasUnicode = unicode == "yes"});
  }
  return fonts;
}

std::size_t pdfPageCount(const fs::path& file) {
  const std::string text = outputOf({"pdfinfo", file}), label = "Pages:";
  const std::size_t at = text.find(label);
  if (at == std::string::npos) throw std::runtime_error("pdfinfo names no number of pages: " + text);
  return std::strtoul(text.c_str() + at + label.size(), nullptr, 10);
}

std::string pdfProblems(const fs::path& file) {
  const ToolRun run = runTool({"qpdf", "--check", file});
  if (run.code == 127) throw std::runtime_error("qpdf is not installed; tools/setup installs it");
  return run.code == 0 ? "" : run.out + run.err;
}

void drawPdfPage(const fs::path& file, std::size_t page, const fs::path& png, PdfViewer viewer) {
  const std::string number = std::to_string(page), pixels = "72";  // for each inch
  if (viewer == PdfViewer::kMuPdf) {
    (void)outputOf({"mutool", "draw", "-q", "-r", pixels, "-c", "rgb", "-o", png, file, number});
  } else {
    // The program adds the ending itself.
    const fs::path stem = png.parent_path() / png.stem();
    (void)outputOf({"pdftoppm", "-png", "-singlefile", "-r", pixels, "-f", number, "-l", number, file, stem});
  }
  if (!fs::exists(png)) throw std::runtime_error("page " + number + " of " + file.string() + " was not drawn");
}

}  // namespace chatsum::test
