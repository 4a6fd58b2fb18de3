// The paginated report: a heading, the titles over a rule, then rows of text and pictures in columns of one width.
// Pages break cell by cell, so the last cells of a row can stand on the next page.

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/CSReportsGenerator/NSArrayFormatExtension.h"
#include "libchatsum/CSReportsGenerator/ReportKeys.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/foundation/TextBuffer.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

using platform::LineBreakMode;
using platform::TextAlignment;
using platform::UIFont;
using platform::UIImageRef;

constexpr const char* kOperation = "-[CSReportsGenerator generatePDFReport:format:columns:records:]";
constexpr const char* kWebAddress = " https://chatsum.example.com";  // stands on the link line, hence the space

// Points; the page's width is our own.
constexpr Rect kPage{{0, 0}, {762, 792}};
constexpr double kTop = 50, kBottom = 692, kMeasuringWidth = 662;
constexpr double kColumnWidth = 250, kColumnsLeft = 50, kHeadingLeft = 110;
constexpr Rect kLogoPlace{{50, 50}, {48, 48}};
constexpr double kGapAfterHeading = 30, kGapAfterRow = 10;
constexpr double kRuleLeft = 45, kRuleRight = 712, kRuleWidth = 2;
constexpr double kUnlimited = std::numeric_limits<float>::max();
constexpr double kThumbnailSide = 64;

const UIFont& titleFont() {
  static const UIFont font{"Helvetica-Bold", 20};
  return font;
}
const UIFont& columnTitleFont() {
  static const UIFont font{"Helvetica-Bold", 16};
  return font;
}
const UIFont& cellFont() {
  static const UIFont font{"Verdana", 14};
  return font;
}
const UIFont& noticeFont() {
  static const UIFont font{"Verdana", 10};
  return font;
}

/// What one cell shows: a text, or the picture of the file that the text names.
struct Cell {
  std::string_view text;
  FileKind kind = FileKind::kOther;
};

/// Makes the cells of records. One thread at a time.
class Cells {
 public:
  explicit Cells(const std::vector<ReportKey>& keys) : keys_(keys) {}

  [[nodiscard]] std::size_t perRecord() const { return keys_.size(); }
  /// The cell of a record under a key; what is no record has empty ones. Good until the next call.
  [[nodiscard]] Cell cell(const Value& record, std::size_t key) {
    const Record* values = record.asRecord();
    const Value* value = values ? keys_[key].field.find(*values) : nullptr;
    if (!value || value->isNone()) return {};
    if (keys_[key].isDate) {
      if (!dates_) dates_ = ChatsumUtils::dateFormatter().useDateFormat(kReportDateFormat);
      date_.clear();
      dates_->append(reportDate(*value, kSecondsFrom1970To2001), date_);
      return {date_.view()};
    }
    if (const String* string = value->asString()) return {string->view(), kinds_.kindOf(string->view())};
    other_ = value->description();
    return {other_};
  }

 private:
  std::vector<ReportKey> keys_;
  FileKindMemo kinds_;
  std::unique_ptr<platform::DateText> dates_;
  TextBuffer date_;
  std::string other_;
};

/// Tells the platform what the rows will show.
class RowsToCome final : public platform::ExpectedRows {
 public:
  RowsToCome(const Array& records, const std::vector<ReportKey>& keys) : records_(records), keys_(keys) {}
  [[nodiscard]] std::size_t count() const override { return records_.size(); }
  [[nodiscard]] std::unique_ptr<platform::ExpectedRowReader> reader() const override {
    return std::make_unique<Reader>(records_, keys_);
  }

 private:
  class Reader final : public platform::ExpectedRowReader {
   public:
    Reader(const Array& records, const std::vector<ReportKey>& keys) : records_(records), cells_(keys) {}
    void read(std::size_t row, platform::ExpectedCells& expected) override {
      for (std::size_t key = 0; key < cells_.perRecord(); ++key) {
        const Cell cell = cells_.cell(records_[row], key);
        if (cell.kind == FileKind::kOther) {
          expected.text(cell.text);
        } else if (cell.kind == FileKind::kImage) {
          expected.picture(std::string(cell.text), kThumbnailSide);
        }
      }
    }

   private:
    const Array& records_;
    Cells cells_;
  };

  const Array& records_;
  const std::vector<ReportKey>& keys_;
};

/// The current document, which is given up unless it is ended. The platform uses what it was handed until then, on
/// other threads, too: so this is made after that and goes first.
class OpenDocument {
 public:
  explicit OpenDocument(platform::Graphics& graphics) : graphics_(graphics) {}
  OpenDocument(const OpenDocument&) = delete;
  OpenDocument& operator=(const OpenDocument&) = delete;
  ~OpenDocument() {
    if (!isEnded_) graphics_.abandonPDFContext();
  }
  void end() {
    isEnded_ = true;
    graphics_.endPDFContext();
  }

 private:
  platform::Graphics& graphics_;
  bool isEnded_ = false;
};

/// One document under way, from its first page on.
class PDFReport {
 public:
  PDFReport(CSReportsGenerator& generator, platform::GraphicsContext& context)
      : generator_(generator), context_(context), graphics_(platform::current().graphics) {}

  void drawHeading() {
    graphics_.beginPDFPage(kPage);
    graphics_.drawImage(ChatsumUtils::imageWithFileName("Chatsum"), kLogoPlace);

    const std::string title = localized("Chatsum");
    lastSize_ = generator_.sizeForString(title, titleFont(), kMeasuringWidth, LineBreakMode::kWordWrap);
    generator_.drawString(title, Point{kHeadingLeft, y_}, kColumnWidth, titleFont(), LineBreakMode::kWordWrap);

    y_ += lastSize_.height;
    drawNotice(notice());

    y_ += lastSize_.height;
    drawNotice(localized("For more information, please visit at"));
    graphics_.setColor(platform::kBlueColor);
    generator_.drawString(kWebAddress, Point{kHeadingLeft + lastSize_.width, y_}, kMeasuringWidth, noticeFont(),
                          LineBreakMode::kWordWrap);
    graphics_.setColor(platform::kBlackColor);

    y_ += lastSize_.height + kGapAfterHeading;
  }

