#include <plist/plist.h>

#include <cstdlib>
#include <memory>

#include "hosts/device/plist/BinaryPlist.h"
#include "hosts/device/plist/PlistValue.h"
#include "platform/system/propertylists/PropertyListGuard.h"

namespace chatsum::device {
namespace {

namespace guard = platform::system;

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Allocated = std::unique_ptr<T, FreeMemory>;

struct FreeNode {
  void operator()(void* node) const { plist_free(node); }
};

PlistValue valueOf(plist_t node);

PlistValue dataOf(plist_t node) {
  char* bytes = nullptr;
  std::uint64_t length = 0;
  plist_get_data_val(node, &bytes, &length);
  const Allocated<char> owned(bytes);
  return PlistValue(PlistValue::Data{bytes ? std::string(bytes, length) : std::string()});
}

PlistValue textOf(plist_t node) {
  char* text = nullptr;
  plist_get_string_val(node, &text);
  const Allocated<char> owned(text);
  return PlistValue(std::string(text ? text : ""));
}

PlistValue arrayOf(plist_t node) {
  PlistValue::Items items;
  plist_array_iter next = nullptr;
  plist_array_new_iter(node, &next);
  const Allocated<void> owned(next);
  for (plist_t item = nullptr;;) {
    plist_array_next_item(node, next, &item);
    if (!item) return PlistValue(std::move(items));
    items.push_back(valueOf(item));
  }
}

PlistValue dictionaryOf(plist_t node) {
  PlistValue::Entries entries;
  plist_dict_iter next = nullptr;
  plist_dict_new_iter(node, &next);
  const Allocated<void> owned(next);
  for (;;) {
    char* key = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(node, next, &key, &item);
    const Allocated<char> ownedKey(key);
    if (!item) return PlistValue(std::move(entries));
    entries.push_back({key ? key : "", valueOf(item)});
  }
}

PlistValue valueOf(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return PlistValue(value != 0);
    }
    case PLIST_UINT: {
      std::uint64_t value = 0;  // negative numbers come as the unsigned ones of the same bits
      plist_get_uint_val(node, &value);
      return PlistValue(static_cast<std::int64_t>(value));
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      return PlistValue(value);
    }
    case PLIST_DATE: {
      std::int32_t seconds = 0, microseconds = 0;
      plist_get_date_val(node, &seconds, &microseconds);
      return PlistValue(Date{static_cast<double>(kSecondsFrom1970To2001 + seconds) + microseconds / 1e6});
    }
    case PLIST_UID: {
      std::uint64_t value = 0;
      plist_get_uid_val(node, &value);
      return PlistValue(PlistValue::Reference{value});
    }
    case PLIST_STRING:
      return textOf(node);
    case PLIST_DATA:
      return dataOf(node);
    case PLIST_ARRAY:
      return arrayOf(node);
    case PLIST_DICT:
      return dictionaryOf(node);
    default:
      return {};
  }
}

}  // namespace

std::optional<PlistValue> parsePlist(std::string_view bytes) {
  if (bytes.size() > plist::kMostBytes) return std::nullopt;
  if (guard::isBinaryPropertyList(bytes)) return parseBinaryPlist(bytes);
  const std::optional<std::string> text = guard::xmlAsUtf8(bytes);
  if (!text || !guard::isXmlWithinLimits(*text)) return std::nullopt;
  plist_t parsed = nullptr;
  plist_from_xml(text->c_str(), static_cast<std::uint32_t>(text->size()), &parsed);
  const std::unique_ptr<void, FreeNode> root(parsed);
  if (!root) return std::nullopt;
  return valueOf(root.get());
}

}  // namespace chatsum::device
