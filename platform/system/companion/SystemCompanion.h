// The companion of this system's hosts. Its indicators belong to the main queue, but for making them; the rest may
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

/// Indicators that no host makes show nothing; a dismissal of such a one ends on the main queue, after the blocks that already wait there.
class SystemCompanion final : public Companion {
 public:
  using MakeIndicator = std::function<std::shared_ptr<OBActivityAlertController>(const std::string& title,
                                                                                 const std::string& message)>;

  /// The dispatch must outlive the indicators, the translations the companion. `makeIndicator` makes indicators that
  /// show something, for hosts that have them.
  SystemCompanion(Dispatch& dispatch, const Translations& translations, ApplicationContainers containers,
                  MakeIndicator makeIndicator = nullptr)
      : dispatch_(dispatch),
        translations_(translations),
        containers_(std::move(containers)),
        makeIndicator_(std::move(makeIndicator)) {}
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
  MakeIndicator makeIndicator_;
};

}  // namespace chatsum::platform::system
