#include "platform/fake/FakeCompanion.h"

#include <utility>

namespace chatsum::platform::fake {
namespace {

class Controller final : public OBActivityAlertController {
 public:
  Controller(std::shared_ptr<FakeIndicator> indicator, bool keepCompletion)
      : indicator_(std::move(indicator)), keepCompletion_(keepCompletion) {}
  void show(UIViewController* presenter) override {
    ++indicator_->shown;
    indicator_->presenter = presenter;
  }
  void dismissViewController(bool animated, std::function<void()> completion) override {
    ++indicator_->hidden;
    indicator_->animated = animated;
    if (keepCompletion_) {
      indicator_->completion = std::move(completion);
    } else if (completion) {
      completion();
    }
  }

 private:
  std::shared_ptr<FakeIndicator> indicator_;
  bool keepCompletion_;
};

class View final : public OBActivityAlertView {
 public:
  explicit View(std::shared_ptr<FakeIndicator> indicator) : indicator_(std::move(indicator)) {}
  void show() override { ++indicator_->shown; }
  void close() override { ++indicator_->hidden; }

 private:
  std::shared_ptr<FakeIndicator> indicator_;
};

}  // namespace

std::shared_ptr<OBActivityAlertController> FakeCompanion::activityAlertController(const std::string& title,
                                                                                  const std::string& message,
                                                                                  int preferredStyle) {
  auto indicator = std::make_shared<FakeIndicator>();
  indicator->isController = true;
  indicator->title = title;
  indicator->message = message;
  indicator->preferredStyle = preferredStyle;
  indicators.push_back(indicator);
  return std::make_shared<Controller>(indicator, keepCompletions);
}

std::shared_ptr<OBActivityAlertView> FakeCompanion::activityAlertView(const std::string& title,
                                                                      const std::string& message) {
  auto indicator = std::make_shared<FakeIndicator>();
  indicator->title = title;
  indicator->message = message;
  indicators.push_back(indicator);
  return std::make_shared<View>(indicator);
}

std::string FakeCompanion::localizedLabelFromUIKit(std::string_view word) const {
  const auto found = labels.find(word);
  return found == labels.end() ? std::string(word) : found->second;
}

std::optional<std::string> FakeCompanion::applicationDataContainerDirectory(std::string_view bundleIdentifier) const {
  const auto found = containers.find(bundleIdentifier);
  return found == containers.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace chatsum::platform::fake
