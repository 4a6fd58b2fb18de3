#include "hosts/device/report/ReportJob.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "hosts/device/report/Counted.h"
#include "hosts/device/report/FileDelivery.h"
#include "hosts/device/report/PartialFile.h"
#include "hosts/device/report/ReportName.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/PathComponents.h"
#include "platform/system/graphics/SystemGraphics.h"

namespace chatsum::device {
namespace {

std::string textOf(const Error& error) {
  const String* underlying = error.userInfo[kUnderlyingErrorKey].asString();
  return underlying ? underlying->str() : error.localizedDescription();
}

/// Keeps the records of a report until the process ends; taking a million of them apart is wasted time.
void keep(Record request) {
  static auto* const kept = new std::vector<Record>;  // reachable, and never destroyed
  kept->push_back(std::move(request));
}

/// Texts that name a picture, which the writers leave empty: those of attachments and those that people wrote.
struct Pictures {
  std::uint64_t attached = 0, written = 0;
};

/// A quick look that passes over nearly every text: a picture's name ends with a dot and some letters or digits.
bool mayNameFile(std::string_view text) {
  constexpr std::size_t kLongestEnd = 9;  // with the dot
  const std::string_view end = text.substr(text.size() > kLongestEnd ? text.size() - kLongestEnd : 0);
  const std::size_t dot = end.rfind('.');
  if (dot == std::string_view::npos || dot + 1 == end.size()) return false;
  return std::all_of(end.begin() + static_cast<std::ptrdiff_t>(dot) + 1, end.end(),
                     [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
}

Pictures countPictures(const Array& records) {
  Pictures pictures;
  RecordField textField("Text"), attachmentField("attachment_location");
  for (const Value& item : records) {
    const Value* value = textField.find(*item.asRecord());
    const String* text = value ? value->asString() : nullptr;
    if (!text || !mayNameFile(text->view()) || !ChatsumUtils::isImageFile(text->view())) continue;
    ++(attachmentField.find(*item.asRecord()) ? pictures.attached : pictures.written);
  }
  return pictures;
}

void notePictures(const Array& records, const ReportLayout& layout, std::vector<std::string>& notes) {
  const std::vector<std::string>& keys = layout.keys;
  const bool showsText = keys.empty() || std::find(keys.begin(), keys.end(), "Text") != keys.end();
  if (!showsText) return;
  const Pictures pictures = countPictures(records);
  if (pictures.attached > 0 && layout.format != ReportFormat::kPdf) {
    notes.push_back(counted(pictures.attached, "row is a picture", "rows are pictures") + ", which a " +
                    (layout.format == ReportFormat::kText ? "text" : "csv") +
                    " report cannot show: no text stands there.");
  }
  if (pictures.written > 0) {
    notes.push_back(
        counted(pictures.written, "message is just a picture's file name", "messages are just pictures' file names") +
        " and taken for the picture: no text stands there.");
  }
}

void notePictureless(std::size_t missing, std::vector<std::string>& notes) {
  if (missing == 0) return;
  notes.push_back(counted(missing, "picture is missing or damaged", "pictures are missing or damaged") +
                  ": an empty place stands for it.");
}

/// Why the reports folder could not be made: the library does not tell.
StoreProblem describeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  return {fmt::format("The reports folder '{}' cannot be made ({}); give another place with --home.", folder,
                      error ? error.message() : "unknown reason")};
}

struct Generated {
  bool succeeded = false;
  std::optional<std::string> failure;
};

Generated generate(const Record& request) {
  Generated generated;
  CSReportsGenerator::sharedInstance().generateReport(
      request, [&](const std::string&) { generated.succeeded = true; },
      [&](const Error& error) { generated.failure = textOf(error); });
  return generated;
}

/// What is wrong with a file that the library says it wrote.
std::optional<std::string> checkWritten(const DeviceSession& session, const std::string& path, ReportFormat format) {
  if (auto failure = session.files().writeFailure()) return failure;
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::string(std::strerror(errno));
  const std::uint64_t bytes = session.files().bytesWritten();
  if (format != ReportFormat::kText && static_cast<std::uint64_t>(status.st_size) != bytes) {
    return fmt::format("{} of {} bytes arrived", status.st_size, bytes);
  }
  return std::nullopt;
}

StoreProblem describeUnwritten(const std::string& path, const std::string& reason) {
  return {fmt::format("The report '{}' could not be written ({}); nothing was kept.", path, reason)};
}

StoreProblem describeExisting(const std::string& path) {
  return {fmt::format("There is already a report '{}'; use --replace to write it anew, or --name to give another name.",
                      path)};
}

/// The report's place, when nothing is in the way.
StoreResult<std::string> placeFor(const Conversation& conversation, const ReportOptions& options) {
  const std::string_view extension = extensionOf(options.layout.format);
  const std::string name = withExtension(options.name.value_or(reportNameFor(conversation.name)), extension);
  if (auto problem = checkReportName(name, extension)) return *problem;
  std::string path = path::appending(ChatsumUtils::defaultLocation(kAppTypeMessages), name);
  struct stat status {};
  if (::lstat(path.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) {
      return StoreProblem{
          fmt::format("'{}' is a folder, so no report can have that name; give another with --name.", path)};
    }
    if (!options.replace) return describeExisting(path);
  }
  return path;
}

}  // namespace

std::optional<StoreProblem> checkReportOptions(const ReportOptions& options) {
  const std::string_view extension = extensionOf(options.layout.format);
  if (options.name) {
    if (options.name->empty()) return StoreProblem{"A report needs a name; give one after --name."};
    if (auto problem = checkReportName(withExtension(*options.name, extension), extension)) return problem;
  }
  if (options.reading.range.isEmpty()) return StoreProblem{"The time after --until lies before the one after --since."};
  return checkLayout(options.layout);
}

StoreResult<MadeReport> makeReport(DeviceSession& session, const Conversation& conversation,
                                   const ReportOptions& options) {
  session.startLibrary();
  const StoreResult<std::string> place = placeFor(conversation, options);
  if (!place) return place.problem();
  const std::string& path = place.value();
  if (options.output) {
    if (auto problem = checkDelivery(*options.output, options.replace)) return *problem;
  }

  StoreResult<Reading> read = readConversation(session, conversation, options.reading);
  if (!read) return read.problem();
  Reading& reading = read.value();
  MadeReport made{path, reading.balance, notesOnLayout(options.layout)};
  made.notes.insert(made.notes.end(), reading.notes.begin(), reading.notes.end());
  notePictures(reading.records, options.layout, made.notes);

  if (options.writing) options.writing();
  const std::string folder = path::deletingLastComponent(path);
  PartialFile partial(folder, std::string(extensionOf(options.layout.format)));
  Record request = makeRequest(options.layout, partial.name(), std::move(reading.records));
  {
    // A text report comes by way of a file that nobody here knows; the others are the partial file itself, which may
    // go at any time once it is there.
    const bool isAtomic = options.layout.format == ReportFormat::kText;
    const auto writing = isAtomic ? PartialFile::writing() : std::unique_lock<std::timed_mutex>();
    session.files().startWatching();
    session.files().guardNewFiles([] { return PartialFile::writing(); });
    session.graphics().setProgress(options.drawn);
    const std::size_t missingBefore = session.graphics().missingPictures();
    const Generated generated = generate(request);
    // When the process is being ended, the file is gone and this waits for the end: it was no failure.
    const auto settled = isAtomic ? std::unique_lock<std::timed_mutex>() : PartialFile::writing();
    session.graphics().setProgress(nullptr);
    notePictureless(session.graphics().missingPictures() - missingBefore, made.notes);
    keep(std::move(request));
    if (generated.failure) return describeUnwritten(path, *generated.failure);
    if (!generated.succeeded) return describeFolder(folder);
    if (auto failure = checkWritten(session, partial.path(), options.layout.format)) {
      return describeUnwritten(path, *failure);
    }
  }
  if (const int error = partial.moveTo(path, options.replace)) {
    return error == EEXIST ? describeExisting(path) : describeUnwritten(path, std::strerror(error));
  }
  if (options.output) {
    if (auto problem = deliver(path, *options.output, options.replace)) return *problem;
  }
  return made;
}

}  // namespace chatsum::device
