// The rows of one list (a conversation, the calls of an app) as reports take them, with what choosing among them needs
// to know. Unchanged once made: any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "hosts/device/report/ReportRequest.h"
#include "platform/foundation/Value.h"

namespace chatsum::desktop {

struct ReportRows {
  ReportRows() = default;
  /// Looks at all rows once; may take long. `reportName` has no extension.
  ReportRows(Array rows, device::ReportContent kind, std::string reportName);

  [[nodiscard]] std::size_t size() const { return records.size(); }

  Array records;
  device::ReportContent content;
  std::string name;                           ///< of a report of these rows, without extension
  std::vector<double> dates;                  ///< seconds since 1970, of each row; no number for rows without a date
  std::vector<std::uint32_t> withAttachment;  ///< rows of messages with attachments, ascending
  std::vector<std::uint32_t> withMultiMedia;  ///< rows whose file is neither a picture nor a PDF, ascending
};

}  // namespace chatsum::desktop
