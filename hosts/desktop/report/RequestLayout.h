// What the rows of a request look like in each File format: the line, the column titles and what stands in place of a
// picture depend on the format, which the user may still change when the request is made. Values only.
#pragma once

#include <QString>
#include <optional>
#include <string>
#include <vector>

#include "hosts/device/report/ReportRequest.h"
#include "platform/foundation/Value.h"

namespace chatsum::desktop {

class RequestLayout {
 public:
  RequestLayout() = default;
  /// Takes keys, titles and records of the request; the titles as they are meant to be read, not quoted for a file.
  /// `textRecords` are its records for a report without pictures, where these are others.
  RequestLayout(const Record& request, std::optional<Array> textRecords);

  struct Entry {
    const char* key;
    Value value;
  };
  /// What the request must hold to be written in that format.
  [[nodiscard]] std::vector<Entry> entriesFor(device::ReportFormat format) const;
  /// Why the rows do not fit into that format, one sentence; empty when they do.
  [[nodiscard]] QString problemIn(device::ReportFormat format) const;

 private:
  std::vector<std::string> keys_;
  std::optional<std::vector<std::string>> titles_;
  Value records_;
  std::optional<Array> textRecords_;
};

}  // namespace chatsum::desktop
