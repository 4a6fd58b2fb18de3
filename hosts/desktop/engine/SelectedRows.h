// Some of the rows of a list, and the request for a report of them. Values: any thread, one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "hosts/desktop/engine/ReportRows.h"
#include "hosts/desktop/engine/RowTicks.h"
#include "hosts/device/report/ShownRows.h"
#include "hosts/device/report/TimeRange.h"
#include "platform/foundation/Value.h"

namespace chatsum::desktop {

/// What the report screen needs of a selection.
struct SelectedReport {
  /// For the report screen: name without extension, format, application, titles, records as pages show them whole.
  Record request;
  /// The same records for a report that shows no pictures and has no pages; none: there is no difference.
  std::optional<Array> textRecords = std::nullopt;
  std::uint64_t undrawn = 0;  ///< attached files whose names stand on the pages
  std::int64_t appType = 0;
  bool hasAttachments = false;
  bool hasMultiMediaAttachments = false;
};

struct SelectedRows {
  enum class Kind { kNone, kAll, kTicked, kInTimes, kStretch };

  std::shared_ptr<const ReportRows> rows;  ///< null: none
  Kind kind = Kind::kNone;
  std::shared_ptr<const RowTicks> ticks = nullptr;  ///< for kTicked
  device::TimeRange times = {};     ///< for kInTimes; rows without a date are outside of any but the open one
  std::size_t first = 0, last = 0;  ///< for kStretch, both included

  [[nodiscard]] std::size_t count() const;
  [[nodiscard]] bool has(std::size_t row) const;
  [[nodiscard]] bool hasAttachments() const;
  [[nodiscard]] bool hasMultiMediaAttachments() const;
  /// In the order of the list. All of them share the list's own array.
  [[nodiscard]] Array records() const;
  /// The line format is left to the one that goes with the format that is chosen in the end. Where `canDraw` says that
  /// a picture is not to be had, its name stands in its place. Measures long texts: may take long.
  [[nodiscard]] SelectedReport report(device::ReportFormat format, const device::CanDraw& canDraw = {}) const;

 private:
  [[nodiscard]] bool hasAnyOf(const std::vector<std::uint32_t>& wanted) const;
};

}  // namespace chatsum::desktop
