#include "hosts/desktop/report/ReportTableModel.h"

#include <QLocale>
#include <algorithm>
#include <utility>

#include "libchatsum/CSReportGenerationViewController/CriteriaRows.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::desktop {
namespace {

using platform::IndexPath;

QString shown(const std::optional<std::string>& text) { return text ? QString::fromStdString(*text) : QString(); }

ReportRow::Kind kindOf(IndexPath place) {
  if (place.section != criteria::kSection) return ReportRow::Kind::kFile;
  return place.row == criteria::kNameRow ? ReportRow::Kind::kName : ReportRow::Kind::kChoice;
}

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

/// The facts of the file in a row, nullptr when the list does not have it (any more).
const Record* fileIn(const std::optional<CSReportGenerationViewController::FileRecords>& files, IndexPath place) {
  if (!files) return nullptr;
  const auto found = files->find(place.section - 1);  // sections of files stand behind the criteria, by App type
  if (found == files->end() || static_cast<std::uint64_t>(place.row) >= found->second.size()) return nullptr;
  return found->second[static_cast<std::size_t>(place.row)].asRecord();
}

}  // namespace

ReportTableModel::ReportTableModel(std::shared_ptr<ReportIcons> icons) : icons_(std::move(icons)) {}

ReportTableModel::~ReportTableModel() {
  if (screen_) screen_->tableView().setListener(nullptr);
}

void ReportTableModel::setScreen(const std::shared_ptr<CSReportGenerationViewController>& screen) {
  if (screen_) screen_->tableView().setListener(nullptr);
  screen_ = screen;
  if (screen_) screen_->tableView().setListener(this);
  take(screen_ ? read() : std::vector<ReportRow>());
}

void ReportTableModel::activate(int row) {
  if (!screen_ || row < 0 || row >= rowCount()) return;
  screen_->tableView().tapRow(rows_[static_cast<std::size_t>(row)].place);
}

void ReportTableModel::remove(int row) {
  if (!screen_ || row < 0 || row >= rowCount()) return;
  screen_->tableView().confirmDeletion(rows_[static_cast<std::size_t>(row)].place);
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
  take(read());
  Q_EMIT reloaded();
}

void ReportTableModel::didUpdate(platform::UITableView& /*tableView*/, const platform::UITableViewUpdate& update) {
  const auto isDeleted = [&](const ReportRow& row) {
    return std::binary_search(update.deletedRows.begin(), update.deletedRows.end(), row.place) ||
           std::binary_search(update.deletedSections.begin(), update.deletedSections.end(), row.place.section);
  };
  for (std::size_t end = rows_.size(); end > 0;) {
    std::size_t first = end;
    while (first > 0 && isDeleted(rows_[first - 1])) --first;
    if (first < end) removeRun(first, end - first);
    end = first == end ? end - 1 : first;
  }
  take(read());  // those behind have other places now
}

std::vector<ReportRow> ReportTableModel::read() const {
  auto& table = screen_->tableView();
  const auto files = screen_->fileRecordsDictionary();
  std::vector<ReportRow> rows;
  for (std::int64_t section = 0; section < table.numberOfSections(); ++section) {
    const std::int64_t count = table.numberOfRowsInSection(section);
    for (std::int64_t row = 0; row < count; ++row) {
      const IndexPath place{section, row};
      rows.push_back(readRow(place, fileIn(files, place)));
      if (row == 0) rows.back().sectionTitle = shown(table.titleForHeaderInSection(section));
      if (row == count - 1) rows.back().sectionFooter = shown(table.titleForFooterInSection(section));
    }
  }
  return rows;
}

ReportRow ReportTableModel::readRow(IndexPath place, const Record* file) const {
  auto& table = screen_->tableView();
  ReportRow row;
  row.place = place;
  row.kind = kindOf(place);
  const auto cell = table.cellForRowAtIndexPath(place);
  row.title = QString::fromStdString(cell->textLabel().text());
  row.detail = QString::fromStdString(cell->detailTextLabel().text());
  row.editable = table.editingStyle(place) == platform::UITableViewCellEditingStyle::kDelete;
  if (row.kind == ReportRow::Kind::kName) row.detail = QString::fromStdString(screen_->nameTextField()->text());
  if (row.kind != ReportRow::Kind::kFile) return row;
  std::string name;
  if (file) {
    name = (*file)[report_entry::kName].description();
    if (const Value* size = file->find(report_entry::kSize)) {
      row.size = QLocale().formattedDataSize(size->integerValue());
    }
  }
  row.fileName = QString::fromStdString(name);
  const QString extension = QString::fromStdString(path::extension(name)).toLower();
  row.icon = icons_->keep(extension.isEmpty() ? QStringLiteral("file") : extension, cell->image());
  table.endDisplayingRow(place);  // one cell serves all files, however many there are
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
