// The report proper: from the request to the file, on the global queue.

#include <algorithm>
#include <new>
#include <vector>

#include "libchatsum/CSReportGenerationViewController/CSReportGenerationViewController.h"
#include "libchatsum/CSReportGenerationViewController/ScreenWords.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

using screen_words::localized;

/// What stands for a record's date when references are compared; 0 for no record or no date.
std::uint64_t dateReference(const Value& record) {
  const Record* fields = record.asRecord();
  return fields ? (*fields)["Date"].reference() : 0;
}

}  // namespace

void CSReportGenerationViewController::generateReport() {
  platform::current().dispatch.asyncOnGlobal([weak = weak_from_this()] {
    constexpr int kSavedLine = 507;
    bool isAnswered = false;
    try {
      Record request;
      {
        const auto self = weak.lock();
        if (!self) return;
        ChatsumUtils::showHud(localized("Generating"), localized("Please wait..."), self);
        self->orderRecords();
        request = self->selectedRecords()->record();
      }
      CSReportsGenerator::sharedInstance().generateReport(
          request,
          [&](const std::string& path) {
            isAnswered = true;
            ChatsumUtils::hideHud();
            logging::information("-[CSReportGenerationViewController generateReport]_block_invoke", kSavedLine,
                                 "Report save to " + path);
            if (const auto self = weak.lock()) self->reportSaved();
          },
          [&](const Error&) {
            isAnswered = true;
            ChatsumUtils::hideHud();
          });
    } catch (const std::bad_alloc&) {
      // A failure like others, of which nobody else would be told on this thread.
    }
    // Without a folder, a writer or memory the engine is silent; the screen must not stay blocked.
    if (!isAnswered) ChatsumUtils::hideHud();
  });
}

/// Turns the records round when they stand against the sort order, which is told from the first and the last date as
/// references. Records in between are not looked at.
void CSReportGenerationViewController::orderRecords() {
  const auto selected = selectedRecords();
  const Value records = selected->value(request::kRecords);
  const Array* const array = records.asArray();
  if (!array || array->empty()) return;
  const std::uint64_t first = dateReference((*array)[0]);
  const std::uint64_t last = dateReference((*array)[array->size() - 1]);
  if (sortDesc() ? first >= last : first <= last) return;
  selected->set(request::kRecords, Array(std::vector<Value>(std::make_reverse_iterator(array->end()),
                                                            std::make_reverse_iterator(array->begin()))));
}

/// Proposes a name for the next report, made of what stands before the first "-", and lists the new file.
void CSReportGenerationViewController::reportSaved() {
  if (fileRecordsDictionary()) setFileRecordsDictionary(FileRecords());
  const auto selected = selectedRecords();
  if (!selected->value(request::kFileName).isNone()) {
    const std::string name = fileName();
    selected->set(request::kFileName,
                  proposedFileName(screen_words::trimmed(name.substr(0, name.find('-'))), appType()));
  }
  loadPreviousReports();
}

}  // namespace chatsum
