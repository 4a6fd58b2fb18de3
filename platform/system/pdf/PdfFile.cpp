#include "platform/system/pdf/PdfFile.h"

#include <libdeflate.h>

#include <bit>
#include <utility>

#include "platform/system/pdf/Deflate.h"
#include "platform/system/pdf/PdfSyntax.h"

namespace chatsum::platform::system {
namespace {

constexpr std::size_t kBlock = 256 * 1024;
/// Readers take a whole object stream apart to have one object of it.
constexpr std::uint32_t kMostGathered = 128;
constexpr std::size_t kMostGatheredBytes = 64 * 1024;

void appendBigEndian(std::string& to, std::uint64_t value, std::size_t bytes) {
  while (bytes-- > 0) to += static_cast<char>((value >> (8 * bytes)) & 0xFF);
}

/// The rows of a table as what changes from row to row (the predictor "Up" of PNG), which compresses far better.
std::string differences(const std::string& rows, std::size_t width) {
  std::string made;
  made.reserve(rows.size() + rows.size() / width + 1);
  for (std::size_t at = 0; at < rows.size(); ++at) {
    if (at % width == 0) made += '\2';
    const char above = at < width ? '\0' : rows[at - width];
    made += static_cast<char>(rows[at] - above);
  }
  return made;
}

}  // namespace

PdfFile::PdfFile(std::unique_ptr<FileHandle> file) : file_(std::move(file)), places_(1) {
  block_.reserve(kBlock);
  write("%PDF-1.5\n%\xE2\xE3\xCF\xD3\n");
}

int PdfFile::newObject() {
  places_.emplace_back();
  return static_cast<int>(places_.size() - 1);
}

void PdfFile::writeObject(int number, std::string_view object) {
  if (error_) return;
  if (gatheredCount_ == 0) gatheredNumber_ = newObject();
  places_[static_cast<std::size_t>(number)] = {static_cast<std::uint64_t>(gatheredNumber_), gatheredCount_,
                                               Place::Kind::kInStream};
  pdf::appendInteger(gatheredPlaces_, number);
  gatheredPlaces_ += ' ';
  pdf::appendInteger(gatheredPlaces_, static_cast<std::int64_t>(gathered_.size()));
  gatheredPlaces_ += ' ';
  gathered_ += object;
  gathered_ += '\n';
  if (++gatheredCount_ == kMostGathered || gathered_.size() > kMostGatheredBytes) writeGathered();
}

void PdfFile::writeGathered() {
  if (gatheredCount_ == 0) return;
  const std::string dictionary =
      "/Type/ObjStm/N " + std::to_string(gatheredCount_) + "/First " + std::to_string(gatheredPlaces_.size());
  writeCompressed(gatheredNumber_, dictionary, gatheredPlaces_ + gathered_);
  gathered_.clear();
  gatheredPlaces_.clear();
  gatheredCount_ = 0;
}

void PdfFile::writeStream(int number, std::string_view dictionary, std::string_view bytes) {
  if (error_) return;
  places_[static_cast<std::size_t>(number)] = {written_, 0, Place::Kind::kOffset};
  std::string head = std::to_string(number) + " 0 obj\n<<";
  head += dictionary;
  head += "/Length " + std::to_string(bytes.size()) + ">>stream\n";
  write(head);
  write(bytes);
  write("\nendstream\nendobj\n");
}

void PdfFile::writeCompressed(int number, std::string_view dictionary, std::string_view bytes) {
  if (error_) return;
  writeStream(number, std::string(dictionary) + "/Filter/FlateDecode", deflated(bytes));
}

std::optional<Error> PdfFile::finish(int catalog, int information) {
  writeGathered();
  writeCrossReferences(catalog, information);
  writeBlock();
  return error_;
}

void PdfFile::write(std::string_view bytes) {
  written_ += bytes.size();
  if (block_.size() + bytes.size() > kBlock) writeBlock();
  block_ += bytes;
}

void PdfFile::writeBlock() {
  // A checksum of each block is enough to tell files apart, and costs next to nothing.
  hash_.add(libdeflate_crc32(0, block_.data(), block_.size()));
  if (!error_ && !block_.empty()) error_ = file_->write(block_);
  block_.clear();
}

std::string PdfFile::crossReferenceRows(std::size_t offsetBytes) const {
  // Deleted objects form a ring that begins at object 0; each names the next one.
  std::vector<std::uint64_t> nextDeleted(places_.size(), 0);
  std::uint64_t next = 0;
  for (std::size_t number = places_.size(); number-- > 0;) {
    if (places_[number].kind != Place::Kind::kNowhere) continue;
    nextDeleted[number] = next;
    next = number;
  }
  std::string rows;
  rows.reserve(places_.size() * (offsetBytes + 3));
  for (std::size_t number = 0; number < places_.size(); ++number) {
    const Place& place = places_[number];
    const bool isDeleted = place.kind == Place::Kind::kNowhere;
    rows += static_cast<char>(place.kind);
    appendBigEndian(rows, isDeleted ? nextDeleted[number] : place.offsetOrStream, offsetBytes);
    appendBigEndian(rows, isDeleted ? (number == 0 ? 0xFFFF : 0) : place.index, 2);
  }
  return rows;
}

void PdfFile::writeCrossReferences(int catalog, int information) {
  if (error_) return;
  const int number = newObject();
  const std::uint64_t start = written_;
  places_.back() = {start, 0, Place::Kind::kOffset};
  // Object streams have numbers of objects, which need no more bytes than offsets do.
  const auto offsetBytes = static_cast<std::size_t>(std::bit_width(start) + 7) / 8;

  Sha256 identified = hash_;
  identified.add(libdeflate_crc32(0, block_.data(), block_.size()));
  identified.add(static_cast<std::uint32_t>(start));
  const Sha256::Digest digest = identified.finish();
  std::string identifier;
  pdf::appendHex(identifier, {reinterpret_cast<const char*>(digest.data()), 16});

  const std::string width = std::to_string(offsetBytes + 3);
  writeCompressed(number,
                  "/Type/XRef/Size " + std::to_string(places_.size()) + "/W[1 " + std::to_string(offsetBytes) +
                      " 2]/Root " + pdf::reference(catalog) + "/Info " + pdf::reference(information) + "/ID[<" +
                      identifier + "><" + identifier + ">]/DecodeParms<</Predictor 12/Columns " + width + ">>",
                  differences(crossReferenceRows(offsetBytes), offsetBytes + 3));
  write("startxref\n" + std::to_string(start) + "\n%%EOF\n");
}

}  // namespace chatsum::platform::system
