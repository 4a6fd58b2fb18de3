#include "hosts/device/report/ShownRows.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/device/report/PageTexts.h"
#include "hosts/device/words/ShownWords.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"
#include "platform/system/images/SystemImage.h"

namespace chatsum::device {
namespace {

/// A quick look that passes over nearly every text: a file's name ends with a dot and some letters or digits.
bool mayNameFile(std::string_view text) {
  constexpr std::size_t kLongestEnd = 9;  // with the dot
  while (text.ends_with('/')) text.remove_suffix(1);
  const std::string_view end = text.substr(text.size() > kLongestEnd ? text.size() - kLongestEnd : 0);
  const std::size_t dot = end.rfind('.');
  if (dot == std::string_view::npos || dot + 1 == end.size()) return false;
  return std::all_of(end.begin() + static_cast<std::ptrdiff_t>(dot) + 1, end.end(),
                     [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
}

/// What a writer takes a text for.
enum class Taken { kText, kPicture, kDocument };

Taken takenFor(std::string_view text, bool isPaged) {
  if (!mayNameFile(text)) return Taken::kText;
  if (ChatsumUtils::isImageFile(text)) return Taken::kPicture;
  return isPaged && ChatsumUtils::isPDFFile(text) ? Taken::kDocument : Taken::kText;
}

const std::vector<std::string>& keysOf(const ReportLayout& layout) {
  static const std::vector<std::string> kUsual = {"Name", "Text", "Date"};
  return layout.keys.empty() ? kUsual : layout.keys;
}

std::string nameInBrackets(std::string_view path) { return "[" + nameInWords(path::lastComponent(path)) + "]"; }

/// The cells of records that are texts, as a layout wants them.
class Cells {
 public:
  explicit Cells(const ReportLayout& layout) : isPaged_(layout.format == ReportFormat::kPdf) {
    for (const std::string& key : keysOf(layout)) {
      if (key != "Date") columns_.push_back({key, RecordField(key), key == "Text" || key == "attachment_location"});
    }
  }

  [[nodiscard]] bool isPaged() const { return isPaged_; }
  [[nodiscard]] bool isAttachment(const Record& record) { return attachment_.find(record) != nullptr; }

  /// Calls `use(key, text, taken, names)` for each; `names` says whether the text is the path of the row's attachment.
  template <class Use>
  void forEach(const Record& record, const Use& use) {
    for (Column& column : columns_) {
      const Value* value = column.field.find(record);
      const String* text = value ? value->asString() : nullptr;
      if (!text) continue;
      const Taken taken = takenFor(text->view(), isPaged_);
      use(column.key, text->view(), taken, column.mayName && isAttachment(record));
    }
  }

 private:
  struct Column {
    std::string key;
    RecordField field;
    bool mayName;
  };
  bool isPaged_;
  std::vector<Column> columns_;
  RecordField attachment_{"attachment_location"};
};

/// Makes one record after another harmless.
class Showing {
 public:
  Showing(const ReportLayout& layout, const CanDraw& canDraw) : cells_(layout), canDraw_(canDraw) {}

  /// A look that changes nothing.
  [[nodiscard]] bool mayNeedIt(const Record& record) {
    bool mayNeed = false;
    cells_.forEach(record, [&](const std::string&, std::string_view text, Taken taken, bool) {
      mayNeed = mayNeed || taken != Taken::kText || (cells_.isPaged() && page_.mayBeTall(text));
    });
    return mayNeed;
  }

  /// The rows that show the record, the first in its own place; none when it is shown as it is.
  [[nodiscard]] std::vector<Record> rowsOf(const Record& record) {
    Record named = record;
    bool isChanged = false;
    cells_.forEach(record, [&](const std::string& key, std::string_view text, Taken taken, bool names) {
      if (taken == Taken::kText) return;
      if (auto instead = insteadOf(key, text, names)) {
        named.set(key, std::move(*instead));
        isChanged = true;
      }
    });
    std::vector<Record> rows;
    if (cells_.isPaged()) rows = continuedRows(named);
    if (rows.empty() && isChanged) rows.push_back(std::move(named));
    return rows;
  }

  [[nodiscard]] std::uint64_t undrawn() const { return undrawn_; }

 private:
  /// What shows the text that a writer takes for a file; none: the file's picture does.
  [[nodiscard]] std::optional<std::string> insteadOf(const std::string& key, std::string_view text, bool names) {
    if (!names) return std::string(text) + " ";
    if (!cells_.isPaged()) return key == "Text" ? nameInBrackets(text) : std::string(text) + " ";
    if (!canDraw_ || canDraw_(std::string(text))) return std::nullopt;
    ++undrawn_;
    return nameInBrackets(text);
  }

  /// The rows of a record with texts that are taller than a page; none for another. Further ones have who and when
  /// beside what goes on, and nothing else again.
  [[nodiscard]] std::vector<Record> continuedRows(const Record& record) {
    std::vector<std::pair<std::string, std::vector<std::string>>> cut;
    std::size_t count = 1;
    Record further = record;
    cells_.forEach(record, [&](const std::string& key, std::string_view text, Taken taken, bool) {
      std::vector<std::string> pieces;
      if (taken == Taken::kText && page_.mayBeTall(text)) pieces = page_.piecesOf(text);
      count = std::max(count, pieces.size());
      if (key != "Name" || pieces.size() > 1) further.set(key, std::string());
      if (pieces.size() > 1) cut.emplace_back(key, std::move(pieces));
    });
    if (count == 1) return {};
    std::vector<Record> rows(count, further);
    rows.front() = record;
    for (auto& [key, pieces] : cut) {
      for (std::size_t row = 0; row < pieces.size(); ++row) rows[row].set(key, std::move(pieces[row]));
    }
    return rows;
  }

  Cells cells_;
  const CanDraw& canDraw_;
  PageTexts page_;
  std::uint64_t undrawn_ = 0;
};

}  // namespace

bool beginsLikeAPicture(const std::string& path) {
  const platform::Artwork& artwork = platform::current().artwork;
  if (ChatsumUtils::isImageFile(path)) return artwork.imageWithContentsOfFile(path) != nullptr;
  return artwork.pageOfDocument(path, 1) != nullptr;
}

bool comesOut(const std::string& path) {
  const platform::UIImageRef shown =
      ChatsumUtils::isImageFile(path) ? ChatsumUtils::thumbnailFromFile(path) : ChatsumUtils::thumbnailForPDF(path);
  const auto* image = platform::system::SystemImage::of(shown);
  const auto pixels = image ? image->pixels() : nullptr;
  return pixels && pixels->wholeness != platform::system::Wholeness::kNothing;
}

ShownRows showWhole(Array records, const ReportLayout& layout, const CanDraw& canDraw) {
  Showing showing(layout, canDraw);
  std::vector<std::pair<std::size_t, Value>> further;  // the place of the row that each follows
  for (std::size_t place = 0; place < records.size(); ++place) {
    const Record* record = std::as_const(records)[place].asRecord();
    if (!record || !showing.mayNeedIt(*record)) continue;
    std::vector<Record> rows = showing.rowsOf(*record);
    if (rows.empty()) continue;
    records.mutableItems()[place] = Value(std::move(rows.front()));
    for (std::size_t row = 1; row < rows.size(); ++row) further.emplace_back(place, Value(std::move(rows[row])));
  }
  const auto continued = static_cast<std::uint64_t>(further.size());
  if (further.empty()) return {std::move(records), 0, showing.undrawn()};
  std::vector<Value> all;
  all.reserve(records.size() + further.size());
  auto next = further.begin();
  for (std::size_t place = 0; place < records.size(); ++place) {
    all.push_back(std::as_const(records)[place]);
    for (; next != further.end() && next->first == place; ++next) all.push_back(std::move(next->second));
  }
  return {Array(std::move(all)), continued, showing.undrawn()};
}

HiddenRows countHidden(const Array& records, const ReportLayout& layout) {
  HiddenRows hidden;
  Cells cells(layout);
  PageTexts page;
  for (const Value& item : records) {
    if (!item.asRecord()) continue;
    cells.forEach(*item.asRecord(), [&](const std::string& key, std::string_view text, Taken taken, bool names) {
      if (key != "Text") return;
      if (taken != Taken::kText && !names) ++hidden.texts;
      if (taken != Taken::kText && names && !cells.isPaged()) ++hidden.pictures;
      if (taken == Taken::kText && cells.isPaged() && page.isTall(text)) ++hidden.cutOff;
    });
  }
  return hidden;
}

std::string keptAsText(std::string text) {
  if (takenFor(text, true) != Taken::kText) text += ' ';
  return text;
}

}  // namespace chatsum::device
