#include "hosts/desktop/report/Preview.h"

#include <QDir>
#include <QFileInfo>
#include <QMetaObject>
#include <QStandardPaths>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "hosts/desktop/engine/Texts.h"
#include "hosts/device/report/FileDelivery.h"

namespace chatsum::desktop {

Preview::~Preview() = default;

void Preview::open(const QString& path) {
  close();
  path_ = path;
  if (kind() == QLatin1String("csv")) {
    problem_ = cells_.open(path);
  } else if (kind() == QLatin1String("text")) {
    problem_ = lines_.open(path);
  } else if (const QFileInfo file(path); !file.isFile() || !file.isReadable()) {
    problem_ = tr("The report “%1” cannot be read.").arg(path);
  } else {
    pages_.open(path);
  }
  Q_EMIT changed();
}

void Preview::close() {
  if (path_.isEmpty()) return;
  ask(nullptr);
  path_.clear();
  problem_.clear();
  // The pages of the window go before what they show.
  Q_EMIT changed();
  pages_.close();
  lines_.close();
  cells_.close();
  Q_EMIT closed();
}

void Preview::exportTo(const QUrl& target) {
  if (!isOpen() || isExporting_) return;
  if (!target.isLocalFile()) {
    Q_EMIT exportFailed(tr("A copy can only be put into a folder of this computer; choose another place."));
    return;
  }
  const QFileInfo file(target.toLocalFile());
  if (!file.isFile()) return copyTo(file.filePath(), false);
  askedTarget_ = file.filePath();
  const QString words = tr("“%1” already exists. Do you want to replace it?").arg(file.fileName());
  ask(std::unique_ptr<DesktopAlert>(new DesktopAlert(
      QString(), words, false,
      {{tr("Cancel"), DesktopAlert::Style::kCancel}, {tr("Replace"), DesktopAlert::Style::kDestructive}})));
}

void Preview::answer(int button) {
  if (!question_ || button < 0 || button >= question_->buttonCount()) return;
  const bool isCancelled = button == question_->cancelIndex();
  ask(nullptr);
  if (!isCancelled) copyTo(askedTarget_, true);
}

void Preview::ask(std::unique_ptr<DesktopAlert> question) {
  if (!question && !question_) return;
  // QML has the one before for a moment longer.
  if (question_) question_.release()->deleteLater();
  question_ = std::move(question);
  Q_EMIT questionChanged();
}

void Preview::copyTo(const QString& target, bool replace) {
  if (!isOpen() || isExporting_) return;
  isExporting_ = true;
  Q_EMIT isExportingChanged();
  const auto copy = [this, replace, from = path_.toStdString(), to = target.toStdString()] {
    QString sentence;
    try {
      auto problem = guard_ ? guard_(to) : std::nullopt;
      if (!problem) problem = device::deliver(from, to, replace);
      if (problem) sentence = shownSentence(problem->sentence);
    } catch (const std::bad_alloc&) {
      sentence = tr("There is not enough memory for this.");
    }
    QMetaObject::invokeMethod(
        this, [this, to = QString::fromStdString(to), sentence] { finishExport(to, sentence); }, Qt::QueuedConnection);
  };
  try {
    copying_ = std::jthread(copy);
  } catch (const std::system_error&) {
    copy();  // no thread to be had: it takes its time here
  }
}

void Preview::finishExport(const QString& target, const QString& problem) {
  isExporting_ = false;
  Q_EMIT isExportingChanged();
  if (problem.isEmpty()) {
    Q_EMIT exported(target);
  } else {
    Q_EMIT exportFailed(problem);
  }
}

QUrl Preview::suggestedCopy() const {
  if (!isOpen()) return {};
  // Not everybody has that folder.
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return QUrl::fromLocalFile((QFileInfo(documents).isDir() ? documents : QDir::homePath()) + QLatin1Char('/') + name());
}

QString Preview::name() const { return QFileInfo(path_).fileName(); }

QString Preview::kind() const {
  if (!isOpen()) return {};
  const QString extension = QFileInfo(path_).suffix().toLower();
  if (extension == QLatin1String("pdf") || extension == QLatin1String("csv")) return extension;
  return QStringLiteral("text");
}

}  // namespace chatsum::desktop
