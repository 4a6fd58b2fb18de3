#include "platform/system/propertylists/PropertyListFile.h"

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/foundation/Date.h"
#include "platform/system/propertylists/PropertyListGuard.h"

namespace chatsum::platform::system {
namespace {

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Allocated = std::unique_ptr<T, FreeMemory>;

Value valueOf(plist_t node);

std::string stringOf(plist_t node) {
  char* text = nullptr;
  plist_get_string_val(node, &text);
  const Allocated<char> owned(text);
  return text ? std::string(text) : std::string();
}

// Both kinds of containers are passed to a function with each of their items.

template <class Take>
void eachItem(plist_t array, Take take) {
  plist_array_iter next = nullptr;
  plist_array_new_iter(array, &next);
  const Allocated<void> owned(next);
  for (plist_t item = nullptr;;) {
    plist_array_next_item(array, next, &item);
    if (!item) return;
    take(item);
  }
}

template <class Take>
void eachEntry(plist_t dictionary, Take take) {
  plist_dict_iter next = nullptr;
  plist_dict_new_iter(dictionary, &next);
  const Allocated<void> owned(next);
  for (;;) {
    char* key = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(dictionary, next, &key, &item);
    const Allocated<char> ownedKey(key);
    if (!item) return;
    take(key ? std::string(key) : std::string(), item);
  }
}

/// Made in one piece: setting keys one by one would look each of them up among all before it.
Record recordOf(plist_t dictionary) {
  std::vector<String> keys;
  std::vector<Value> values;
  std::unordered_map<std::string, std::size_t> places;
  eachEntry(dictionary, [&](const std::string& key, plist_t item) {
    const auto [place, isNew] = places.try_emplace(key, keys.size());
    if (isNew) {
      keys.emplace_back(key);
      values.push_back(valueOf(item));
    } else {
      values[place->second] = valueOf(item);
    }
  });
  return {Ref<Shape>::adopt(new Shape(std::move(keys))), values.data()};
}

Value valueOf(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return value != 0;
    }
    case PLIST_UINT: {
      // Negative numbers come as the unsigned ones of the same bits.
      std::uint64_t value = 0;
      plist_get_uint_val(node, &value);
      return static_cast<std::int64_t>(value);
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      return value;
    }
    case PLIST_DATE: {
      std::int32_t seconds = 0, microseconds = 0;
      plist_get_date_val(node, &seconds, &microseconds);
      return Date{static_cast<double>(kSecondsFrom1970To2001 + seconds) + microseconds / 1e6};
    }
    case PLIST_STRING:
      return stringOf(node);
    case PLIST_ARRAY: {
      std::vector<Value> items;
      eachItem(node, [&](plist_t item) { items.push_back(valueOf(item)); });
      return Array(std::move(items));
    }
    case PLIST_DICT:
      return recordOf(node);
    default:
      return {};
  }
}

plist_t nodeOf(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kBool:
      return plist_new_bool(value.boolValue() ? 1 : 0);
    case Value::Kind::kInteger:
      return plist_new_uint(static_cast<std::uint64_t>(value.integerValue()));
    case Value::Kind::kReal:
      return plist_new_real(value.doubleValue());
    case Value::Kind::kString:
      return plist_new_string(value.asString()->str().c_str());
    default:
      return nullptr;
  }
}

}  // namespace

void PropertyListFile::FreeNode::operator()(void* node) const { plist_free(node); }

PropertyListFile::PropertyListFile() : root_(plist_new_dict()) {}

std::optional<PropertyListFile> PropertyListFile::parse(std::string_view bytes) {
  if (bytes.size() > propertylist::kMostBytes) return std::nullopt;
  const bool isBinary = isBinaryPropertyList(bytes);
  plist_t parsed = nullptr;
  if (isBinary) {
    if (!isBinaryWithinLimits(bytes)) return std::nullopt;
    plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
  } else {
    const std::optional<std::string> text = xmlAsUtf8(bytes);
    if (!text || !isXmlWithinLimits(*text)) return std::nullopt;
    plist_from_xml(text->c_str(), static_cast<std::uint32_t>(text->size()), &parsed);
  }
  Node root(parsed);
  if (!root || plist_get_node_type(root.get()) != PLIST_DICT) return std::nullopt;
  return PropertyListFile(std::move(root), isBinary);
}

Record PropertyListFile::dictionary() const { return recordOf(root_.get()); }

bool PropertyListFile::set(const std::string& key, const Value& value) {
  const plist_t node = nodeOf(value);
  if (!node) return false;
  plist_dict_set_item(root_.get(), key.c_str(), node);  // takes the node over
  return true;
}

std::optional<std::string> PropertyListFile::bytes() const {
  char* text = nullptr;
  std::uint32_t size = 0;
  if (isBinary_) {
    plist_to_bin(root_.get(), &text, &size);
  } else {
    plist_to_xml(root_.get(), &text, &size);
  }
  const Allocated<char> owned(text);
  if (!text) return std::nullopt;
  // Odd files may hold texts that the parser takes and the writer makes unreadable.
  std::string written(text, size);
  if (!parse(written)) return std::nullopt;
  return written;
}

}  // namespace chatsum::platform::system
