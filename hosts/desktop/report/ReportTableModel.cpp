#include "hosts/desktop/report/ReportTableModel.h"

#include <QLocale>
#include <algorithm>
#include <optional>
#include <utility>

#include "libchatsum/CSReportGenerationViewController/CriteriaRows.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/ChatsumUtils/ReportPlaces.h"
#include "platform/foundation/PathComponents.h"
#include "platform/interfaces/Platform.h"

namespace chatsum::desktop {
namespace {

using platform::IndexPath;

QString shown(const std::optional<std::string>& text) { return text ? QString::fromStdString(*text) : QString(); }

QString nameOf(ReportRow::Kind kind) {
  switch (kind) {
    case ReportRow::Kind::kName:
      return QStringLiteral("name");
    case ReportRow::Kind::kChoice:
      return QStringLiteral("choice");
    case ReportRow::Kind::kFile:
      break;
  }
  return QStringLiteral("file");
}

/// What stands over the reports of an application.
QString headingOf(std::int64_t appType) {
  const auto code = static_cast<std::size_t>(appType);
  return code < kAppFolderNames.size()
             ? QString::fromStdString(platform::current().mainBundle.localizedString(kAppFolderNames.at(code)))
             : QString();
}

}  // namespace

ReportTableModel::ReportTableModel(std::shared_ptr<ReportIcons> icons) : icons_(std::move(icons)) {}

ReportTableModel::~ReportTableModel() {
  if (screen_) screen_->tableView().setListener(nullptr);
}

void ReportTableModel::setScreen(const std::shared_ptr<CSReportGenerationViewController>& screen) {
  if (screen_) screen_->tableView().setListener(nullptr);
  screen_ = screen;
  reports_.clear();
  if (screen_) screen_->tableView().setListener(this);
  refresh();
}

void ReportTableModel::setReports(std::vector<device::EarlierReport> reports) {
  reports_ = std::move(reports);
  std::stable_sort(reports_.begin(), reports_.end(),
                   [](const auto& one, const auto& other) { return one.appType < other.appType; });
  refresh();
}

void ReportTableModel::activate(int row) {
  if (!screen_ || row < 0 || row >= rowCount() || reportAt(row)) return;
  screen_->tableView().tapRow(rows_[static_cast<std::size_t>(row)].place);
}

const device::EarlierReport* ReportTableModel::reportAt(int row) const {
  const int first = rowCount() - static_cast<int>(reports_.size());
  return row >= first && row < rowCount() ? &reports_[static_cast<std::size_t>(row - first)] : nullptr;
}

void ReportTableModel::forget(const std::string& path) {
  std::erase_if(reports_, [&](const device::EarlierReport& report) { return report.path == path; });
  refresh();
}

void ReportTableModel::followName() {
  if (!screen_ || rows_.empty() || rows_.front().kind != ReportRow::Kind::kName) return;
  rows_.front().detail = QString::fromStdString(screen_->nameTextField()->text());
  Q_EMIT dataChanged(index(0), index(0), {kDetailRole});
}

int ReportTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ReportTableModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
  const ReportRow& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case kSectionRole:
      return static_cast<int>(row.place.section);
    case kSectionTitleRole:
      return row.sectionTitle;
    case kSectionFooterRole:
      return row.sectionFooter;
    case kKindRole:
      return nameOf(row.kind);
    case Qt::DisplayRole:
    case kTitleRole:
      return row.title;
    case kDetailRole:
      return row.detail;
    case kFileNameRole:
      return row.fileName;
    case kSizeRole:
      return row.size;
    case kIconRole:
      return row.icon;
    case kEditableRole:
      return row.editable;
    default:
      return {};
  }
}

QHash<int, QByteArray> ReportTableModel::roleNames() const {
  return {{kSectionRole, "section"},   {kSectionTitleRole, "sectionTitle"},
          {kKindRole, "kind"},         {kSectionFooterRole, "sectionFooter"},
          {kTitleRole, "title"},       {kDetailRole, "detail"},
          {kFileNameRole, "fileName"}, {kSizeRole, "size"},
          {kIconRole, "icon"},         {kEditableRole, "editable"}};
}

void ReportTableModel::didReload(platform::UITableView& /*tableView*/) {
  refresh();
  Q_EMIT reloaded();
}

void ReportTableModel::didUpdate(platform::UITableView& /*tableView*/, const platform::UITableViewUpdate& /*update*/) {
  refresh();
}

