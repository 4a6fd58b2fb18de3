// A window with one of the report's pages in it, on the real screen and preview, as the program's window shows them.
#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QQmlApplicationEngine>
#include <QQuickImageProvider>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QStringList>
#include <functional>

#include "hosts/desktop/app/Glyph.h"
#include "hosts/desktop/app/Theme.h"
#include "hosts/desktop/report/ReportScreen.h"
#include "tests/desktop/report/PreviewFiles.h"

/// The pages of the program. The macro declares a function outside of namespaces.
inline void initPages() { Q_INIT_RESOURCE(chatsum_desktop_qml); }

namespace chatsum::desktop::test {

/// What QML warns of is a failure of the test.
class QuietQml {
 public:
  QuietQml() : before_(qInstallMessageHandler(take)) {}
  ~QuietQml() { qInstallMessageHandler(before_); }
  QuietQml(const QuietQml&) = delete;
  QuietQml& operator=(const QuietQml&) = delete;

 private:
  static void take(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type != QtDebugMsg && type != QtInfoMsg && text.contains(QLatin1String(".qml"))) ADD_FAILURE() << text.toStdString();
  }
  QtMessageHandler before_;
};

class PageWindow {
 public:
  explicit PageWindow(ReportScreen& report) : report_(report) {
    shown() = this;
    registerOnce();
    engine_.addImageProvider(QString::fromUtf8(PdfPagesModel::kProvider), report.preview().pages()->newProvider());
    engine_.addImageProvider(QString::fromUtf8(ReportIcons::kProvider), ReportIcons::newProvider(report.icons()));
    theme_.setMoves(false);
    theme_.setScheme(qEnvironmentVariableIsSet("CHATSUM_TEST_DARK") ? Theme::Dark : Theme::Light);
    engine_.loadData(kPage, QUrl(QStringLiteral("qrc:/chatsum/qml/TestWindow.qml")));
    if (engine_.rootObjects().isEmpty()) {
      ADD_FAILURE() << "the window cannot be made";
      return;
    }
    window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().first());
    waitUntil([&] { return window_->isExposed() && find("reportList"); }, "the page");
    window_->requestActivate();
    waitUntil([&] { return window_->isActive(); }, "the active window");
  }
  ~PageWindow() { shown() = nullptr; }
  PageWindow(const PageWindow&) = delete;
  PageWindow& operator=(const PageWindow&) = delete;

  [[nodiscard]] QQuickWindow& window() { return *window_; }

  /// The visible item with that object name; nullptr when there is none.
  [[nodiscard]] QQuickItem* find(const QString& name) const {
    return search(window_->contentItem(), [&](QQuickItem& item) { return item.objectName() == name; });
  }
  [[nodiscard]] QQuickItem* findText(const QString& text) const {
    return search(window_->contentItem(), [&](QQuickItem& item) { return item.property("text").toString() == text; });
  }
  /// Waits for the item.
  QQuickItem* await(const QString& name) {
    waitUntil([&] { return find(name) != nullptr; }, name.toUtf8().constData());
    return find(name);
  }
  void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) { QTest::keyClick(window_, Qt::Key(key), modifiers); }
  void type(const QString& text) {
    for (const QChar character : text) QTest::keyClick(window_, character.toLatin1());
  }
  [[nodiscard]] static QPoint middleOf(const QQuickItem& item) {
    return item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint();
  }
  void click(const QQuickItem& item, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(window_, button, Qt::NoModifier, middleOf(item));
  }
  /// The row of the list, scrolled to.
  QQuickItem* row(int index) {
    QQuickItem* const list = find("reportList");
    QQuickItem* item = nullptr;
    QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, index));
    return item;
  }
  /// Keeps a picture where CHATSUM_TEST_PICTURES says, for whoever wants to look.
  void picture(const QString& name) {
    const QString folder = qEnvironmentVariable("CHATSUM_TEST_PICTURES");
    if (folder.isEmpty()) return;
    QTest::qWait(200);
    window_->grabWindow().save(folder + "/" + name + ".png");
  }

 private:
  static constexpr const char* kPage = R"(
      import QtQuick
      import QtQuick.Controls.Basic
      import Chatsum
      ApplicationWindow {
          width: 900
          height: 640
          visible: true
          color: Theme.window
          font.pixelSize: Theme.fontSize
          FocusScope {
              anchors.fill: parent
              focus: true
              Keys.onEscapePressed: Preview.path !== "" ? Preview.close() : Report.close()
              Loader {
                  anchors.fill: parent
                  focus: Preview.path === ""
                  active: Report.isOpen
                  source: "ReportPage.qml"
                  onLoaded: item.forceActiveFocus()
              }
              Loader {
                  anchors.fill: parent
                  focus: Preview.path !== ""
                  active: Preview.path !== ""
                  source: "PreviewPage.qml"
                  onLoaded: item.forceActiveFocus()
              }
          }
          Loader {
              active: !!Report.alert
              sourceComponent: AlertDialog {
                  alert: Report.alert
                  onChosen: index => Report.choose(index)
              }
          }
          Loader {
              anchors.fill: parent
              active: Report.busy
              source: "BusyOverlay.qml"
          }
      })";

  static PageWindow*& shown() {
    static PageWindow* window = nullptr;
    return window;
  }
  static void registerOnce() {
    static bool isRegistered = false;
    if (std::exchange(isRegistered, true)) return;
    initPages();
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    // Each engine asks for the objects of the window that is shown then.
    const auto own = [](QObject* object) {
      QJSEngine::setObjectOwnership(object, QJSEngine::CppOwnership);
      return object;
    };
    qmlRegisterSingletonType<ReportScreen>("Chatsum", 1, 0, "Report", [own](QQmlEngine*, QJSEngine*) -> QObject* {
      return own(&shown()->report_);
    });
    qmlRegisterSingletonType<Preview>("Chatsum", 1, 0, "Preview", [own](QQmlEngine*, QJSEngine*) -> QObject* {
      return own(&shown()->report_.preview());
    });
    qmlRegisterSingletonType<Theme>("Chatsum", 1, 0, "Theme", [own](QQmlEngine*, QJSEngine*) -> QObject* {
      return own(&shown()->theme_);
    });
    qmlRegisterType<Glyph>("Chatsum", 1, 0, "Glyph");
  }
  static QQuickItem* search(QQuickItem* item, const std::function<bool(QQuickItem&)>& isIt) {
    if (!item || !item->isVisible()) return nullptr;
    if (isIt(*item)) return item;
    for (QQuickItem* child : item->childItems()) {
      if (QQuickItem* found = search(child, isIt)) return found;
    }
    return nullptr;
  }

  QuietQml quiet_;
  ReportScreen& report_;
  Theme theme_;
  QQmlApplicationEngine engine_;
  QQuickWindow* window_ = nullptr;
};

}  // namespace chatsum::desktop::test
