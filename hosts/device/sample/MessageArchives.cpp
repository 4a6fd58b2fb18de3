#include "hosts/device/sample/MessageArchives.h"

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <utility>

#include "hosts/device/body/TypedStreamWriter.h"

namespace chatsum::device {
namespace {

/// The bytes of a list in its binary form; the list goes.
std::string bytesOf(plist_t list) {
  char* bytes = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(list, &bytes, &length);
  std::string copy(bytes ? bytes : "", length);
  std::free(bytes);
  plist_free(list);
  return copy;
}

/// A keyed archive in the making: objects refer to each other by their numbers.
class Archive {
 public:
  Archive() : objects_(plist_new_array()) { plist_array_append_item(objects_, plist_new_string("$null")); }

  std::uint64_t string(std::string_view text) { return add(plist_new_string(std::string(text).c_str())); }

  std::uint64_t dictionary(const std::vector<std::pair<std::string_view, std::uint64_t>>& members) {
    plist_t keys = plist_new_array(), values = plist_new_array();
    for (const auto& [key, value] : members) {
      plist_array_append_item(keys, plist_new_uid(string(key)));
      plist_array_append_item(values, plist_new_uid(value));
    }
    plist_t object = plist_new_dict();
    plist_dict_set_item(object, "NS.keys", keys);
    plist_dict_set_item(object, "NS.objects", values);
    return addOf("NSDictionary", object);
  }

  std::uint64_t url(std::string_view address) {
    plist_t object = plist_new_dict();
    plist_dict_set_item(object, "NS.base", plist_new_uid(0));
    plist_dict_set_item(object, "NS.relative", plist_new_uid(string(address)));
    return addOf("NSURL", object);
  }

  /// An object of an app's own class.
  std::uint64_t object(const char* className, const std::vector<std::pair<const char*, std::uint64_t>>& members) {
    plist_t made = plist_new_dict();
    for (const auto& [key, value] : members) plist_dict_set_item(made, key, plist_new_uid(value));
    return addOf(className, made);
  }

  /// The archive's bytes; the archive goes.
  std::string finish(std::uint64_t root) {
    plist_t top = plist_new_dict(), archive = plist_new_dict();
    plist_dict_set_item(top, "root", plist_new_uid(root));
    plist_dict_set_item(archive, "$version", plist_new_uint(100000));
    plist_dict_set_item(archive, "$archiver", plist_new_string("NSKeyedArchiver"));
    plist_dict_set_item(archive, "$top", top);
    plist_dict_set_item(archive, "$objects", objects_);
    return bytesOf(archive);
  }

 private:
  std::uint64_t add(plist_t object) {
    plist_array_append_item(objects_, object);
    return plist_array_get_size(objects_) - 1;
  }

  std::uint64_t addOf(const char* className, plist_t object) {
    plist_t described = plist_new_dict(), classes = plist_new_array();
    plist_array_append_item(classes, plist_new_string(className));
    plist_array_append_item(classes, plist_new_string("NSObject"));
    plist_dict_set_item(described, "$classname", plist_new_string(className));
    plist_dict_set_item(described, "$classes", classes);
    plist_dict_set_item(object, "$class", plist_new_uid(add(described)));
    return add(object);
  }

  plist_t objects_;
};

plist_t listOf(const std::vector<int>& numbers) {
  plist_t list = plist_new_array();
  for (const int number : numbers) plist_array_append_item(list, plist_new_uint(static_cast<std::uint64_t>(number)));
  return list;
}

}  // namespace

std::string messageHistory(const std::vector<SamplePart>& edited, const std::vector<int>& unsent) {
  plist_t parts = plist_new_dict();
  std::vector<int> numbers;
  for (const SamplePart& part : edited) {
    plist_t versions = plist_new_array();
    for (const SampleVersion& version : part.versions) {
      const std::string body = encodeBody(version.text);
      plist_t entry = plist_new_dict();
      plist_dict_set_item(entry, "t", plist_new_data(body.data(), body.size()));
      plist_dict_set_item(entry, "d", plist_new_real(version.date));
      plist_array_append_item(versions, entry);
    }
    plist_dict_set_item(parts, std::to_string(part.number).c_str(), versions);
    numbers.push_back(part.number);
  }
  plist_t summary = plist_new_dict();
  plist_dict_set_item(summary, "ec", parts);
  plist_dict_set_item(summary, "ep", listOf(numbers));
  plist_dict_set_item(summary, "rp", listOf(unsent));
  plist_dict_set_item(summary, "ust", plist_new_bool(1));
  return bytesOf(summary);
}

std::string linkPreview(std::string_view url, std::string_view title) {
  Archive archive;
  std::vector<std::pair<const char*, std::uint64_t>> members;
  if (!url.empty()) {
    const std::uint64_t address = archive.object("RichLink", {{"URL", archive.url(url)}});
    members = {{"URL", address}, {"originalURL", address}};
  }
  if (!title.empty()) members.emplace_back("title", archive.string(title));
  const std::uint64_t metadata = archive.object("LPLinkMetadata", members);
  return archive.finish(archive.object("RichLink", {{"richLinkMetadata", metadata}}));
}

std::string appCard(std::string_view appName, std::string_view caption, std::string_view url) {
  Archive archive;
  std::vector<std::pair<std::string_view, std::uint64_t>> members;
  if (!appName.empty()) members.emplace_back("an", archive.string(appName));
  if (!caption.empty()) members.emplace_back("userInfo", archive.dictionary({{"caption", archive.string(caption)}}));
  if (!url.empty()) members.emplace_back("URL", archive.url(url));
  return archive.finish(archive.dictionary(members));
}

}  // namespace chatsum::device
