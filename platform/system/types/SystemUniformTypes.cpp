#include "platform/system/types/SystemUniformTypes.h"

#include <algorithm>
#include <array>

namespace chatsum::platform::system {
namespace {

constexpr std::array kTypes = std::to_array<UniformType>({
    // What the others stand below.
    {"public.item", "", ""},
    {"public.content", "", ""},
    {"public.data", "public.item", ""},
    {"public.directory", "public.item", ""},
    {"public.package", "public.directory", ""},
    {"public.composite-content", "public.content", ""},
    {"public.archive", "", ""},
    {"public.message", "", ""},
    {"public.contact", "", ""},
    {"public.calendar-event", "", ""},

    // Pictures.
    {"public.image", "public.data public.content", ""},
    {"public.jpeg", "public.image", "jpg jpeg jpe jfif"},
    {"public.jpeg-2000", "public.image", "jp2 jpf jpx j2k j2c"},
    {"public.png", "public.image", "png"},
    {"com.compuserve.gif", "public.image", "gif"},
    {"public.tiff", "public.image", "tiff tif"},
    {"public.heif-standard", "public.image", ""},
    {"public.heif", "public.heif-standard", "heif hif"},
    {"public.heic", "public.heif-standard", "heic"},
    {"public.heics", "public.heif-standard", "heics heifs"},
    {"public.avif", "public.heif-standard", "avif"},
    {"org.webmproject.webp", "public.image", "webp"},
    {"com.microsoft.bmp", "public.image", "bmp dib"},
    {"com.microsoft.ico", "public.image", "ico"},
    {"com.apple.icns", "public.image", "icns"},
    {"com.adobe.photoshop-image", "public.image", "psd"},
    {"com.truevision.tga-image", "public.image", "tga"},
    {"com.ilm.openexr-image", "public.image", "exr"},
    {"public.camera-raw-image", "public.image", "raw"},
    {"com.adobe.raw-image", "public.camera-raw-image", "dng"},
    {"com.canon.cr2-raw-image", "public.camera-raw-image", "cr2"},
    {"com.nikon.raw-image", "public.camera-raw-image", "nef"},
    {"com.sony.arw-raw-image", "public.camera-raw-image", "arw"},

    // Films and sound.
    {"public.audiovisual-content", "public.data public.content", ""},
    {"public.movie", "public.audiovisual-content", ""},
    {"public.video", "public.movie", ""},
    {"com.apple.quicktime-movie", "public.movie", "mov qt"},
    {"public.mpeg", "public.movie", "mpg mpeg mpe"},
    {"public.mpeg-4", "public.movie", "mp4 mpg4"},
    {"com.apple.m4v-video", "public.mpeg-4", "m4v"},
    {"public.3gpp", "public.movie", "3gp 3gpp"},
    {"public.3gpp2", "public.movie", "3g2 3gp2"},
    {"public.avi", "public.movie", "avi"},
    {"org.webmproject.webm", "public.movie", "webm"},
    {"public.audio", "public.audiovisual-content", ""},
    {"com.apple.coreaudio-format", "public.audio", "caf"},
    {"public.mpeg-4-audio", "public.audio", ""},
    {"com.apple.m4a-audio", "public.mpeg-4-audio", "m4a"},
    {"com.apple.protected-mpeg-4-audio", "public.mpeg-4-audio", "m4p m4b"},
    {"org.3gpp.adaptive-multi-rate-audio", "public.audio", "amr"},
    {"public.mp3", "public.audio", "mp3"},
    {"public.aac-audio", "public.audio", "aac adts"},
    {"public.aiff-audio", "public.audio", "aif aiff"},
    {"com.microsoft.waveform-audio", "public.audio", "wav wave"},
    {"public.ogg-audio", "public.audio", "ogg oga opus"},
    {"org.xiph.flac", "public.audio", "flac"},
    {"public.midi-audio", "public.audio", "mid midi"},

    // Texts and documents.
    {"public.text", "public.data public.content", ""},
    {"public.plain-text", "public.text", "txt text log"},
    {"public.delimited-values-text", "public.text", ""},
    {"public.comma-separated-values-text", "public.delimited-values-text", "csv"},
    {"public.tab-separated-values-text", "public.delimited-values-text", "tsv"},
    {"net.daringfireball.markdown", "public.text", "md markdown"},
    {"public.html", "public.text", "html htm"},
    {"public.xml", "public.text", "xml"},
    {"public.svg-image", "public.image public.xml", "svg svgz"},
    {"public.json", "public.text", "json"},
    {"public.rtf", "public.text", "rtf"},
    {"com.apple.property-list", "public.data", "plist"},
    {"public.vcard", "public.text public.contact", "vcf vcard"},
    {"com.apple.ical.ics", "public.text public.calendar-event", "ics ical"},
    {"com.apple.mail.email", "public.data public.message", "eml"},
    {"com.adobe.pdf", "public.data public.composite-content", "pdf"},
    {"org.idpf.epub-container", "public.data public.composite-content", "epub"},
    {"com.microsoft.word.doc", "public.data public.composite-content", "doc"},
    {"com.microsoft.excel.xls", "public.data public.composite-content", "xls"},
    {"com.microsoft.powerpoint.ppt", "public.data public.composite-content", "ppt"},
    {"org.openxmlformats.openxml", "public.data public.composite-content", ""},
    {"org.openxmlformats.wordprocessingml.document", "org.openxmlformats.openxml", "docx"},
    {"org.openxmlformats.spreadsheetml.sheet", "org.openxmlformats.openxml", "xlsx"},
    {"org.openxmlformats.presentationml.presentation", "org.openxmlformats.openxml", "pptx"},
    {"org.oasis-open.opendocument.text", "public.data public.composite-content", "odt"},
    {"org.oasis-open.opendocument.spreadsheet", "public.data public.composite-content", "ods"},
    {"com.apple.iwork.pages.sffpages", "public.data public.composite-content", "pages"},
    {"com.apple.iwork.numbers.sffnumbers", "public.data public.composite-content", "numbers"},
    {"com.apple.iwork.keynote.sffkey", "public.data public.composite-content", "key"},
    {"com.apple.pkpass", "public.data", "pkpass"},

    // Archives.
    {"public.zip-archive", "public.data public.archive", "zip"},
    {"org.gnu.gnu-zip-archive", "public.data public.archive", "gz gzip"},
    {"public.tar-archive", "public.data public.archive", "tar"},
    {"org.gnu.gnu-zip-tar-archive", "org.gnu.gnu-zip-archive", "tgz"},
    {"org.7-zip.7-zip-archive", "public.data public.archive", "7z"},
    {"com.rarlab.rar-archive", "public.data public.archive", "rar"},

    // What applications inside Messages leave as attachments: data of their own, no picture.
    {"com.apple.messages.plugin-payload", "public.data", "pluginpayloadattachment"},
});

bool hasWord(std::string_view list, std::string_view word) {
  while (!list.empty()) {
    const auto end = std::min(list.find(' '), list.size());
    if (list.substr(0, end) == word) return true;
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return false;
}

const UniformType* find(std::string_view identifier) {
  const auto* found =
      std::find_if(kTypes.begin(), kTypes.end(), [&](const auto& type) { return type.identifier == identifier; });
  return found == kTypes.end() ? nullptr : found;
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// Identifiers compare without regard to case.
std::string lowered(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

bool standsBelow(std::string_view identifier, std::string_view ancestor) {
  if (identifier == ancestor) return true;
  const UniformType* type = find(identifier);
  if (!type) return false;
  for (std::string_view parents = type->parents; !parents.empty();) {
    const auto end = std::min(parents.find(' '), parents.size());
    if (standsBelow(parents.substr(0, end), ancestor)) return true;
    parents.remove_prefix(std::min(end + 1, parents.size()));
  }
  return false;
}

}  // namespace

std::string SystemUniformTypes::identifierForExtension(std::string_view extension) const {
  const std::string wanted = lowered(extension);
  if (!wanted.empty() && wanted.find(' ') == std::string::npos) {
    for (const auto& type : kTypes) {
      if (hasWord(type.extensions, wanted)) return std::string(type.identifier);
    }
  }
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string made = "dyn.";
  for (const char c : wanted) {
    const auto byte = static_cast<unsigned char>(c);
    made += kDigits[byte >> 4];
    made += kDigits[byte & 15];
  }
  return made;
}

bool SystemUniformTypes::conforms(std::string_view identifier, std::string_view to) const {
  return standsBelow(lowered(identifier), lowered(to));
}

std::span<const UniformType> SystemUniformTypes::table() { return kTypes; }

}  // namespace chatsum::platform::system
