// While it lives, no thread can be started in this process: each asks for a stack that no machine has room for.
#pragma once

#include <pthread.h>

#include <cstddef>

namespace chatsum::test {

class NoMoreThreads {
 public:
  NoMoreThreads() {
    ::pthread_getattr_default_np(&before_);
    pthread_attr_t none;
    ::pthread_attr_init(&none);
    ::pthread_attr_setstacksize(&none, std::size_t{1} << 47);
    ::pthread_setattr_default_np(&none);
    ::pthread_attr_destroy(&none);
  }
  ~NoMoreThreads() {
    ::pthread_setattr_default_np(&before_);
    ::pthread_attr_destroy(&before_);
  }
  NoMoreThreads(const NoMoreThreads&) = delete;
  NoMoreThreads& operator=(const NoMoreThreads&) = delete;

 private:
  pthread_attr_t before_{};
};

}  // namespace chatsum::test
