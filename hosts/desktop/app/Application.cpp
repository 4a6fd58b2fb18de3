#include "hosts/desktop/app/Application.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLocale>
#include <QTimer>
#include <QUrl>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <utility>

#include "hosts/desktop/app/Glyph.h"
#include "hosts/desktop/engine/PictureProvider.h"
#include "libchatsum/CSReportGenerationViewController/CSReportGenerationViewController.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumSettings/ChatsumSettings.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/system/bundle/SharedFolder.h"
#include "platform/system/translations/Languages.h"

namespace chatsum::desktop {
namespace {

constexpr const char* kModule = "Chatsum";
constexpr const char* kScheme = "window/scheme";

/// Which country's phone numbers are written without its code.
std::string regionOfLocale() {
  const QLocale locale = QLocale::system();
  const QString code = QLocale::territoryToCode(locale.territory());
  return code.size() == 2 ? code.toStdString() : "US";
}

/// The time that reproducible builds set instead of the clock's (reproducible-builds.org, SOURCE_DATE_EPOCH).
std::optional<Date> fixedTime() {
  bool isNumber = false;
  const qlonglong seconds = qEnvironmentVariable("SOURCE_DATE_EPOCH").toLongLong(&isNumber);
  return isNumber && seconds >= 0 ? std::optional(Date{static_cast<double>(seconds)}) : std::nullopt;
}

EngineOptions engineOptions(const Places& places, ReportScreen& report) {
  EngineOptions options;
  options.home = places.home.toStdString();
  options.containers = places.containers;
  options.sampleFolder = places.sample.toStdString();
  options.region = regionOfLocale();
  options.fixedTime = fixedTime();
  options.screen = report.hostScreen();
  return options;
}

}  // namespace

Application::Application(const Arguments& arguments, QObject* parent)
    : QObject(parent),
      arguments_(arguments),
      places_(placesFor(arguments.home)),
      translator_(platform::system::sharedFolder() + "/locale", platform::system::languagesFromEnvironment()),
      state_(places_.windowState, QSettings::IniFormat),
      windowState_(state_),
      settings_(places_.home.toStdString()),
      engine_(engineOptions(places_, report_), state_) {
  QCoreApplication::installTranslator(&translator_);
  report_.setContainers(places_.containers);
  theme_.setScheme(arguments.isDark ? (*arguments.isDark ? Theme::Dark : Theme::Light)
                                    : static_cast<Theme::Scheme>(state_.value(kScheme, Theme::System).toInt()));
  connect(&theme_, &Theme::schemeChanged, this,
          [this] { state_.setValue(kScheme, static_cast<int>(theme_.scheme())); });
  connect(&settings_, &SettingsModel::written, this, &Application::followSettings);
  const auto catchUp = [this] {
    if (isFollowing_) followSettings();
  };
  connect(&report_, &ReportScreen::busyChanged, this, catchUp, Qt::QueuedConnection);
  connect(&report_, &ReportScreen::alertChanged, this, catchUp, Qt::QueuedConnection);
  report_.preview().setGuard(engine_.sourceGuard());
  // The screen stands on the open source, and on what was selected when it was opened.
  connect(&engine_.source(), &Library::deviceClosing, this, [this] { report_.close(); });
  connect(&engine_.messages(), &MessageModel::listChanged, this, [this] {
    if (engine_.selection().list() == RowsOf::kMessages) report_.close();
  });
  connect(&engine_.selection(), &Selection::appChanged, this, [this] { report_.close(); });
  connect(&engine_.selection(), &Selection::preparationDropped, this, [this] { setPreparing(false); });
  connect(&report_, &ReportScreen::isOpenChanged, this, [this] {
    if (!report_.isOpen()) engine_.selection().forgetPrepared();
  });
}

Application::~Application() {
  // Nothing of the window may ask for what goes below.
  if (QQuickWindow* shown = window()) shown->hide();
  report_.close();
}

QQuickWindow* Application::window() const {
  return qml_.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(qml_.rootObjects().first());
}

void Application::registerTypes() {
  qmlRegisterSingletonInstance(kModule, 1, 0, "Sources", &engine_.sources());
  qmlRegisterSingletonInstance(kModule, 1, 0, "Library", &engine_.source());
  qmlRegisterSingletonInstance(kModule, 1, 0, "Conversations", &engine_.conversations());
  qmlRegisterSingletonInstance(kModule, 1, 0, "Messages", &engine_.messages());
  qmlRegisterSingletonInstance(kModule, 1, 0, "Calls", &engine_.calls());
  qmlRegisterSingletonInstance(kModule, 1, 0, "Selection", &engine_.selection());
  qmlRegisterSingletonInstance(kModule, 1, 0, "Report", &report_);
  qmlRegisterSingletonInstance(kModule, 1, 0, "Preview", &report_.preview());
  qmlRegisterSingletonInstance(kModule, 1, 0, "Settings", &settings_);
  qmlRegisterSingletonInstance(kModule, 1, 0, "Theme", &theme_);
  qmlRegisterSingletonInstance(kModule, 1, 0, "WindowState", &windowState_);
  qmlRegisterSingletonInstance(kModule, 1, 0, "Program", this);
  qmlRegisterType<Glyph>(kModule, 1, 0, "Glyph");
  qml_.addImageProvider(QStringLiteral("attachment"), engine_.makePictureProvider());
  qml_.addImageProvider(QString::fromUtf8(PdfPagesModel::kProvider), report_.preview().pages()->newProvider());
  qml_.addImageProvider(QString::fromUtf8(ReportIcons::kProvider), ReportIcons::newProvider(report_.icons()));
}

bool Application::start() {
  registerTypes();
  qml_.load(QUrl(QStringLiteral("qrc:/chatsum/qml/Main.qml")));
  QQuickWindow* shown = window();
  if (!shown) return false;
  windowState_.restore(*shown);
  shown->show();
  if (arguments_.usesSample) {
    engine_.source().openSample();
  } else if (!arguments_.source.isEmpty()) {
    engine_.source().open(QFileInfo(arguments_.source).absoluteFilePath());
  }
  // After the first picture, which should not wait for disks.
  QTimer::singleShot(0, this, [this] {
    engine_.sources().search();
    settings_.reload();
  });
  if (!arguments_.screenshot.isEmpty()) takeScreenshot(arguments_.screenshot);
  return true;
}

void Application::openReport() {
  if (report_.isOpen() || isPreparing_ || engine_.source().state() != Library::State::Open) return;
  if (engine_.selection().count() == 0) return;
  setPreparing(true);
  engine_.selection().prepare(device::ReportFormat::kText, this, [this](SelectedReport selected) {
    setPreparing(false);
    selected.request.remove(request::kFileFormat);  // begins with that of the settings
    // Another program may have changed them since.
    ChatsumSettings::sharedSettings().loadSettings();
    report_.open(selected);
  });
}

void Application::setPreparing(bool isPreparing) {
  if (isPreparing == isPreparing_) return;
  isPreparing_ = isPreparing;
  Q_EMIT preparingChanged();
}

/// The library has read the file once and would not look again. Nothing changes under a report that is being made;
/// while no device is open there is no library, and the next report asks anyway.
void Application::followSettings() {
  isFollowing_ = report_.isOpen() && (report_.busy() || report_.alert());
  if (isFollowing_ || engine_.source().state() != Library::State::Open) return;
  ChatsumSettings& known = ChatsumSettings::sharedSettings();
  const auto format = known.msgDefaultFileFormat(), order = known.msgDefaultDateSortOrder();
  known.loadSettings();
  auto& center = NotificationCenter::defaultCenter();
  if (known.msgDefaultFileFormat() != format) center.post(CSReportGenerationViewController::kFileFormatChanged);
  if (known.msgDefaultDateSortOrder() != order) center.post(CSReportGenerationViewController::kDateSortChanged);
}

void Application::takeScreenshot(const QString& file) {
  constexpr int kLook = 50, kCalm = 12;  // milliseconds between looks, and how many without change are enough
  theme_.setMoves(false);
  auto* timer = new QTimer(this);
  connect(timer, &QTimer::timeout, this, [this, timer, file, calm = 0]() mutable {
    calm = window()->property("isSettled").toBool() ? calm + 1 : 0;
    if (calm < kCalm) return;
    timer->stop();
    const bool isWritten = window()->grabWindow().save(file, "PNG");
    if (!isWritten) std::fprintf(stderr, "chatsum-desktop: '%s' could not be written.\n", qPrintable(file));
    QCoreApplication::exit(isWritten ? EXIT_SUCCESS : EXIT_FAILURE);
  });
  timer->start(kLook);
}

}  // namespace chatsum::desktop
