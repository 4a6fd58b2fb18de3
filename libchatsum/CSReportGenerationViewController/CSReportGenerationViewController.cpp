// Properties, life of the view, notifications and the name field.

#include "libchatsum/CSReportGenerationViewController/CSReportGenerationViewController.h"

#include <utility>

#include "libchatsum/CSReportGenerationViewController/CSLoadingTableViewCell.h"
#include "libchatsum/CSReportGenerationViewController/CSUITableViewCellStyleSubtitle.h"
#include "libchatsum/CSReportGenerationViewController/CSUITableViewCellStyleValue1.h"
#include "libchatsum/CSReportGenerationViewController/CellIdentifiers.h"
#include "libchatsum/CSReportGenerationViewController/ScreenWords.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumSettings/ChatsumSettings.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {

using screen_words::localized;

std::shared_ptr<CSReportGenerationViewController> CSReportGenerationViewController::create(
    platform::UITableViewStyle style) {
  return std::shared_ptr<CSReportGenerationViewController>(new CSReportGenerationViewController(style));
}

CSReportGenerationViewController::CSReportGenerationViewController(platform::UITableViewStyle style)
    : UITableViewController(style), selectedRecords_(std::make_shared<SharedRecord>(Record())) {}

CSReportGenerationViewController::~CSReportGenerationViewController() {
  NotificationCenter::defaultCenter().removeObserver(this);
}

std::shared_ptr<SharedRecord> CSReportGenerationViewController::selectedRecords() const {
  const std::lock_guard lock(mutex_);
  return selectedRecords_;
}

void CSReportGenerationViewController::setSelectedRecords(const Record& request) {
  auto copy = std::make_shared<SharedRecord>(request);
  const std::lock_guard lock(mutex_);
  selectedRecords_ = std::move(copy);
}

std::optional<CSReportGenerationViewController::FileRecords> CSReportGenerationViewController::fileRecordsDictionary()
    const {
  const std::lock_guard lock(mutex_);
  return fileRecords_;
}

void CSReportGenerationViewController::setFileRecordsDictionary(std::optional<FileRecords> fileRecords) {
  const std::lock_guard lock(mutex_);
  fileRecords_ = std::move(fileRecords);
  leavingRows_.clear();
  ++listVersion_;
}

/// Whether the screens of this system are those of the newer generation, with a block per button.
bool CSReportGenerationViewController::usesAlertControllers() const {
  return platform::current().runtime.hasClass("UIAlertController");
}

std::string CSReportGenerationViewController::fileName() const {
  const Value name = selectedRecords()->value(request::kFileName);
  return name.isNone() ? std::string() : name.description();
}

std::string CSReportGenerationViewController::reportFileName() const {
  const auto extension = screen_words::formatExtension(fileFormat());
  return extension.empty() ? fileName() : path::appendingExtension(fileName(), extension);
}

/// A name that no report of the current format bears yet, without the extension that the catalogue answers it with:
/// the request's name is the one the user reads and edits.
std::string CSReportGenerationViewController::proposedFileName(const std::string& name, std::int64_t appType) const {
  const std::uint64_t format = fileFormat();
  std::string proposed = ChatsumUtils::defaultFileName(name, appType, static_cast<std::int64_t>(format));
  const auto extension = screen_words::formatExtension(format);
  if (!extension.empty() && proposed.ends_with("." + std::string(extension))) {
    proposed.resize(proposed.size() - extension.size() - 1);
  }
  return proposed;
}

void CSReportGenerationViewController::viewDidLoad() {
  UITableViewController::viewDidLoad();
  setTitle(localized("Generate Report"));
  fileFormat_ = static_cast<std::uint64_t>(selectedRecords()->value(request::kFileFormat).integerValue());
  sortDesc_ = ChatsumSettings::sharedSettings().msgDefaultDateSortOrder() != 0;

  const auto weak = weak_from_this();
  navigationItem().setRightBarButtonItem(
      std::make_shared<platform::UIBarButtonItem>(localized("Generate"), platform::UIBarButtonItemStyle::kPlain,
                                                  [weak](platform::UIBarButtonItem& sender) {
                                                    if (const auto self = weak.lock()) self->generateReport(&sender);
                                                  }),
      true);

  auto& center = NotificationCenter::defaultCenter();
  for (const char* name : {kFileFormatChanged, kDateSortChanged}) {
    center.addObserver(this, name, [weak](std::string_view) {
      if (const auto self = weak.lock()) self->handleFileFormatChangedNotification();
    });
  }
  center.addObserver(this, kReportFileDeleted, [weak](std::string_view) {
    if (const auto self = weak.lock()) self->handleReportDeletedNotification();
  });

  tableView().registerClass<CSUITableViewCellStyleSubtitle>(cell_identifiers::kReport);
  tableView().registerClass<CSUITableViewCellStyleValue1>(cell_identifiers::kCriterion);
  tableView().registerClass<CSLoadingTableViewCell>(cell_identifiers::kLoading);
  loadPreviousReports();
}

void CSReportGenerationViewController::didReceiveMemoryWarning() {
  UITableViewController::didReceiveMemoryWarning();
  NotificationCenter::defaultCenter().removeObserver(this);
}

void CSReportGenerationViewController::willRotateToInterfaceOrientation(
    platform::UIInterfaceOrientation /*orientation*/, double /*duration*/) {
  tableView().reloadData();  // the name field's width follows the cell's
}

void CSReportGenerationViewController::handleFileFormatChangedNotification() {
  const auto records = selectedRecords();
  records->set(request::kFileFormat, ChatsumUtils::defaultFileFormat());
  fileFormat_ = static_cast<std::uint64_t>(records->value(request::kFileFormat).integerValue());
  sortDesc_ = ChatsumSettings::sharedSettings().msgDefaultDateSortOrder() != 0;
  reloadTableOnMain();
}

void CSReportGenerationViewController::handleReportDeletedNotification() { loadPreviousReports(); }

void CSReportGenerationViewController::reloadTableOnMain() {
  platform::current().dispatch.asyncOnMain([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->tableView().reloadData();
  });
}

void CSReportGenerationViewController::textFieldDidChange(platform::UITextField& field) { takeNameFrom(field); }

bool CSReportGenerationViewController::textFieldShouldEndEditing(platform::UITextField& /*field*/) { return true; }

void CSReportGenerationViewController::textFieldDidEndEditing(platform::UITextField& field) { takeNameFrom(field); }

bool CSReportGenerationViewController::textFieldShouldReturn(platform::UITextField& field) {
  field.resignFirstResponder();
  return true;
}

/// A report needs a name: an empty field leaves the last one in the request, and nothing can be generated.
void CSReportGenerationViewController::takeNameFrom(const platform::UITextField& field) {
  const bool hasText = !field.text().empty();
  if (hasText) selectedRecords()->set(request::kFileName, field.text());
  if (const auto& button = navigationItem().rightBarButtonItem()) button->setEnabled(hasText);
}

}  // namespace chatsum
