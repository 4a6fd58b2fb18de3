#include "hosts/device/backup/KeyBag.h"

#include <optional>

#include "hosts/device/language/Say.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 20;
constexpr std::size_t kMostClasses = 256;  // a device has about a dozen
constexpr std::size_t kLongestSalt = 1024;
constexpr std::size_t kHeadLength = 8;
constexpr std::size_t kWrappedLength = 40;
constexpr std::uint32_t kWrappedByDevice = 1, kWrappedByPassword = 2;  // bits of WRAP

struct Item {
  std::string_view tag;
  std::string_view data;
};

std::uint32_t bigEndian(std::string_view bytes) {
  std::uint32_t value = 0;
  for (const char byte : bytes.substr(0, 4)) value = (value << 8U) | static_cast<std::uint8_t>(byte);
  return value;
}

/// Takes the first item off; none when the bytes end within it.
std::optional<Item> takeItem(std::string_view& bytes) {
  if (bytes.size() < kHeadLength) return std::nullopt;
  const std::size_t length = bigEndian(bytes.substr(4));
  if (length > bytes.size() - kHeadLength) return std::nullopt;
  const Item item{bytes.substr(0, 4), bytes.substr(kHeadLength, length)};
  bytes.remove_prefix(kHeadLength + length);
  return item;
}

struct ClassItems {
  std::uint32_t protectionClass = 0;
  std::uint32_t wrap = 0;
  std::string_view wrappedKey;
};

struct BagItems {
  KeyBag bag;
  std::vector<ClassItems> classes;
};

void readHeaderItem(const Item& item, KeyBag& bag) {
  if (item.tag == "SALT") bag.salt = item.data;
  if (item.tag == "ITER") bag.iterations = bigEndian(item.data);
  if (item.tag == "DPSL") bag.firstSalt = item.data;
  if (item.tag == "DPIC") bag.firstIterations = bigEndian(item.data);
}

void readClassItem(const Item& item, ClassItems& ofClass) {
  if (item.tag == "CLAS") ofClass.protectionClass = bigEndian(item.data);
  if (item.tag == "WRAP") ofClass.wrap = bigEndian(item.data);
  if (item.tag == "WPKY") ofClass.wrappedKey = item.data;
}

// The first UUID is the bag's own, each later one begins a class. What follows the last whole item is nothing.
BagItems readItems(std::string_view bytes) {
  BagItems items;
  bool isInHeader = true, hasUuid = false;
  while (const auto item = takeItem(bytes)) {
    if (item->tag == "UUID") {
      isInHeader = !hasUuid;
      hasUuid = true;
      if (isInHeader) continue;
      if (items.classes.size() == kMostClasses) break;
      items.classes.emplace_back();
    } else if (isInHeader) {
      readHeaderItem(*item, items.bag);
    } else {
      readClassItem(*item, items.classes.back());
    }
  }
  return items;
}

bool hasGoodSalts(const KeyBag& bag) {
  return !bag.salt.empty() && bag.salt.size() <= kLongestSalt && bag.firstSalt.size() <= kLongestSalt;
}

}  // namespace

StoreResult<KeyBag> KeyBag::parse(std::string_view bytes, const std::string& shownPath) {
  const StoreProblem damaged{say(
      "The keys of the encrypted backup '{0}' are damaged (in its Manifest.plist); copy the backup again.", shownPath)};
  if (bytes.size() > kMostBytes) return damaged;
  BagItems items = readItems(bytes);
  KeyBag& bag = items.bag;
  if (!hasGoodSalts(bag)) return damaged;
  const bool hasFirstRound = !bag.firstSalt.empty();
  if (bag.iterations == 0 || (hasFirstRound && bag.firstIterations == 0)) return damaged;
  if (bag.iterations > kMostIterations || (hasFirstRound && bag.firstIterations > kMostIterations)) {
    return StoreProblem{
        say("The keys of the encrypted backup '{0}' ask for more work on the password than any device "
            "does, so they are damaged or made to keep a program busy; copy the backup again.",
            shownPath)};
  }
  for (const ClassItems& ofClass : items.classes) {
    // The others need a key that never leaves the device, or have none.
    if ((ofClass.wrap & kWrappedByPassword) == 0 || (ofClass.wrap & kWrappedByDevice) != 0) continue;
    if (ofClass.wrappedKey.size() != kWrappedLength) continue;
    bag.classKeys.push_back({ofClass.protectionClass, std::string(ofClass.wrappedKey)});
  }
  if (bag.classKeys.empty()) return damaged;
  return std::move(bag);
}

}  // namespace chatsum::device
