// The report screen: a table with the criteria of a report (name, sort order, file format) and the reports made
// earlier, and all that happens between a tap and a finished file. Main queue only, but for what says otherwise. The
// host owns it; blocks that wait hold it weakly, so it ends when the host lets go of it.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "libchatsum/CSReportGenerationViewController/SharedRecord.h"
#include "libchatsum/Export.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "platform/uikit/QLPreviewController.h"
#include "platform/uikit/UIActionSheet.h"
#include "platform/uikit/UITableViewController.h"
#include "platform/uikit/UITextField.h"

namespace chatsum {

class CHATSUM_EXPORT CSReportGenerationViewController final
    : public platform::UITableViewController,
      public platform::UIActionSheetDelegate,
      public platform::UITextFieldDelegate,
      public platform::QLPreviewControllerDataSource,
      public platform::QLPreviewControllerDelegate,
      public std::enable_shared_from_this<CSReportGenerationViewController> {
 public:
  /// Earlier reports: App type → array of file-info records (keys of report_entry), newest first.
  using FileRecords = std::map<std::int64_t, Array>;
  /// Gets the error of a deletion, none when it succeeded.
  using RemoveCompletion = std::function<void(const std::optional<Error>& error)>;

  // In-process notifications that the host posts and the screen observes. Whoever posts the first two has brought the
  // settings up to date before.
  static constexpr const char* kFileFormatChanged = "com.orbelle.ChatsumMessagesFileFormatChanged";
  static constexpr const char* kDateSortChanged = "com.orbelle.ChatsumMessagesDateSortChanged";
  static constexpr const char* kReportFileDeleted = "com.orbelle.ChatsumReportFileDeletedNotification";

  /// Tags of the older generation's questions.
  enum ActionSheetTag : std::int64_t {
    kSortOrderTag = 1322,
    kFileFormatTag = 1323,
    kReplaceTag = 1324,
    kAttachmentsTag = 1325,
  };
  /// The tag of the older generation's alert.
  static constexpr std::int64_t kAlertViewTag = 400;

  [[nodiscard]] static std::shared_ptr<CSReportGenerationViewController> create(
      platform::UITableViewStyle style = platform::UITableViewStyle::kGrouped);
  /// Any thread.
  ~CSReportGenerationViewController() override;

  // Properties. The host sets those of the selection before the view is loaded. --------------------------------------

  /// The selection holds at least one attachment.
  [[nodiscard]] bool hasAttachments() const { return hasAttachments_; }
  void setHasAttachments(bool value) { hasAttachments_ = value; }
  /// The selection holds audio or video attachments.
  [[nodiscard]] bool hasMultiMediaAttachments() const { return hasMultiMediaAttachments_; }
  void setHasMultiMediaAttachments(bool value) { hasMultiMediaAttachments_ = value; }
  /// Which application the records come from. Any thread.
  [[nodiscard]] std::int64_t appType() const { return appType_; }
  void setAppType(std::int64_t appType) { appType_ = appType; }
  /// True is newest record first. Any thread.
  [[nodiscard]] bool sortDesc() const { return sortDesc_; }
  void setSortDesc(bool sortDesc) { sortDesc_ = sortDesc; }
  /// A File format code. Any thread.
  [[nodiscard]] std::uint64_t fileFormat() const { return fileFormat_; }
  void setFileFormat(std::uint64_t fileFormat) { fileFormat_ = fileFormat; }
  /// The Report request being edited: the object itself, whose "FILE_NAME" (without extension), "FILE_FORMAT" and
  /// "RECORDS" the screen reads and writes. Never null, any thread.
  [[nodiscard]] std::shared_ptr<SharedRecord> selectedRecords() const;
  /// Edits a copy of the request from here on. The records stand in date order.
  void setSelectedRecords(const Record& request);
  /// None before the first list is loaded. Any thread.
  [[nodiscard]] std::optional<FileRecords> fileRecordsDictionary() const;
  void setFileRecordsDictionary(std::optional<FileRecords> fileRecords);
  /// Made by the first name cell; nullptr before.
  [[nodiscard]] const std::shared_ptr<platform::UITextField>& nameTextField() const { return nameTextField_; }
  /// The file name of the report that is being previewed, none when there is no preview.
  [[nodiscard]] const std::optional<std::string>& previewFilePath() const { return previewFilePath_; }

  // Life of the view -------------------------------------------------------------------------------------------------

  void viewDidLoad() override;
  /// From here on the screen no longer follows the notifications.
  void didReceiveMemoryWarning() override;
  void willRotateToInterfaceOrientation(platform::UIInterfaceOrientation orientation, double duration) override;

  // Notifications. Any thread. ---------------------------------------------------------------------------------------

  /// Takes file format and sort order from the settings; the table follows from the main queue.
  void handleFileFormatChangedNotification();
  void handleReportDeletedNotification();

  // Table ------------------------------------------------------------------------------------------------------------

  std::int64_t numberOfSectionsInTableView(platform::UITableView& tableView) override;
  std::int64_t numberOfRowsInSection(platform::UITableView& tableView, std::int64_t section) override;
  std::shared_ptr<platform::UITableViewCell> cellForRowAtIndexPath(platform::UITableView& tableView,
                                                                   platform::IndexPath indexPath) override;
  std::optional<std::string> titleForHeaderInSection(platform::UITableView& tableView, std::int64_t section) override;
  std::optional<std::string> titleForFooterInSection(platform::UITableView& tableView, std::int64_t section) override;
  bool canEditRowAtIndexPath(platform::UITableView& tableView, platform::IndexPath indexPath) override;
  platform::UITableViewCellEditingStyle editingStyleForRowAtIndexPath(platform::UITableView& tableView,
                                                                      platform::IndexPath indexPath) override;
  /// Deletes the file of an earlier report; an error is shown and the row stays.
  void commitEditingStyle(platform::UITableView& tableView, platform::UITableViewCellEditingStyle style,
                          platform::IndexPath indexPath) override;
  /// Asks for the sort order or the file format, or previews an earlier report.
  void didSelectRowAtIndexPath(platform::UITableView& tableView, platform::IndexPath indexPath) override;

  // Name field -------------------------------------------------------------------------------------------------------

  void textFieldDidChange(platform::UITextField& field);
  bool textFieldShouldEndEditing(platform::UITextField& field) override;
  void textFieldDidEndEditing(platform::UITextField& field) override;
  bool textFieldShouldReturn(platform::UITextField& field) override;

  // Making a report --------------------------------------------------------------------------------------------------

  void clickedButtonAtIndex(platform::UIActionSheet& actionSheet, std::int64_t buttonIndex) override;
  /// Warns of attachments that the format cannot carry, asks before a file is replaced, then generates. The sender is
  /// not used.
  void generateReport(platform::UIBarButtonItem* sender);
  /// Writes the report on the global queue, with no further question. The records are turned round when they do not
  /// stand in the sort order.
  void generateReport();

  // Earlier reports --------------------------------------------------------------------------------------------------

  /// Reads the list anew on the global queue; returns at once. Any thread.
  void loadPreviousReports();
  /// Deletes a file (name with extension) of the reports folder; the completion, if any, runs before the call returns.
  /// A name that is not one path component is an error (EINVAL) and deletes nothing. Any thread.
  void removeFile(const std::string& name, const RemoveCompletion& completion);
  std::int64_t numberOfPreviewItemsInPreviewController(platform::QLPreviewController& controller) override;
  platform::QLPreviewItem previewItemAtIndex(platform::QLPreviewController& controller, std::int64_t index) override;
  void previewControllerDidDismiss(platform::QLPreviewController& controller) override;

  // Alerts -----------------------------------------------------------------------------------------------------------

  /// Shows a message with one button; returns at once. Alerts of the newer generation have the title "Error" whatever
  /// the title given.
  void showMessage(const std::string& title, const std::string& withMessage);
  void showError(const std::string& message);

 private:
  explicit CSReportGenerationViewController(platform::UITableViewStyle style);

  [[nodiscard]] bool usesAlertControllers() const;
  [[nodiscard]] std::string fileName() const;
  [[nodiscard]] std::string reportFileName() const;
  [[nodiscard]] std::string proposedFileName(const std::string& name, std::int64_t appType) const;
  [[nodiscard]] static std::int64_t appTypeOf(std::int64_t section);
  [[nodiscard]] Array* filesOf(std::int64_t section);
  [[nodiscard]] static const Record* fileIn(const Array* files, std::int64_t row);
  [[nodiscard]] std::optional<Record> fileAt(platform::IndexPath indexPath);
  [[nodiscard]] std::optional<Record> fileShownAt(platform::IndexPath indexPath);
  void reloadTableOnMain();

  void fillNameCell(platform::UITableViewCell& cell);
  void fillFileCell(platform::UITableViewCell& cell, const Record& file);
  void takeNameFrom(const platform::UITextField& field);

  void askForSortOrder();
  void askForFileFormat();
  void chooseSortOrder(bool descending);
  void chooseFileFormat(std::uint64_t fileFormat);
  [[nodiscard]] std::string attachmentWarning() const;
  void checkFileAndGenerateReport();
  void replaceAndGenerateReport(const char* operation, int line);
  void showQuestion(const std::string& question, const char* destructiveTitle, std::int64_t tag,
                    const std::function<void(CSReportGenerationViewController&)>& confirmed);
  void orderRecords();
  void reportSaved();

  void publish(std::uint64_t load, FileRecords fileRecords);
  void forgetFile(platform::IndexPath indexPath, const std::string& name);
  void deleteLeavingRows(std::uint64_t listVersion);
  void preview(platform::IndexPath indexPath);

  bool hasAttachments_ = false;
  bool hasMultiMediaAttachments_ = false;
  std::atomic<std::int64_t> appType_{0};
  std::atomic<bool> sortDesc_{false};
  std::atomic<std::uint64_t> fileFormat_{0};
  std::shared_ptr<platform::UITextField> nameTextField_;
  std::optional<std::string> previewFilePath_;

  mutable std::mutex mutex_;  // for what follows
  std::shared_ptr<SharedRecord> selectedRecords_;
  std::optional<FileRecords> fileRecords_;
  std::vector<platform::IndexPath> leavingRows_;  // of the table: the list has lost their files, the table follows
  std::uint64_t listVersion_ = 0;                 // another number for each list that took the place of the one before
  std::uint64_t loadsStarted_ = 0;
  std::uint64_t loadPublished_ = 0;
};

}  // namespace chatsum
