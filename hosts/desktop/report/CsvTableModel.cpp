#include "hosts/desktop/report/CsvTableModel.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "hosts/desktop/report/CsvRow.h"

namespace chatsum::desktop {
namespace {

constexpr std::size_t kLongestCell = 4096;  // bytes; nobody reads more in a table

QStringList cellsIn(RowSource& source, int row) {
  const QByteArray bytes = source.row(row);
  return csvCells(std::string_view(bytes.data(), static_cast<std::size_t>(bytes.size())), kLongestCell);
}

}  // namespace

QString CsvTableModel::open(const QString& path) {
  close();
  auto source = std::make_unique<RowSource>(path, RowKind::kCsv);
  connect(source.get(), &RowSource::grew, this, &CsvTableModel::grow);
  QString problem = source->start();
  if (problem.isEmpty()) source_ = std::move(source);
  return problem;
}

void CsvTableModel::close() {
  if (!source_) return;
  beginResetModel();
  source_.reset();
  titles_.clear();
  rows_ = columns_ = 0;
  lateRow_ = -1;
  endResetModel();
  isComplete_ = false;
  Q_EMIT isCompleteChanged();
}

void CsvTableModel::grow() {
  if (source_->rows() > 0 && titles_.isEmpty()) titles_ = cellsIn(*source_, 0);
  const int columns = source_->rows() > 0 ? std::min(source_->cells(), kMostColumns) : 0;
  if (columns > columns_) {
    beginInsertColumns({}, columns_, columns - 1);
    columns_ = columns;
    endInsertColumns();
  }
  const int rows = std::max(source_->rows() - 1, 0);
  if (rows > rows_) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  }
  if (std::exchange(isComplete_, source_->isComplete()) != isComplete_) Q_EMIT isCompleteChanged();
}

int CsvTableModel::charactersOf(int column) const {
  constexpr int kRowsLookedAt = 50;
  constexpr qsizetype kFewest = 6, kMost = 48;
  qsizetype characters = std::max(kFewest, titles_.value(column).size());
  for (int row = 0; row < std::min(rows_, kRowsLookedAt); ++row) {
    characters = std::max(characters, cellsOf(row).value(column).size());
  }
  return static_cast<int>(std::min(characters, kMost));
}

int CsvTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }
int CsvTableModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : columns_; }

QVariant CsvTableModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
  if (role != Qt::DisplayRole) return {};
  return cellsOf(index.row()).value(index.column());
}

QVariant CsvTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || section < 0) return {};
  if (orientation == Qt::Vertical) return section < rows_ ? QVariant(section + 1) : QVariant();
  return section < columns_ ? QVariant(titles_.value(section)) : QVariant();
}

QHash<int, QByteArray> CsvTableModel::roleNames() const { return {{Qt::DisplayRole, "display"}}; }

const QStringList& CsvTableModel::cellsOf(int row) const {
  if (std::exchange(lateRow_, row) != row) lateCells_ = cellsIn(*source_, row + 1);
  return lateCells_;
}

}  // namespace chatsum::desktop
