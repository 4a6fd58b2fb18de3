#include "hosts/device/report/ReportWriting.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "hosts/device/evidence/EvidenceManifest.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/report/DrawingNotes.h"
#include "hosts/device/report/FileDelivery.h"
#include "hosts/device/report/PartialFile.h"
#include "hosts/device/report/ReportName.h"
#include "hosts/device/report/ShownRows.h"
#include "hosts/device/session/SourceGuard.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"
#include "platform/system/files/MakeFolder.h"
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

StoreProblem describeFolder(const std::string& folder, const std::string& reason) {
  return {say("The reports folder '{0}' cannot be made ({1}); give another place with --home.", folder, reason)};
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

/// What a document is called: the report's name without its extension.
std::string titleOf(const std::string& path) {
  const std::string name = path::lastComponent(path);
  return name.substr(0, name.rfind('.'));
}

/// What is wrong with a file that the library says it wrote.
std::optional<std::string> checkWritten(const DeviceSession& session, const std::string& path, ReportFormat format) {
  if (auto failure = session.files().writeFailure()) return failure;
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::string(std::strerror(errno));
  const std::uint64_t bytes = session.files().bytesWritten();
  if (format != ReportFormat::kText && static_cast<std::uint64_t>(status.st_size) != bytes) {
    return say("{0} of {1} bytes arrived", status.st_size, bytes);
  }
  return std::nullopt;
}

StoreProblem describeUnwritten(const std::string& path, const std::string& reason) {
  return {say("The report '{0}' could not be written ({1}); nothing was kept.", path, reason)};
}

StoreProblem describeExisting(const std::string& path) {
  return {
      say("There is already a report '{0}'; use --replace to write it anew, or --name to give another name.", path)};
}

struct Drawn {
  std::optional<StoreProblem> problem;
  std::size_t missing = 0;  ///< pictures that left an empty place
  std::vector<std::string> notes = {};
};

/// Has the library write the records into the partial file, which is to become the report at `path`.
Drawn draw(DeviceSession& session, const WritingOptions& options, const ReportContent& content,
           const PartialFile& partial, const std::string& path, const Array& records) {
  Record request = makeRequest(options.layout, partial.name(), records, content);
  // A text report comes by way of a file that nobody here knows; the others are the partial file itself, which may
  // go at any time once it is there.
  const bool isAtomic = options.layout.format == ReportFormat::kText;
  const auto writing = isAtomic ? PartialFile::writing() : std::unique_lock<std::timed_mutex>();
  session.files().startWatching();
  session.files().guardNewFiles([] { return PartialFile::writing(); });
  session.graphics().setProgress(options.drawn);
  const std::size_t missingBefore = session.graphics().missingPictures();
  DrawingNotes drawing(session.graphics());
  session.graphics().setDocumentFacts(
      {.title = titleOf(path), .language = session.language(), .created = platform::current().clock.now()});
  const Generated generated = generate(request);
  // When the process is being ended, the file is gone and this waits for the end: it was no failure.
  const auto settled = isAtomic ? std::unique_lock<std::timed_mutex>() : PartialFile::writing();
  session.graphics().setProgress(nullptr);
  Drawn drawn{std::nullopt, session.graphics().missingPictures() - missingBefore, drawing.sentences()};
  keep(std::move(request));
  if (generated.failure) {
    const auto fontless = options.layout.format == ReportFormat::kPdf ? drawing.failure() : std::nullopt;
    drawn.problem =
        fontless ? StoreProblem{*fontless} : describeUnwritten(path, session.workingName().shown(*generated.failure));
  } else if (!generated.succeeded) {
    drawn.problem = describeFolder(path::deletingLastComponent(path), say("unknown reason"));
  } else if (auto failure = checkWritten(session, partial.path(), options.layout.format)) {
    drawn.problem = describeUnwritten(path, session.workingName().shown(*failure));
  }
  return drawn;
}

}  // namespace

