// The programs that judge a PDF file: what they print, and the documents of a test.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "platform/fake/TemporaryFolder.h"
#include "platform/interfaces/Files.h"
#include "platform/system/pdf/PdfDocument.h"

namespace chatsum::platform::system {

/// Bytes in memory as a file, which fails once it holds more than it may.
class MemoryFile final : public FileHandle {
 public:
  explicit MemoryFile(std::shared_ptr<std::string> bytes, std::size_t most = SIZE_MAX)
      : bytes_(std::move(bytes)), most_(most) {}
  std::uint64_t seekToEnd() override { return bytes_->size(); }
  void truncateAt(std::uint64_t offset) override { bytes_->resize(offset); }
  std::optional<Error> write(std::string_view bytes) override {
    if (bytes_->size() + bytes.size() > most_) return Error::posix(28, "The file could not be written");
    *bytes_ += bytes;
    return std::nullopt;
  }

 private:
  std::shared_ptr<std::string> bytes_;
  std::size_t most_;
};

/// What a program printed, errors included, and how it ended.
struct Printed {
  int status = -1;
  std::string text;
};

inline Printed run(const std::string& command) {
  Printed printed;
  std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (!pipe) return printed;
  std::array<char, 4096> part;
  while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe))
    printed.text.append(part.data(), count);
  const int ended = pclose(pipe);
  printed.status = WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
  return printed;
}

/// The bytes of a document that `draw` fills.
inline std::string documentBytes(unsigned threads, const std::function<void(PdfDocument&)>& draw) {
  auto bytes = std::make_shared<std::string>();
  WorkPool pool(threads);
  PdfDocument document(std::make_unique<MemoryFile>(bytes), pool);
  draw(document);
  if (const auto error = document.finish()) return "error: " + error->localizedDescription();
  return *bytes;
}

/// A file of its own that the programs can read.
class PdfOnDisk {
 public:
  explicit PdfOnDisk(const std::string& bytes) : path_(folder_.path() + "/document.pdf") {
    std::ofstream(path_, std::ios::binary) << bytes;
  }
  explicit PdfOnDisk(const std::function<void(PdfDocument&)>& draw) : PdfOnDisk(documentBytes(1, draw)) {}

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string beside(const std::string& name) const { return folder_.path() + "/" + name; }

  /// Empty when qpdf finds the file sound, else its complaints.
  [[nodiscard]] std::string complaints() const {
    const Printed checked = run("qpdf --check " + path_);
    return checked.status == 0 && checked.text.find("WARNING") == std::string::npos ? "" : checked.text;
  }
  /// The text in the order of the content, a line break at each line's end, or in that of reading.
  [[nodiscard]] std::string text(const std::string& options = "-raw") const {
    return run("pdftotext " + options + " -nopgbrk -enc UTF-8 " + path_ + " -").text;
  }
  /// What both renderers have to say about the file: nothing when all is well.
  [[nodiscard]] std::string rendererWarnings() const {
    return run("pdftoppm -r 40 " + path_ + " " + beside("page")).text +
           run("mutool draw -q -N -r 40 -o /dev/null -F ppm " + path_).text;
  }
  /// All objects, streams included, readable.
  [[nodiscard]] std::string objects() const {
    return run("qpdf --qdf --object-streams=disable --no-original-object-ids " + path_ + " -").text;
  }

 private:
  fake::TemporaryFolder folder_;
  std::string path_;
};

inline constexpr Rect kTestPage{{0, 0}, {762, 792}};

}  // namespace chatsum::platform::system
