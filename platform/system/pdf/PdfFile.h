// The objects of a PDF file (ISO 32000-1, 7.5) on their way into it: streams as they come, everything else gathered in
// compressed object streams, at last the cross-reference stream. Written in order, in large blocks; after a failed
// write nothing more is written. One thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/interfaces/Files.h"
#include "platform/system/pdf/Sha256.h"

namespace chatsum::platform::system {

class PdfFile {
 public:
  /// The file is empty and open.
  explicit PdfFile(std::unique_ptr<FileHandle> file);

  /// A number that no other object has. One whose object is never written counts as deleted.
  [[nodiscard]] int newObject();
  /// The object of a number, as it is written: a dictionary, an array and the like, never a stream.
  void writeObject(int number, std::string_view object);
  /// A stream. `dictionary` is the inside of its dictionary without the length, which is that of `bytes`.
  void writeStream(int number, std::string_view dictionary, std::string_view bytes);
  /// The same, compressed here.
  void writeCompressed(int number, std::string_view dictionary, std::string_view bytes);

  /// Writes what is left. The file's identifier is made of what stands in it.
  [[nodiscard]] std::optional<Error> finish(int catalog, int information);
  [[nodiscard]] const std::optional<Error>& error() const { return error_; }

 private:
  /// Where an object stands: at an offset, or as the index-th object of an object stream.
  struct Place {
    enum class Kind : std::uint8_t { kNowhere = 0, kOffset = 1, kInStream = 2 };
    std::uint64_t offsetOrStream = 0;
    std::uint32_t index = 0;
    Kind kind = Kind::kNowhere;
  };

  void write(std::string_view bytes);
  void writeBlock();
  void writeGathered();
  void writeCrossReferences(int catalog, int information);
  [[nodiscard]] std::string crossReferenceRows(std::size_t offsetBytes) const;

  std::unique_ptr<FileHandle> file_;
  std::optional<Error> error_;
  std::string block_;
  std::uint64_t written_ = 0;  ///< bytes, those of the block included
  Sha256 hash_;
  std::vector<Place> places_;  ///< by object number

  std::string gathered_, gatheredPlaces_;
  std::uint32_t gatheredCount_ = 0;
  int gatheredNumber_ = 0;  ///< the object stream they go to
};

}  // namespace chatsum::platform::system
