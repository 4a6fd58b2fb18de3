#include "hosts/desktop/engine/SelectedRows.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"

namespace chatsum::desktop {
namespace {

bool isInside(const device::TimeRange& times, double date) {
  if (times.isOpen()) return true;
  return !std::isnan(date) && times.contains(Date{date});
}

}  // namespace

std::size_t SelectedRows::count() const {
  if (!rows) return 0;
  switch (kind) {
    case Kind::kNone:
      break;
    case Kind::kAll:
      return rows->size();
    case Kind::kTicked:
      return ticks ? ticks->count() : 0;
    case Kind::kInTimes:
      return static_cast<std::size_t>(
          std::count_if(rows->dates.begin(), rows->dates.end(), [this](double date) { return isInside(times, date); }));
    case Kind::kStretch:
      return first < rows->size() && first <= last ? std::min(last, rows->size() - 1) - first + 1 : 0;
  }
  return 0;
}

bool SelectedRows::has(std::size_t row) const {
  if (!rows || row >= rows->size()) return false;
  switch (kind) {
    case Kind::kNone:
      break;
    case Kind::kAll:
      return true;
    case Kind::kTicked:
      return ticks && ticks->has(row);
    case Kind::kInTimes:
      return isInside(times, rows->dates[row]);
    case Kind::kStretch:
      return row >= first && row <= last;
  }
  return false;
}

bool SelectedRows::hasAnyOf(const std::vector<std::uint32_t>& wanted) const {
  return std::any_of(wanted.begin(), wanted.end(), [this](std::uint32_t row) { return has(row); });
}

bool SelectedRows::hasAttachments() const { return rows && hasAnyOf(rows->withAttachment); }

bool SelectedRows::hasMultiMediaAttachments() const { return rows && hasAnyOf(rows->withMultiMedia); }

Array SelectedRows::records() const {
  if (!rows || kind == Kind::kNone) return {};
  if (kind == Kind::kAll) return rows->records;
  std::vector<Value> chosen;
  chosen.reserve(count());
  if (kind == Kind::kTicked && ticks) {
    ticks->forEach([&](std::size_t row) {
      if (row < rows->size()) chosen.push_back(rows->records[row]);
    });
  } else {
    for (std::size_t row = 0; row < rows->size(); ++row) {
      if (has(row)) chosen.push_back(rows->records[row]);
    }
  }
  return Array(std::move(chosen));
}

SelectedReport SelectedRows::report(device::ReportFormat format, const device::CanDraw& canDraw) const {
  SelectedReport report;
  if (!rows) return report;
  // The format may still be changed on the screen: to any that has pages, or to one that has none.
  device::ReportLayout layout, pages;
  layout.format = format;
  pages.format = device::ReportFormat::kPdf;
  const Array chosen = records();
  report.textRecords = device::showWhole(chosen, device::ReportLayout(), canDraw).records;
  device::ShownRows paged = device::showWhole(chosen, pages, canDraw);
  report.undrawn = paged.undrawn;
  report.request = device::makeRequest(layout, rows->name, std::move(paged.records), rows->content);
  report.request.remove(request::kReportFormat);
  report.appType = rows->content.appType;
  report.hasAttachments = hasAttachments();
  report.hasMultiMediaAttachments = hasMultiMediaAttachments();
  return report;
}

}  // namespace chatsum::desktop
