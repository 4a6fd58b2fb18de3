#include <vector>

#include "hosts/device/plist/PlistValue.h"

namespace chatsum::device {
namespace {

/// Puts the objects of an archive where they are referred to. An object that many others share is written out for each
/// of them; the count bounds that.
class Unarchiver {
 public:
  explicit Unarchiver(const PlistValue::Items& objects) : objects_(objects), isOpen_(objects.size()) {}

  /// False when the limits are passed.
  bool resolve(const PlistValue& value, int depth, PlistValue& resolved) {
    if (++values_ > plist::kMostValues || depth > plist::kDeepest) return false;
    if (const auto* reference = value.asReference()) return resolveObject(reference->number, depth, resolved);
    if (const auto* items = value.asArray()) return resolveItems(*items, depth, resolved);
    if (value.asDictionary()) return resolveMembers(value, depth, resolved);
    return copy(value, resolved);
  }

 private:
  bool copy(const PlistValue& value, PlistValue& resolved) {
    const std::string* text = value.asString() ? value.asString() : value.asData();
    if (text) bytes_ += text->size();
    if (bytes_ > plist::kMostBytes) return false;
    resolved = value;
    return true;
  }

  bool resolveObject(std::uint64_t number, int depth, PlistValue& resolved) {
    if (number >= objects_.size()) return true;  // leads nowhere: none
    const auto place = static_cast<std::size_t>(number);
    if (isOpen_[place]) return true;
    const PlistValue& object = objects_[place];
    if (number == 0 && object.asString() && *object.asString() == "$null") return true;
    if (!object.asDictionary()) return resolve(object, depth + 1, resolved);
    isOpen_[place] = true;
    const bool done = resolveInstance(object, depth, resolved);
    isOpen_[place] = false;
    return done;
  }

  bool resolveInstance(const PlistValue& object, int depth, PlistValue& resolved) {
    const PlistValue::Items* keys = object["NS.keys"].asArray();
    const PlistValue::Items* values = object["NS.objects"].asArray();
    if (keys && values) return resolveDictionary(*keys, *values, depth, resolved);
    if (values) return resolveItems(*values, depth, resolved);
    for (const char* const key : {"NS.string", "NS.bytes", "NS.data", "NS.uuidbytes"}) {
      if (!object[key].isNone()) return resolve(object[key], depth + 1, resolved);
    }
    if (const auto time = object["NS.time"].asReal()) {
      resolved = PlistValue(Date{*time + static_cast<double>(kSecondsFrom1970To2001)});
      return true;
    }
    if (!object["NS.relative"].isNone()) return resolveUrl(object, depth, resolved);
    return resolveMembers(object, depth, resolved);
  }

  bool resolveUrl(const PlistValue& object, int depth, PlistValue& resolved) {
    PlistValue base, relative;
    if (!resolve(object["NS.base"], depth + 1, base) || !resolve(object["NS.relative"], depth + 1, relative)) {
      return false;
    }
    std::string url = base.asString() ? *base.asString() : "";
    if (relative.asString()) url += *relative.asString();
    resolved = PlistValue(std::move(url));
    return true;
  }

  bool resolveItems(const PlistValue::Items& items, int depth, PlistValue& resolved) {
    PlistValue::Items done;
    for (const PlistValue& item : items) {
      if (!resolve(item, depth + 1, done.emplace_back())) return false;
    }
    resolved = PlistValue(std::move(done));
    return true;
  }

  bool resolveDictionary(const PlistValue::Items& keys, const PlistValue::Items& values, int depth,
                         PlistValue& resolved) {
    PlistValue::Entries entries;
    for (std::size_t i = 0; i < keys.size() && i < values.size(); ++i) {
      PlistValue key;
      PlistValue::Entry entry;
      if (!resolve(keys[i], depth + 1, key) || !resolve(values[i], depth + 1, entry.value)) return false;
      if (!key.asString()) continue;
      entry.key = *key.asString();
      entries.push_back(std::move(entry));
    }
    resolved = PlistValue(std::move(entries));
    return true;
  }

  bool resolveMembers(const PlistValue& object, int depth, PlistValue& resolved) {
    PlistValue::Entries entries;
    for (const PlistValue::Entry& member : *object.asDictionary()) {
      PlistValue::Entry entry{member.key, {}};
      if (member.key == "$class") {
        const auto* reference = member.value.asReference();
        if (!reference || reference->number >= objects_.size()) continue;
        entry.value = PlistValue(objects_[static_cast<std::size_t>(reference->number)].stringAt("$classname"));
      } else if (!resolve(member.value, depth + 1, entry.value)) {
        return false;
      }
      entries.push_back(std::move(entry));
    }
    resolved = PlistValue(std::move(entries));
    return true;
  }

  const PlistValue::Items& objects_;
  std::vector<bool> isOpen_;
  std::size_t values_ = 0, bytes_ = 0;
};

}  // namespace

std::optional<PlistValue> unarchived(const PlistValue& archive) {
  const PlistValue::Items* objects = archive["$objects"].asArray();
  const PlistValue& root = archive["$top"]["root"];
  if (!objects || !root.asReference()) return std::nullopt;
  PlistValue resolved;
  if (!Unarchiver(*objects).resolve(root, 0, resolved)) return std::nullopt;
  return resolved;
}

}  // namespace chatsum::device
