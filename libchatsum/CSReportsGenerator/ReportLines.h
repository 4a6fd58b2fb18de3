// What the writers share: a report format taken apart, the kind of each cell, and the errors they answer. One report,
// one thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "libchatsum/CSReportsGenerator/NSArrayFormatExtension.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/TextBuffer.h"
#include "platform/foundation/Value.h"

namespace chatsum {

/// The pattern of the "Date" cells. The year is the one of the week on purpose: around New Year it can differ from the
/// calendar's.
inline constexpr const char* kReportDateFormat = "EEE, MM-dd-YYYY hh:mm aa";

/// The error of a report whose format is missing or no dictionary, logged under the operation and line.
[[nodiscard]] Error invalidReportFormat(const Value& format, const char* operation, int line);

/// An error without domain whose localized text stands under kUnderlyingErrorKey.
[[nodiscard]] Error reportError(int code, const char* text);

/// A report format of one entry: a line format and the keys of its values. Keys are not trimmed.
class ReportLines {
 public:
  /// `epoch` is what a number under "Date" counts its whole seconds from, in seconds since 1970.
  ReportLines(const Record& format, std::int64_t epoch);

  /// False for a format without any entry: there is nothing to write then.
  [[nodiscard]] bool hasLine() const { return line_.has_value(); }

  /// Appends one line, "\n" included, for each record; what is no record counts as one without values.
  /// `appendText(string)`, `appendDate(text)` and `appendOther(value)` append a cell to the text. Missing values and
  /// names of pictures are empty.
  template <class Cells>
  void append(const Value& records, TextBuffer& text, Cells cells) {
    const Array* array = records.asArray();
    if (!array) return;
    static const Record kEmpty;
    for (const Value& item : *array) {
      const Record* record = item.asRecord();
      line_->fill(text, [&](std::size_t i) { appendCell(record ? *record : kEmpty, i, text, cells); });
      text.append('\n');
    }
  }

 private:
  struct Key {
    RecordField field;
    bool isDate;
  };

  template <class Cells>
  void appendCell(const Record& record, std::size_t place, TextBuffer& text, Cells& cells) {
    if (place >= keys_.size()) return;
    Key& key = keys_[place];
    const Value* value = key.field.find(record);
    if (!value || value->isNone()) return;
    if (key.isDate) {
      cells.appendDate(dateOf(*value), text);
    } else if (const String* string = value->asString()) {
      if (!namesImage(string->view())) cells.appendText(string->view(), text);
    } else {
      cells.appendOther(*value, text);
    }
  }

  [[nodiscard]] Date dateOf(const Value& value) const;
  /// Asks the file kinds once per extension.
  [[nodiscard]] bool namesImage(std::string_view text);

  std::optional<LineFormat> line_;
  std::vector<Key> keys_;
  std::int64_t epoch_;
  std::unordered_map<std::string, bool> imageExtensions_;
};

}  // namespace chatsum