std::optional<StoreProblem> checkWritingOptions(const WritingOptions& options, const ReportContent& content) {
  const std::string_view extension = extensionOf(options.layout.format);
  if (options.name) {
    if (auto problem = checkReportName(withExtension(*options.name, extension), extension)) return problem;
  }
  return checkLayout(options.layout, content);
}

std::optional<StoreProblem> checkTimes(const TimeRange& range) {
  if (!range.isEmpty()) return std::nullopt;
  return StoreProblem{say("The time after --until lies before the one after --since.")};
}

StoreResult<std::string> findReportPlace(const DeviceSession& session, const WritingOptions& options,
                                         const ReportContent& content, const std::string& defaultName) {
  const std::string_view extension = extensionOf(options.layout.format);
  const std::string name = withExtension(options.name.value_or(reportNameFor(defaultName)), extension);
  if (auto problem = checkReportName(name, extension)) return *problem;
  std::string path = path::appending(ChatsumUtils::defaultLocation(content.appType), name);
  struct stat status {};
  if (::lstat(path.c_str(), &status) == 0) {
    if (S_ISDIR(status.st_mode)) {
      return StoreProblem{say("'{0}' is a folder, so no report can have that name; give another with --name.", path)};
    }
    if (!options.replace) return describeExisting(path);
  }
  if (options.output) {
    if (auto problem = refuseInSource(session.source().facts(), *options.output)) return *problem;
    if (auto problem = checkDelivery(*options.output, options.replace)) return *problem;
  }
  return path;
}

StoreResult<std::uint64_t> writeReport(DeviceSession& session, const WritingOptions& options,
                                       const ReportContent& content, const std::string& path, Array records,
                                       std::vector<std::string>& notes) {
  if (options.writing) options.writing();
  const bool isPlain = session.isPlain() && content.appType == kAppTypeMessages;
  ShownRows shown{std::move(records)};
  if (!isPlain) shown = showWhole(std::move(shown.records), options.layout, beginsLikeAPicture);
  const std::string folder = path::deletingLastComponent(path);
  // A file in the folder's place is told by the library.
  if (const int error = platform::system::makeFolder(folder); error != 0 && error != EEXIST) {
    return describeFolder(folder, std::strerror(error));
  }
  PartialFile partial(folder, std::string(extensionOf(options.layout.format)));
  // Nobody knows the file by the name that it has while it is written.
  session.workingName().set(partial.name(), path::lastComponent(path));
  (void)session.takeDoubtfulPictures();
  Drawn drawn = draw(session, options, content, partial, path, shown.records);
  if (drawn.missing > 0 && !isPlain) {
    // Damage inside a picture shows when it is drawn; that is rare, so no picture is decoded before.
    ShownRows again = showWhole(shown.records, options.layout, comesOut);
    if (again.undrawn > 0) {
      again.undrawn += shown.undrawn;
      again.continued += shown.continued;
      shown = std::move(again);
      drawn = draw(session, options, content, partial, path, shown.records);
    }
  }
  if (drawn.problem) return std::move(*drawn.problem);
  if (shown.undrawn > 0) notes.push_back(describeUndrawn(shown.undrawn));
  for (std::string& sentence : drawn.notes) notes.push_back(std::move(sentence));
  if (const std::size_t doubtful = session.takeDoubtfulPictures(); doubtful > 0) {
    notes.push_back(sayCounted(
        doubtful,
        "{0} picture may not be whole: the backup does not mark where its file ends; when a part is missing, make a "
        "new backup.",
        "{0} pictures may not be whole: the backup does not mark where their files end; when a part is missing, make "
        "a new backup."));
  }
  if (const int error = partial.moveTo(path, options.replace)) {
    return error == EEXIST ? describeExisting(path) : describeUnwritten(path, std::strerror(error));
  }
  if (options.replace) removeEvidenceOf(path);
  if (options.output) {
    if (auto problem = deliver(path, *options.output, options.replace)) return *problem;
  }
  return shown.continued;
}

}  // namespace chatsum::device
