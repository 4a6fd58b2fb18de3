// The reports made earlier: listing them, looking at one, deleting one.

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "libchatsum/CSReportGenerationViewController/CSReportGenerationViewController.h"
#include "libchatsum/CSReportGenerationViewController/CriteriaRows.h"
#include "libchatsum/CSReportGenerationViewController/ScreenWords.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"
#include "platform/uikit/UINavigationController.h"

namespace chatsum {
namespace {

using platform::IndexPath;

constexpr auto kDeletionAnimation = platform::UITableViewRowAnimation::kAutomatic;

/// A file without a known date comes last.
bool isNewer(const Value& a, const Value& b) {
  const auto date = [](const Value& file) {
    const Record* record = file.asRecord();
    return record ? (*record)[report_entry::kCreationDate].asDate() : nullptr;
  };
  const Date* const dateOfA = date(a);
  const Date* const dateOfB = date(b);
  return dateOfA && (!dateOfB || *dateOfA > *dateOfB);
}

/// All files of all extensions in one list, newest first.
Array newestFirst(const ChatsumUtils::ReportsByExtension& reports) {
  std::vector<Value> files;
  for (std::size_t i = 0; i < reports.size(); ++i) {
    if (const Array* some = reports.valueAt(i).asArray()) files.insert(files.end(), some->begin(), some->end());
  }
  std::stable_sort(files.begin(), files.end(), isNewer);
  return Array(std::move(files));
}

/// Whether a folder joined with the name is an item in that folder, and not the folder itself or one above it.
bool isItemName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos;
}

}  // namespace

void CSReportGenerationViewController::loadPreviousReports() {
  std::uint64_t load = 0;
  {
    const std::lock_guard lock(mutex_);
    load = ++loadsStarted_;
  }
  platform::current().dispatch.asyncOnGlobal([weak = weak_from_this(), ofType = appType(), load] {
    if (weak.expired()) return;
    FileRecords fileRecords;
    for (const auto& [type, reports] : ChatsumUtils::allAppSpecificGeneratedReports(ofType)) {
      fileRecords.emplace(type, newestFirst(reports));
    }
    platform::current().dispatch.asyncOnMain([weak, load, fileRecords = std::move(fileRecords)]() mutable {
      if (const auto self = weak.lock()) self->publish(load, std::move(fileRecords));
    });
  });
}

/// Shows a list that was read, unless a newer one is shown already: loads may overtake each other.
void CSReportGenerationViewController::publish(std::uint64_t load, FileRecords fileRecords) {
  {
    const std::lock_guard lock(mutex_);
    if (load <= loadPublished_) return;
    loadPublished_ = load;
  }
  setFileRecordsDictionary(std::move(fileRecords));
  tableView().reloadData();
}

void CSReportGenerationViewController::preview(IndexPath indexPath) {
  const auto file = fileShownAt(indexPath);
  auto* const navigation = navigationController();
  if (!file || !navigation) return;
  ChatsumUtils::showHud(screen_words::localized("Loading"), "", shared_from_this());
  previewFilePath_ = (*file)[report_entry::kName].description();
  const auto controller = std::make_shared<platform::QLPreviewController>();
  controller->setDataSource(weak_from_this());
  controller->setDelegate(weak_from_this());
  navigation->presentViewController(controller, true, [] { ChatsumUtils::hideHud(); });
}

std::int64_t CSReportGenerationViewController::numberOfPreviewItemsInPreviewController(
    platform::QLPreviewController& /*controller*/) {
  return 1;
}

platform::QLPreviewItem CSReportGenerationViewController::previewItemAtIndex(
    platform::QLPreviewController& /*controller*/, std::int64_t /*index*/) {
  return {path::appending(ChatsumUtils::defaultLocation(appType()), previewFilePath_.value_or(""))};
}

void CSReportGenerationViewController::previewControllerDidDismiss(platform::QLPreviewController& /*controller*/) {
  previewFilePath_.reset();
}

bool CSReportGenerationViewController::canEditRowAtIndexPath(platform::UITableView& /*tableView*/,
                                                             IndexPath indexPath) {
  return indexPath.section > criteria::kSection;
}

platform::UITableViewCellEditingStyle CSReportGenerationViewController::editingStyleForRowAtIndexPath(
    platform::UITableView& /*tableView*/, IndexPath indexPath) {
  return indexPath.section > criteria::kSection ? platform::UITableViewCellEditingStyle::kDelete
                                                : platform::UITableViewCellEditingStyle::kNone;
}

