#include "hosts/desktop/engine/ReportRows.h"

#include <limits>
#include <utility>

#include "hosts/desktop/engine/AttachmentKind.h"

namespace chatsum::desktop {

ReportRows::ReportRows(Array rows, device::ReportContent kind, std::string reportName)
    : records(std::move(rows)), content(std::move(kind)), name(std::move(reportName)) {
  AttachmentKinds kinds;
  RecordField dateField("Date"), flagField("cache_has_attachments"), placeField("attachment_location");
  dates.reserve(records.size());
  for (std::size_t row = 0; row < records.size(); ++row) {
    const Record& record = *records[row].asRecord();
    const Value* date = dateField.find(record);
    dates.push_back(date && date->asDate() ? date->asDate()->secondsSince1970
                                           : std::numeric_limits<double>::quiet_NaN());
    const Value* flag = flagField.find(record);
    if (flag && flag->integerValue() > 0) withAttachment.push_back(static_cast<std::uint32_t>(row));
    const Value* place = placeField.find(record);
    if (!place || !place->asString()) continue;
    const AttachmentKind attached = kinds.of(place->asString()->view());
    const bool isSheet = attached == AttachmentKind::kImage || attached == AttachmentKind::kPdf;
    if (!isSheet) withMultiMedia.push_back(static_cast<std::uint32_t>(row));
  }
}

}  // namespace chatsum::desktop
