#include "hosts/device/body/BodyStretches.h"

#include "hosts/device/body/StreamReader.h"
#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kPartAttribute = "__kIMMessagePartAttributeName";
constexpr std::string_view kFileAttribute = "__kIMFileTransferGUIDAttributeName";
constexpr std::string_view kTranscriptionAttribute = "IMAudioTranscription";

}  // namespace

std::vector<BodyStretch> decodeStretches(std::string_view blob) {
  std::vector<BodyStretch> stretches;
  const auto cursor = openStream(blob);
  if (!cursor) return stretches;
  StreamReader reader(*cursor, blob.size());
  std::size_t room = blob.size();  // a hostile body can refer to one long text many times
  const auto take = [&room](std::string_view text) {
    if (text.size() > room) return std::string();
    room -= text.size();
    return utf8::repaired(text);
  };
  for (const StreamReader::Run& run : reader.readRuns()) {
    BodyStretch stretch;
    stretch.utf16Length = run.utf16Length;
    for (const StreamReader::Attribute& attribute : reader.attributesOf(run.attributes)) {
      if (attribute.key == kPartAttribute) stretch.partNumber = attribute.number;
      if (attribute.key == kFileAttribute) stretch.fileGuid = take(attribute.text);
      if (attribute.key == kTranscriptionAttribute) stretch.transcription = take(attribute.text);
    }
    stretches.push_back(std::move(stretch));
  }
  return stretches;
}

}  // namespace chatsum::device
