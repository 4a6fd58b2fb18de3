// How the real platform ends while its queues still work.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <semaphore>
#include <thread>

#include "platform/system/SystemPlatform.h"

namespace chatsum::platform::system {
namespace {

/// Belongs to one of the services and says when it goes.
class Belonging {
 public:
  explicit Belonging(std::atomic<bool>& isGone) : isGone_(isGone) {}
  Belonging(const Belonging&) = delete;
  Belonging& operator=(const Belonging&) = delete;
  ~Belonging() { isGone_ = true; }

 private:
  std::atomic<bool>& isGone_;
};

TEST(EndOfThePlatform, WaitsForBlocksBeforeTheServicesGo) {
  std::atomic<bool> isGone = false, wasGone = false;
  std::string word;
  std::binary_semaphore running(0);
  {
    SystemOptions options;
    options.homeDirectory = "/var/mobile";
    options.languages = std::vector<std::string>();
    options.hostScreen.indicator = [belonging = std::make_shared<Belonging>(isGone)](const std::string&,
                                                                                     const std::string&) {
      return std::shared_ptr<OBActivityAlertController>();
    };
    SystemPlatform system(std::move(options));
    Platform& platform = system.platform();
    platform.dispatch.asyncOnGlobal([&] {
      running.release();
      // Queues that are being stopped drop what they are given, which is how a block can tell.
      for (bool isStopping = false; !isStopping && !isGone;) {
        auto token = std::make_shared<int>();
        const std::weak_ptr<int> kept = token;
        platform.dispatch.asyncOnMain([token = std::move(token)] {});
        isStopping = kept.expired();
        std::this_thread::yield();
      }
      wasGone = isGone.load();
      if (!wasGone) word = platform.companion.localizedLabelFromUIKit("Close");
    });
    running.acquire();
  }
  EXPECT_TRUE(isGone);
  EXPECT_FALSE(wasGone);
  EXPECT_EQ(word, "Close");
}

}  // namespace
}  // namespace chatsum::platform::system
