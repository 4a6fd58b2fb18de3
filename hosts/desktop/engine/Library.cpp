#include "hosts/desktop/engine/Library.h"

#include <QtGlobal>
#include <new>
#include <utility>

#include "hosts/desktop/engine/DateWords.h"
#include "hosts/desktop/engine/PasswordQuestion.h"
#include "hosts/desktop/engine/Texts.h"
#include "hosts/device/sample/SampleDevice.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::desktop {

/// One try to open a source. The worker and the main thread share it.
struct Library::Opening {
  Cancellation cancellation;
  PasswordQuestion question;
  bool wasAsked = false;  // on the worker
};

Library::Library(Worker& worker, OpenDevice& device, const DateWords& dates, EngineOptions options, QObject* parent)
    : QObject(parent), worker_(worker), device_(device), dates_(dates), options_(std::move(options)) {}

Library::~Library() {
  if (!opening_) return;
  opening_->cancellation.cancel();
  opening_->question.giveUp();
}

QString Library::title() const {
  if (state_ != State::Open) return {};
  if (isSample_) return tr("Sample Device");
  const device::SourceFacts& facts = opened_.facts;
  if (!facts.deviceName.empty()) return shownName(facts.deviceName);
  return shownName(path::lastComponent(facts.path));
}

QString Library::subtitle() const {
  if (state_ != State::Open) return {};
  const device::SourceFacts& facts = opened_.facts;
  QStringList parts;
  switch (facts.kind) {
    case device::SourceKind::kBackup:
      parts.append(facts.isEncrypted ? tr("Encrypted backup") : tr("Backup"));
      break;
    case device::SourceKind::kMac:
      parts.append(tr("Mac"));
      break;
    case device::SourceKind::kFile:
      parts.append(tr("File"));
      break;
    case device::SourceKind::kDevice:
      parts.append(tr("Device"));
      break;
  }
  if (!facts.productType.empty()) parts.append(shownText(facts.productType));
  if (!facts.systemVersion.empty()) parts.append(tr("system %1").arg(shownText(facts.systemVersion)));
  if (facts.date) parts.append(dates_.shortDay(*facts.date));
  return parts.join(QStringLiteral(" · "));
}

QStringList Library::notes() const { return shownSentences(opened_.notes); }

bool Library::hasPhone() const { return opened_.calls && !opened_.calls->phone.list.calls.empty(); }

bool Library::hasFaceTime() const { return opened_.calls && !opened_.calls->facetime.list.calls.empty(); }

QString Library::holds() const {
  QStringList parts;
  if (opened_.hasMessages) {
    parts.append(tr("%Ln conversation(s)", nullptr, static_cast<int>(opened_.conversations->size())));
    parts.append(tr("%Ln message(s)", nullptr, static_cast<int>(opened_.messages)));
  }
  if (opened_.calls) {
    const std::size_t calls = opened_.calls->phone.list.calls.size() + opened_.calls->facetime.list.calls.size();
    parts.append(tr("%Ln call(s)", nullptr, static_cast<int>(calls)));
  }
  return parts.join(QStringLiteral(", "));
}

void Library::open(const QString& path) { begin(path, false); }

void Library::openSample() {
  if (!options_.sampleFolder.empty()) begin(shownText(options_.sampleFolder), true);
}

void Library::begin(const QString& path, bool isSample) {
  if (isDraining_) return postToMain(QPointer<QObject>(this), [this, path, isSample] { begin(path, isSample); });
  letGo();
  path_ = path;
  isSample_ = isSample;
  const auto opening = std::make_shared<Opening>();
  opening_ = opening;
  setProgress(wordsFor(OpeningStep::kOpening), -1);
  setState(State::Opening);

  const QPointer<QObject> guard(this);
  const auto tell = [this, guard, opening](OpeningStep step) {
    postToMain(guard, [this, opening, step] {
      if (opening_ == opening) setProgress(wordsFor(step), -1);
    });
  };
  const auto options = sessionOptions(opening);
  worker_.run(
      this,
      [this, guard, opening, options, tell, isSample, &place = device_](const Cancellation&) {
        using Result = device::StoreResult<OpenedDevice>;
        if (isSample) {
          if (auto problem = device::writeSampleDevice(options.source)) return Result(device::StoreProblem{*problem});
        }
        for (;;) {
          opening->wasAsked = false;
          Result result = openDevice(place, options, tell, opening->cancellation);
          const bool asksAgain = !result && opening->wasAsked && isWrongPassword(result.problem());
          if (!asksAgain || opening->cancellation.isCancelled()) return result;
          const QString error = shownSentence(result.problem().sentence);
          postToMain(guard, [this, opening, error] {
            if (opening_ == opening) error_ = error;
          });
        }
      },
      [this, opening](device::StoreResult<OpenedDevice> result) {
        if (opening_ == opening) finish(std::move(result));
      });
}

