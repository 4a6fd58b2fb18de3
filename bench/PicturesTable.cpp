#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "bench/Devices.h"
#include "bench/Photographs.h"
#include "bench/Tables.h"

namespace chatsum::bench {
namespace {

namespace fs = std::filesystem;

/// Where the attachments of these extensions would stand in the copy of the device, `most` of them.
std::vector<fs::path> attachmentFiles(const Bench& bench, const std::string& guid, std::size_t most,
                                      const std::vector<std::string>& extensions) {
  const Run run = runChild(chatsumCommand(bench, {"messages", guid, "--json"}), "");
  std::vector<fs::path> files;
  for (const auto& message : nlohmann::json::parse(run.output)) {
    if (files.size() == most || !message.contains("attachment_location")) continue;
    fs::path file = bench.device / message["attachment_location"].get<std::string>();
    if (std::find(extensions.begin(), extensions.end(), file.extension()) != extensions.end()) files.push_back(file);
  }
  return files;
}

struct Kind {
  std::string name;
  std::vector<std::string> extensions;
  std::function<std::string(int)> bytes;  ///< of the file with that number
};

/// What `kind` costs over the report of the same rows without their files.
bool benchKind(const Bench& bench, const std::string& guid, std::size_t count, int rounds, const Kind& kind) {
  std::vector<Contender> without = {report("pdf", bench, guid)}, with = without;
  without[0].name = "without pictures";
  with[0].name = kind.name;
  runInTurn(without, rounds);
  const std::vector<fs::path> files = attachmentFiles(bench, guid, count, kind.extensions);
  for (std::size_t i = 0; i < files.size(); ++i) {
    fs::create_directories(files[i].parent_path());
    std::ofstream(files[i], std::ios::binary) << kind.bytes(static_cast<int>(i));
  }
  runInTurn(with, rounds);
  for (const fs::path& file : files) fs::remove(file);
  if (without[0].failed || with[0].failed || files.empty()) return false;
  constexpr double kMilliseconds = 1000;
  const auto pictures = static_cast<double>(files.size());
  fmt::print("{:<28} {:>8} {:>9.3f} {:>12.3f} {:>12.3f} {:>9.1f}\n", kind.name, files.size(), wallSeconds(with[0]),
             (wallSeconds(with[0]) - wallSeconds(without[0])) * kMilliseconds / pictures,
             (cpuSeconds(with[0]) - cpuSeconds(without[0])) * kMilliseconds / pictures, peakBytes(with[0]) / 1e6);
  std::fflush(stdout);
  return true;
}

bool benchCount(const fs::path& work, long count, int rounds) {
  // A seventh of the attachments is HEIC, two are JPEG.
  const std::string messages = std::to_string(count * 10 + 50);
  const Bench bench =
      makeBench(work, "pictures", {"--messages", messages, "--conversations", "1", "--attachments", "1"});
  const std::string guid = largestConversation(bench)["guids"][0];
  const std::string plain = jpegPhotograph(), exif = jpegPhotographWithThumbnail();
  const std::optional<std::string> heic = heicPhotographWithThumbnail();
  std::vector<Kind> kinds = {
      {"JPEG", {".jpeg", ".jpg"}, [&](int number) { return numberedJpeg(plain, number); }},
      {"JPEG with Exif thumbnail", {".jpeg", ".jpg"}, [&](int number) { return numberedJpeg(exif, number); }}};
  if (heic) {
    kinds.push_back({"HEIC with thumbnail", {".HEIC"}, [&](int number) { return numberedHeic(*heic, number); }});
  } else {
    fmt::print("HEIC: skipped, libheif has no encoder here\n");
  }
  fmt::print("\nphotographs of 12 megapixels in a PDF report\n");
  fmt::print("{:<28} {:>8} {:>9} {:>12} {:>12} {:>9}\n", "", "files", "wall s", "wall ms each", "cpu ms each",
             "peak MB");
  bool allWorked = true;
  for (const Kind& kind : kinds) {
    allWorked &= benchKind(bench, guid, static_cast<std::size_t>(count), rounds, kind);
  }
  fs::remove_all(bench.device);
  return allWorked;
}

}  // namespace

bool pictureTables(const fs::path& work, const std::vector<long>& counts, int rounds) {
  bool allWorked = true;
  for (const long count : counts) allWorked &= benchCount(work, count, rounds);
  return allWorked;
}

}  // namespace chatsum::bench
