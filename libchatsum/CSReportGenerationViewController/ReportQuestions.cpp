// What the report screen asks before a report is made: sort order, file format, attachments, replacing a file. Screens
// of both generations get the same questions and lead to the same answers.

#include <cerrno>
#include <memory>
#include <utility>

#include "libchatsum/CSReportGenerationViewController/CSReportGenerationViewController.h"
#include "libchatsum/CSReportGenerationViewController/CriteriaRows.h"
#include "libchatsum/CSReportGenerationViewController/ScreenWords.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/Logging/Logging.h"

namespace chatsum {
namespace {

using platform::UIActionSheet;
using platform::UIAlertAction;
using platform::UIAlertActionStyle;
using platform::UIAlertController;
using platform::UIAlertControllerStyle;
using screen_words::localized;

std::shared_ptr<UIAlertController> chooser(const std::optional<std::string>& title) {
  return std::make_shared<UIAlertController>(title, std::nullopt, UIAlertControllerStyle::kActionSheet);
}

UIAlertAction cancelAction() { return {localized("Cancel"), UIAlertActionStyle::kCancel, nullptr}; }

}  // namespace

void CSReportGenerationViewController::didSelectRowAtIndexPath(platform::UITableView& tableView,
                                                               platform::IndexPath indexPath) {
  if (nameTextField_) {
    selectedRecords()->set(request::kFileName, nameTextField_->text());
    nameTextField_->resignFirstResponder();
  }
  tableView.deselectRowAtIndexPath(indexPath, true);
  if (indexPath.section > criteria::kSection) {
    preview(indexPath);
  } else if (indexPath.row == criteria::kSortOrderRow) {
    askForSortOrder();
  } else if (indexPath.row == criteria::kFileFormatRow) {
    askForFileFormat();
  }
}

void CSReportGenerationViewController::askForSortOrder() {
  if (!usesAlertControllers()) {
    const auto sheet =
        std::make_shared<UIActionSheet>(std::nullopt, weak_from_this(), localized("Cancel"), std::nullopt,
                                        std::vector<std::string>{localized("Ascending"), localized("Descending")});
    sheet->setTag(kSortOrderTag);
    sheet->showInView(tableView());
    return;
  }
  const auto alert = chooser(std::nullopt);
  const auto add = [&](const char* title, bool descending) {
    alert->addAction({localized(title), UIAlertActionStyle::kDefault, [weak = weak_from_this(), descending] {
                        if (const auto self = weak.lock()) self->chooseSortOrder(descending);
                      }});
  };
  add("Ascending", false);
  add("Descending", true);
  alert->addAction(cancelAction());
  presentViewController(alert, true, nullptr);
}

void CSReportGenerationViewController::askForFileFormat() {
  if (!usesAlertControllers()) {
    const auto sheet = std::make_shared<UIActionSheet>(std::nullopt, weak_from_this(), localized("Cancel"),
                                                       std::nullopt, std::vector<std::string>());
    sheet->setTag(kFileFormatTag);
    for (std::uint64_t code = 0; code < screen_words::kFormats; ++code) {
      sheet->addButtonWithTitle(std::string(screen_words::formatName(code)));
    }
    sheet->showInView(tableView());
    return;
  }
  const auto alert = chooser(std::nullopt);
  for (std::uint64_t code = 0; code < screen_words::kFormats; ++code) {
    alert->addAction(
        {std::string(screen_words::formatName(code)), UIAlertActionStyle::kDefault, [weak = weak_from_this(), code] {
           if (const auto self = weak.lock()) self->chooseFileFormat(code);
         }});
  }
  alert->addAction(cancelAction());
  presentViewController(alert, true, nullptr);
}

void CSReportGenerationViewController::chooseSortOrder(bool descending) {
  sortDesc_ = descending;
  tableView().reloadData();
}

void CSReportGenerationViewController::chooseFileFormat(std::uint64_t fileFormat) {
  fileFormat_ = fileFormat;
  const auto records = selectedRecords();
  records->set(request::kFileFormat, fileFormat);
  // Always the App type of messages: the reports folder is the same for all.
  records->set(request::kFileName, proposedFileName(fileName(), kAppTypeMessages));
  tableView().reloadData();
}

void CSReportGenerationViewController::clickedButtonAtIndex(UIActionSheet& actionSheet, std::int64_t buttonIndex) {
  constexpr int kNotRemovedLine = 412;
  const std::int64_t tag = actionSheet.tag();
  if (tag < kSortOrderTag || tag > kAttachmentsTag || buttonIndex == actionSheet.cancelButtonIndex()) return;
  switch (tag) {
    case kSortOrderTag:
      chooseSortOrder(buttonIndex > 0);
      break;
    case kFileFormatTag:
      chooseFileFormat(static_cast<std::uint64_t>(buttonIndex - 1));
      break;
    case kReplaceTag:
      replaceAndGenerateReport("-[CSReportGenerationViewController actionSheet:clickedButtonAtIndex:]_block_invoke",
                               kNotRemovedLine);
      break;
    case kAttachmentsTag:
      checkFileAndGenerateReport();
      break;
  }
}

void CSReportGenerationViewController::generateReport(platform::UIBarButtonItem* /*sender*/) {
  const std::string warning = attachmentWarning();
  if (warning.empty()) {
    checkFileAndGenerateReport();
  } else {
    showQuestion(warning, "Continue", kAttachmentsTag, [](auto& self) { self.checkFileAndGenerateReport(); });
  }
}

/// What the format cannot carry of the selection; empty when it carries all. The format goes by its extension here.
std::string CSReportGenerationViewController::attachmentWarning() const {
  if (!hasAttachments()) return "";
  const std::uint64_t format = fileFormat();
  const bool isPDF = format == kFileFormatPDF;
  if (isPDF && !hasMultiMediaAttachments()) return "";
  const std::string extension = screen_words::upperCase(screen_words::formatExtension(format));
  return screen_words::localizedWith(
      isPDF ? "Your selection may contains audio/video files, which cannot be imported to '%@' file format. "
              "Do you want to continue?"
            : "Your selection may contains image/audio/video files, which cannot be imported to '%@' file format. "
              "Do you want to continue?",
      extension);
}

void CSReportGenerationViewController::checkFileAndGenerateReport() {
  constexpr int kCheckingLine = 446, kNotRemovedLine = 458;
  const std::string file = reportFileName();
  logging::information("-[CSReportGenerationViewController checkFileAndGenerateReport]", kCheckingLine,
                       "Checking file '" + file + "' exists or not.");
  if (!ChatsumUtils::isFileAlreadyExists(file, appType())) {
    generateReport();
    return;
  }
  const std::string question = "'" + file + "' " + localized("already exists. Do you want to replace it?");
  showQuestion(question, "Replace", kReplaceTag, [](auto& self) {
    self.replaceAndGenerateReport("-[CSReportGenerationViewController checkFileAndGenerateReport]_block_invoke",
                                  kNotRemovedLine);
  });
}

/// The report is made whether or not the file could be removed: the writers decide what then happens to it. Where there
/// is no such file format no report can come in the file's place, so it stays.
void CSReportGenerationViewController::replaceAndGenerateReport(const char* operation, int line) {
  const std::string file = reportFileName();
  const RemoveCompletion generate = [this, &file, operation, line](const std::optional<Error>& error) {
    if (error) {
      logging::error(operation, line,
                     "Error while deleting file " + file + ". Error: " + error->localizedDescription());
    }
    generateReport();
  };
  if (fileFormat() < screen_words::kFormats) {
    removeFile(file, generate);
  } else {
    generate(Error::posix(EINVAL, "“" + file + "” couldn’t be removed"));
  }
}

/// Asks whether to go on, with a button that stands for the danger and one that ends it all.
void CSReportGenerationViewController::showQuestion(
    const std::string& question, const char* destructiveTitle, std::int64_t tag,
    const std::function<void(CSReportGenerationViewController&)>& confirmed) {
  if (!usesAlertControllers()) {
    const auto sheet = std::make_shared<UIActionSheet>(question, weak_from_this(), localized("Cancel"),
                                                       localized(destructiveTitle), std::vector<std::string>());
    sheet->setTag(tag);
    sheet->showInView(tableView());
    return;
  }
  const auto alert = chooser(question);
  alert->addAction(
      {localized(destructiveTitle), UIAlertActionStyle::kDestructive, [weak = weak_from_this(), confirmed] {
         if (const auto self = weak.lock()) confirmed(*self);
       }});
  alert->addAction(cancelAction());
  presentViewController(alert, true, nullptr);
}

}  // namespace chatsum
