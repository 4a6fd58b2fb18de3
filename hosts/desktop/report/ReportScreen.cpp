#include "hosts/desktop/report/ReportScreen.h"

#include <utility>

#include "hosts/device/language/Say.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/interfaces/Platform.h"
#include "platform/system/graphics/SystemGraphics.h"

namespace chatsum::desktop {
namespace {

/// The name without extension of a file that is not there yet.
std::string freeName(const std::string& name, device::ReportFormat format, std::int64_t code) {
  std::string free = ChatsumUtils::defaultFileName(name, kAppTypeMessages, code);
  const std::string ending = "." + std::string(device::extensionOf(format));
  if (free.ends_with(ending)) free.resize(free.size() - ending.size());
  return free;
}

std::optional<device::ReportFormat> formatOf(std::uint64_t code) {
  switch (code) {
    case kFileFormatCSV:
      return device::ReportFormat::kCsv;
    case kFileFormatPDF:
      return device::ReportFormat::kPdf;
    case kFileFormatText:
      return device::ReportFormat::kText;
    default:
      return std::nullopt;
  }
}

Record preparedRequest(const Record& given) {
  Record request = given;
  if (request[request::kFileFormat].isNone()) request.set(request::kFileFormat, ChatsumUtils::defaultFileFormat());
  const std::int64_t code = request[request::kFileFormat].integerValue();
  const auto format = formatOf(static_cast<std::uint64_t>(code));
  if (format && !request[request::kFileName].isNone()) {
    request.set(request::kFileName, freeName(request[request::kFileName].description(), *format, code));
  }
  return request;
}

}  // namespace

ReportScreen::ReportScreen() {
  connect(&busy_, &BusyState::changed, this, [this] {
    Q_EMIT busyChanged();
    Q_EMIT canReportChanged();
  });
  connect(&busy_, &BusyState::ended, this, &ReportScreen::settle);
  connect(&shown_, &DesktopScreen::alertChanged, this, &ReportScreen::alertChanged);
  connect(&shown_, &DesktopScreen::answering, this, [this](bool isCancelled) {
    beginWatching();
    if (isCancelled) setStep(Step::kNone);
  });
  connect(&shown_, &DesktopScreen::answered, this, &ReportScreen::followQuestions);
  connect(&shown_, &DesktopScreen::previewPresented, &preview_, &Preview::open);
  connect(&preview_, &Preview::closed, &shown_, &DesktopScreen::closePreview);
  connect(&table_, &ReportTableModel::reloaded, this, &ReportScreen::afterReload);
}

ReportScreen::~ReportScreen() { close(); }

platform::system::HostScreen ReportScreen::hostScreen(std::function<void()> mainQueueFilled) {
  return {.screen = &shown_,
          .indicator = [this](const std::string& title,
                              const std::string& message) -> std::shared_ptr<platform::OBActivityAlertController> {
            return std::make_shared<DesktopIndicator>(busy_, title, message);
          },
          .mainQueueFilled = std::move(mainQueueFilled)};
}

bool ReportScreen::open(const SelectedReport& selection) {
  close();
  // An open device's library works on files that tell what happens to them.
  files_ = dynamic_cast<device::WatchedFiles*>(&platform::current().files);
  if (!files_) return false;
  files_->setHomeDirectory(device::homeOf(containers_, selection.appType));
  layout_ = RequestLayout(selection.request, selection.textRecords);
  undrawn_ = selection.undrawn;
  screen_ = CSReportGenerationViewController::create();
  screen_->setHasAttachments(selection.hasAttachments);
  screen_->setHasMultiMediaAttachments(selection.hasMultiMediaAttachments);
  screen_->setAppType(selection.appType);
  screen_->setSelectedRecords(preparedRequest(selection.request));
  navigation_ = std::make_unique<platform::UINavigationController>();
  navigation_->pushViewController(screen_, false);
  table_.setScreen(screen_);
  screen_->nameTextField()->setListener(&nameListener_);
  screen_->navigationItem().rightBarButtonItem()->setListener(&buttonListener_);
  Q_EMIT isOpenChanged();
  Q_EMIT nameChanged();
  Q_EMIT canReportChanged();
  return true;
}

void ReportScreen::close() {
  if (!screen_) return;
  preview_.close();
  shown_.clear();
  table_.setScreen(nullptr);
  screen_->nameTextField()->setListener(nullptr);
  screen_->navigationItem().rightBarButtonItem()->setListener(nullptr);
  watched_.reset();
  drawing_.reset();
  nameIsTaken_ = false;
  navigation_.reset();
  screen_.reset();
  ++listing_;
  files_ = nullptr;
  setStep(Step::kNone);
  busy_.clear();
  setFailure({});
  setNotes({});
  Q_EMIT isOpenChanged();
  Q_EMIT nameChanged();
  Q_EMIT canReportChanged();
}

void ReportScreen::generate() {
  if (!canReport()) return;
  setFailure({});
  setNotes({});
  endName();
  dropExtension();
  if (const QString why = problem(); !why.isEmpty()) {
    setFailure(why);
    Q_EMIT failed(why);
    return;
  }
  beginWatching();
  setStep(Step::kAsking);
  screen_->navigationItem().rightBarButtonItem()->tap();
  followQuestions();
}

void ReportScreen::setName(const QString& name) {
  if (screen_ && !busy()) screen_->nameTextField()->edit(name.toStdString());
}

void ReportScreen::endName() {
  if (screen_) screen_->nameTextField()->pressReturn();
}

void ReportScreen::activate(int row) {
  if (busy()) return;
  if (const device::EarlierReport* report = table_.reportAt(row)) {
    endName();
    preview_.open(QString::fromStdString(report->path));
  } else {
    table_.activate(row);
  }
}

void ReportScreen::askToRemove(int row) {
  const device::EarlierReport* report = busy() ? nullptr : table_.reportAt(row);
  if (!report) return;
  shown_.ask(tr("Delete the report “%1” for good?").arg(QString::fromStdString(report->name)), tr("Delete"),
             tr("Cancel"), [this, doomed = *report] { removeReport(doomed); });
}

void ReportScreen::remove(int row) {
  if (const device::EarlierReport* report = busy() ? nullptr : table_.reportAt(row)) {
    removeReport(device::EarlierReport(*report));
  }
}

/// The file that the user saw, whatever the list has become since.
void ReportScreen::removeReport(const device::EarlierReport& report) {
  if (const auto problem = device::removeReport(report)) {
    screen_->showError(problem->sentence);
  } else {
    table_.forget(report.path);
  }
  NotificationCenter::defaultCenter().post(CSReportGenerationViewController::kReportFileDeleted);
}

/// Reads the list on another queue, as the library reads its own.
void ReportScreen::listReports() {
  if (!screen_) return;
  device::Containers containers = containers_;
  if (containers.empty()) containers.emplace(device::kMessagesApplication, files_->homeDirectory());
  platform::current().dispatch.asyncOnGlobal([this, listing = ++listing_, containers = std::move(containers)] {
    auto reports = device::earlierReports(containers);
    platform::current().dispatch.asyncOnMain([this, listing, reports = std::move(reports)] {
      if (!screen_ || listing != listing_) return;
      table_.setReports(reports ? reports.value() : std::vector<device::EarlierReport>());
      if (!reports) setFailure(QString::fromStdString(reports.problem().sentence));
    });
  });
}

void ReportScreen::choose(int button) { shown_.choose(button); }

void ReportScreen::forgetFailure() { setFailure({}); }

void ReportScreen::forgetNotes() { setNotes({}); }

QString ReportScreen::title() const { return screen_ ? QString::fromStdString(screen_->title()) : QString(); }

QString ReportScreen::reportTitle() const {
  return screen_ ? QString::fromStdString(screen_->navigationItem().rightBarButtonItem()->title()) : QString();
}

QString ReportScreen::name() const {
  return screen_ ? QString::fromStdString(screen_->nameTextField()->text()) : QString();
}

bool ReportScreen::canReport() const {
  return screen_ && !busy() && screen_->navigationItem().rightBarButtonItem()->isEnabled();
}

std::optional<device::ReportFormat> ReportScreen::format() const { return formatOf(screen_->fileFormat()); }

WantedReport ReportScreen::wanted() const {
  return {.folder = ChatsumUtils::defaultLocation(kAppTypeMessages),
          .name = screen_->selectedRecords()->value(request::kFileName).description(),
          .extension = std::string(device::extensionOf(format().value_or(device::ReportFormat::kText)))};
}

QString ReportScreen::problem() const {
  const auto chosen = format();
  if (!chosen) return tr("There is no such file format; choose one first.");
  const QString why = layout_.problemIn(*chosen);
  return why.isEmpty() ? nameProblem(wanted(), *files_) : why;
}

/// The library puts the extension behind the name to see whether there is such a file, and would then write into
/// "Ann.txt" without a question when that is the name.
void ReportScreen::dropExtension() {
  const QString ending = QLatin1Char('.') + QString::fromStdString(wanted().extension);
  const QString text = name();
  if (text.size() <= ending.size() || !text.endsWith(ending, Qt::CaseInsensitive)) return;
  setName(text.chopped(ending.size()));
  endName();
}

/// From here on a report may begin to be written: at the button, or behind any question that it leads to.
void ReportScreen::beginWatching() {
  const auto chosen = screen_ ? format() : std::nullopt;
  if (!chosen || busy()) return;
  for (RequestLayout::Entry& entry : layout_.entriesFor(*chosen)) {
    screen_->selectedRecords()->set(entry.key, std::move(entry.value));
  }
  watched_ = wanted();
  files_->startWatching();
  drawing_.reset();
  auto* const graphics = dynamic_cast<platform::system::SystemGraphics*>(&platform::current().graphics);
  if (!graphics || *chosen != device::ReportFormat::kPdf) return;
  drawing_.emplace(*graphics);
  graphics->setDocumentFacts({.title = watched_->name,
                              .language = device::translations().language(),
                              .created = platform::current().clock.now()});
}

/// When no question is left, the report is being written.
void ReportScreen::followQuestions() {
  if (step_ == Step::kAsking && !shown_.alert()) setStep(Step::kWriting);
}

void ReportScreen::setStep(Step step) {
  if (step_ == step) return;
  step_ = step;
  Q_EMIT busyChanged();
  Q_EMIT canReportChanged();
}

/// The screen hides its indicator whether there is a report or not, and by then nothing is written any more.
void ReportScreen::settle(const QString& endedIndicator) {
  const auto words = platform::current().mainBundle.localizedString("Generating");
  if (!watched_ || endedIndicator != QString::fromStdString(words)) return;
  setStep(Step::kNone);
  const WantedReport report = *std::exchange(watched_, std::nullopt);
  const QString fontless = whyNotDrawn();
  ReportOutcome outcome = settleReport(report, *files_);
  if (!outcome.failure.isEmpty() && !fontless.isEmpty()) outcome.failure = fontless;
  const bool isElsewhere = report.writtenPlace() != report.place();
  nameIsTaken_ = isElsewhere && outcome.failure.isEmpty();
  if (isElsewhere || !outcome.failure.isEmpty()) {
    NotificationCenter::defaultCenter().post(CSReportGenerationViewController::kReportFileDeleted);
  }
  QStringList notes;
  if (drawing_) {
    if (undrawn_ > 0) notes.append(QString::fromStdString(device::describeUndrawn(undrawn_)));
    for (const std::string& sentence : drawing_->sentences()) notes.append(QString::fromStdString(sentence));
  }
  drawing_.reset();
  if (outcome.failure.isEmpty()) {
    setNotes(notes);
    Q_EMIT finished(outcome.path);
    return;
  }
  setFailure(outcome.failure);
  Q_EMIT failed(outcome.failure);
}

/// Why no document was begun; empty when one was, or when another thing failed before.
QString ReportScreen::whyNotDrawn() const {
  const auto why = drawing_ ? drawing_->failure() : std::nullopt;
  return why ? QString::fromStdString(*why) : QString();
}

void ReportScreen::afterReload() {
  listReports();
  if (std::exchange(nameIsTaken_, false)) proposeFreeName();
}

void ReportScreen::proposeFreeName() {
  const auto chosen = format();
  if (!chosen) return;
  const std::string now = name().toStdString();
  const std::string free = freeName(now, *chosen, static_cast<std::int64_t>(screen_->fileFormat()));
  if (free == now) return;
  screen_->selectedRecords()->set(request::kFileName, free);
  screen_->nameTextField()->setText(free);
}

void ReportScreen::setFailure(const QString& sentence) {
  if (failure_ == sentence) return;
  failure_ = sentence;
  Q_EMIT failureChanged();
}

void ReportScreen::setNotes(const QStringList& notes) {
  if (notes_ == notes) return;
  notes_ = notes;
  Q_EMIT notesChanged();
}

}  // namespace chatsum::desktop
