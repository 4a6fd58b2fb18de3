#include "hosts/device/report/PictureRows.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::device {
namespace {

/// A quick look that passes over nearly every text: a picture's name ends with a dot and some letters or digits.
bool mayNameFile(std::string_view text) {
  constexpr std::size_t kLongestEnd = 9;  // with the dot
  const std::string_view end = text.substr(text.size() > kLongestEnd ? text.size() - kLongestEnd : 0);
  const std::size_t dot = end.rfind('.');
  if (dot == std::string_view::npos || dot + 1 == end.size()) return false;
  return std::all_of(end.begin() + static_cast<std::ptrdiff_t>(dot) + 1, end.end(),
                     [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
}

/// The text of a record that is a picture; nullptr of any other.
class PictureText {
 public:
  [[nodiscard]] const String* of(const Value& item) {
    const Record* record = item.asRecord();
    const Value* value = record ? field_.find(*record) : nullptr;
    const String* text = value ? value->asString() : nullptr;
    return text && mayNameFile(text->view()) && ChatsumUtils::isImageFile(text->view()) ? text : nullptr;
  }

 private:
  RecordField field_{"Text"};
};

}  // namespace

Pictures countPictures(const Array& records) {
  Pictures pictures;
  PictureText picture;
  RecordField attachmentField("attachment_location");
  for (const Value& item : records) {
    if (!picture.of(item)) continue;
    ++(attachmentField.find(*item.asRecord()) ? pictures.attached : pictures.written);
  }
  return pictures;
}

Array withPicturesNamed(Array records) {
  PictureText picture;
  RecordField attachmentField("attachment_location");
  for (std::size_t row = 0; row < records.size(); ++row) {
    const String* text = picture.of(std::as_const(records)[row]);
    if (!text || !attachmentField.find(*std::as_const(records)[row].asRecord())) continue;
    Record changed = *std::as_const(records)[row].asRecord();
    changed.set("Text", "[" + path::lastComponent(text->view()) + "]");
    records.mutableItems()[row] = Value(std::move(changed));
  }
  return records;
}

}  // namespace chatsum::device
