// Runs the tst_*.qml files: the window's components with the fakes of fakes/ in the place of the program's own objects.
#include <QtQuickTest/quicktest.h>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickStyle>

#include <cstdlib>

#include "hosts/desktop/app/Fonts.h"
#include "hosts/desktop/app/Glyph.h"
#include "hosts/desktop/app/SettingsModel.h"
#include "hosts/desktop/app/Theme.h"
#include "hosts/desktop/app/Translator.h"
#include "platform/fake/TemporaryFolder.h"
#include "tests/support/PinnedFonts.h"

namespace {

constexpr const char* kModule = "Chatsum";
constexpr const char* kFakes[] = {"Sources",   "Library", "Conversations", "Messages",    "Calls",
                                  "Selection", "Report",  "Preview",       "WindowState", "Program"};

class Setup : public QObject {
  Q_OBJECT

 public Q_SLOTS:
  void applicationAvailable() {
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QCoreApplication::installTranslator(&translator_);
    QGuiApplication::setFont(chatsum::desktop::fontWithEmoji(QFont(QStringLiteral("Noto Sans"), 10)));
  }

  // Every file of tests has an engine of its own, and so its own fakes.
  void qmlEngineAvailable(QQmlEngine* /*engine*/) {
    if (isRegistered_) return;
    isRegistered_ = true;
    for (const char* name : kFakes) {
      qmlRegisterSingletonType(QUrl::fromLocalFile(QStringLiteral(CHATSUM_TEST_FAKES "/") + QString::fromUtf8(name) +
                                                   QStringLiteral(".qml")),
                               kModule, 1, 0, name);
    }
    qmlRegisterSingletonType<chatsum::desktop::Theme>(kModule, 1, 0, "Theme", [](QQmlEngine*, QJSEngine*) -> QObject* {
      auto* theme = new chatsum::desktop::Theme();  // the engine owns it
      theme->setMoves(false);
      return theme;
    });
    // What it needs is cheap to have: a folder.
    qmlRegisterSingletonType<chatsum::desktop::SettingsModel>(
        kModule, 1, 0, "Settings", [home = home_.path()](QQmlEngine*, QJSEngine*) -> QObject* {
          return new chatsum::desktop::SettingsModel(home);
        });
    qmlRegisterType<chatsum::desktop::Glyph>(kModule, 1, 0, "Glyph");
  }

 private:
  chatsum::platform::fake::TemporaryFolder home_;
  chatsum::desktop::Translator translator_{"", {}};  // English, with numbers
  bool isRegistered_ = false;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  const chatsum::test::PinnedFonts fonts;
  // The same pictures and no display, also when it is not CTest that runs this.
  ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
  ::setenv("QT_QUICK_BACKEND", "software", 1);
  Q_INIT_RESOURCE(chatsum_desktop_qml);
  Setup setup;
  return quick_test_main_with_setup(argumentCount, arguments, "desktop", QUICK_TEST_SOURCE_DIR, &setup);
}

#include "main.moc"
