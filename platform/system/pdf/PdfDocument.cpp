#include "platform/system/pdf/PdfDocument.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "platform/system/pdf/Deflate.h"
#include "platform/system/pdf/PageContent.h"
#include "platform/system/pdf/PageTree.h"
#include "platform/system/pdf/PdfFile.h"
#include "platform/system/pdf/PdfFonts.h"
#include "platform/system/pdf/PdfImage.h"
#include "platform/system/pdf/PdfSyntax.h"
#include "platform/system/pdf/PieceTexts.h"
#include "platform/system/pdf/StreamQueue.h"

namespace chatsum::platform::system {
namespace {

/// A page alone is too little work for a job.
constexpr std::size_t kPagesInGroup = 32;

/// Without a usable size a page gets the least one that readers show, and no page is larger than they can show.
Size pageSize(Size size) {
  const auto usable = [](double side) {
    constexpr double kLeast = 3, kMost = 14400;
    return std::isnan(side) ? kLeast : std::clamp(side, kLeast, kMost);
  };
  return {usable(size.width), usable(size.height)};
}

std::string mediaBox(Size size) {
  std::string box = "/MediaBox[0 0 ";
  pdf::appendHundredths(box, pdf::hundredths(size.width));
  box += ' ';
  pdf::appendHundredths(box, pdf::hundredths(size.height));
  return box + "]";
}

Sha256::Digest hashOf(const Bitmap& bitmap) {
  Sha256 hash;
  hash.add(static_cast<std::uint32_t>(bitmap.width));
  hash.add(static_cast<std::uint32_t>(bitmap.height));
  hash.add(bitmap.rgba);
  return hash.finish();
}

std::string catalogEntries(const DocumentFacts& facts) {
  std::string entries;
  if (!facts.language.empty()) {
    entries += "/Lang(";
    pdf::appendLiteral(entries, facts.language);
    entries += ")";
  }
  if (!facts.title.empty()) entries += "/ViewerPreferences<</DisplayDocTitle true>>";
  return entries;
}

std::string informationEntries(const DocumentFacts& facts) {
  std::string entries;
  if (!facts.title.empty()) entries += "/Title" + pdf::textString(facts.title);
  entries += "/Creator(Chatsum)/Producer(Chatsum)";
  if (facts.created) entries += "/CreationDate" + pdf::dateString(*facts.created);
  return entries;
}

}  // namespace

class PdfDocument::Parts {
 public:
  Parts(std::unique_ptr<FileHandle> handle, WorkPool& pool)
      : file_(std::move(handle)),
        queue_(file_, pool),
        fonts_(file_, queue_),
        texts_(fonts_),
        fontNames_(file_.newObject()) {}

  void beginPage(Size size) {
    endPage();
    size_ = pageSize(size);
    if (!firstSize_) firstSize_ = size_;
    page_.emplace(size_.height, fonts_, texts_);
  }

  [[nodiscard]] PageContent* page() { return page_ && !file_.error() ? &*page_ : nullptr; }

  /// The image object of the pixels.
  int imageOf(const Bitmap& bitmap) {
    int& image = images_[hashOf(bitmap)];
    if (image != 0) return image;
    image = file_.newObject();
    const int mask = hasTransparency(bitmap) ? file_.newObject() : 0;
    queue_.add(2 * bitmap.rgba.size(), [bitmap, number = image, mask] { return imageStreams(bitmap, number, mask); });
    return image;
  }

  std::optional<Error> finish() {
    if (!firstSize_) beginPage({});
    endPage();
    queuePages();
    const int catalog = file_.newObject(), information = file_.newObject();
    file_.writeObject(fontNames_, "<<" + fonts_.write() + ">>");
    const int root =
        pages_.finish(file_, mediaBox(*firstSize_) + "/Resources<</Font " + pdf::reference(fontNames_) + ">>");
    file_.writeObject(catalog, "<</Type/Catalog/Pages " + pdf::reference(root) + catalogEntries(facts_) + ">>");
    file_.writeObject(information, "<<" + informationEntries(facts_) + ">>");
    return file_.finish(catalog, information);
  }

  void describe(DocumentFacts facts) { facts_ = std::move(facts); }

 private:
  struct EndedPage {
    std::string content, entries;
  };

  void endPage() {
    if (!page_) return;
    EndedPage ended{page_->take(), size_ == *firstSize_ ? "" : mediaBox(size_)};
    if (const std::vector<int> images = page_->images(); !images.empty()) {
      ended.entries += "/Resources<</Font " + pdf::reference(fontNames_) + "/XObject<<";
      for (const int image : images) ended.entries += "/I" + std::to_string(image) + " " + pdf::reference(image);
      ended.entries += ">>>>";
    }
    page_.reset();
    ended_.push_back(std::move(ended));
    if (ended_.size() == kPagesInGroup) queuePages();
  }

  /// Numbers of a group's contents follow each other, and so do those of its pages: that makes the table of objects
  /// small.
  void queuePages() {
    std::vector<std::pair<int, std::string>> contents;
    std::size_t weight = 0;
    for (EndedPage& page : ended_) {
      weight += page.content.size();
      contents.emplace_back(file_.newObject(), std::move(page.content));
    }
    for (std::size_t i = 0; i < ended_.size(); ++i) {
      pages_.addPage(file_, ended_[i].entries + "/Contents " + pdf::reference(contents[i].first));
    }
    ended_.clear();
    queue_.add(weight, [contents = std::move(contents)] {
      std::vector<PdfStream> made;
      made.reserve(contents.size());
      for (const auto& [number, content] : contents) {
        made.push_back({number, "/Filter/FlateDecode", deflated(content)});
      }
      return made;
    });
  }

  PdfFile file_;
  StreamQueue queue_;
  PdfFonts fonts_;
  PieceTexts texts_;
  const int fontNames_;  ///< the object that names the fonts as resources of all pages
  PageTree pages_;
  std::optional<PageContent> page_;
  Size size_;
  std::optional<Size> firstSize_;
  std::vector<EndedPage> ended_;  ///< not yet in the queue
  std::map<Sha256::Digest, int> images_;
  DocumentFacts facts_;
};

PdfDocument::PdfDocument(std::unique_ptr<FileHandle> file, WorkPool& pool)
    : parts_(std::make_unique<Parts>(std::move(file), pool)) {}

PdfDocument::~PdfDocument() = default;

void PdfDocument::describe(DocumentFacts facts) { parts_->describe(std::move(facts)); }

void PdfDocument::beginPage(const Rect& bounds) { parts_->beginPage(bounds.size); }

void PdfDocument::showText(const TextLayout& layout, Point at, double width, double shift, const Color& color) {
  if (PageContent* page = parts_->page()) page->showText(layout, at, width, shift, color);
}

void PdfDocument::strokeLine(Point from, Point to, double lineWidth, const Color& color) {
  if (PageContent* page = parts_->page()) page->strokeLine(from, to, lineWidth, color);
}

void PdfDocument::drawBitmap(const Bitmap& bitmap, const Rect& rect) {
  if (bitmap.isEmpty()) return;
  if (PageContent* page = parts_->page()) page->drawImage(parts_->imageOf(bitmap), rect);
}

std::optional<Error> PdfDocument::finish() { return parts_->finish(); }

}  // namespace chatsum::platform::system
