// The real program with its window, offscreen, and the hands of somebody who uses it. One in a process; main thread.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QTest>
#include <algorithm>
#include <functional>
#include <string>

#include "hosts/desktop/app/Application.h"
#include "platform/fake/TemporaryFolder.h"

namespace chatsum::desktop {

class Desk {
 public:
  static constexpr int kPatience = 20'000;  // milliseconds; only a test that fails ever waits so long

  explicit Desk(Arguments arguments = {}) : application_(withHome(std::move(arguments), home_.path())) {
    application_.theme().setMoves(false);
  }

  [[nodiscard]] Application& application() { return application_; }
  [[nodiscard]] QQuickWindow& window() { return *application_.window(); }
  [[nodiscard]] std::string home() const { return home_.path(); }

  /// Shows the window in a fixed size.
  [[nodiscard]] bool start(QSize size = QSize(1180, 760)) {
    if (!application_.start()) return false;
    window().resize(size);
    window().requestActivate();
    return waitFor([this] { return window().isActive(); });
  }

  [[nodiscard]] static bool waitFor(const std::function<bool()>& isDone) { return QTest::qWaitFor(isDone, kPatience); }

  /// The item of that name that can be seen; nullptr when there is none.
  [[nodiscard]] QQuickItem* item(const QString& name) {
    for (QQuickItem* found : window().findChildren<QQuickItem*>(name)) {
      if (found->isVisible()) return found;
    }
    return visibleIn(window().contentItem(), name);
  }
  /// Whether all pictures of files that a list shows have been drawn.
  [[nodiscard]] bool hasItsPictures(const QString& list) {
    const QQuickItem* view = item(list);
    return view && !isLoadingIn(*view);
  }
  /// What has the keyboard, for a message.
  [[nodiscard]] std::string focus() {
    std::string names;
    for (QQuickItem* item = window().activeFocusItem(); item; item = item->parentItem()) {
      names += std::string(item->metaObject()->className()) + " " + item->objectName().toStdString() + ", ";
    }
    return names;
  }
  [[nodiscard]] QQuickItem* rowOf(const QString& list, int row) {
    QQuickItem* view = item(list);
    QQuickItem* found = nullptr;
    if (view) QMetaObject::invokeMethod(view, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, found), Q_ARG(int, row));
    return found;
  }

  void click(QQuickItem* item, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    ASSERT_NE(item, nullptr);
    const QPointF center = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    QTest::mouseClick(&window(), Qt::LeftButton, modifiers, center.toPoint());
  }
  void click(const QString& name) {
    ASSERT_TRUE(waitFor([&] { return item(name) != nullptr; })) << name.toStdString();
    (void)picture();  // it may still be on its way to its place
    click(item(name));
  }
  void clickRow(const QString& list, int row) {
    ASSERT_TRUE(waitFor([&] { return rowOf(list, row) != nullptr; })) << row << " of " << list.toStdString();
    (void)picture();  // the same for a row
    click(rowOf(list, row));
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&window(), key, modifiers);
  }
  void type(const QString& text) {
    for (const QChar letter : text) QTest::keyClick(&window(), letter.toLatin1());
  }

  /// A picture of the window once it does not change any more.
  [[nodiscard]] QImage picture() {
    QImage before;
    const bool isCalm = waitFor([&] {
      QTest::qWait(80);
      const QImage now = window().grabWindow();
      return now == std::exchange(before, now) && application_.window()->property("isSettled").toBool();
    });
    EXPECT_TRUE(isCalm);
    return before;
  }

 private:
  [[nodiscard]] static bool isLoadingIn(const QQuickItem& item) {
    constexpr int kLoading = 2;  // Image.Loading
    if (!item.isVisible()) return false;
    if (item.inherits("QQuickImage") && item.property("status").toInt() == kLoading) return true;
    const auto children = item.childItems();
    return std::any_of(children.begin(), children.end(), [](const QQuickItem* child) { return isLoadingIn(*child); });
  }
  static Arguments withHome(Arguments arguments, const std::string& home) {
    arguments.home = QString::fromStdString(home);
    return arguments;
  }
  [[nodiscard]] static QQuickItem* visibleIn(QQuickItem* parent, const QString& name) {
    for (QQuickItem* child : parent->childItems()) {
      if (!child->isVisible()) continue;
      if (child->objectName() == name) return child;
      if (QQuickItem* found = visibleIn(child, name)) return found;
    }
    return nullptr;
  }

  platform::fake::TemporaryFolder home_;
  Application application_;
};

}  // namespace chatsum::desktop
