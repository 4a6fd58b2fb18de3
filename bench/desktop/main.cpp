// chatsum_desktop_bench: opens a device in the real window, drawn in memory, and times what a person waits for: the
// first list, a conversation, frames while scrolling and selecting, a search. The device comes from make_device.
#include <fmt/format.h>
#include <sys/resource.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

#include "hosts/desktop/app/Application.h"
#include "hosts/desktop/app/Fonts.h"

namespace {

using namespace chatsum::desktop;

constexpr int kFrames = 400;

/// Runs the event loop until the condition holds.
void waitFor(const std::function<bool()>& isDone) {
  while (!isDone()) QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
}

/// Milliseconds until the window has drawn itself again.
double frameAfter(QQuickWindow& window, const std::function<void()>& change) {
  bool isDrawn = false;
  const auto connection = QObject::connect(&window, &QQuickWindow::frameSwapped, [&isDrawn] { isDrawn = true; });
  QElapsedTimer timer;
  timer.start();
  change();
  window.update();
  while (!isDrawn) QCoreApplication::processEvents();
  QObject::disconnect(connection);
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

void print(const char* what, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  const auto at = [&times](double share) {
    return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
  };
  fmt::print("{:<44} median {:6.1f} ms   95 % {:6.1f} ms   longest {:6.1f} ms\n", what, at(0.5), at(0.95), at(1));
}

QQuickItem* visibleIn(QQuickItem* parent, const QString& name) {
  for (QQuickItem* child : parent->childItems()) {
    if (!child->isVisible()) continue;
    if (child->objectName() == name) return child;
    if (QQuickItem* found = visibleIn(child, name)) return found;
  }
  return nullptr;
}

void scroll(QQuickWindow& window, QQuickItem& list, const char* what, double step) {
  std::vector<double> times;
  for (int i = 0; i < kFrames; ++i) {
    times.push_back(
        frameAfter(window, [&] { list.setProperty("contentY", list.property("contentY").toDouble() + step); }));
  }
  print(what, std::move(times));
}

int run(const QString& device, const QElapsedTimer& sinceStart) {
  const QTemporaryDir home;
  Arguments arguments;
  arguments.source = device;
  arguments.home = home.path();
  arguments.isDark = false;
  Application application(arguments);
  if (!application.start()) return EXIT_FAILURE;
  application.theme().setMoves(false);
  QQuickWindow& window = *application.window();
  window.resize(1180, 760);  // the screen in memory is smaller than most
  Engine& engine = application.engine();
  frameAfter(window, [] {});
  fmt::print("{:<44} {:6.2f} s\n", "start to the first frame", static_cast<double>(sinceStart.elapsed()) / 1e3);

  waitFor([&] {
    return engine.source().state() == Library::State::Open || engine.source().state() == Library::State::Failed;
  });
  if (engine.source().state() == Library::State::Failed) {
    fmt::print(stderr, "{}\n", engine.source().error().toStdString());
    return EXIT_FAILURE;
  }
  frameAfter(window, [] {});
  fmt::print("{:<44} {:6.2f} s   {} conversations\n", "start to the first list",
             static_cast<double>(sinceStart.elapsed()) / 1e3, engine.conversations().count());

  int largest = 0;
  for (int row = 0; row < engine.conversations().count(); ++row) {
    const auto count = [&](int which) {
      return engine.conversations()
          .data(engine.conversations().index(which, 0), ConversationModel::CountRole)
          .toLongLong();
    };
    if (count(row) > count(largest)) largest = row;
  }
  QElapsedTimer timer;
  timer.start();
  std::vector<double> whileReading;
  engine.conversations().select(
      engine.conversations().data(engine.conversations().index(largest, 0), ConversationModel::GuidRole).toString());
  while (engine.messages().state() == MessageModel::State::Reading) whileReading.push_back(frameAfter(window, [] {}));
  frameAfter(window, [] {});
  fmt::print("{:<44} {:6.2f} s   {} messages\n", "largest conversation to its first frame",
             static_cast<double>(timer.elapsed()) / 1e3, engine.messages().rowCount());
  if (!whileReading.empty()) print("frames while it is read", std::move(whileReading));

  QQuickItem* list = visibleIn(window.contentItem(), QStringLiteral("messageList"));
  if (!list) return EXIT_FAILURE;
  const int rows = engine.messages().rowCount();
  scroll(window, *list, "scrolling by lines, from the end", -40);
  scroll(window, *list, "scrolling by pages", -600);
  std::vector<double> jumps;
  for (int i = 0; i < 100; ++i) {
    jumps.push_back(frameAfter(window, [&] {
      QMetaObject::invokeMethod(list, "show",
                                Q_ARG(QVariant, static_cast<int>(static_cast<long long>(rows - 1) * i / 99)));
    }));
  }
  print("jumping through all messages", std::move(jumps));

  Selection& selection = engine.selection();
  std::vector<double> ticks;
  for (int i = 0; i < 100; ++i) ticks.push_back(frameAfter(window, [&] { selection.tick(rows - 1 - i, true); }));
  print("ticking a message", std::move(ticks));
  std::vector<double> runs;
  for (int i = 0; i < 20; ++i) runs.push_back(frameAfter(window, [&] { selection.tickRange(i, rows - 1 - i); }));
  print("ticking nearly all messages", std::move(runs));

  timer.start();
  std::vector<double> whileSearching;
  engine.messages().search(QStringLiteral("tomorrow"));
  while (engine.messages().isSearching()) whileSearching.push_back(frameAfter(window, [] {}));
  fmt::print("{:<44} {:6.2f} s   {} hits\n", "searching all messages", static_cast<double>(timer.elapsed()) / 1e3,
             engine.messages().hits());
  if (!whileSearching.empty()) print("frames while it is searched", std::move(whileSearching));

  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  fmt::print("{:<44} {:6.0f} MB\n", "most memory", static_cast<double>(usage.ru_maxrss) / 1024);
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  QElapsedTimer sinceStart;
  sinceStart.start();
  if (argumentCount != 2) {
    std::fputs(
        "Usage: chatsum_desktop_bench DEVICE\nDEVICE as make_device writes it, for instance with --messages 1000000.\n",
        stderr);
    return 2;
  }
  ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
  ::setenv("QT_QUICK_BACKEND", "software", 0);
  QGuiApplication application(argumentCount, arguments);
  std::setlocale(LC_NUMERIC, "C");
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  QGuiApplication::setFont(fontWithEmoji(QGuiApplication::font()));
  return run(QString::fromLocal8Bit(arguments[1]), sinceStart);
}
