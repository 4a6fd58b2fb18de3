// The older generation's indicator where a host has one of the newer.
#pragma once

#include <memory>
#include <utility>

#include "platform/interfaces/Companion.h"

namespace chatsum::platform::system {

/// Shows and closes an indicator of the newer generation, so that a host needs only one kind. Main queue.
class IndicatorView final : public OBActivityAlertView {
 public:
  /// `indicator` is not null.
  explicit IndicatorView(std::shared_ptr<OBActivityAlertController> indicator) : indicator_(std::move(indicator)) {}
  void show() override { indicator_->show(nullptr); }
  void close() override { indicator_->dismissViewController(false, nullptr); }

 private:
  std::shared_ptr<OBActivityAlertController> indicator_;
};

}  // namespace chatsum::platform::system
