#include "libchatsum/CSReportsGenerator/ReportLines.h"

namespace chatsum {

ReportLines::ReportLines(const Record& format, std::int64_t epoch) : keys_(reportKeys(format)), epoch_(epoch) {
  if (!format.empty()) line_.emplace(format.keyAt(0));
}

}  // namespace chatsum
