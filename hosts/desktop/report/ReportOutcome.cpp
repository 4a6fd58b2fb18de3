#include "hosts/desktop/report/ReportOutcome.h"

#include <unistd.h>

#include <QCoreApplication>
#include <cerrno>
#include <cstring>
#include <optional>

#include "hosts/device/report/ReportName.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::desktop {
namespace {

QString tr(const char* text) { return QCoreApplication::translate("ReportOutcome", text); }
QString shown(const std::string& text) { return QString::fromStdString(text); }

std::string fullName(const WantedReport& wanted) { return wanted.name + "." + wanted.extension; }

ReportOutcome failed(const WantedReport& wanted, const QString& reason) {
  return {{},
          tr("The report “%1” could not be written, and nothing was kept: %2.").arg(shown(fullName(wanted)), reason)};
}

/// Why a file that is there cannot be opened.
QString whyClosed(const std::string& path) {
  const QString reason =
      ::access(path.c_str(), W_OK) == 0 ? tr("unknown reason") : QString::fromUtf8(std::strerror(errno));
  return tr("“%1” cannot be opened for writing (%2)").arg(shown(path), reason);
}

/// What is wrong with what was written; none when nothing is.
std::optional<QString> findDamage(const WantedReport& wanted, const device::WatchedFiles& files) {
  const std::string written = wanted.writtenPlace();
  if (const auto reason = files.firstFailure()) return shown(*reason);
  if (!files.exists(written)) return tr("no file “%1” has come of it").arg(shown(written));
  if (files.filesBegun() == 0) return whyClosed(written);
  if (wanted.extension == "txt") return std::nullopt;  // is written in one step
  const auto size = files.attributes(written).size.value_or(0);
  const auto bytes = files.bytesFound() + files.bytesWritten();
  if (size == bytes) return std::nullopt;
  return tr("%1 of %2 bytes are in “%3”").arg(size).arg(bytes).arg(shown(written));
}

QString wordsFor(device::NameFault fault, const WantedReport& wanted) {
  switch (fault) {
    case device::NameFault::kSlash:
      return tr("A report's name has no “/” in it; Export… puts a copy anywhere.");
    case device::NameFault::kZero:
      return tr("A report's name has no zero character in it.");
    case device::NameFault::kFolder:
    case device::NameFault::kHidden:
      return tr("A report's name does not begin with a dot: the file would be hidden.");
    case device::NameFault::kTooLong:
      return tr("The report's name is %1 bytes long; a file name has %2 at most.")
          .arg(fullName(wanted).size())
          .arg(device::kMostNameBytes);
    case device::NameFault::kEmpty:
      break;
  }
  return tr("A report needs a name.");
}

}  // namespace

std::string WantedReport::place() const { return path::appending(folder, fullName(*this)); }

std::string WantedReport::writtenPlace() const {
  return path::extensionView(name).empty() ? place() : path::appending(folder, name);
}

QString nameProblem(const WantedReport& wanted, const platform::Files& files) {
  const QString name = shown(wanted.name);
  if (const auto fault = device::faultOfName(wanted.name, wanted.extension)) return wordsFor(*fault, wanted);
  if (files.isDirectory(wanted.place())) {
    return tr("“%1” is a folder in the reports folder, so no report can have that name; give another name.")
        .arg(shown(fullName(wanted)));
  }
  if (wanted.writtenPlace() != wanted.place() && files.exists(wanted.writtenPlace())) {
    return tr("There is a file “%1” in the reports folder, which this report would take the place of; give another "
              "name.")
        .arg(name);
  }
  return {};
}

ReportOutcome settleReport(const WantedReport& wanted, device::WatchedFiles& files) {
  const std::string written = wanted.writtenPlace();
  if (const auto damage = findDamage(wanted, files)) {
    // A file that rows were added to was there before, so it is not this report's to take away.
    const bool isNew = files.filesBegun() > 0 && files.bytesFound() == 0;
    if (isNew && files.exists(written)) (void)files.remove(written);
    return failed(wanted, *damage);
  }
  if (files.bytesFound() > 0) {
    return {
        {},
        tr("The older report “%1” could not be removed, so the new rows stand behind its own.").arg(shown(written))};
  }
  if (written == wanted.place()) return {shown(written), {}};
  if (const auto error = files.move(written, wanted.place())) {
    return {{},
            tr("The report is whole, but its file is called “%1”: %2.")
                .arg(shown(written), shown(error->localizedDescription()))};
  }
  return {shown(wanted.place()), {}};
}

}  // namespace chatsum::desktop
