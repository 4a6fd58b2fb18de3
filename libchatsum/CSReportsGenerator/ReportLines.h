// What the line-by-line writers share: a line of text for each record. One report, one thread at a time; the lines of a
// long one are written on two threads inside, which both ask the platform (file kinds, dates) and objects
// (descriptions).
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "libchatsum/CSReportsGenerator/NSArrayFormatExtension.h"
#include "libchatsum/CSReportsGenerator/ReportKeys.h"
#include "platform/foundation/SideThread.h"
#include "platform/foundation/TextBuffer.h"
#include "platform/foundation/Value.h"

namespace chatsum {

/// A report format of one entry: a line format and the keys of its values. Keys are not trimmed.
class ReportLines {
 public:
  /// `epoch` is what a number under "Date" counts its whole seconds from, in seconds since 1970.
  ReportLines(const Record& format, std::int64_t epoch);

  /// False for a format without any entry: there is nothing to write then.
  [[nodiscard]] bool hasLine() const { return line_.has_value(); }

  /// Appends one line, "\n" included, for each record; what is no record counts as one without values. Missing values
  /// and names of pictures are empty. `Cells` appends the others: `appendText(string, text)`, `appendDate(date, text)`
  /// and `appendOther(value, text)`; each thread that writes lines makes one of its own.
  template <class Cells>
  void append(const Value& records, TextBuffer& text) {
    const Array* array = records.asArray();
    if (!array) return;
    ReportLines other(*this);
    Cells cells, otherCells;
    TextBuffer otherText;
    for (const Value* at = array->begin(); at != array->end();) {
      const Value* middle = at + std::min(kBlock, array->end() - at);
      const Value* next = middle + std::min(kBlock, array->end() - middle);
      std::optional<SideThread> second;
      if (middle != next) second.emplace([&] { other.appendLines(middle, next, otherText, otherCells); });
      appendLines(at, middle, text, cells);
      if (second) second->join();
      text.append(otherText.view());
      otherText.clear();
      at = next;
    }
  }

 private:
  /// Records that one thread writes at a time: much work for a thread, little text to hold twice.
  static constexpr std::ptrdiff_t kBlock = 10'000;

  template <class Cells>
  void appendLines(const Value* begin, const Value* end, TextBuffer& text, Cells& cells) {
    static const Record kEmpty;
    for (const Value* item = begin; item != end; ++item) {
      const Record* record = item->asRecord();
      line_->fill(text, [&](std::size_t i) { appendCell(record ? *record : kEmpty, i, text, cells); });
      text.append('\n');
    }
  }

  template <class Cells>
  void appendCell(const Record& record, std::size_t place, TextBuffer& text, Cells& cells) {
    if (place >= keys_.size()) return;
    ReportKey& key = keys_[place];
    const Value* value = key.field.find(record);
    if (!value || value->isNone()) return;
    if (key.isDate) {
      cells.appendDate(reportDate(*value, epoch_), text);
    } else if (const String* string = value->asString()) {
      if (kinds_.kindOf(string->view()) != FileKind::kImage) cells.appendText(string->view(), text);
    } else {
      cells.appendOther(*value, text);
    }
  }

  std::optional<LineFormat> line_;
  std::vector<ReportKey> keys_;
  std::int64_t epoch_;
  FileKindMemo kinds_;
};

}  // namespace chatsum