void CSReportGenerationViewController::commitEditingStyle(platform::UITableView& /*tableView*/,
                                                          platform::UITableViewCellEditingStyle style,
                                                          IndexPath indexPath) {
  const auto file = fileShownAt(indexPath);
  if (style != platform::UITableViewCellEditingStyle::kDelete || !file) return;
  const std::string name = (*file)[report_entry::kName].description();
  removeFile(name, [weak = weak_from_this(), indexPath, name](const std::optional<Error>& error) {
    constexpr int kNotRemovedLine = 618;
    const auto self = weak.lock();
    if (!self) return;
    if (!error) {
      self->forgetFile(indexPath, name);
      return;
    }
    const std::string reason = error->localizedDescription();
    logging::error("-[CSReportGenerationViewController tableView:commitEditingStyle:forRowAtIndexPath:]_block_invoke",
                   kNotRemovedLine, "Error while deleting file " + name + ". Error: " + reason);
    self->showError(reason);
  });
}

/// The file-info record of a row as the table shows it, which may not have lost the rows of deleted files yet; none for
/// one of those.
std::optional<Record> CSReportGenerationViewController::fileShownAt(IndexPath indexPath) {
  std::int64_t gone = 0;
  {
    const std::lock_guard lock(mutex_);
    for (const IndexPath& row : leavingRows_) {
      if (row == indexPath) return std::nullopt;
      if (row.section == indexPath.section && row.row < indexPath.row) ++gone;
    }
  }
  return fileAt({indexPath.section, indexPath.row - gone});
}

/// Takes a deleted file out of the list at once; the table follows from the main queue.
void CSReportGenerationViewController::forgetFile(IndexPath indexPath, const std::string& name) {
  std::uint64_t version = 0;
  {
    const std::lock_guard lock(mutex_);
    version = listVersion_;
    Array* const files = filesOf(indexPath.section);
    if (!files) return;  // a report saved meanwhile emptied the list
    auto& items = files->mutableItems();
    const auto own = std::find_if(items.begin(), items.end(), [&](const Value& item) {
      return item.asRecord() && (*item.asRecord())[report_entry::kName] == Value(name);
    });
    if (own == items.end()) return;
    items.erase(own);
    leavingRows_.push_back(indexPath);
  }
  platform::current().dispatch.asyncOnMain([weak = weak_from_this(), version] {
    if (const auto self = weak.lock()) self->deleteLeavingRows(version);
  });
}

/// One step for all rows whose files went since the last one: the table compares its rows with the list, which has lost
/// them all.
void CSReportGenerationViewController::deleteLeavingRows(std::uint64_t listVersion) {
  bool isAnotherList = false, isLoading = false;
  std::vector<IndexPath> rows;
  std::vector<std::int64_t> emptySections;
  {
    const std::lock_guard lock(mutex_);
    isAnotherList = listVersion_ != listVersion;
    isLoading = loadsStarted_ != loadPublished_;
    if (!isAnotherList) rows.swap(leavingRows_);
    for (const IndexPath& row : rows) {
      const Array* const files = filesOf(row.section);
      if (!files || !files->empty()) continue;
      fileRecords_->erase(appTypeOf(row.section));
      emptySections.push_back(row.section);
    }
  }
  if (!rows.empty()) {
    tableView().beginUpdates();
    tableView().deleteRowsAtIndexPaths(rows, kDeletionAnimation);
    if (!emptySections.empty()) tableView().deleteSections(emptySections, kDeletionAnimation);
    tableView().endUpdates();
  }
  // A list that was begun before the file went may still name it.
  if (isAnotherList || isLoading) loadPreviousReports();
}

void CSReportGenerationViewController::removeFile(const std::string& name, const RemoveCompletion& completion) {
  constexpr int kNotRemovedLine = 587;
  const std::string fullPath = path::appending(ChatsumUtils::defaultLocation(appType()), name);
  const auto error = isItemName(name) ? platform::current().files.remove(fullPath)
                                      : Error::posix(EINVAL, "“" + name + "” couldn’t be removed");
  if (error) {
    logging::error("-[CSReportGenerationViewController removeFile:completion:]", kNotRemovedLine,
                   "Error while deleting file " + fullPath + ". Error: " + error->localizedDescription());
  }
  if (completion) completion(error);
}

}  // namespace chatsum
