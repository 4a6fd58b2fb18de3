// The program: makes the engine, the report screen and the window, and ties them together. One in a process, on the
// main thread, as long as the window lives.
#pragma once

#include <QObject>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSettings>
#include <QString>

#include "hosts/desktop/app/Arguments.h"
#include "hosts/desktop/app/Places.h"
#include "hosts/desktop/app/SettingsModel.h"
#include "hosts/desktop/app/Theme.h"
#include "hosts/desktop/app/Translator.h"
#include "hosts/desktop/app/WindowState.h"
#include "hosts/desktop/engine/Engine.h"
#include "hosts/desktop/report/ReportScreen.h"

namespace chatsum::desktop {

class Application : public QObject {
  Q_OBJECT
  /// A report is about to be opened: its rows are being put together.
  Q_PROPERTY(bool isPreparing READ isPreparing NOTIFY preparingChanged)

 public:
  explicit Application(const Arguments& arguments, QObject* parent = nullptr);
  ~Application() override;

  /// Shows the window and opens what the arguments name; false when the window cannot be made.
  [[nodiscard]] bool start();

  /// Opens the report screen with what is selected. Nothing happens when it is open, or when nothing is selected.
  Q_INVOKABLE void openReport();
  [[nodiscard]] bool isPreparing() const { return isPreparing_; }

  [[nodiscard]] Engine& engine() { return engine_; }
  [[nodiscard]] ReportScreen& report() { return report_; }
  [[nodiscard]] SettingsModel& settings() { return settings_; }
  [[nodiscard]] Theme& theme() { return theme_; }
  [[nodiscard]] const Places& places() const { return places_; }
  /// nullptr before `start`.
  [[nodiscard]] QQuickWindow* window() const;

  /// Writes a picture of the window once nothing moves or waits any more, and quits.
  void takeScreenshot(const QString& file);

 Q_SIGNALS:
  void preparingChanged();

 private:
  void registerTypes();
  void followSettings();
  void setPreparing(bool isPreparing);

  Arguments arguments_;
  Places places_;
  Translator translator_;
  QSettings state_;
  Theme theme_;
  WindowState windowState_;
  SettingsModel settings_;
  // The screen outlives the session that shows things with it; the window goes before both.
  ReportScreen report_;
  Engine engine_;
  bool isPreparing_ = false;
  bool isFollowing_ = false;  // the settings changed while a report was being made
  QQmlApplicationEngine qml_;
};

}  // namespace chatsum::desktop
