// A thread that does what would hold up the main thread, one job after another, and brings the results back there. Made
// and stopped on the main thread; jobs may be given on any.
#pragma once

#include <QObject>
#include <QPointer>
#include <exception>
#include <functional>
#include <memory>
#include <thread>
#include <type_traits>
#include <utility>

#include "hosts/desktop/engine/Cancellation.h"
#include "hosts/device/stores/StoreProblem.h"

namespace chatsum::desktop {

/// Runs the block on the main thread soon, unless `receiver` is gone by then or the program ends. `receiver` lives on
/// the main thread; the pointer to it was made there. Any thread.
void postToMain(const QPointer<QObject>& receiver, std::function<void()> block);

class Worker {
 public:
  Worker();
  /// Stops it.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  /// Runs the job after those given before. It must not throw.
  void post(std::function<void()> job);

  /// Runs `work` here, which gets the cancellation and answers a StoreResult, and then `done` with that result on the
  /// main thread, unless it was cancelled or `receiver` is gone. Work that is cancelled before it begins is left out.
  /// To be called on the main thread.
  template <class Work, class Done>
  Cancellation run(QObject* receiver, Work work, Done done) {
    using Result = std::invoke_result_t<Work&, const Cancellation&>;
    const Cancellation cancellation;
    post([queue = queue_, guard = QPointer<QObject>(receiver), cancellation, work = std::move(work),
          done = std::move(done)]() mutable {
      if (cancellation.isCancelled()) return;
      const auto result = std::make_shared<Result>(guarded<Result>(work, cancellation));
      if (cancellation.isCancelled()) return;
      postToMain(guard, [queue, cancellation, result, done]() mutable {
        // A large result that nobody wants is not taken apart on the main thread.
        if (cancellation.isCancelled()) return add(*queue, [result] {});
        done(std::move(*result));
      });
    });
    return cancellation;
  }

  /// Lets go of something large, whose destruction may take long. Whoever calls this has no other reference to it.
  void discard(std::shared_ptr<const void> what);

  /// Drops the jobs that wait, and waits for the one that runs. Nothing runs afterwards.
  void stop();

 private:
  struct Queue;

  static void add(Queue& queue, std::function<void()> job);
  static void work(Queue& queue);

  /// An exception must not leave a thread; the only one to expect is that of missing memory.
  template <class Result, class Work>
  static Result guarded(Work& work, const Cancellation& cancellation) {
    try {
      return work(cancellation);
    } catch (const std::exception& error) {
      return device::StoreProblem{std::string("This could not be done (") + error.what() +
                                  "); close other programs and try again."};
    }
  }

  std::shared_ptr<Queue> queue_;
  std::jthread thread_;
};

}  // namespace chatsum::desktop
