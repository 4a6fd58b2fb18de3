#include "hosts/desktop/engine/Worker.h"

#include <QCoreApplication>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace chatsum::desktop {

void postToMain(const QPointer<QObject>& receiver, std::function<void()> block) {
  QCoreApplication* application = QCoreApplication::instance();
  if (!application) return;
  // The receiver is looked at on its own thread only: it may be destroyed there at any time.
  QMetaObject::invokeMethod(
      application,
      [receiver, block = std::move(block)] {
        if (receiver) block();
      },
      Qt::QueuedConnection);
}

struct Worker::Queue {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::function<void()>> jobs;
  bool isStopped = false;
};

Worker::Worker() : queue_(std::make_shared<Queue>()), thread_([queue = queue_] { work(*queue); }) {}

Worker::~Worker() { stop(); }

void Worker::post(std::function<void()> job) { add(*queue_, std::move(job)); }

void Worker::discard(std::shared_ptr<const void> what) {
  if (what) post([what = std::move(what)] {});
}

void Worker::stop() {
  std::deque<std::function<void()>> dropped;
  {
    const std::lock_guard lock(queue_->mutex);
    queue_->isStopped = true;
    dropped.swap(queue_->jobs);
  }
  queue_->changed.notify_all();
  if (thread_.joinable()) thread_.join();
}

void Worker::add(Queue& queue, std::function<void()> job) {
  {
    const std::lock_guard lock(queue.mutex);
    if (queue.isStopped) return;
    queue.jobs.push_back(std::move(job));
  }
  queue.changed.notify_one();
}

void Worker::work(Queue& queue) {
  for (;;) {
    std::function<void()> job;
    {
      std::unique_lock lock(queue.mutex);
      queue.changed.wait(lock, [&] { return queue.isStopped || !queue.jobs.empty(); });
      if (queue.isStopped) return;
      job = std::move(queue.jobs.front());
      queue.jobs.pop_front();
    }
    job();
  }
}

}  // namespace chatsum::desktop
