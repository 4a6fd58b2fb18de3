#include "platform/system/companion/SystemCompanion.h"

#include "platform/system/companion/IndicatorView.h"

namespace chatsum::platform::system {
namespace {

class QuietController final : public OBActivityAlertController {
 public:
  explicit QuietController(Dispatch& dispatch) : dispatch_(dispatch) {}
  void show(UIViewController* /*presenter*/) override {}
  void dismissViewController(bool /*animated*/, std::function<void()> completion) override {
    if (completion) dispatch_.asyncOnMain(std::move(completion));
  }

 private:
  Dispatch& dispatch_;
};

class QuietView final : public OBActivityAlertView {
 public:
  void show() override {}
  void close() override {}
};

}  // namespace

std::shared_ptr<OBActivityAlertController> SystemCompanion::activityAlertController(const std::string& title,
                                                                                    const std::string& message,
                                                                                    int /*preferredStyle*/) {
  if (makeIndicator_) return makeIndicator_(title, message);
  return std::make_shared<QuietController>(dispatch_);
}

std::shared_ptr<OBActivityAlertView> SystemCompanion::activityAlertView(const std::string& title,
                                                                        const std::string& message) {
  if (makeIndicator_) return std::make_shared<IndicatorView>(makeIndicator_(title, message));
  return std::make_shared<QuietView>();
}

std::optional<std::string> SystemCompanion::applicationDataContainerDirectory(std::string_view bundleIdentifier) const {
  const auto found = containers_.find(bundleIdentifier);
  return found == containers_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace chatsum::platform::system
