#include "platform/uikit/UITableView.h"

#include <algorithm>

namespace chatsum::platform {
namespace {

constexpr Rect kDefaultFrame{{0, 0}, {320, 480}};
constexpr double kRowHeight = 44;

template <class T>
void sortWithoutDuplicates(std::vector<T>& items) {
  std::sort(items.begin(), items.end());
  items.erase(std::unique(items.begin(), items.end()), items.end());
}

/// Where a row stands after the update; none when it is gone.
std::optional<IndexPath> after(const UITableViewUpdate& update, IndexPath place) {
  const auto& sections = update.deletedSections;
  const auto& rows = update.deletedRows;
  if (std::binary_search(sections.begin(), sections.end(), place.section)) return std::nullopt;
  if (std::binary_search(rows.begin(), rows.end(), place)) return std::nullopt;
  const auto rowsBefore = std::count_if(rows.begin(), rows.end(), [&](const IndexPath& row) {
    return row.section == place.section && row.row < place.row;
  });
  const auto sectionsBefore =
      std::count_if(sections.begin(), sections.end(), [&](std::int64_t section) { return section < place.section; });
  return IndexPath{place.section - sectionsBefore, place.row - rowsBefore};
}

}  // namespace

UITableView::UITableView(UITableViewStyle style) : style_(style) { setFrame(kDefaultFrame); }

std::shared_ptr<UITableViewCell> UITableView::dequeueReusableCellWithIdentifier(const std::string& identifier,
                                                                                IndexPath indexPath) {
  const auto fits = [&](const auto& entry) { return entry.second->reuseIdentifier() == identifier; };
  auto found = std::find_if(reusable_.begin(), reusable_.end(),
                            [&](const auto& entry) { return entry.first == indexPath && fits(entry); });
  if (found == reusable_.end()) found = std::find_if(reusable_.begin(), reusable_.end(), fits);
  std::shared_ptr<UITableViewCell> cell;
  if (found != reusable_.end()) {
    cell = found->second;
    reusable_.erase(found);
  } else if (const auto maker = makers_.find(identifier); maker != makers_.end()) {
    cell = maker->second();
  } else {
    cell = std::make_shared<UITableViewCell>(UITableViewCellStyle::kDefault, identifier);
  }
  cell->setFrame({{0, 0}, {frame().size.width, kRowHeight}});
  return cell;
}

void UITableView::reloadData() {
  update_.reset();
  selected_.reset();
  const auto before = std::exchange(shown_, {});
  for (const auto& [place, cell] : before) reusable_.emplace_back(place, cell);
  loadCounts();
  for (const auto& [place, cell] : before) {
    if (hasRow(place)) show(place);
  }
  if (listener_) listener_->didReload(*this);
}

void UITableView::deselectRowAtIndexPath(IndexPath indexPath, bool animated) {
  if (selected_ != indexPath) return;
  selected_.reset();
  if (listener_) listener_->didDeselectRow(*this, indexPath, animated);
}

void UITableView::beginUpdates() {
  // The counts that the deletions refer to are those before the data source loses anything more.
  if (!rowCounts_) loadCounts();
  if (!update_) update_.emplace();
}

void UITableView::deleteRowsAtIndexPaths(const std::vector<IndexPath>& indexPaths, UITableViewRowAnimation animation) {
  const bool isOneStep = !update_;
  if (isOneStep) beginUpdates();
  update_->deletedRows.insert(update_->deletedRows.end(), indexPaths.begin(), indexPaths.end());
  update_->animation = animation;
  if (isOneStep) endUpdates();
}

void UITableView::deleteSections(const std::vector<std::int64_t>& sections, UITableViewRowAnimation animation) {
  const bool isOneStep = !update_;
  if (isOneStep) beginUpdates();
  update_->deletedSections.insert(update_->deletedSections.end(), sections.begin(), sections.end());
  update_->animation = animation;
  if (isOneStep) endUpdates();
}

bool UITableView::endUpdates() {
  if (!update_) return true;
  const auto update = consistent(*std::exchange(update_, std::nullopt));
  if (!update) {
    reloadData();
    return false;
  }
  forgetDeleted(*update);
  if (listener_) listener_->didUpdate(*this, *update);
  return true;
}

/// The update in order and without duplicates when the data source has now what is left of the counts, which become the
/// new ones; none otherwise.
std::optional<UITableViewUpdate> UITableView::consistent(UITableViewUpdate update) {
  sortWithoutDuplicates(update.deletedRows);
  sortWithoutDuplicates(update.deletedSections);
  const std::vector<std::int64_t> before = std::exchange(rowCounts_, std::nullopt).value();
  const auto isKnown = [&](std::int64_t section, std::int64_t row) {
    return section >= 0 && static_cast<std::uint64_t>(section) < before.size() && row >= 0 &&
           row < before[static_cast<std::size_t>(section)];
  };
  std::vector<std::int64_t> expected = before;
  for (const IndexPath& place : update.deletedRows) {
    if (!isKnown(place.section, place.row)) return std::nullopt;
    --expected[static_cast<std::size_t>(place.section)];
  }
  for (auto section = update.deletedSections.rbegin(); section != update.deletedSections.rend(); ++section) {
    if (*section < 0 || static_cast<std::uint64_t>(*section) >= before.size()) return std::nullopt;
    expected.erase(expected.begin() + *section);
  }
  loadCounts();
  if (*rowCounts_ != expected) return std::nullopt;
  return update;
}

void UITableView::forgetDeleted(const UITableViewUpdate& update) {
  for (const auto& [place, cell] : std::exchange(shown_, {})) {
    if (const auto moved = after(update, place)) {
      shown_.emplace(*moved, cell);
    } else {
      reusable_.emplace_back(place, cell);
    }
  }
  if (selected_) selected_ = after(update, *selected_);
}

void UITableView::loadCounts() {
  std::vector<std::int64_t> counts;
  const std::int64_t sections = dataSource_ ? dataSource_->numberOfSectionsInTableView(*this) : 0;
  for (std::int64_t section = 0; section < sections; ++section) {
    counts.push_back(dataSource_->numberOfRowsInSection(*this, section));
  }
  rowCounts_ = std::move(counts);
}

std::int64_t UITableView::numberOfSections() {
  if (!rowCounts_) loadCounts();
  return static_cast<std::int64_t>(rowCounts_->size());
}

std::int64_t UITableView::numberOfRowsInSection(std::int64_t section) {
  if (section < 0 || section >= numberOfSections()) return 0;
  return (*rowCounts_)[static_cast<std::size_t>(section)];
}

bool UITableView::hasRow(IndexPath indexPath) {
  return indexPath.row >= 0 && indexPath.row < numberOfRowsInSection(indexPath.section);
}

std::optional<std::string> UITableView::titleForHeaderInSection(std::int64_t section) {
  return dataSource_ ? dataSource_->titleForHeaderInSection(*this, section) : std::nullopt;
}

std::optional<std::string> UITableView::titleForFooterInSection(std::int64_t section) {
  return dataSource_ ? dataSource_->titleForFooterInSection(*this, section) : std::nullopt;
}

std::shared_ptr<UITableViewCell> UITableView::cellForRowAtIndexPath(IndexPath indexPath) {
  if (!hasRow(indexPath)) return nullptr;
  const auto known = shown_.find(indexPath);
  return known != shown_.end() ? known->second : show(indexPath);
}

std::shared_ptr<UITableViewCell> UITableView::show(IndexPath indexPath) {
  auto cell = dataSource_->cellForRowAtIndexPath(*this, indexPath);
  cell->layoutSubviews();
  shown_.insert_or_assign(indexPath, cell);
  return cell;
}

void UITableView::endDisplayingRow(IndexPath indexPath) {
  const auto known = shown_.find(indexPath);
  if (known == shown_.end()) return;
  reusable_.emplace_back(indexPath, known->second);
  shown_.erase(known);
}

void UITableView::tapRow(IndexPath indexPath) {
  if (!delegate_ || !hasRow(indexPath)) return;
  selected_ = indexPath;
  delegate_->didSelectRowAtIndexPath(*this, indexPath);
}

UITableViewCellEditingStyle UITableView::editingStyle(IndexPath indexPath) {
  if (!delegate_ || !dataSource_ || !hasRow(indexPath) || !dataSource_->canEditRowAtIndexPath(*this, indexPath)) {
    return UITableViewCellEditingStyle::kNone;
  }
  return delegate_->editingStyleForRowAtIndexPath(*this, indexPath);
}

void UITableView::confirmDeletion(IndexPath indexPath) {
  if (editingStyle(indexPath) != UITableViewCellEditingStyle::kDelete) return;
  dataSource_->commitEditingStyle(*this, UITableViewCellEditingStyle::kDelete, indexPath);
}

}  // namespace chatsum::platform
