// The library at work without any device: on the reports and settings of its home. While it lives, its platform is the
// process's; make one at a time. One thread.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "hosts/device/home/Containers.h"
#include "platform/interfaces/Platform.h"
#include "platform/system/SystemPlatform.h"

namespace chatsum::device {

class HomeSession {
 public:
  struct Options {
    std::string home;  ///< absolute
    Containers containers = {};
    std::function<void(std::string_view)> log = {};  ///< gets the library's log lines; any thread, one at a time
  };

  explicit HomeSession(const Options& options);
  ~HomeSession();
  HomeSession(const HomeSession&) = delete;
  HomeSession& operator=(const HomeSession&) = delete;

  [[nodiscard]] const Options& options() const { return options_; }

 private:
  Options options_;
  platform::system::SystemPlatform system_;
  platform::Platform* before_;
};

}  // namespace chatsum::device
