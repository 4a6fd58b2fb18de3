// The preview of one report for QML: pages, lines or a table, by the file's extension, and a copy of it where the user
// wants one. Main thread only.
#pragma once

#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "hosts/desktop/report/CsvTableModel.h"
#include "hosts/desktop/report/DesktopAlert.h"
#include "hosts/desktop/report/PdfPagesModel.h"
#include "hosts/desktop/report/TextLinesModel.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::desktop {

class Preview final : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed)
  Q_PROPERTY(QString path READ path NOTIFY changed)
  /// The file's name with extension.
  Q_PROPERTY(QString name READ name NOTIFY changed)
  /// "pdf", "csv", or "text" for everything else; empty when nothing is open.
  Q_PROPERTY(QString kind READ kind NOTIFY changed)
  /// Why the file cannot be shown, one sentence; empty when it can.
  Q_PROPERTY(QString problem READ problem NOTIFY changed)
  Q_PROPERTY(chatsum::desktop::PdfPagesModel* pages READ pages CONSTANT)
  Q_PROPERTY(QAbstractItemModel* textModel READ textModel CONSTANT)
  Q_PROPERTY(QAbstractItemModel* tableModel READ tableModel CONSTANT)
  /// Where a copy might go: a file of that name in the user's folder of documents, or in the home folder.
  Q_PROPERTY(QUrl suggestedCopy READ suggestedCopy NOTIFY changed)
  /// A DesktopAlert, whether an older file shall go; null when nothing is asked.
  Q_PROPERTY(QObject* question READ question NOTIFY questionChanged)
  Q_PROPERTY(bool isExporting READ isExporting NOTIFY isExportingChanged)

 public:
  ~Preview() override;

  /// Asked, on another thread, before a copy is made: why none may go there, or none. Set it before the first copy.
  using Guard = std::function<std::optional<device::StoreProblem>(const std::string& target)>;
  void setGuard(Guard guard) { guard_ = std::move(guard); }

  void open(const QString& path);
  Q_INVOKABLE void close();

  /// Puts a copy at the file that the url names, whole or not at all; `exported` or `exportFailed` tells. Where there
  /// is a file already `question` asks first: not every dialog of files does. Nothing happens while another copy is
  /// being made.
  Q_INVOKABLE void exportTo(const QUrl& target);
  /// Presses that button of the question.
  Q_INVOKABLE void answer(int button);

  [[nodiscard]] bool isOpen() const { return !path_.isEmpty(); }
  [[nodiscard]] const QString& path() const { return path_; }
  [[nodiscard]] QString name() const;
  [[nodiscard]] QString kind() const;
  [[nodiscard]] QUrl suggestedCopy() const;
  [[nodiscard]] const QString& problem() const { return problem_; }
  [[nodiscard]] PdfPagesModel* pages() { return &pages_; }
  [[nodiscard]] QAbstractItemModel* textModel() { return &lines_; }
  [[nodiscard]] QAbstractItemModel* tableModel() { return &cells_; }
  [[nodiscard]] QObject* question() const { return question_.get(); }
  [[nodiscard]] bool isExporting() const { return isExporting_; }

 Q_SIGNALS:
  void changed();
  /// The user closed it.
  void closed();
  void isExportingChanged();
  void questionChanged();
  void exported(const QString& path);
  void exportFailed(const QString& sentence);

 private:
  void copyTo(const QString& target, bool replace);
  void ask(std::unique_ptr<DesktopAlert> question);
  void finishExport(const QString& target, const QString& problem);

  Guard guard_;
  QString path_;
  QString problem_;
  PdfPagesModel pages_;
  TextLinesModel lines_;
  CsvTableModel cells_;
  QString askedTarget_;
  std::unique_ptr<DesktopAlert> question_;
  bool isExporting_ = false;
  std::jthread copying_;
};

}  // namespace chatsum::desktop
