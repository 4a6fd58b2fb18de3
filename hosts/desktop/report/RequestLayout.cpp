#include "hosts/desktop/report/RequestLayout.h"

#include <QCoreApplication>
#include <utility>

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"

namespace chatsum::desktop {

RequestLayout::RequestLayout(const Record& request, std::optional<Array> textRecords)
    : records_(request[request::kRecords]), textRecords_(std::move(textRecords)) {
  const Record* const format = request[request::kReportFormat].asRecord();
  if (format && format->size() > 0) keys_ = device::splitList(format->valueAt(0).description());
  const Array* const titles = request[request::kColumns].asArray();
  if (!titles) return;
  titles_.emplace();
  for (const Value& title : *titles) titles_->push_back(title.description());
}

std::vector<RequestLayout::Entry> RequestLayout::entriesFor(device::ReportFormat format) const {
  device::ReportLayout layout;
  layout.format = format;
  layout.keys = keys_;
  layout.columns = titles_;
  const Record made = device::makeRequest(layout, "", Array());
  const bool isPaged = format == device::ReportFormat::kPdf;
  return {{request::kReportFormat, made[request::kReportFormat]},
          {request::kColumns, made[request::kColumns]},
          {request::kRecords, isPaged || !textRecords_ ? records_ : Value(*textRecords_)}};
}

QString RequestLayout::problemIn(device::ReportFormat format) const {
  constexpr std::size_t kMostColumnsOfPage = 3;
  if (format != device::ReportFormat::kPdf || keys_.size() <= kMostColumnsOfPage) return {};
  return QCoreApplication::translate("RequestLayout",
                                     "A PDF page has room for %1 columns, and there are %2; choose CSV or Text.")
      .arg(kMostColumnsOfPage)
      .arg(keys_.size());
}

}  // namespace chatsum::desktop
