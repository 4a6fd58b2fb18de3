#include "platform/uikit/UITableViewController.h"

#include "platform/interfaces/Platform.h"

namespace chatsum::platform {

UITableViewController::UITableViewController(UITableViewStyle style)
    : tableView_(std::make_shared<UITableView>(style)) {
  tableView_->setDataSource(this);
  tableView_->setDelegate(this);
}

UITableViewController::~UITableViewController() {
  tableView_->setDataSource(nullptr);
  tableView_->setDelegate(nullptr);
}

void UITableViewController::loadViewIfNeeded() {
  if (!std::exchange(viewLoaded_, true)) viewDidLoad();
}

void UITableViewController::presentViewController(const std::shared_ptr<UIAlertController>& alert, bool animated,
                                                  std::function<void()> completion) {
  current().screen.presentAlert(*this, alert, animated, std::move(completion));
}

}  // namespace chatsum::platform
