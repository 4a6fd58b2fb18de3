// Writes a PDF document (ISO 32000-1, version 1.5) page by page. Pages are compressed on other threads and written in
// order, so a long document never stands in memory. The same operations give the same bytes. One thread at a time.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/Error.h"
#include "platform/foundation/Geometry.h"
#include "platform/interfaces/Files.h"
#include "platform/interfaces/Graphics.h"
#include "platform/system/images/Bitmap.h"
#include "platform/system/pdf/DocumentFacts.h"
#include "platform/system/text/TextLayout.h"
#include "platform/system/work/WorkPool.h"

namespace chatsum::platform::system {

class PdfDocument {
 public:
  /// The file is empty and open; the pool must outlive the document.
  PdfDocument(std::unique_ptr<FileHandle> file, WorkPool& pool);
  /// A document that was not finished leaves an incomplete file.
  ~PdfDocument();
  PdfDocument(const PdfDocument&) = delete;
  PdfDocument& operator=(const PdfDocument&) = delete;

  /// Ends the page before, if any. Points; everything drawn counts from the rectangle's top left corner.
  void beginPage(const Rect& bounds);

  /// Shows all lines of a layout, the first one's top left at `at`; a line of width w starts at `at.x` plus
  /// (`width` - w) times `shift` (0 left, 0.5 centre, 1 right). The layout is used before the call returns, its pieces
  /// until the document is finished.
  void showText(const TextLayout& layout, Point at, double width, double shift, const Color& color);
  void strokeLine(Point from, Point to, double lineWidth, const Color& color);
  /// Stretches the pixels into the rectangle. Equal pixels stand in the file once.
  void drawBitmap(const Bitmap& bitmap, const Rect& rect);

  /// What the document says about itself; until it is finished.
  void describe(DocumentFacts facts);

  /// Writes what is left: fonts, page tree, cross-references. A document without pages gets an empty one. Answers the
  /// first error of a write, after which nothing more was written.
  [[nodiscard]] std::optional<Error> finish();

 private:
  class Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace chatsum::platform::system
