#include "hosts/desktop/app/WindowState.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QScreen>
#include <QSettings>
#include <QWindow>

#include "platform/fake/TemporaryFolder.h"

namespace chatsum::desktop {
namespace {

class WindowStateTest : public ::testing::Test {
 protected:
  platform::fake::TemporaryFolder folder_;
  QSettings settings_{QString::fromStdString(folder_.path() + "/state.ini"), QSettings::IniFormat};
};

TEST_F(WindowStateTest, AWindowComesBackWhereItWas) {
  {
    WindowState state(settings_);
    QWindow window;
    state.restore(window);
    window.show();
    window.setGeometry(40, 50, 640, 420);
    QCoreApplication::processEvents();
    state.setPaneWidth(400);
  }
  WindowState state(settings_);
  EXPECT_EQ(state.paneWidth(), 400);
  QWindow window;
  state.restore(window);
  EXPECT_EQ(window.geometry(), QRect(40, 50, 640, 420));
}

TEST_F(WindowStateTest, AWindowThatWasNeverSavedStaysAsItIs) {
  WindowState state(settings_);
  QWindow window;
  window.setGeometry(10, 20, 300, 200);
  state.restore(window);
  EXPECT_EQ(window.geometry(), QRect(10, 20, 300, 200));
}

TEST_F(WindowStateTest, TheFirstWindowIsNotLargerThanTheScreen) {
  WindowState state(settings_);
  QWindow window;
  const QSize room = window.screen()->availableGeometry().size();
  window.resize(room.width() + 100, 200);
  state.restore(window);
  EXPECT_EQ(window.size(), QSize(room.width(), 200));
}

TEST_F(WindowStateTest, AMaximizedWindowKeepsItsSizeFromBefore) {
  {
    WindowState state(settings_);
    QWindow window;
    state.restore(window);
    window.show();
    window.setGeometry(40, 50, 640, 420);
    QCoreApplication::processEvents();
    window.showMaximized();
    QCoreApplication::processEvents();
  }
  WindowState state(settings_);
  QWindow window;
  state.restore(window);
  EXPECT_TRUE(window.windowStates().testFlag(Qt::WindowMaximized));
  EXPECT_EQ(settings_.value(QStringLiteral("window/geometry")).toRect(), QRect(40, 50, 640, 420));
}

TEST_F(WindowStateTest, ThePaneKeepsWithinBounds) {
  WindowState state(settings_);
  state.setPaneWidth(5);
  EXPECT_EQ(state.paneWidth(), WindowState::kNarrowestPane);
  state.setPaneWidth(5000);
  EXPECT_EQ(state.paneWidth(), WindowState::kWidestPane);
  settings_.setValue(QStringLiteral("window/paneWidth"), QStringLiteral("wide"));
  EXPECT_EQ(WindowState(settings_).paneWidth(), WindowState::kNarrowestPane);
}

TEST(WindowState, AWindowIsBroughtOntoTheScreen) {
  const QRect screen(0, 0, 1000, 800);
  EXPECT_EQ(WindowState::fitted(QRect(100, 100, 500, 400), screen), QRect(100, 100, 500, 400));
  EXPECT_EQ(WindowState::fitted(QRect(900, 700, 500, 400), screen), QRect(500, 400, 500, 400));
  EXPECT_EQ(WindowState::fitted(QRect(-50, -60, 500, 400), screen), QRect(0, 0, 500, 400));
  EXPECT_EQ(WindowState::fitted(QRect(0, 0, 3000, 2000), screen), screen);
}

}  // namespace
}  // namespace chatsum::desktop
