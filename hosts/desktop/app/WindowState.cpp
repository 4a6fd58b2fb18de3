#include "hosts/desktop/app/WindowState.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QWindow>
#include <algorithm>

namespace chatsum::desktop {
namespace {

constexpr const char* kGeometry = "window/geometry";
constexpr const char* kMaximized = "window/maximized";
constexpr const char* kPaneWidth = "window/paneWidth";
constexpr int kUsualPane = 320;

}  // namespace

WindowState::WindowState(QSettings& settings, QObject* parent)
    : QObject(parent),
      settings_(settings),
      paneWidth_(std::clamp(settings.value(kPaneWidth, kUsualPane).toInt(), kNarrowestPane, kWidestPane)) {}

void WindowState::setPaneWidth(int width) {
  const int kept = std::clamp(width, kNarrowestPane, kWidestPane);
  if (kept == paneWidth_) return;
  paneWidth_ = kept;
  settings_.setValue(kPaneWidth, kept);
  Q_EMIT paneWidthChanged();
}

QRect WindowState::fitted(const QRect& wanted, const QRect& screen) {
  const QSize size = wanted.size().boundedTo(screen.size());
  const int x = std::clamp(wanted.x(), screen.x(), screen.x() + screen.width() - size.width());
  const int y = std::clamp(wanted.y(), screen.y(), screen.y() + screen.height() - size.height());
  return {QPoint(x, y), size};
}

void WindowState::restore(QWindow& window) {
  const QRect saved = settings_.value(kGeometry).toRect();
  if (saved.isValid()) {
    const QScreen* screen = QGuiApplication::screenAt(saved.center());
    if (!screen) screen = QGuiApplication::primaryScreen();
    if (screen) window.setGeometry(fitted(saved, screen->availableGeometry()));
    if (settings_.value(kMaximized).toBool()) window.setWindowStates(window.windowStates() | Qt::WindowMaximized);
  } else if (const QScreen* screen = window.screen()) {
    window.resize(window.size().boundedTo(screen->availableGeometry().size()));
  }
  const auto follow = [this, &window] { save(window); };
  for (const auto signal : {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged}) {
    connect(&window, signal, this, follow);
  }
  connect(&window, &QWindow::windowStateChanged, this, follow);
}

void WindowState::save(const QWindow& window) {
  const bool isMaximized = window.windowStates().testFlag(Qt::WindowMaximized);
  settings_.setValue(kMaximized, isMaximized);
  // The size to go back to is the one from before.
  if (window.windowStates() == Qt::WindowNoState && window.isVisible())
    settings_.setValue(kGeometry, window.geometry());
}

}  // namespace chatsum::desktop