device::DeviceSession::Options Library::sessionOptions(const std::shared_ptr<Opening>& opening) {
  const QPointer<QObject> guard(this);
  device::DeviceSession::Options options;
  options.source = utf8Of(path_);
  options.needsMessages = false;
  options.home = options_.home;
  options.containers = options_.containers;
  options.ownerName = options_.ownerName;
  options.fixedTime = options_.fixedTime;
  options.region = options_.region;
  options.screen = options_.screen;
  options.screen.mainQueueFilled = [this, guard] { postToMain(guard, [this] { drainMain(); }); };
  options.access.password = [this, guard, opening]() -> std::optional<std::string> {
    opening->wasAsked = true;
    postToMain(guard, [this, opening] {
      if (opening_ == opening) setState(State::NeedsPassword, error_);
    });
    return opening->question.wait();
  };
  options.access.progress = [this, guard, opening](double done) {
    postToMain(guard, [this, opening, done] {
      if (opening_ == opening) setProgress(tr("Unlocking…"), done);
    });
    return !opening->cancellation.isCancelled();
  };
  return options;
}

void Library::givePassword(const QString& password) {
  if (state_ != State::NeedsPassword || !opening_) return;
  QByteArray bytes = password.toUtf8();
  std::string given = bytes.toStdString();
  wipe(bytes.data(), static_cast<std::size_t>(bytes.size()));
  setProgress(tr("Unlocking…"), 0);
  setState(State::Opening);
  opening_->question.answer(given);
  wipe(given.data(), given.size());
}

void Library::cancel() {
  if (!opening_) return;
  letGo();
  setState(State::Closed);
}

void Library::close() {
  // Not from inside a block of the session's own queue, which would go under its feet.
  if (isDraining_) return postToMain(QPointer<QObject>(this), [this] { close(); });
  letGo();
  if (state_ != State::Closed) setState(State::Closed);
}

/// Ends what is on its way, and what is open.
void Library::letGo() {
  if (const auto opening = std::exchange(opening_, nullptr)) {
    opening->cancellation.cancel();
    opening->question.giveUp();
    // It may have been opened already, with the news of it still on the way.
    worker_.post([&place = device_] { place.close(); });
  }
  if (state_ != State::Open) return;
  Q_EMIT deviceClosing();
  session_ = nullptr;
  worker_.discard(std::make_shared<const OpenedDevice>(std::exchange(opened_, {})));
  worker_.post([&place = device_] { place.close(); });
}

void Library::finish(device::StoreResult<OpenedDevice> result) {
  opening_.reset();
  setProgress({}, -1);
  if (!result) {
    setState(State::Failed, shownSentence(result.problem().sentence));
    return;
  }
  opened_ = std::move(result.value());
  session_ = device_.session();
  state_ = State::Open;
  error_.clear();
  Q_EMIT deviceOpened();
  Q_EMIT stateChanged();
  drainMain();  // what got onto the queue before it was known here
}

void Library::drainMain() {
  // A block may wait in an event loop of its own, which brings us here again; what came meanwhile runs after it.
  if (!session_ || isDraining_) return;
  isDraining_ = true;
  try {
    session_->drainMain();
  } catch (const std::bad_alloc&) {
    // What a block could not do for want of memory is left undone, as if it had failed; the window stays.
    qWarning("There was not enough memory; close other programs.");
  }
  isDraining_ = false;
}

void Library::setState(State state, const QString& error) {
  state_ = state;
  error_ = error;
  Q_EMIT stateChanged();
}

void Library::setProgress(const QString& what, double progress) {
  what_ = what;
  progress_ = progress;
  Q_EMIT progressChanged();
}

QString Library::wordsFor(OpeningStep step) {
  switch (step) {
    case OpeningStep::kReadingConversations:
      return tr("Reading conversations…");
    case OpeningStep::kReadingCalls:
      return tr("Reading calls…");
    case OpeningStep::kOpening:
      break;
  }
  return tr("Opening…");
}

}  // namespace chatsum::desktop
