#include "platform/system/translations/MessageCatalogue.h"

#include <cstdint>
#include <utility>

#include "platform/foundation/Utf8.h"

namespace chatsum::platform::system {
namespace {

constexpr std::uint32_t kMagic = 0x950412de;
constexpr std::size_t kHeaderBytes = 28, kEntryBytes = 8;

/// The numbers and texts of the file, with every access inside it.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {
    isBigEndian_ = bytes.size() >= 4 && static_cast<unsigned char>(bytes[0]) == kMagic >> 24U;
  }

  [[nodiscard]] std::uint32_t number(std::size_t at) const {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      const auto byte = static_cast<unsigned char>(bytes_[at + (isBigEndian_ ? i : 3 - i)]);
      value = value << 8U | byte;
    }
    return value;
  }

  /// Whether a table of so many entries stands inside.
  [[nodiscard]] bool holdsTable(std::size_t at, std::size_t entries) const {
    return at <= bytes_.size() && entries <= (bytes_.size() - at) / kEntryBytes;
  }

  /// The text that an entry of a table points to.
  [[nodiscard]] std::optional<std::string_view> text(std::size_t table, std::size_t entry) const {
    const std::size_t length = number(table + entry * kEntryBytes);
    const std::size_t at = number(table + entry * kEntryBytes + 4);
    if (at > bytes_.size() || length >= bytes_.size() - at) return std::nullopt;  // a zero byte follows every text
    return bytes_.substr(at, length);
  }

 private:
  std::string_view bytes_;
  bool isBigEndian_ = false;
};

/// The text without its other plural forms, which stand behind zero bytes.
std::string_view singular(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace

std::optional<MessageCatalogue> MessageCatalogue::parse(std::string bytes) {
  if (bytes.size() < kHeaderBytes || bytes.size() > kMostBytes) return std::nullopt;
  MessageCatalogue catalogue;
  catalogue.bytes_ = std::make_unique<const std::string>(std::move(bytes));
  const Reader reader(*catalogue.bytes_);
  constexpr std::uint32_t kMostMajorRevision = 1;
  if (reader.number(0) != kMagic || reader.number(4) >> 16U > kMostMajorRevision) return std::nullopt;
  const std::size_t count = reader.number(8), originals = reader.number(12), translations = reader.number(16);
  if (!reader.holdsTable(originals, count) || !reader.holdsTable(translations, count)) return std::nullopt;

  // Texts of a real file never overlap. Many long ones in the same place would take time without end.
  std::size_t room = catalogue.bytes_->size();
  catalogue.texts_.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto original = reader.text(originals, i), translation = reader.text(translations, i);
    if (!original || !translation || original->size() + translation->size() > room) return std::nullopt;
    room -= original->size() + translation->size();
    if (original->empty()) catalogue.plurals_ = PluralRule(*translation);  // the entry about the file
    if (original->empty() || singular(*translation).empty() || !utf8::isValid(*translation)) continue;
    if (!catalogue.texts_.try_emplace(singular(*original), *translation).second) return std::nullopt;
  }
  return catalogue;
}

std::optional<std::string_view> MessageCatalogue::find(std::string_view text) const {
  const auto found = texts_.find(text);
  return found == texts_.end() ? std::nullopt : std::optional(singular(found->second));
}

std::optional<std::string_view> MessageCatalogue::find(std::string_view text, std::uint64_t number) const {
  const auto found = texts_.find(text);
  if (found == texts_.end()) return std::nullopt;
  std::string_view forms = found->second;
  for (std::size_t form = plurals_.formFor(number); form > 0; --form) {
    const auto end = forms.find('\0');
    if (end == std::string_view::npos) break;
    forms.remove_prefix(end + 1);
  }
  return singular(singular(forms).empty() ? found->second : forms);
}

}  // namespace chatsum::platform::system
