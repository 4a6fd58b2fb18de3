// Version tests, the patterned navigation-bar colour, and look-ups among preference specifiers.

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/Description.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {

bool ChatsumUtils::versionCheck(float version) {
  const std::string system = platform::current().device.systemVersion();
  return static_cast<float>(description::leadingDouble(system)) >= version;
}

bool ChatsumUtils::isIOS_6() { return versionCheck(6.0F); }
bool ChatsumUtils::isIOS_7() { return versionCheck(7.0F); }
bool ChatsumUtils::isIOS_8() { return versionCheck(8.0F); }
bool ChatsumUtils::isIOS9() { return versionCheck(9.0F); }
bool ChatsumUtils::isIOS10() { return versionCheck(10.0F); }
bool ChatsumUtils::isIOS11() { return versionCheck(11.0F); }
bool ChatsumUtils::isIOS12() { return versionCheck(12.0F); }
bool ChatsumUtils::isIOS13() { return versionCheck(13.0F); }
bool ChatsumUtils::isIOS14() { return versionCheck(14.0F); }

platform::UIColor ChatsumUtils::navigationBarColor(std::string_view className) {
  const auto& artwork = platform::current().artwork;
  const platform::BundleRef bundle = artwork.bundleForClass(className);
  platform::UIImageRef image;
  if (const auto path = bundle->pathForResource("nav", "png")) image = artwork.imageWithContentsOfFile(*path);
  if (!image) image = bundle->imageNamed("nav");
  return {image};
}

std::int32_t ChatsumUtils::getIdetifierIndex(const std::vector<platform::PSSpecifierRef>& specifiers,
                                             std::string_view identifier) {
  const auto& strings = platform::current().strings;
  const std::string wanted = strings.caseFolded(identifier);
  for (auto index = static_cast<std::int32_t>(specifiers.size()) - 1; index >= 0; --index) {
    const auto& candidate = specifiers[static_cast<std::size_t>(index)];
    const String* label = candidate ? candidate->properties["label"].asString() : nullptr;
    if (label && strings.caseFolded(label->view()) == wanted) return index;
  }
  return -1;
}

platform::PSSpecifierRef ChatsumUtils::specifier(const std::vector<platform::PSSpecifierRef>& specifiers,
                                                 std::string_view identifier) {
  const std::int32_t index = getIdetifierIndex(specifiers, identifier);
  return index < 0 ? nullptr : specifiers[static_cast<std::size_t>(index)];
}

bool ChatsumUtils::anyCustomAppInstalled() { return false; }

}  // namespace chatsum
