// The device that is open: the worker's session, and its files for whoever shows pictures of them.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <shared_mutex>

#include "hosts/device/session/DeviceSession.h"

namespace chatsum::desktop {

class OpenDevice {
 public:
  OpenDevice() = default;
  ~OpenDevice() { close(); }
  OpenDevice(const OpenDevice&) = delete;
  OpenDevice& operator=(const OpenDevice&) = delete;

  // On the worker, or when it is stopped. -----------------------------------------------------------------------------

  /// nullptr when none is open.
  [[nodiscard]] device::DeviceSession* session() const { return session_.get(); }
  /// Takes the place of the one before, which has to be closed.
  void take(std::unique_ptr<device::DeviceSession> session);
  /// Waits for those who look at its files.
  void close();

  // On any thread. ----------------------------------------------------------------------------------------------------

  /// Another number for every device; 0 for none.
  [[nodiscard]] std::uint64_t number() const { return number_; }

  /// Calls `use` with the source of the device with that number, which stays open meanwhile; answers what it answers,
  /// and none when that device is not open (any more).
  template <class Use>
  [[nodiscard]] auto withSource(std::uint64_t number, const Use& use) const
      -> std::optional<std::invoke_result_t<const Use&, const device::DeviceSource&>> {
    const std::shared_lock lock(mutex_);
    if (!session_ || number != number_) return std::nullopt;
    return use(session_->source());
  }

 private:
  mutable std::shared_mutex mutex_;  // the session changes under it
  std::unique_ptr<device::DeviceSession> session_;
  std::atomic<std::uint64_t> number_ = 0;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace chatsum::desktop
