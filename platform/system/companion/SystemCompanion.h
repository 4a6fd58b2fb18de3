// The companion of hosts without a screen. Its indicators belong to the main queue, but for making them; the rest may
// be called from any thread.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/interfaces/Companion.h"
#include "platform/interfaces/Dispatch.h"
#include "platform/system/translations/Translations.h"

namespace chatsum::platform::system {

/// Bundle identifier → folder of that application's data.
using ApplicationContainers = std::map<std::string, std::string, std::less<>>;

/// The indicators show nothing; a dismissal ends on the main queue, after the blocks that already wait there.
class SystemCompanion final : public Companion {
 public:
  /// The dispatch must outlive the indicators, the translations the companion.
  SystemCompanion(Dispatch& dispatch, const Translations& translations, ApplicationContainers containers)
      : dispatch_(dispatch), translations_(translations), containers_(std::move(containers)) {}
  [[nodiscard]] std::shared_ptr<OBActivityAlertController> activityAlertController(const std::string& title,
                                                                                   const std::string& message,
                                                                                   int preferredStyle) override;
  [[nodiscard]] std::shared_ptr<OBActivityAlertView> activityAlertView(const std::string& title,
                                                                       const std::string& message) override;
  [[nodiscard]] std::string localizedLabelFromUIKit(std::string_view word) const override {
    return translations_.text(word);
  }
  [[nodiscard]] std::optional<std::string> applicationDataContainerDirectory(
      std::string_view bundleIdentifier) const override;

 private:
  Dispatch& dispatch_;
  const Translations& translations_;
  ApplicationContainers containers_;
};

}  // namespace chatsum::platform::system
