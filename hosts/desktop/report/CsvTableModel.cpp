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
  rows_ = columns_ = measured_ = 0;
  widest_.clear();
  lateRow_ = -1;
  endResetModel();
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
}

int CsvTableModel::charactersOf(int column) const {
  constexpr int kRowsLookedAt = 50;
  constexpr qsizetype kFewest = 6, kMost = 48;
  // Each row once for all columns: it may be large.
  for (; measured_ < std::min(rows_, kRowsLookedAt); ++measured_) {
    const QStringList& cells = cellsOf(measured_);
    const auto known = static_cast<std::size_t>(std::min<qsizetype>(cells.size(), kMostColumns));
    if (known > widest_.size()) widest_.resize(known);
    for (std::size_t cell = 0; cell < known; ++cell) {
      widest_[cell] = std::max(widest_[cell], cells[static_cast<qsizetype>(cell)].size());
    }
  }
  const auto place = static_cast<std::size_t>(column);
  const qsizetype widest = column >= 0 && place < widest_.size() ? widest_[place] : 0;
  return static_cast<int>(std::min(std::max({kFewest, titles_.value(column).size(), widest}), kMost));
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