  void drawColumnTitles(const Value& columns) {
    if (const Array* titles = columns.asArray()) {
      double x = 0;
      for (const Value& title : *titles) {
        const std::string text = title.description();
        generator_.drawString(text, Point{x + kColumnsLeft, y_}, kColumnWidth, columnTitleFont(),
                              LineBreakMode::kWordWrap);
        x += kColumnWidth;
        lastSize_ = generator_.sizeForString(text, columnTitleFont(), kMeasuringWidth, LineBreakMode::kWordWrap);
      }
    }
    y_ += lastSize_.height;  // without titles that of the link line: both share one size

    context_.setStrokeColor(platform::kDarkGrayColor);
    context_.moveTo({kRuleLeft, y_});
    context_.setLineWidth(kRuleWidth);
    context_.addLineTo({kRuleRight, y_});
    context_.strokePath();
    graphics_.setColor(platform::kDarkGrayColor);
  }

  void drawRow(const Value& record, Cells& cells) {
    double x = 0, rowHeight = 0;
    for (std::size_t key = 0; key < cells.perRecord(); ++key) {
      const Cell cell = cells.cell(record, key);
      rowHeight = std::max(rowHeight, cell.kind == FileKind::kOther ? drawText(cell.text, x) : drawPicture(cell, x));
      x += kColumnWidth;
    }
    y_ += rowHeight + kGapAfterRow;
  }

 private:
  static std::string localized(const char* text) { return platform::current().mainBundle.localizedString(text); }

  static std::string notice() {
    DateFormatter& formatter = ChatsumUtils::dateFormatter();
    formatter.setStyles(platform::DateStyle::kMedium, platform::DateStyle::kShort, false);
    const std::string now = formatter.stringFromDate(platform::current().clock.now());
    return NSArrayFormatExtension::stringWithFormat(
        localized(
            "This report was generated on %@ by using Chatsum - a new reports generation tweak for your iDevice."),
        Array{now});
  }

  void drawNotice(const std::string& text) {
    lastSize_ = generator_.sizeForString(text, noticeFont(), kMeasuringWidth, LineBreakMode::kWordWrap);
    generator_.drawString(text, Point{kHeadingLeft, y_}, kMeasuringWidth, noticeFont(), LineBreakMode::kWordWrap);
  }

  /// Draws a cell and answers its height.
  double drawText(std::string_view text, double x) {
    const Size size =
        generator_.sizeForString(text, cellFont(), Size{kColumnWidth, kUnlimited}, LineBreakMode::kWordWrap);
    beginCell(size.height);
    generator_.drawString(text, Rect{{x + kColumnsLeft, y_}, size}, cellFont(), LineBreakMode::kWordWrap,
                          TextAlignment::kLeft);
    return size.height;
  }

  double drawPicture(const Cell& cell, double x) {
    constexpr int kImageLine = 389, kPDFLine = 392;
    const std::string path(cell.text);
    const bool isImage = cell.kind == FileKind::kImage;
    logging::information(kOperation, isImage ? kImageLine : kPDFLine, "Generating thumbnail for file at " + path);
    const UIImageRef picture = isImage ? ChatsumUtils::thumbnailFromFile(path) : ChatsumUtils::thumbnailForPDF(path);
    const Size size = picture ? picture->size() : Size{};
    beginCell(size.height);
    graphics_.drawImage(picture, {{x + kColumnsLeft, y_}, size});
    return size.height;
  }

  /// A new page when the cell would pass the bottom. The number is drawn with each cell, always at the same place.
  void beginCell(double height) {
    if (y_ + height > kBottom) {
      graphics_.beginPDFPage(kPage);
      y_ = kTop;
      ++pageNumber_;
    }
    generator_.drawPageNumber(pageNumber_);
  }

  CSReportsGenerator& generator_;
  platform::GraphicsContext& context_;
  platform::Graphics& graphics_;
  std::int64_t pageNumber_ = 1;
  double y_ = kTop;
  Size lastSize_;
};

}  // namespace

std::optional<Error> CSReportsGenerator::generatePDFReport(const std::string& path, const Value& format,
                                                           const Value& columns, const Value& records) {
  constexpr int kInvalidFormatLine = 292, kWritingLine = 433;
  const Record* dictionary = format.asRecord();
  if (!dictionary) return invalidReportFormat(format, kOperation, kInvalidFormatLine);

  static const Array kNoRecords;
  const Array* array = records.asArray();
  const Array& rows = array ? *array : kNoRecords;
  const std::vector<ReportKey> keys = reportKeys(*dictionary);
  const RowsToCome toCome(rows, keys);

  auto& graphics = platform::current().graphics;
  graphics.beginPDFContextToFile(path, Rect{});
  platform::GraphicsContext* context = graphics.currentContext();
  if (!context) return reportError(kUnableToCreate, "Unable to generate.");
  OpenDocument document(graphics);

  PDFReport report(*this, *context);
  report.drawHeading();
  report.drawColumnTitles(columns);

  graphics.expectRows(toCome, cellFont(), kColumnWidth);
  Cells cells(keys);
  for (const Value& record : rows) report.drawRow(record, cells);

  document.end();
  logging::information(kOperation, kWritingLine, "Writing data to file " + path);
  return std::nullopt;
}

}  // namespace chatsum
