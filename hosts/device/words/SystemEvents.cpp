#include "hosts/device/words/SystemEvents.h"

#include <fmt/format.h>

#include "hosts/device/words/ShownWords.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kLongestTitle = 200;

// The kinds of rows and what `group_action_type` means in them.
enum ItemType : std::int64_t { kMembers = 1, kTitle, kGroup, kLocation, kKeptAudio, kSharePlay };
enum MembersAction : std::int64_t { kAdded, kRemoved };
enum GroupAction : std::int64_t {
  kLeft = 0,
  kPhotoChanged = 1,
  kPhotoRemoved = 2,
  kBackgroundChanged = 4,
  kBackgroundRemoved = 6
};

std::string membersInWords(const SystemEvent& event) {
  const std::string_view other = event.other.empty() ? "somebody" : event.other;
  if (event.action == kAdded && event.isOtherTheActor) return "[has a new number]";
  if (event.action == kAdded) return fmt::format("[added {}]", other);
  if (event.action == kRemoved) return fmt::format("[removed {}]", other);
  return "";
}

std::string_view groupInWords(std::int64_t action) {
  switch (action) {
    case kLeft:
      return "[left the group]";
    case kPhotoChanged:
      return "[changed the group photo]";
    case kPhotoRemoved:
      return "[removed the group photo]";
    case kBackgroundChanged:
      return "[changed the background]";
    case kBackgroundRemoved:
      return "[removed the background]";
    default:
      return "";
  }
}

std::string knownInWords(const SystemEvent& event) {
  switch (event.itemType) {
    case kMembers:
      return membersInWords(event);
    case kTitle:
      return event.title.empty() ? "[removed the group's name]"
                                 : fmt::format("[named the group {}]", quoted(event.title, kLongestTitle));
    case kGroup:
      return std::string(groupInWords(event.action));
    case kLocation:
      if (event.action != 0) return "";
      return event.shareStatus == 0 ? "[started sharing a location]" : "[stopped sharing a location]";
    case kKeptAudio:
      return "[kept an audio message]";
    case kSharePlay:
      return "[SharePlay or FaceTime]";
    default:
      return "";
  }
}

}  // namespace

std::string eventInWords(const SystemEvent& event) {
  std::string words = knownInWords(event);
  return words.empty() ? fmt::format("[system event {}/{}]", event.itemType, event.action) : words;
}

}  // namespace chatsum::device
