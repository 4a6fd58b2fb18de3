// Binary property lists made object by object, also ones that no program would write.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum::test {

/// Objects are added in the order of their numbers; the list is closed by `bytes`.
class BinaryPropertyList {
 public:
  using Object = std::size_t;

  Object boolean(bool value) { return raw(std::string(1, value ? '\x09' : '\x08')); }
  /// In eight bytes, as negative numbers are.
  Object integer(std::int64_t value) { return raw("\x13" + big(static_cast<std::uint64_t>(value), 8)); }
  Object text(std::string_view ascii) { return raw(head(0x5, ascii.size()) + std::string(ascii)); }
  Object data(std::string_view bytes) { return raw(head(0x4, bytes.size()) + std::string(bytes)); }
  Object array(const std::vector<Object>& items) { return raw(head(0xA, items.size()) + references(items)); }
  Object dictionary(const std::vector<Object>& keys, const std::vector<Object>& values) {
    return raw(head(0xD, keys.size()) + references(keys) + references(values));
  }
  Object raw(std::string bytes) {
    objects_.push_back(std::move(bytes));
    return objects_.size() - 1;
  }
  /// The number that the next object gets.
  [[nodiscard]] Object next() const { return objects_.size(); }

  [[nodiscard]] std::string bytes(Object top) const {
    std::string file = "bplist00", table;
    for (const std::string& object : objects_) {
      table += big(file.size(), kOffsetBytes);
      file += object;
    }
    const std::size_t tableAt = file.size();
    file += table + std::string(6, '\0') + static_cast<char>(kOffsetBytes) + static_cast<char>(kReferenceBytes);
    return file + big(objects_.size(), 8) + big(top, 8) + big(tableAt, 8);
  }

 private:
  static constexpr std::size_t kOffsetBytes = 4, kReferenceBytes = 2;

  static std::string big(std::uint64_t value, std::size_t width) {
    std::string bytes;
    for (std::size_t i = width; i-- > 0;) bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
    return bytes;
  }
  static std::string head(unsigned kind, std::size_t count) {
    if (count < 15) return std::string(1, static_cast<char>(kind << 4U | static_cast<unsigned>(count)));
    return std::string(1, static_cast<char>(kind << 4U | 0xFU)) + "\x12" + big(count, 4);
  }
  static std::string references(const std::vector<Object>& objects) {
    std::string bytes;
    for (const Object object : objects) bytes += big(object, kReferenceBytes);
    return bytes;
  }

  std::vector<std::string> objects_;
};

/// A list of whole numbers and texts, as settings are.
inline std::string binarySettings(const std::vector<std::pair<std::string, std::int64_t>>& numbers,
                                  const std::vector<std::pair<std::string, std::string>>& texts = {}) {
  BinaryPropertyList list;
  std::vector<BinaryPropertyList::Object> keys, values;
  for (const auto& [key, value] : numbers) {
    keys.push_back(list.text(key));
    values.push_back(list.integer(value));
  }
  for (const auto& [key, value] : texts) {
    keys.push_back(list.text(key));
    values.push_back(list.text(value));
  }
  return list.bytes(list.dictionary(keys, values));
}

}  // namespace chatsum::test
