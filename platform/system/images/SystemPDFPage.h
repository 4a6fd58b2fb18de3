// A page of a PDF document, read and drawn by the programs of poppler-utils in processes of their own: a hostile
// document can make them fail, and then there is no page. Any thread.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "platform/interfaces/Artwork.h"
#include "platform/system/images/PictureBytes.h"
#include "platform/system/images/PixelSource.h"

namespace chatsum::platform::system {

class SystemPDFPage final : public PDFPage {
 public:
  /// nullptr when the file is no document that can be read, has no such page (the first is 1), or the programs are not
  /// installed. `bytes` is the open file at the path.
  [[nodiscard]] static std::shared_ptr<const SystemPDFPage> open(const std::string& path, PictureBytes& bytes,
                                                                 int number);

  /// As it lies in the document: a turned page is not turned.
  [[nodiscard]] Rect cropBox() const override { return box_; }
  /// What the crop box shows on a white sheet, at exactly that size; nullptr when it cannot be drawn. The same question
  /// again is answered from memory.
  [[nodiscard]] BitmapRef pixels(PixelSize wanted) const;
  /// Bytes of the pixels that are kept.
  [[nodiscard]] std::size_t keptBytes() const;

 private:
  SystemPDFPage(std::string path, FileIdentity identity, int number, Rect box, int turn)
      : path_(std::move(path)), identity_(identity), number_(number), box_(box), turn_(turn) {}
  [[nodiscard]] BitmapRef draw(PixelSize wanted) const;

  const std::string path_;
  const FileIdentity identity_;
  const int number_;
  const Rect box_;
  const int turn_;  // degrees clockwise that viewers turn the page by

  mutable std::mutex mutex_;  // held while drawing: who asks for the same pixels waits for them
  mutable PixelSize keptWanted_;
  mutable BitmapRef kept_;
};

}  // namespace chatsum::platform::system
