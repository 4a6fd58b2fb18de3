#include "hosts/device/words/SystemEvents.h"

#include "hosts/device/language/Say.h"
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
  const std::string other = event.other.empty() ? say("somebody") : std::string(event.other);
  if (event.action == kAdded && event.isOtherTheActor) return say("[has a new number]");
  if (event.action == kAdded) return say("[added {0}]", other);
  if (event.action == kRemoved) return say("[removed {0}]", other);
  return "";
}

std::string groupInWords(std::int64_t action) {
  switch (action) {
    case kLeft:
      return say("[left the group]");
    case kPhotoChanged:
      return say("[changed the group photo]");
    case kPhotoRemoved:
      return say("[removed the group photo]");
    case kBackgroundChanged:
      return say("[changed the background]");
    case kBackgroundRemoved:
      return say("[removed the background]");
    default:
      return "";
  }
}

std::string knownInWords(const SystemEvent& event) {
  switch (event.itemType) {
    case kMembers:
      return membersInWords(event);
    case kTitle:
      return event.title.empty() ? say("[removed the group's name]")
                                 : say("[named the group {0}]", quoted(event.title, kLongestTitle));
    case kGroup:
      return groupInWords(event.action);
    case kLocation:
      if (event.action != 0) return "";
      return event.shareStatus == 0 ? say("[started sharing a location]") : say("[stopped sharing a location]");
    case kKeptAudio:
      return say("[kept an audio message]");
    case kSharePlay:
      return say("[SharePlay or FaceTime]");
    default:
      return "";
  }
}

}  // namespace

std::string eventInWords(const SystemEvent& event) {
  std::string words = knownInWords(event);
  return words.empty() ? say("[system event {0}/{1}]", event.itemType, event.action) : words;
}

}  // namespace chatsum::device
