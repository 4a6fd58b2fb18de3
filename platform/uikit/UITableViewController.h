// A screen that is one table, of which it is data source and delegate. Owned by whoever shows it. Main queue only, but
// for the end of its life.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/interfaces/Companion.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UINavigationItem.h"
#include "platform/uikit/UITableView.h"

namespace chatsum::platform {

class UINavigationController;

enum class UIInterfaceOrientation { kPortrait = 1, kPortraitUpsideDown = 2, kLandscapeRight = 3, kLandscapeLeft = 4 };

class UITableViewController : public UIViewController, public UITableViewDataSource, public UITableViewDelegate {
 public:
  explicit UITableViewController(UITableViewStyle style);
  UITableViewController(const UITableViewController&) = delete;
  UITableViewController& operator=(const UITableViewController&) = delete;
  ~UITableViewController() override;

  [[nodiscard]] UITableView& tableView() const { return *tableView_; }
  [[nodiscard]] const std::string& title() const { return title_; }
  void setTitle(std::string title) { title_ = std::move(title); }
  [[nodiscard]] UINavigationItem& navigationItem() { return navigationItem_; }
  /// The stack it stands on; nullptr when there is none.
  [[nodiscard]] UINavigationController* navigationController() const { return navigationController_; }

  /// The first call runs `viewDidLoad`.
  void loadViewIfNeeded();
  virtual void viewDidLoad() {}
  virtual void didReceiveMemoryWarning() {}
  /// The host is about to turn the screen; `duration` is in seconds.
  virtual void willRotateToInterfaceOrientation(UIInterfaceOrientation /*orientation*/, double /*duration*/) {}

  /// Shows an alert or a chooser over this screen; the completion may be empty.
  void presentViewController(const std::shared_ptr<UIAlertController>& alert, bool animated,
                             std::function<void()> completion);

 private:
  friend class UINavigationController;
  std::shared_ptr<UITableView> tableView_;
  std::string title_;
  UINavigationItem navigationItem_;
  UINavigationController* navigationController_ = nullptr;
  bool viewLoaded_ = false;
};

}  // namespace chatsum::platform
