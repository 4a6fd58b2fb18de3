// The report screen of the library for QML: opened with a selection, it shows the criteria and the earlier reports,
// asks what the library asks, and tells how a report ended. Lives on the main thread, which is the library's main
// queue; open only while a session's library is started. Outlives every platform that got its `hostScreen`.
#pragma once

#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "hosts/desktop/engine/SelectedRows.h"
#include "hosts/desktop/report/DesktopIndicator.h"
#include "hosts/desktop/report/DesktopScreen.h"
#include "hosts/desktop/report/Preview.h"
#include "hosts/desktop/report/ReportOutcome.h"
#include "hosts/desktop/report/ReportTableModel.h"
#include "hosts/desktop/report/RequestLayout.h"
#include "hosts/device/home/Containers.h"
#include "hosts/device/report/DrawingNotes.h"
#include "platform/system/screen/HostScreen.h"
#include "platform/uikit/UINavigationController.h"

namespace chatsum::desktop {

class ReportScreen final : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
  Q_PROPERTY(QString title READ title NOTIFY isOpenChanged)
  /// What the button says that makes the report.
  Q_PROPERTY(QString reportTitle READ reportTitle NOTIFY isOpenChanged)
  Q_PROPERTY(QString name READ name NOTIFY nameChanged)
  Q_PROPERTY(bool canReport READ canReport NOTIFY canReportChanged)
  Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
  Q_PROPERTY(QString busyTitle READ busyTitle NOTIFY busyChanged)
  Q_PROPERTY(QString busyText READ busyText NOTIFY busyChanged)
  Q_PROPERTY(QAbstractItemModel* table READ table CONSTANT)
  Q_PROPERTY(QObject* alert READ alert NOTIFY alertChanged)
  /// Why the last report was not made, one sentence; empty when nothing failed since the last try.
  Q_PROPERTY(QString failure READ failure NOTIFY failureChanged)
  /// What the last report does not show as it should, a sentence each; empty when all is well.
  Q_PROPERTY(QStringList notes READ notes NOTIFY notesChanged)

 public:
  ReportScreen();
  ~ReportScreen() override;

  /// What a session's platform shows things with. `mainQueueFilled` as in HostScreen.
  [[nodiscard]] platform::system::HostScreen hostScreen(std::function<void()> mainQueueFilled = nullptr);
  /// Where the reports of each application are, before the first `open`; none: all in the home of the library.
  void setContainers(device::Containers containers) { containers_ = std::move(containers); }
  [[nodiscard]] Preview& preview() { return preview_; }
  [[nodiscard]] const std::shared_ptr<ReportIcons>& icons() const { return icons_; }

  /// While a device is open. The request's records stand in date order and its column titles are not quoted. It needs
  /// no line format, nor a File format when it shall begin with that of the settings. False when the library works on
  /// files that nobody watches.
  bool open(const SelectedReport& selection);
  /// Takes away all that the screen shows. A report that is being written is written to its end.
  Q_INVOKABLE void close();

  /// Makes the report, after the library's questions. A name that cannot be is told as a failure.
  Q_INVOKABLE void generate();
  /// The user typed: this is all of the name.
  Q_INVOKABLE void setName(const QString& name);
  /// The user left the name field.
  Q_INVOKABLE void endName();
  /// Asks what the row is there for; an earlier report is shown.
  Q_INVOKABLE void activate(int row);
  /// Deletes the file of an earlier report, after a question; nothing for another row.
  Q_INVOKABLE void askToRemove(int row);
  /// The same without a question: the user was asked already.
  Q_INVOKABLE void remove(int row);
  /// Answers `alert`.
  Q_INVOKABLE void choose(int button);
  /// The user has read the failure.
  Q_INVOKABLE void forgetFailure();
  /// The same of the notes.
  Q_INVOKABLE void forgetNotes();

  [[nodiscard]] bool isOpen() const { return screen_ != nullptr; }
  [[nodiscard]] QString title() const;
  [[nodiscard]] QString reportTitle() const;
  [[nodiscard]] QString name() const;
  [[nodiscard]] bool canReport() const;
  /// A report is being written, or the library has something else to wait for.
  [[nodiscard]] bool busy() const { return busy_.isBusy() || step_ == Step::kWriting; }
  [[nodiscard]] QString busyTitle() const { return busy_.title(); }
  [[nodiscard]] QString busyText() const { return busy_.text(); }
  [[nodiscard]] QAbstractItemModel* table() { return &table_; }
  [[nodiscard]] QObject* alert() const { return shown_.alert(); }
  [[nodiscard]] const QString& failure() const { return failure_; }
  [[nodiscard]] const QStringList& notes() const { return notes_; }

 Q_SIGNALS:
  void isOpenChanged();
  void nameChanged();
  void canReportChanged();
  void busyChanged();
  void alertChanged();
  void failureChanged();
  void notesChanged();
  /// A report was not made; `sentence` says why and where to look.
  void failed(const QString& sentence);
  /// A report was made, whole, at that path.
  void finished(const QString& path);

 private:
  struct Listener final : platform::ChangeListener {
    explicit Listener(std::function<void()> told) : told_(std::move(told)) {}
    void changed() override { told_(); }
    std::function<void()> told_;
  };

  /// Of making a report. Writing begins a moment before the library's indicator comes.
  enum class Step { kNone, kAsking, kWriting };

  [[nodiscard]] std::optional<device::ReportFormat> format() const;
  [[nodiscard]] WantedReport wanted() const;
  [[nodiscard]] QString problem() const;
  void dropExtension();
  void beginWatching();
  void followQuestions();
  void setStep(Step step);
  void settle(const QString& endedIndicator);
  void afterReload();
  void proposeFreeName();
  void listReports();
  void removeReport(const device::EarlierReport& report);
  [[nodiscard]] QString whyNotDrawn() const;
  void setFailure(const QString& sentence);
  void setNotes(const QStringList& notes);

  std::shared_ptr<ReportIcons> icons_ = std::make_shared<ReportIcons>();
  BusyState busy_;
  DesktopScreen shown_;
  Preview preview_;
  ReportTableModel table_{icons_};
  Listener nameListener_{[this] {
    table_.followName();
    Q_EMIT nameChanged();
  }};
  Listener buttonListener_{[this] { Q_EMIT canReportChanged(); }};

  device::Containers containers_;

  // While it is open.
  std::unique_ptr<platform::UINavigationController> navigation_;
  std::shared_ptr<CSReportGenerationViewController> screen_;
  device::WatchedFiles* files_ = nullptr;
  RequestLayout layout_;
  std::uint64_t undrawn_ = 0;  // of the selection
  Step step_ = Step::kNone;
  std::optional<WantedReport> watched_;          // what the next indicator of writing stands for
  std::optional<device::DrawingNotes> drawing_;  // the same, when it is drawn
  bool nameIsTaken_ = false;                     // the file of the last report came late under the name in the field

  std::uint64_t listing_ = 0;  // a number for each list of earlier reports that was asked for

  QString failure_;
  QStringList notes_;
};

}  // namespace chatsum::desktop
