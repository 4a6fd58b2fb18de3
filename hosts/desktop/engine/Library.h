// The source that is open, or on its way to be: the worker does it, this tells the window how far it is. Main thread.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>
#include <string>

#include "hosts/desktop/engine/Cancellation.h"
#include "hosts/desktop/engine/DeviceOpening.h"
#include "hosts/desktop/engine/EngineOptions.h"
#include "hosts/desktop/engine/OpenDevice.h"
#include "hosts/desktop/engine/Worker.h"

namespace chatsum::desktop {

class DateWords;
class PasswordQuestion;

class Library : public QObject {
  Q_OBJECT
  Q_PROPERTY(State state READ state NOTIFY stateChanged)
  /// 0 to 1; -1 when nobody knows.
  Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
  Q_PROPERTY(QString what READ what NOTIFY progressChanged)
  /// Why it failed, or why the password is asked for again; one sentence.
  Q_PROPERTY(QString error READ error NOTIFY stateChanged)
  Q_PROPERTY(QString path READ path NOTIFY stateChanged)
  Q_PROPERTY(QString title READ title NOTIFY stateChanged)
  Q_PROPERTY(QString subtitle READ subtitle NOTIFY stateChanged)
  Q_PROPERTY(QStringList notes READ notes NOTIFY stateChanged)
  Q_PROPERTY(bool hasMessages READ hasMessages NOTIFY stateChanged)
  Q_PROPERTY(bool hasPhone READ hasPhone NOTIFY stateChanged)
  Q_PROPERTY(bool hasFaceTime READ hasFaceTime NOTIFY stateChanged)
  Q_PROPERTY(bool isSample READ isSample NOTIFY stateChanged)

 public:
  enum class State { Closed, Opening, NeedsPassword, Open, Failed };
  Q_ENUM(State)

  /// `device` is the worker's. All of them outlive it.
  Library(Worker& worker, OpenDevice& device, const DateWords& dates, EngineOptions options, QObject* parent = nullptr);
  ~Library() override;

  [[nodiscard]] State state() const { return state_; }
  [[nodiscard]] double progress() const { return progress_; }
  [[nodiscard]] QString what() const { return what_; }
  [[nodiscard]] QString error() const { return error_; }
  [[nodiscard]] QString path() const { return path_; }
  [[nodiscard]] QString title() const;
  [[nodiscard]] QString subtitle() const;
  [[nodiscard]] QStringList notes() const;
  [[nodiscard]] bool hasMessages() const { return opened_.hasMessages; }
  [[nodiscard]] bool hasPhone() const;
  [[nodiscard]] bool hasFaceTime() const;
  [[nodiscard]] bool isSample() const { return isSample_; }

  /// What was found when it was opened.
  [[nodiscard]] const OpenedDevice& opened() const { return opened_; }
  /// In a few words, for a list of sources: "12 conversations, 480 messages, 31 calls".
  [[nodiscard]] QString holds() const;

  /// Opens the source at the path; one that is open is closed before.
  Q_INVOKABLE void open(const QString& path);
  /// Writes the sample device, if need be, and opens it.
  Q_INVOKABLE void openSample();
  /// Answers the question for a password. The text's own bytes are the caller's to wipe.
  Q_INVOKABLE void givePassword(const QString& password);
  /// Gives up what is on its way.
  Q_INVOKABLE void cancel();
  Q_INVOKABLE void close();

  /// Runs what waits on the main queue of the open source's library; nothing when none is open.
  void drainMain();

 Q_SIGNALS:
  void stateChanged();
  void progressChanged();
  /// It is open: the first thing that is told.
  void deviceOpened();
  /// It is about to be closed: whatever uses the library or shows its records lets go of them before this returns.
  void deviceClosing();

 private:
  struct Opening;

  void begin(const QString& path, bool isSample);
  [[nodiscard]] device::DeviceSession::Options sessionOptions(const std::shared_ptr<Opening>& opening);
  void finish(device::StoreResult<OpenedDevice> result);
  void letGo();
  void setState(State state, const QString& error = {});
  void setProgress(const QString& what, double progress);
  [[nodiscard]] static QString wordsFor(OpeningStep step);

  Worker& worker_;
  OpenDevice& device_;
  const DateWords& dates_;
  EngineOptions options_;

  State state_ = State::Closed;
  double progress_ = -1;
  QString what_, error_, path_;
  bool isSample_ = false;
  OpenedDevice opened_;
  std::shared_ptr<Opening> opening_;          // what is on its way
  device::DeviceSession* session_ = nullptr;  // open, for its main queue only
  bool isDraining_ = false;
};

}  // namespace chatsum::desktop
