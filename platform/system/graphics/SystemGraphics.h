// Text by the text engine, pages by the PDF writer, surfaces by the pictures. Each thread has contexts of its own;
// those that a thread leaves open end with it, their documents incomplete. Outlives its contexts.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "platform/interfaces/Files.h"
#include "platform/interfaces/Graphics.h"
#include "platform/system/graphics/UnshownCharacters.h"
#include "platform/system/pdf/DocumentFacts.h"

namespace chatsum::platform::system {

class SystemArtwork;
class TextEngine;

class SystemGraphics final : public Graphics {
 public:
  /// Told how many of the expected rows are behind, on the drawing thread.
  using Progress = std::function<void(std::size_t done, std::size_t total)>;

  /// Documents are written through `files`; `artwork` decodes the pictures of expected rows ahead. Both outlive it.
  SystemGraphics(Files& files, SystemArtwork& artwork);
  ~SystemGraphics() override;

  /// For the documents that begin from here on; set while none is open.
  void setProgress(Progress progress) { progress_ = std::move(progress); }
  /// What the documents that begin from here on say about themselves; set while none is open.
  void setDocumentFacts(DocumentFacts facts) { facts_ = std::move(facts); }
  /// Pictures that expected rows named and that could not be drawn, in all documents so far.
  [[nodiscard]] std::size_t missingPictures() const { return missingPictures_; }
  /// The same of those that could be drawn in part.
  [[nodiscard]] std::size_t partialPictures() const { return partialPictures_; }

  /// Whether the last document that was to begin did not, because there is no font to draw text in.
  [[nodiscard]] bool lacksFonts() const { return lacksFonts_; }
  /// Another document is to begin.
  void forgetLackOfFonts() { lacksFonts_ = false; }
  /// Characters for which a box stands in the documents that ended since the last call.
  [[nodiscard]] UnshownCharacters takeUnshownCharacters();

  [[nodiscard]] Size sizeOfText(std::string_view text, const UIFont& font, Size limit, LineBreakMode mode) override;
  [[nodiscard]] Size sizeOfLine(std::string_view text, const UIFont& font, double width, LineBreakMode mode) override;
  Size drawLine(std::string_view text, Point at, double width, const UIFont& font, LineBreakMode mode) override;
  Size drawText(std::string_view text, const Rect& rect, const UIFont& font, LineBreakMode mode,
                TextAlignment alignment) override;
  [[nodiscard]] GraphicsContext* currentContext() override;
  void setColor(const Color& color) override;
  void drawImage(const UIImageRef& image, const Rect& rect) override;
  void beginPDFContextToFile(const std::string& path, const Rect& bounds) override;
  void beginPDFPage(const Rect& bounds) override;
  void endPDFContext() override;
  void abandonPDFContext() noexcept override;
  void expectRows(const ExpectedRows& rows, const UIFont& font, double width) override;
  void beginImageContext(Size size, double scale) override;
  [[nodiscard]] UIImageRef imageFromCurrentContext() override;
  void endImageContext() override;

 private:
  /// For measuring where no document is open.
  [[nodiscard]] TextEngine& engine();

  Files& files_;
  SystemArtwork& artwork_;
  Progress progress_;
  DocumentFacts facts_;
  std::atomic<std::size_t> missingPictures_ = 0, partialPictures_ = 0;
  std::atomic<bool> lacksFonts_ = false;
  std::mutex mutex_;
  std::unique_ptr<TextEngine> engine_;
  UnshownCharacters unshown_;
};

}  // namespace chatsum::platform::system
