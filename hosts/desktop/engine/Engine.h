// Everything of the desktop program that is no window and no report: made once, its parts tied together. Main thread.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hosts/desktop/engine/CallModel.h"
#include "hosts/desktop/engine/ConversationFilter.h"
#include "hosts/desktop/engine/ConversationModel.h"
#include "hosts/desktop/engine/DateWords.h"
#include "hosts/desktop/engine/EngineOptions.h"
#include "hosts/desktop/engine/Library.h"
#include "hosts/desktop/engine/MessageModel.h"
#include "hosts/desktop/engine/OpenDevice.h"
#include "hosts/desktop/engine/Selection.h"
#include "hosts/desktop/engine/SourceList.h"
#include "hosts/desktop/engine/Worker.h"
#include "hosts/device/stores/StoreProblem.h"

class QQuickAsyncImageProvider;
class QSettings;

namespace chatsum::desktop {

class Engine : public QObject {
  Q_OBJECT

 public:
  /// The settings outlive it; they keep the sources that were opened lately.
  Engine(const EngineOptions& options, QSettings& settings, QObject* parent = nullptr);
  /// Closes the source and waits for the worker. What shows reports is destroyed before.
  ~Engine() override;

  // What the window knows as Sources, Library, Conversations, Messages, Calls and Selection.
  [[nodiscard]] SourceList& sources() { return sources_; }
  [[nodiscard]] Library& source() { return library_; }
  [[nodiscard]] ConversationFilter& conversations() { return filter_; }
  [[nodiscard]] MessageModel& messages() { return messages_; }
  [[nodiscard]] CallModel& calls() { return calls_; }
  [[nodiscard]] Selection& selection() { return selection_; }

  [[nodiscard]] Worker& worker() { return worker_; }
  /// What says why nothing may be written to a place: it is inside the source that is open. Any thread, and longer than
  /// this.
  [[nodiscard]] std::function<std::optional<device::StoreProblem>(const std::string& place)> sourceGuard() const;
  /// A new provider for "image://attachment"; the caller's, who gives it to Qt.
  [[nodiscard]] QQuickAsyncImageProvider* makePictureProvider() const;

 private:
  void showDevice();
  void leaveDevice();
  void takeMessages();
  void takeHits();
  void takeTicks();

  DateWords dates_;
  Worker worker_;
  std::shared_ptr<OpenDevice> device_;
  SourceList sources_;
  Library library_;
  ConversationModel conversations_;
  ConversationFilter filter_;
  Selection selection_;
  MessageModel messages_;
  CallModel calls_;
};

}  // namespace chatsum::desktop