void ReportTableModel::refresh() { take(screen_ ? read() : std::vector<ReportRow>()); }

std::vector<ReportRow> ReportTableModel::read() const {
  auto& table = screen_->tableView();
  std::vector<ReportRow> rows;
  const std::int64_t criteria = table.numberOfRowsInSection(criteria::kSection);
  for (std::int64_t row = 0; row < criteria; ++row) rows.push_back(readRow({criteria::kSection, row}));
  if (!rows.empty()) {
    rows.front().sectionTitle = shown(table.titleForHeaderInSection(criteria::kSection));
    rows.back().sectionFooter = shown(table.titleForFooterInSection(criteria::kSection));
  }
  IndexPath place{criteria::kSection, 0};
  for (const device::EarlierReport& report : reports_) {
    const std::int64_t section = criteria::kSection + 1 + report.appType;
    place = {section, section == place.section ? place.row + 1 : 0};
    rows.push_back(rowOf(report, place));
    if (place.row == 0) rows.back().sectionTitle = headingOf(report.appType);
  }
  return rows;
}

ReportRow ReportTableModel::readRow(IndexPath place) const {
  ReportRow row;
  row.place = place;
  row.kind = place.row == criteria::kNameRow ? ReportRow::Kind::kName : ReportRow::Kind::kChoice;
  const auto cell = screen_->tableView().cellForRowAtIndexPath(place);
  row.title = QString::fromStdString(cell->textLabel().text());
  row.detail = QString::fromStdString(cell->detailTextLabel().text());
  if (row.kind == ReportRow::Kind::kName) row.detail = QString::fromStdString(screen_->nameTextField()->text());
  return row;
}

/// As the library shows one.
ReportRow ReportTableModel::rowOf(const device::EarlierReport& report, IndexPath place) const {
  ReportRow row;
  row.place = place;
  row.kind = ReportRow::Kind::kFile;
  row.title = QString::fromStdString(path::deletingExtension(report.name));
  if (report.created) {
    auto& formatter = ChatsumUtils::dateFormatter();
    formatter.setStyles(platform::DateStyle::kMedium, platform::DateStyle::kShort, true);
    row.detail = QString::fromStdString(formatter.stringFromDate(*report.created));
  }
  if (report.size) row.size = QLocale().formattedDataSize(static_cast<qint64>(*report.size));
  row.fileName = QString::fromStdString(report.name);
  row.path = report.path;
  row.editable = true;
  const QString extension = QString::fromStdString(path::extension(report.name)).toLower();
  row.icon = icons_->keep(extension.isEmpty() ? QStringLiteral("file") : extension,
                          ChatsumUtils::imageWithFileName(extension.toStdString()));
  return row;
}

/// Makes the list that of the rows, with what stays in place: it is as before at both ends, and all between is another.
void ReportTableModel::take(std::vector<ReportRow> rows) {
  const auto isSame = [](const ReportRow& one, const ReportRow& other) { return one.isSameAs(other); };
  const auto front = static_cast<std::size_t>(
      std::mismatch(rows_.begin(), rows_.end(), rows.begin(), rows.end(), isSame).first - rows_.begin());
  std::size_t back = 0;
  while (front + back < rows_.size() && front + back < rows.size() &&
         isSame(rows_[rows_.size() - 1 - back], rows[rows.size() - 1 - back])) {
    ++back;
  }
  removeRun(front, rows_.size() - front - back);
  const std::size_t inserted = rows.size() - front - back;
  if (inserted > 0) {
    beginInsertRows({}, static_cast<int>(front), static_cast<int>(front + inserted) - 1);
    const auto from = rows.begin() + static_cast<std::ptrdiff_t>(front);
    rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(front), from,
                 from + static_cast<std::ptrdiff_t>(inserted));
    endInsertRows();
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows_[i] == rows[i]) continue;
    rows_[i] = std::move(rows[i]);
    Q_EMIT dataChanged(index(static_cast<int>(i)), index(static_cast<int>(i)));
  }
}

void ReportTableModel::removeRun(std::size_t first, std::size_t count) {
  if (count == 0) return;
  beginRemoveRows({}, static_cast<int>(first), static_cast<int>(first + count) - 1);
  const auto from = rows_.begin() + static_cast<std::ptrdiff_t>(first);
  rows_.erase(from, from + static_cast<std::ptrdiff_t>(count));
  endRemoveRows();
}

}  // namespace chatsum::desktop
