// A table of sections and rows: what its data source says, as of the last reload or update, and the cells that a host
// shows of it. Data source, delegate and listener are not owned and must outlive their use. Main queue only.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/uikit/IndexPath.h"
#include "platform/uikit/UITableViewCell.h"
#include "platform/uikit/UIView.h"

namespace chatsum::platform {

class UITableView;

enum class UITableViewStyle { kPlain = 0, kGrouped = 1 };
enum class UITableViewCellEditingStyle { kNone = 0, kDelete = 1 };
enum class UITableViewRowAnimation { kNone = 5, kAutomatic = 100 };

class UITableViewDataSource {
 public:
  virtual ~UITableViewDataSource() = default;
  virtual std::int64_t numberOfSectionsInTableView(UITableView& tableView) = 0;
  virtual std::int64_t numberOfRowsInSection(UITableView& tableView, std::int64_t section) = 0;
  /// Never null.
  virtual std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView& tableView, IndexPath indexPath) = 0;
  virtual std::optional<std::string> titleForHeaderInSection(UITableView& tableView, std::int64_t section) = 0;
  virtual std::optional<std::string> titleForFooterInSection(UITableView& tableView, std::int64_t section) = 0;
  virtual bool canEditRowAtIndexPath(UITableView& tableView, IndexPath indexPath) = 0;
  /// The user wants the row edited in that way.
  virtual void commitEditingStyle(UITableView& tableView, UITableViewCellEditingStyle style, IndexPath indexPath) = 0;
};

class UITableViewDelegate {
 public:
  virtual ~UITableViewDelegate() = default;
  virtual void didSelectRowAtIndexPath(UITableView& tableView, IndexPath indexPath) = 0;
  virtual UITableViewCellEditingStyle editingStyleForRowAtIndexPath(UITableView& tableView, IndexPath indexPath) = 0;
};

/// What goes in one step; all places are those before it.
struct UITableViewUpdate {
  std::vector<IndexPath> deletedRows;
  std::vector<std::int64_t> deletedSections;
  UITableViewRowAnimation animation = UITableViewRowAnimation::kNone;  ///< of the last deletion
};

/// The host that shows the table. When it is told, the table answers for the new state.
class UITableViewListener {
 public:
  virtual ~UITableViewListener() = default;
  virtual void didReload(UITableView& tableView) = 0;
  virtual void didUpdate(UITableView& tableView, const UITableViewUpdate& update) = 0;
  virtual void didDeselectRow(UITableView& tableView, IndexPath indexPath, bool animated) = 0;
};

class UITableView final : public UIView {
 public:
  explicit UITableView(UITableViewStyle style);

  [[nodiscard]] UITableViewStyle style() const { return style_; }
  void setDataSource(UITableViewDataSource* dataSource) { dataSource_ = dataSource; }
  void setDelegate(UITableViewDelegate* delegate) { delegate_ = delegate; }
  void setListener(UITableViewListener* listener) { listener_ = listener; }

  // For the data source and delegate.

  /// From here on new cells of the identifier are of that class, made with the default style.
  template <class Cell>
  void registerClass(const std::string& identifier) {
    makers_.insert_or_assign(identifier, [identifier]() -> std::shared_ptr<UITableViewCell> {
      return std::make_shared<Cell>(UITableViewCellStyle::kDefault, identifier);
    });
  }
  /// A cell for that row, as wide as the table: one of the identifier that is no longer shown (as its last user left
  /// it, that of the same row first), else a new one. A plain cell when no class is registered. Never null.
  [[nodiscard]] std::shared_ptr<UITableViewCell> dequeueReusableCellWithIdentifier(const std::string& identifier,
                                                                                   IndexPath indexPath);
  /// Asks for everything anew, the cells that are shown included.
  void reloadData();
  void deselectRowAtIndexPath(IndexPath indexPath, bool animated);

  /// Deletions between `beginUpdates` and `endUpdates` are one step; the data source must have lost the rows by its
  /// end.
  void beginUpdates();
  void deleteRowsAtIndexPaths(const std::vector<IndexPath>& indexPaths, UITableViewRowAnimation animation);
  void deleteSections(const std::vector<std::int64_t>& sections, UITableViewRowAnimation animation);
  /// False when the data source has not lost exactly what was deleted: the table then reloads instead.
  bool endUpdates();

  // For the host.

  [[nodiscard]] std::int64_t numberOfSections();
  /// 0 for a section that is not there.
  [[nodiscard]] std::int64_t numberOfRowsInSection(std::int64_t section);
  [[nodiscard]] bool hasRow(IndexPath indexPath);
  [[nodiscard]] std::optional<std::string> titleForHeaderInSection(std::int64_t section);
  [[nodiscard]] std::optional<std::string> titleForFooterInSection(std::int64_t section);
  /// The cell of the row, laid out; it counts as shown from here on. nullptr for a row that is not there.
  std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(IndexPath indexPath);
  /// The row is no longer shown; its cell may serve another one.
  void endDisplayingRow(IndexPath indexPath);
  [[nodiscard]] std::optional<IndexPath> indexPathForSelectedRow() const { return selected_; }

  // What the user does; nothing happens for a row that is not there.

  void tapRow(IndexPath indexPath);
  /// What swiping the row offers.
  [[nodiscard]] UITableViewCellEditingStyle editingStyle(IndexPath indexPath);
  /// The user swiped the row and confirmed; nothing happens when that is not offered.
  void confirmDeletion(IndexPath indexPath);

 private:
  void loadCounts();
  std::optional<UITableViewUpdate> consistent(UITableViewUpdate update);
  void forgetDeleted(const UITableViewUpdate& update);
  std::shared_ptr<UITableViewCell> show(IndexPath indexPath);

  UITableViewStyle style_;
  UITableViewDataSource* dataSource_ = nullptr;
  UITableViewDelegate* delegate_ = nullptr;
  UITableViewListener* listener_ = nullptr;
  std::map<std::string, std::function<std::shared_ptr<UITableViewCell>()>> makers_;
  std::optional<std::vector<std::int64_t>> rowCounts_;  // by section; none before they are first asked for
  std::map<IndexPath, std::shared_ptr<UITableViewCell>> shown_;
  std::vector<std::pair<IndexPath, std::shared_ptr<UITableViewCell>>>
      reusable_;                             // with the row they were last used for
  std::optional<UITableViewUpdate> update_;  // while one is open
  std::optional<IndexPath> selected_;
};

}  // namespace chatsum::platform
