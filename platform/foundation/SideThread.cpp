#include "platform/foundation/SideThread.h"

#include <system_error>
#include <utility>

namespace chatsum {

SideThread::SideThread(std::function<void()> work) : work_(std::move(work)) {
  try {
    thread_ = std::jthread([this] {
      try {
        work_();
      } catch (...) {
        failure_ = std::current_exception();
      }
    });
    hasThread_ = true;
  } catch (const std::system_error&) {
    // No thread to be had: the owner's does.
  }
}

void SideThread::join() {
  if (!hasThread_) return work_();
  thread_.join();
  if (failure_) std::rethrow_exception(failure_);
}

}  // namespace chatsum
